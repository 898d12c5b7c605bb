// What the library expects of the host's foundation library. A host runs these tests against its
// own.

#include "../support/Text.h"

#include <plinth/config/Localizer.h>
#include <plinth/debug/CachedDatabaseValue.h>
#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16StringStream.h>
#include <plinth/utility/Cast.h>
#include <plinth/utility/Guid.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>

namespace {

using mezzo::test::Shown;
using mezzo::test::Wide;
using plinth::string::StringToNumber;
using plinth::utility::Guid;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

template <class Number>
void ExpectNumber(const std::string& inText, Number inNumber, bool inSuccess) {
  Number read = 77;
  const plinth::UTF16String text = Wide(inText);
  EXPECT_EQ(StringToNumber(read, text, 6), inSuccess) << inText;
  EXPECT_TRUE(read == inNumber && std::signbit(read) == std::signbit(inNumber)) << inText << read;
}

TEST(UTF16StringStream, WidthFillsTheNextItemFromTheLeftAndOnlyThat) {
  plinth::oUTF16StringStream stream;
  stream.width(3);
  stream << Wide("-") << 7;
  stream.fill(u'0');
  stream.width(2);
  stream << 5 << 5;
  stream.width(4);
  stream << -7;
  stream.width(-4);
  stream << std::numeric_limits<int>::min();
  stream.width(6);
  stream << 0.5 << std::numeric_limits<int>::max();
  EXPECT_EQ(Shown(stream.str()), "  -705500-7-21474836480000.52147483647");
}

TEST(StringToNumber, ReadsIntegers) {
  for (const std::string text :
       {" \t 12:34", "+0012e5", "000000000000000000000000000000042", "2147483647", "2147483648",
        "-2147483648.9", "-2147483649", "9223372036854775807", "9223372036854775808",
        "-9223372036854775808", "-9223372036854775809", "1000000000000000000000000000000000"}) {
    errno = 0;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    const bool fits = errno == 0;
    ExpectNumber(text, number, fits);
    const auto nearest = static_cast<int>(std::clamp(number, -2147483648LL, 2147483647LL));
    ExpectNumber(text, nearest, fits && nearest == number);
  }
}

TEST(StringToNumber, ReadsDoubles) {
  for (const std::string text :
       {" \t+.25:7", "-5.", "-0", "1.5.5", "2e+", "2E-1.5", "9007199254740993", "4e-324", "-2e-324",
        "0e99999999999999999999", "1e-99999999999999999999", "1e99999999999999999999", "1.8e308"}) {
    const double number = std::strtod(text.c_str(), nullptr);
    ExpectNumber(text, number, std::isfinite(number));
  }
  const std::string zeros(2000, '0');
  // 1 + 2^-53 lies halfway between 1 and its successor.
  const std::string halfway = "1.00000000000000011102230246251565404236316680908203125" + zeros;
  ExpectNumber(halfway, 1.0, true);
  ExpectNumber(halfway + "1", std::nextafter(1.0, 2.0), true);
  ExpectNumber("1" + zeros + "e-2000", 1.0, true);
  ExpectNumber(zeros + "." + zeros + "1e2001", 1.0, true);
  ExpectNumber("-1" + zeros, -kInfinity, false);
  ExpectNumber("0x1p3", 0.0, true);
  for (const std::string text :
       {"", "\t-", "+-5", "-+5", "- 5", "\n5", ".", "-.e5", "inf", "\xb2"}) {
    ExpectNumber(text, 0LL, false);
    ExpectNumber(text, 0.0, false);
  }
}

TEST(Doubles, AreWrittenAndReadAsTheCLibraryDoes) {
  std::mt19937_64 random(1);
  const auto written = [](double number) {
    return Shown((plinth::oUTF16StringStream() << number).view());
  };
  for (int round = 0; round < 20000; ++round) {
    // One in two of ordinary magnitude, the others of any.
    const double ordinary = std::ldexp(static_cast<double>(random() >> 11), -40);
    const double number = random() % 2 == 0 ? ordinary : std::bit_cast<double>(random());
    if (!std::isfinite(number)) continue;
    char text[32];
    std::snprintf(text, sizeof text, "%g", number);
    EXPECT_EQ(written(number), text);
    std::snprintf(text, sizeof text, "%.17g", number);
    ExpectNumber(text, number, true);
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(written(nan) + written(-nan) + written(kInfinity) + written(-kInfinity),
            "nannaninf-inf");
}

TEST(Guid, ReadsThreeFormsAndOrdersByBytes) {
  const std::string text = "0123abcd-4567-89ef-fedc-ba9876543210";
  const std::string bare = "0123ABCD456789efFEDCba9876543210";
  for (const std::string& form : {text, "{" + text + "}", bare}) {
    EXPECT_EQ(Shown(Guid(form.data(), form.size()).AsString()), text) << form;
    EXPECT_EQ(Guid(Wide(form)), Guid(form.data(), form.size())) << form;
  }
  for (const std::string& bad :
       {std::string(), text + " ", "{" + text, text + "}", "(" + text + ")", "{" + text + "{",
        "{" + bare + "}", bare + "0000", text.substr(0, 35) + "g", text.substr(0, 35) + '\0',
        "-" + text.substr(0, 8) + text.substr(9), text.substr(0, 13) + text.substr(14) + "0"}) {
    EXPECT_THROW(Guid(bad.data(), bad.size()), std::runtime_error) << bad;
    EXPECT_THROW(Guid{Wide(bad)}, std::runtime_error) << bad;
  }
  // The low byte of this unit is a digit.
  EXPECT_THROW(Guid{Wide(text.substr(0, 35)) + u'\u0130'}, std::runtime_error);
  const Guid first(Wide("00ff0000000000000000000000000000"));
  const Guid last(Wide("80000000000000000000000000000001"));
  EXPECT_TRUE(Guid() < first && first < last && !plinth::utility::operator<(last, first));
  EXPECT_FALSE(last < last || plinth::utility::operator==(first, last));
  EXPECT_EQ(Shown(Guid().AsString()), "00000000-0000-0000-0000-000000000000");
}

TEST(NumericCast, KeepsTheLowBits) {
  const std::pair<std::int64_t, int> cases[] = {{2147483647, 2147483647},
                                                {-2147483647 - 1, -2147483647 - 1},
                                                {2147483648, -2147483647 - 1},
                                                {4294967296, 0},
                                                {-2147483649, 2147483647}};
  for (const auto& [value, cast] : cases) {
    if (value == static_cast<long>(value))
      EXPECT_EQ((plinth::utility::NumericCast<int, long>(static_cast<long>(value))), cast);
  }
}

TEST(AsciiToUTF16, WidensBytes) {
  EXPECT_EQ(plinth::string::AsciiToUTF16("0:;.-", 4), u"0:;.");
}

TEST(Localizer, AnswersTheEnglishTextWhereNothingIsTranslated) {
  EXPECT_EQ(plinth::config::Localizer::Get().Localize("$$$/mezzo/test/none=A"), u"A");
}

TEST(DebugDatabase, AnswersTheDefaultWithoutAnEntry) {
  const std::string_view key = "mezzo.test.none";
  plinth::debug::CachedDatabaseValue<bool> value({key.begin(), key.end()}, false, true);
  EXPECT_FALSE(value.Get());
}

}  // namespace
