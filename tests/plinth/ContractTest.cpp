// What the library expects of the host's foundation library. A host runs these tests against its
// own; each is one expectation.

#include "../support/Text.h"

#include <plinth/config/Localizer.h>
#include <plinth/debug/CachedDatabaseValue.h>
#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16StringStream.h>
#include <plinth/utility/Cast.h>
#include <plinth/utility/Guid.h>

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <string>

namespace {

using mezzo::test::Show;
using mezzo::test::Widen;
using plinth::utility::Guid;

TEST(UTF16StringStream, WritesDoublesAsTheCLibraryDoes) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 20000; ++round) {
    // Half of the numbers have an ordinary magnitude, the others any magnitude.
    const double ordinary = std::ldexp(static_cast<double>(random() >> 11), -40);
    const double number = random() % 2 == 0 ? ordinary : std::bit_cast<double>(random());
    char text[32] = "nan";  // without a sign
    if (!std::isnan(number)) std::snprintf(text, sizeof text, "%g", number);
    EXPECT_EQ(Show((plinth::oUTF16StringStream() << number).view()), text);
  }
}

TEST(StringToNumber, ReadsIntegersAsTheCLibraryDoes) {
  for (const char* text :
       {"12:34", "+0012e5", "000000000000000000000000000000042", "-2147483648.9", " \t 7",
        "9223372036854775807", "9223372036854775808", "-9223372036854775808",
        "-9223372036854775809", "1000000000000000000000000000000000"}) {
    errno = 0;
    const long long expected = std::strtoll(text, nullptr, 10);
    long long number = 77;
    EXPECT_EQ(plinth::string::StringToNumber(number, Widen(text), 6), errno == 0) << text;
    EXPECT_EQ(number, expected) << text;
  }
  for (const char* text : {"", "\t-", "+-5", "-+5", "- 5", "\n5", ".5", "x", "\xb2"}) {
    long long number = 77;
    EXPECT_FALSE(plinth::string::StringToNumber(number, Widen(text), 6) || number != 0) << text;
  }
}

TEST(Guid, ReadsThreeFormsAndOrdersByBytes) {
  const std::string text = "0123abcd-4567-89ef-fedc-ba9876543210";
  const std::string bare = "0123ABCD456789efFEDCba9876543210";
  for (const std::string& form : {text, "{" + text + "}", bare}) {
    EXPECT_EQ(Show(Guid(form.data(), form.size()).AsString()), text) << form;
    EXPECT_EQ(Guid(Widen(form)), Guid(form.data(), form.size())) << form;
  }
  for (const std::string& bad :
       {std::string(), text + " ", "{" + text, text + "}", "{" + text + "{", "{" + bare + "}",
        bare + "0000", text.substr(0, 35) + "g", text.substr(0, 35) + '\0',
        "-" + text.substr(0, 8) + text.substr(9), text.substr(0, 13) + text.substr(14) + "0"}) {
    EXPECT_THROW(Guid(bad.data(), bad.size()), std::runtime_error) << bad;
    EXPECT_THROW(Guid{Widen(bad)}, std::runtime_error) << bad;
  }
  // The low byte of this unit is a digit.
  EXPECT_THROW(Guid{Widen(text.substr(0, 35)) + u'\u0130'}, std::runtime_error);
  const Guid none, first(Widen("00ff0000000000000000000000000000")), last(Widen(bare));
  EXPECT_TRUE(none < first && first < last && !plinth::utility::operator<(last, first));
  EXPECT_FALSE(last < last || plinth::utility::operator==(first, last));
}

TEST(NumericCast, KeepsTheLowBits) {
  for (const std::int64_t value : {2147483647LL, 2147483648LL, 4294967297LL, -2147483649LL}) {
    const auto low = static_cast<int>(static_cast<std::uint32_t>(value));
    const auto number = static_cast<long>(value);  // 32 bits on some platforms
    EXPECT_EQ((plinth::utility::NumericCast<int, long>(number)), low);
  }
}

TEST(AsciiToUTF16, WidensBytes) {
  EXPECT_EQ(plinth::string::AsciiToUTF16("0:;.-", 4), u"0:;.");
}

TEST(Localizer, ReturnsTheEnglishTextWithoutATranslation) {
  EXPECT_EQ(plinth::config::Localizer::Get().Localize("$$$/mezzo/test/none=A"), u"A");
}

TEST(DebugDatabase, ReturnsTheDefaultWithoutAnEntry) {
  EXPECT_TRUE(plinth::debug::CachedDatabaseValue<bool>({'?'}, true, true).Get());
}

}  // namespace
