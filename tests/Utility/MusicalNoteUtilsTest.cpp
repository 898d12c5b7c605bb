// Names of notes, and the note nearest to a frequency. What lies beside each boundary stands in the
// vectors.

#include <Utility/MusicalNoteUtils.h>

#include <plinth/config/Localizer.h>

#include <boost/locale/encoding_utf.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>

namespace mezzo::utility {
namespace {

std::string NoteText(int inIndex, int inOctave, bool inFlatOnly = false) {
  plinth::UTF16String text = u"x";
  GetNoteString(text, inIndex, inOctave, inFlatOnly);
  return boost::locale::conv::utf_to_utf<char>(text.data(), text.data() + text.size());
}

/// Index and octave.
std::pair<int, int> Found(float inFrequency) {
  int octave = 99;
  const int index = GetNoteFromFrequency(inFrequency, nullptr);
  EXPECT_EQ(GetNoteFromFrequency(inFrequency, &octave), index) << inFrequency;
  return {index, octave};
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

TEST(NoteFromFrequency, AgreesWithEqualTemperament) {
  // Half a cent from the boundaries on either side; rounding moves those by far less.
  for (int step = -60; step < 132; ++step) {
    for (const double offset : {-0.495, 0.0, 0.495}) {
      if (step % 12 == 0 && offset < 0) continue;  // below its A, 12 closes the octave before
      const auto frequency = static_cast<float>(440.0 * std::exp2((step + offset) / 12.0));
      if (frequency >= 28160.0f) continue;
      const std::pair expected{(step + 60) % 12, (step + 60) / 12 - 1};
      EXPECT_EQ(Found(frequency), expected) << frequency;
    }
  }
  EXPECT_EQ(Found(860.0f), (std::pair{12, 4}));
  EXPECT_EQ(Found(28160.0f), (std::pair{0, 10}));
}

}  // namespace
}  // namespace mezzo::utility
