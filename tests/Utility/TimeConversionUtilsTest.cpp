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
#include <limits>
#include <string>
#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace mezzo::utility {
namespace {

using plinth::UTF16String;
using test::Shown;
using test::Wide;

enum SMPTEFlag : unsigned { kPlain = 0, kDrop = 1, kPulldown = 2 };

TEST(SMPTE, EveryLabelOfADayReadsBackAsItself) {
  const struct {
    std::int32_t fps;
    unsigned flags;
  } cases[] = {{24, kPlain},    {25, kPlain},    {30, kPlain},    {50, kPlain},
               {60, kPlain},    {24, kPulldown}, {25, kPulldown}, {30, kPulldown},
               {50, kPulldown}, {60, kPulldown}, {30, kDrop},     {60, kDrop}};
  for (const std::int32_t rate : {44100, 48000, 96000, 47952}) {
    for (const auto& c : cases) {
      const unsigned readFlags = c.flags == kDrop ? kDrop | kPulldown : c.flags;
      UTF16String text;
      std::int64_t samples = 0;
      for (std::int32_t frame = 0; frame < 24 * 3600 * c.fps; ++frame) {
        // The frame's first sample, from the definition of the rates.
        const std::int64_t pulldown = c.flags == kPlain ? 1000 : 1001;
        const std::int64_t expected =
            (frame * pulldown * rate + 1000 * c.fps - 1) / (1000 * std::int64_t{c.fps});
        ConvertSamplesToTimecode(text, expected, rate, c.fps, c.flags == kDrop,
                                 c.flags == kPulldown, false, false, false, false, false);
        ConvertTimecodeToSamples(samples, text, rate, c.fps, (readFlags & kPulldown) != 0,
                                 (readFlags & kDrop) != 0);
        ASSERT_EQ(samples, expected) << Shown(text) << ' ' << rate << ' ' << c.fps;
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
    const std::int64_t samples = test::DrawnArguments(seed).Int64() % (360000 * std::int64_t{rate});
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

TEST(BarsAndBeats, ReadBackAsTheStartOfTheirTick) {
  for (std::uint64_t seed = 0; seed < 40000; seed += 2) {
    test::DrawnArguments draw(seed);
    const BeatInfo beats = draw.Beats();
    if (beats.iTicksPerBeat < 1) continue;
    const double rate = draw.Double({44100.0, 48000.0, 96000.0});
    const bool isDuration = draw.Flag();
    const std::int64_t samples = draw.Int64() % 10000000000;
    UTF16String text;
    ConvertSamplesToBarsAndBeats(text, static_cast<double>(samples), rate, beats, isDuration, 2);
    const std::int64_t start = ConvertBarsAndBeatsToSamples(text, rate, beats, isDuration);
    const double samplesPerTick =
        rate * 240.0 / (beats.dTempo * beats.iBeatUnit * beats.iTicksPerBeat);
    // Within the tick, but for the display's half thousandth and the rounding to a whole sample.
    const double into = static_cast<double>(samples - start) / samplesPerTick;
    const double slack = 0.001 + 0.51 / samplesPerTick;
    ASSERT_TRUE(into > -slack && into < 1 + slack) << Shown(text) << ' ' << samples;
    if (samplesPerTick <= 2) continue;
    ConvertSamplesToBarsAndBeats(text, static_cast<double>(start) + 0.5, rate, beats, isDuration,
                                 2);
    ASSERT_EQ(ConvertBarsAndBeatsToSamples(text, rate, beats, isDuration), start) << Shown(text);
  }
}

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
       {std::string("."), std::string(".25"), std::string(".5e-3x"), std::string(".e1"),
        std::string(".5e999"), std::string(".5\xff"), "." + std::string(1500, '3')}) {
    const UTF16String wide = Wide(text);
    double host = 0;
    plinth::string::StringToNumber(host, wide, 6);
    EXPECT_EQ(TextCursor(wide).ReadFraction(), host) << text;
  }
}

TEST(BeatInfoComparison, FollowsIEEE754FieldByField) {
  constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
  const BeatInfo base{960, 120.0, 4, 4, 0.0};
  const std::pair<BeatInfo, bool> cases[] = {
      {{960, 120.0, 4, 4, -0.0}, true},     {{961, 120.0, 4, 4, 0.0}, false},
      {{960, 120.5, 4, 4, 0.0}, false},     {{960, 120.0, 3, 4, 0.0}, false},
      {{960, 120.0, 4, 8, 0.0}, false},     {{960, 120.0, 4, 4, 1.0}, false},
      {{960, notANumber, 4, 4, 0.0}, false}};
  for (const auto& [other, isEqual] : cases) {
    EXPECT_EQ(base == other, isEqual);
    EXPECT_EQ(base != other, !isEqual);
  }
  const BeatInfo unequal{960, notANumber, 4, 4, 0.0};
  EXPECT_FALSE(unequal == unequal);
}

}  // namespace
}  // namespace mezzo::utility
