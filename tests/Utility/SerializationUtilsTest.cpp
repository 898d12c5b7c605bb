// The native media handlers under their identifiers and their names.

#include "../support/Text.h"
#include <Utility/SerializationUtils.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace mezzo::utility {
namespace {

using plinth::UTF16String;
using plinth::utility::Guid;
using namespace std::string_literals;

Guid IdentifierAt(int inIndex) {
  return GetNativeHandlerID(static_cast<NativePluginIndex>(inIndex));
}

TEST(MediaHandlers, GoRoundInEveryForm) {
  const UTF16String names[] = {
      u"RuvoAiff",     u"RuvoApe",           u"RuvoAT",        u"DLMS",        u"Dolby",
      u"ImporterHost", u"RuvoLSF",           u"RuvoMF",        u"RuvoMP2",     u"RuvoMP3",
      u"RuvoQT",       u"RuvoTwoLame",       u"RuvoWav",       u"FinalCutXML", u"LegacyXML",
      u"OmfSession",   u"KinoraInterchange", u"KinodocNative", u"DocketNative"};
  std::set<UTF16String> texts;
  int index = 0;
  for (const auto& name : names) {
    UTF16String text;
    ASSERT_TRUE(TranslateFromHumanReadableMediaHandler(name, text));
    EXPECT_EQ(text, IdentifierAt(index++).AsString());
    ASSERT_EQ(text.size(), 36u);
    EXPECT_EQ(text[14], u'4') << "version";
    EXPECT_NE(UTF16String(u"89ab").find(text[19]), UTF16String::npos) << "variant";
    texts.insert(text);

    UTF16String upper = text, bare = text;
    for (auto& unit : upper) unit = unit >= u'a' ? static_cast<char16_t>(unit - 32) : unit;
    bare.erase(std::remove(bare.begin(), bare.end(), u'-'), bare.end());
    for (const UTF16String& form : {text, upper, bare, u"{" + text + u"}"}) {
      UTF16String found;
      EXPECT_TRUE(TranslateToHumanReadableMediaHandler(form, found)) << test::Shown(form);
      EXPECT_EQ(test::Shown(found), test::Shown(name));
    }
  }
  EXPECT_EQ(texts.size(), 19u);
}

TEST(MediaHandlers, RefuseWhatTheyDoNotKnow) {
  const std::string known = test::Shown(IdentifierAt(12).AsString());
  const std::string stranger = "01234567-89ab-4def-8123-456789abcdef", nobody(32, '0');
  for (const std::string& text :
       {""s, "ruvowav"s, "RuvoWav "s, " RuvoWav"s, "RuvoWa"s, stranger, nobody, known + " ",
        "{" + known, known.substr(1), 'g' + known.substr(1)}) {
    UTF16String kept = u"keep";
    EXPECT_FALSE(TranslateToHumanReadableMediaHandler(test::Wide(text), kept)) << text;
    EXPECT_FALSE(TranslateFromHumanReadableMediaHandler(test::Wide(text), kept)) << text;
    EXPECT_EQ(kept, u"keep");
  }
  for (const int index : {-1, 19, 256 + 12}) EXPECT_EQ(IdentifierAt(index), Guid()) << index;
}

}  // namespace
}  // namespace mezzo::utility
