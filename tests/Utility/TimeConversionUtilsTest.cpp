// Properties of the conversions over all of a day, and of the parts that they are made of. Worked
// results stand in the vectors.

#include "../../Utility/private/TextCursor.h"
#include "../support/ExportedCalls.h"
#include "../support/Text.h"
#include <Utility/TimeConversionUtils.h>

#include <plinth/string/StringConversion.h>

#include <gtest/gtest.h>

#include <cfenv>
#include <cstdint>
#include <string>
#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace mezzo::utility {
namespace {

using plinth::UTF16String;
using test::Shown;
using test::Wide;
using namespace std::string_literals;

TEST(SMPTE, EveryLabelOfADayReadsBackAsItself) {
  const struct {
    std::int32_t fps;
    bool isDropFrame, isPulledDown;
  } cases[] = {{24, false, false}, {25, false, false}, {30, false, false}, {50, false, false},
               {60, false, false}, {24, false, true},  {25, false, true},  {30, false, true},
               {50, false, true},  {60, false, true},  {30, true, true},   {60, true, true}};
  for (const std::int32_t rate : {44100, 48000, 96000, 47952}) {
    for (const auto& [fps, isDropFrame, isPulledDown] : cases) {
      const bool isUsualRate = rate == 44100 || rate == 48000;
      if (!isUsualRate && !isDropFrame) continue;  // half a minute more
      UTF16String text;
      std::int64_t samples = 0;
      for (std::int32_t frame = 0; frame < 24 * 3600 * fps; ++frame) {
        // The frame's first sample, from the definition of the rates.
        const std::int64_t pulldown = isPulledDown ? 1001 : 1000, perSecond = 1000 * fps;
        const std::int64_t expected = (frame * pulldown * rate + perSecond - 1) / perSecond;
        ConvertSamplesToTimecode(text, expected, rate, fps, isDropFrame,
                                 isPulledDown && !isDropFrame, false, false, false, false, false);
        ConvertTimecodeToSamples(samples, text, rate, fps, isPulledDown, isDropFrame);
        ASSERT_EQ(samples, expected) << Shown(text) << ' ' << rate << ' ' << fps;
      }
    }
  }
}

TEST(SMPTE, EveryFrameOfADayIsInverseToItsDropFrameLabel) {
  for (const std::int32_t fps : {30, 60}) {
    // The label counted up one by one, with the dropped ones left out.
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

#ifdef FE_UPWARD
TEST(FloatingPointEnvironment, DoesNotChangeWhatIsCountedInIntegers) {
  void (*const environments[])() = {
      [] { std::fesetround(FE_UPWARD); }, [] { std::fesetround(FE_DOWNWARD); },
      [] { std::fesetround(FE_TOWARDZERO); },
#ifdef __SSE2__
      [] { _mm_setcsr(_mm_getcsr() | 0x8040); },  // denormal numbers are zero, read or written
#endif
  };
  std::fenv_t usual;
  std::fegetenv(&usual);
  for (std::uint64_t seed = 0; seed < 20000; ++seed) {
    const std::int32_t rate = seed % 2 == 0 ? 44100 : 48000;
    const std::int64_t samples =
        test::DrawnArguments(seed).Integer(64) % (360000 * std::int64_t{rate});
    for (const int format : {1, 2, 3, 4, 8, 10}) {
      const auto results = [&] {
        UTF16String text;
        std::int64_t read = 0;
        const auto display = static_cast<TimecodeFormat>(format);
        ConvertSamplesToTimecode(text, samples, rate, display, 30, nullptr, false);
        ConvertTimecodeToSamples(read, text, display, rate, 30, nullptr, false);
        return Shown(text) + ' ' + std::to_string(read);
      };
      const std::string expected = results();
      for (const auto& enter : environments) {
        enter();
        const std::string actual = results();
        std::fesetenv(&usual);
        ASSERT_EQ(actual, expected) << format << ' ' << samples << ' ' << rate;
      }
    }
  }
}
#endif

TEST(TextCursor, ReadsAsTheHostsParserDoes) {
  for (const char* text : {"", "12", "-12", " \t+7x", "- 1", "--1", "+-1", "0x1", "2147483647",
                           "2147483648", "-2147483648", "-2147483649", "99999999999999999999999",
                           "-000000000000000000000000000000005", "\n1"}) {
    const UTF16String wide = Wide(text);
    int host = 0;
    plinth::string::StringToNumber(host, wide, 6);
    EXPECT_EQ(TextCursor(wide).ReadInteger(), host) << text;
  }
  for (const std::string& text :
       {"."s, ".25"s, ".5e-3x"s, ".e1"s, ".5e999"s, ".5\xff"s, "." + std::string(1500, '3')}) {
    const UTF16String wide = Wide(text);
    double host = 0;
    plinth::string::StringToNumber(host, wide, 6);
    EXPECT_EQ(TextCursor(wide).ReadFraction(), host) << text;
  }
}

}  // namespace
}  // namespace mezzo::utility
