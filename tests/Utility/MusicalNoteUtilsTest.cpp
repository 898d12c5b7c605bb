// Names of notes in the user's language. English ones, and the notes of frequencies, stand in the
// vectors.

#include "../support/Text.h"
#include <Utility/MusicalNoteUtils.h>

#include <plinth/config/Localizer.h>

#include <gtest/gtest.h>

#include <string>

namespace mezzo::utility {
namespace {

std::string Name(int inIndex) {
  plinth::UTF16String text;
  GetNoteString(text, inIndex, 3, false);
  return test::Shown(text);
}

TEST(NoteString, ShowsTranslatedLettersAsGiven) {
  auto& localizer = plinth::config::Localizer::Get();
  localizer.InstallTranslation("$$$/mezzo/MusicalNotes/G", u"Sol");
  localizer.InstallTranslation("$$$/mezzo/MusicalNotes/A=A", u"Lo");
  localizer.InstallTranslation("$$$/mezzo/MusicalNotes/A", u"Là");
  EXPECT_EQ(Name(11), "Sol\\u266f/L\\u00e0\\u266d4");
  EXPECT_EQ(Name(0), "L\\u00e03");
  localizer.RemoveTranslations();
  EXPECT_EQ(Name(0), "A3");
}

}  // namespace
}  // namespace mezzo::utility
