#include <Utility/MusicalNoteUtils.h>

#include <plinth/config/Localizer.h>
#include <plinth/string/StringConversion.h>

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

namespace mezzo::utility {

using plinth::UTF16String;

namespace {

constexpr char16_t kSharpSign = u'\u266F';
constexpr char16_t kFlatSign = u'\u266D';

constexpr const char kLetterA[] = "$$$/mezzo/MusicalNotes/A=A";
constexpr const char kLetterB[] = "$$$/mezzo/MusicalNotes/B=B";
constexpr const char kLetterC[] = "$$$/mezzo/MusicalNotes/C=C";
constexpr const char kLetterD[] = "$$$/mezzo/MusicalNotes/D=D";
constexpr const char kLetterE[] = "$$$/mezzo/MusicalNotes/E=E";
constexpr const char kLetterF[] = "$$$/mezzo/MusicalNotes/F=F";
constexpr const char kLetterG[] = "$$$/mezzo/MusicalNotes/G=G";

/// The localisation keys of a note's letters. A sharp or flat note lies between two letters.
struct NoteLetters {
  const char* below;  ///< a natural note's own letter
  const char* above;  ///< null for a natural note
};

constexpr std::array<NoteLetters, 13> kNotes{{
    {kLetterA, nullptr},
    {kLetterA, kLetterB},
    {kLetterB, nullptr},
    {kLetterC, nullptr},
    {kLetterC, kLetterD},
    {kLetterD, nullptr},
    {kLetterD, kLetterE},
    {kLetterE, nullptr},
    {kLetterF, nullptr},
    {kLetterF, kLetterG},
    {kLetterG, nullptr},
    {kLetterG, kLetterA},
    {kLetterA, nullptr},
}};

UTF16String ComposeNoteName(const plinth::config::Localizer& inLocalizer, const NoteLetters& inNote,
                            bool inFlatOnly) {
  if (inNote.above == nullptr) return inLocalizer.Localize(inNote.below);
  UTF16String name;
  if (!inFlatOnly) {
    name = inLocalizer.Localize(inNote.below);
    name += kSharpSign;
    name += u'/';
  }
  name += inLocalizer.Localize(inNote.above);
  name += kFlatSign;
  return name;
}

/// The octave number of a note's name; empty for a negative octave.
UTF16String ComposeOctave(int inNoteIndex, int inOctave) {
  constexpr int kLastNoteBelowC = 2;
  if (inOctave < 0) return {};
  // Octave numbers change at C. Overflow wraps.
  const auto shown = static_cast<unsigned>(inOctave) + (inNoteIndex > kLastNoteBelowC ? 1u : 0u);
  std::array<char, 16> digits;
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<int>(shown)).ptr;
  return plinth::string::AsciiToUTF16(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

}  // namespace

void GetNoteString(UTF16String& outNoteString, int inNoteIndex, int inOctave, bool inFlatOnly) {
  const auto& localizer = plinth::config::Localizer::Get();
  const UTF16String octave = ComposeOctave(inNoteIndex, inOctave);
  if (const auto note = static_cast<unsigned>(inNoteIndex); note < kNotes.size()) {
    UTF16String name = ComposeNoteName(localizer, kNotes[note], inFlatOnly);
    name += octave;
    outNoteString.assign(name);
  } else {
    outNoteString += octave;
  }
}

bool SupportsFlatSymbol() {
  return true;
}

bool SupportsSharpSymbol() {
  return true;
}

int GetNoteFromFrequency(float inFrequency, int* outOctave) {
  constexpr int kLowestOctave = -1;
  // The A of each octave, from A-1 to A10.
  constexpr std::array<float, 12> kBases{13.75f, 27.5f,   55.0f,   110.0f,  220.0f,   440.0f,
                                         880.0f, 1760.0f, 3520.0f, 7040.0f, 14080.0f, 28160.0f};
  // 2^(n/24) for odd n from 1 to 23: halfway between adjacent semitones.
  constexpr std::array<float, 12> kMidpoints{1.0293022f, 1.0905077f, 1.1553527f, 1.2240535f,
                                             1.2968396f, 1.3739537f, 1.4556532f, 1.5422108f,
                                             1.6339155f, 1.7310731f, 1.8340081f, 1.943064f};

  // Counting the bases at or below the frequency needs no branch; stopping at the first one above
  // would give the same number. The lowest octave includes everything below its base, and NaN.
  std::size_t octave = 0;
  for (std::size_t next = 1; next < kBases.size(); ++next)
    octave += inFrequency >= kBases[next] ? 1U : 0U;
  if (outOctave != nullptr) *outOctave = static_cast<int>(octave) + kLowestOctave;
  if (octave == kBases.size() - 1) return 0;

  int note = 0;
  for (const float halfway : kMidpoints) note += inFrequency >= kBases[octave] * halfway ? 1 : 0;
  return note;
}

}  // namespace mezzo::utility
