// Names of notes, and the note nearest to a frequency on both sides of every boundary.

#include "../support/NoteReference.h"
#include <Utility/MusicalNoteUtils.h>

#include <plinth/config/Localizer.h>

#include <boost/locale/encoding_utf.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace mezzo::utility {
namespace {

using test::Note;

std::string NoteText(int inIndex, int inOctave, bool inFlatOnly = false) {
  plinth::UTF16String text = u"x";
  GetNoteString(text, inIndex, inOctave, inFlatOnly);
  return boost::locale::conv::utf_to_utf<char>(text.data(), text.data() + text.size());
}

Note Found(float inFrequency) {
  Note note{GetNoteFromFrequency(inFrequency, nullptr), 99};
  EXPECT_EQ(GetNoteFromFrequency(inFrequency, &note.octave), note.index) << inFrequency;
  return note;
}

TEST(NoteString, NamesEveryNoteInBothSpellings) {
  const std::string full[] = {"A", "A♯/B♭", "B",     "C", "C♯/D♭", "D", "D♯/E♭",
                              "E", "F",     "F♯/G♭", "G", "G♯/A♭", "A"};
  const std::string flat[] = {"A", "B♭", "B", "C", "D♭", "D", "E♭", "E", "F", "G♭", "G", "A♭", "A"};
  for (int index = 0; index < 13; ++index) {
    EXPECT_EQ(NoteText(index, -1, false), full[index]);
    EXPECT_EQ(NoteText(index, -1, true), flat[index]);
    // The written octave changes at C.
    for (const int octave : {0, 4}) {
      const std::string number = std::to_string(index > 2 ? octave + 1 : octave);
      EXPECT_EQ(NoteText(index, octave, false), full[index] + number);
      EXPECT_EQ(NoteText(index, octave, true), flat[index] + number);
    }
  }
}

TEST(NoteString, ShowsTranslatedLettersAsGiven) {
  auto& localizer = plinth::config::Localizer::Get();
  localizer.InstallTranslation("$$$/mezzo/MusicalNotes/G", u"Sol");
  localizer.InstallTranslation("$$$/mezzo/MusicalNotes/A", u"Là");
  EXPECT_EQ(NoteText(11, 3), "Sol♯/Là♭4");
  EXPECT_EQ(NoteText(0, 4), "Là4");
  localizer.RemoveTranslations();
  EXPECT_EQ(NoteText(0, 4), "A4");
}

TEST(NoteFromFrequency, ChangesExactlyAtItsBoundaries) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const auto compare = [&](float frequency) {
    for (const float near :
         {std::nextafter(frequency, -kInfinity), frequency, std::nextafter(frequency, kInfinity)}) {
      EXPECT_EQ(Found(near), test::NoteOf(near)) << std::hexfloat << near;
    }
  };
  for (const auto& [end, octave, base] : test::kOctaveBands) {
    compare(end);
    for (const float boundary : test::kNoteBoundaries) compare(base * boundary);
  }
  for (const float frequency : {0.0f, -440.0f, -kInfinity, kInfinity, std::nanf("")}) {
    compare(frequency);
  }
}

TEST(NoteFromFrequency, AgreesWithEqualTemperament) {
  // Half a cent from the boundaries on either side; rounding moves those by far less.
  for (int step = -60; step < 132; ++step) {
    for (const double offset : {-0.495, 0.0, 0.495}) {
      if (step % 12 == 0 && offset < 0) continue;  // below its A, 12 closes the octave before
      const auto frequency = static_cast<float>(440.0 * std::exp2((step + offset) / 12.0));
      if (frequency >= 28160.0f) continue;
      const Note expected{(step + 60) % 12, (step + 60) / 12 - 1};
      EXPECT_EQ(Found(frequency), expected) << frequency;
    }
  }
  EXPECT_EQ(Found(860.0f), (Note{12, 4}));
  EXPECT_EQ(Found(28160.0f), (Note{0, 10}));
}

}  // namespace
}  // namespace mezzo::utility
