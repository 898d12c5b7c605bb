// Names of notes in the user's language. English names and the notes of frequencies are in the
// vectors.

#include "../support/Text.h"
#include <Utility/MusicalNoteUtils.h>

#include <plinth/config/Localizer.h>

#include <gtest/gtest.h>

namespace mezzo::utility {
namespace {

TEST(NoteString, ShowsTranslatedLettersAsGiven) {
  auto& localizer = plinth::config::Localizer::Get();
  localizer.InstallTranslation("$$$/mezzo/MusicalNotes/G", u"Sol");
  localizer.InstallTranslation("$$$/mezzo/MusicalNotes/A=A", u"Lo");
  localizer.InstallTranslation("$$$/mezzo/MusicalNotes/A", u"Là");
  plinth::UTF16String translated, english;
  GetNoteString(translated, 11, 3, false);
  EXPECT_EQ(test::Show(translated), "Sol\\u266f/L\\u00e0\\u266d4");
  localizer.RemoveTranslations();
  GetNoteString(english, 0, 3, false);
  EXPECT_EQ(test::Show(english), "A3");
}

}  // namespace
}  // namespace mezzo::utility
