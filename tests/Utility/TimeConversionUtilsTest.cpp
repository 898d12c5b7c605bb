// Properties of the conversions over a day or more, and of the text cursor that they use. Results
// of single calls are in the vectors.

#include "../../Utility/private/TextCursor.h"
#include "../support/ExportedCalls.h"
#include "../support/Text.h"
#include <Utility/TimeConversionUtils.h>

#include <plinth/string/StringConversion.h>

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace mezzo::utility {
namespace {

using plinth::UTF16String;
using test::Show;
using test::Widen;

TEST(SMPTE, EveryLabelOfADayReadsBackAsItsFirstSample) {
  const auto check = [](std::int32_t inRate, std::int32_t inFPS, bool inIsPulledDown,
                        bool inIsDropFrame) {
    UTF16String text;
    std::int64_t read = 0;
    for (std::int64_t frame = 0; frame < 24 * 3600 * inFPS; ++frame) {
      // The frame's first sample, from the definition of the rates.
      const std::int64_t samples =
          (frame * inRate * (inIsPulledDown ? 1001 : 1000) + 1000 * inFPS - 1) / (1000 * inFPS);
      ConvertSamplesToTimecode(text, samples, inRate, inFPS, inIsDropFrame,
                               inIsPulledDown && !inIsDropFrame, false, false, false, false, false);
      ConvertTimecodeToSamples(read, text, inRate, inFPS, inIsPulledDown, inIsDropFrame);
      ASSERT_EQ(read, samples) << Show(text) << ' ' << inRate << ' ' << inFPS;
    }
  };
  for (const std::int32_t rate : {44100, 48000}) {
    for (const std::int32_t fps : {24, 25, 30, 50, 60})
      check(rate, fps, false, false), check(rate, fps, true, false);
  }
  for (const std::int32_t rate : {44100, 48000, 96000, 47952})
    check(rate, 30, true, true), check(rate, 60, true, true);
}

TEST(SMPTE, EveryFrameOfADayHasItsDropFrameLabel) {
  for (const std::int32_t fps : {30, 60}) {
    // The expected label, incremented frame by frame; dropped labels are skipped.
    std::uint32_t h = 0, m = 0, s = 0, f = 0;
    const auto base = static_cast<std::uint32_t>(fps);
    for (std::int64_t frame = 0; h < 24; ++frame) {
      std::uint32_t hours = 0, minutes = 0, seconds = 0, frames = 0;
      DropFrameToHMSF(frame, fps, hours, minutes, seconds, frames);
      ASSERT_TRUE(hours == h && minutes == m && seconds == s && frames == f) << frame;
      if (++f == base) f = 0, ++s;
      if (s == 60) s = 0, ++m, f = m % 10 == 0 ? 0 : base / 15;
      if (m == 60) m = 0, ++h;
    }
  }
}

TEST(FloatingPointEnvironment, DoesNotChangeWhatIsCountedInIntegers) {
  for (std::uint64_t seed = 0; seed < 20000; ++seed) {
    const std::int64_t samples =
        test::DrawnArguments(seed).GetInteger(64) % 15876000000;  // 100 hours
    for (const int format : {1, 2, 3, 4, 8, 10}) {
      std::string expected;
      for (const int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        UTF16String text;
        std::int64_t read = 0;
        const auto display = static_cast<TimecodeFormat>(format);
        std::fesetround(mode);
        ConvertSamplesToTimecode(text, samples, 44100, display, 30, nullptr, false);
        ConvertTimecodeToSamples(read, text, display, 44100, 30, nullptr, false);
        std::fesetround(FE_TONEAREST);
        const std::string actual = Show(text) + ' ' + std::to_string(read);
        if (mode == FE_TONEAREST) expected = actual;
        ASSERT_EQ(actual, expected) << format << ' ' << samples;
      }
    }
  }
}

TEST(TextCursor, ReadsAsTheHostsParserAndTheCLibraryDo) {
  // 1 + 2^-53 lies halfway between 1 and its successor.
  const std::string zeros(2000, '0'),
      nines = "." + std::string(1500, '9'),
      halfway = "1.00000000000000011102230246251565404236316680908203125" + zeros,
      above = halfway + "1", one = "0." + zeros + "1e2001";
  for (const char* text : {"",
                           "12",
                           "-12",
                           " \t+7x",
                           "- 1",
                           "--1",
                           "+-1",
                           "2147483647",
                           "2147483648",
                           "-2147483648",
                           "-2147483649",
                           "9007199254740993",
                           "-000000000000000000000000000005",
                           ".",
                           ".25",
                           ".5e-3x",
                           ".e1",
                           ".5e999",
                           ".5\xff",
                           "-5.",
                           "2e+",
                           "2E-1.5",
                           "4e-324",
                           "0e99999999999999999999",
                           "1e-99999999999999999999",
                           "-1e99999999999999999999",
                           nines.c_str(),
                           halfway.c_str(),
                           above.c_str(),
                           one.c_str()}) {
    const UTF16String wide = Widen(text);
    char* end = nullptr;
    const double number = std::strtod(text, &end);
    int integer = 0;
    double parsed = 77;
    plinth::string::StringToNumber(integer, wide, 6);
    const bool isRead = plinth::string::StringToNumber(parsed, wide, 6);
    EXPECT_TRUE(parsed == number && isRead == (end != text && std::isfinite(number))) << text;
    EXPECT_EQ(TextCursor(wide).ReadInteger(), integer) << text;
    EXPECT_TRUE(text[0] != '.' || TextCursor(wide).PeekFraction() == number) << text;
  }
}

}  // namespace
}  // namespace mezzo::utility
