// Properties of the conversions, and what they answer where no independent result exists. Worked
// results stand in the vectors.

#include "../../Utility/private/TextCursor.h"
#include "../support/Heap.h"
#include "../support/Reports.h"
#include "../support/Text.h"
#include <Utility/TimeConversionUtils.h>

#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16StringStream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace mezzo::utility {
namespace {

using plinth::UTF16String;
using test::Shown;
using test::Wide;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
const BeatInfo kFourFour{960, 120.0, 4, 4, 0.0};

enum SMPTEFlag : unsigned {
  kPlain = 0,
  kDrop = 1,
  kPulldown = 2,
  kFramesOnly = 4,
  kNoFrames = 8,
  kTrim = 16,
  kSubframes = 32,
  kNoHours = 64
};

std::string SMPTE(std::int64_t inSamples, std::int32_t inRate, std::int32_t inFps, unsigned inFlags,
                  UTF16String text = u"keep") {
  const auto has = [=](SMPTEFlag flag) { return (inFlags & flag) != 0; };
  ConvertSamplesToTimecode(text, inSamples, inRate, inFps, has(kDrop), has(kPulldown),
                           has(kFramesOnly), has(kNoFrames), has(kTrim), has(kSubframes),
                           has(kNoHours));
  return Shown(text);
}

std::string InFormat(TimecodeFormat inFormat, std::int64_t inSamples, std::int32_t inRate = 48000,
                     const BeatInfo& inBeats = kFourFour) {
  UTF16String text = u"keep";
  ConvertSamplesToTimecode(text, inSamples, inRate, inFormat, 30, &inBeats, false);
  return Shown(text);
}

std::int64_t Read(const UTF16String& inText, std::int32_t inRate, std::int32_t inFps,
                  unsigned inFlags = kPlain) {
  std::int64_t samples = 0;
  ConvertTimecodeToSamples(samples, inText, inRate, inFps, (inFlags & kPulldown) != 0,
                           (inFlags & kDrop) != 0);
  return samples;
}

std::int64_t Read(const UTF16String& inText, TimecodeFormat inFormat,
                  BeatInfo inBeats = kFourFour) {
  std::int64_t samples = 0;
  ConvertTimecodeToSamples(samples, inText, inFormat, 48000, 30, &inBeats, false);
  return samples;
}

TEST(SMPTEDisplay, PadsTrimsAndSignsItsFields) {
  const struct {
    std::int64_t samples;
    std::int32_t fps;
    unsigned flags;
    const char* text;
  } cases[] = {
      {-72000, 30, kPlain, "-00:00:01:15"},
      {-1, 30, kTrim, "-0"},
      {178707200, 30, kNoHours, "62:03:02"},
      {178707200, 30, kNoFrames | kSubframes, "01:02:03"},
      {48000 * 7205LL, 30, kNoHours | kTrim, "120:05:00"},
      {48000 * 7500LL, 30, kNoHours | kTrim, "125:00:00"},
      {48000 * 60, 30, kTrim, "1:00:00"},
      {48000 * 3600LL, 30, kTrim, "01:00:00:00"},
      {-5600, 30, kTrim | kSubframes, "-3.50"},
      {48000 * 3600LL * 123, 30, kPlain, "123:00:00:00"},
      {48000, 8, kPlain, "00:00:01:0"},
      {48000, 1000, kPlain, "00:00:01:000"},
      {48000, 1001, kPlain, "00:00:01:0000"},
      {-480000, 30, kDrop | kFramesOnly, "299"},
      {-480000, 30, kDrop | kNoHours, "-00;00;09;29"},
      {480000, 0, kPlain, ""},
      {480000, 30, kDrop | kPulldown, "keep"},
      {kSmallest, 30, kDrop, "-00;00;00;00"},
  };
  test::RecordedReports reports;
  for (const auto& c : cases) {
    EXPECT_EQ(SMPTE(c.samples, 48000, c.fps, c.flags), c.text) << c.samples << ' ' << c.flags;
  }
  EXPECT_EQ(SMPTE(1, 0, 0, kPlain), "0");
  EXPECT_EQ(SMPTE(480240, -48000, 1000, kPlain), "00:00:-10:0-5");  // fill before the sign
  UTF16String text = u"keep";
  EXPECT_FALSE(ConvertSamplesToTimecode(text, 1, 48000, kTimecodeFormat_SMPTE, 0, nullptr, false));
}

TEST(SMPTE, WritesTheSameOverATextOfAnyLengthAndReadsItBack) {
  // The seconds after which a field carries, or the hours get a digit; fewer in drop-frame.
  constexpr std::int64_t kCarries[] = {0, 60, 3600, 359640, 360000, 3596400, 3600000, 10000000};
  const auto check = [](std::int64_t samples, std::int32_t fps, unsigned flags) {
    const std::string expected = SMPTE(samples, 1000 * fps, fps, flags);
    for (const std::size_t length : {expected.size() - 1, expected.size(), expected.size() + 1}) {
      EXPECT_EQ(SMPTE(samples, 1000 * fps, fps, flags, UTF16String(length, u'?')), expected)
          << samples << ' ' << fps << ' ' << flags << ' ' << length;
    }
    const unsigned readFlags = flags == kDrop ? kDrop | kPulldown : flags;
    EXPECT_EQ(Read(Wide(expected), 1000 * fps, fps, readFlags), std::abs(samples)) << expected;
  };
  for (std::int32_t fps = 1; fps <= 120; ++fps) {
    for (const unsigned flags : {kPlain, kPulldown, kDrop}) {
      if (flags == kDrop && fps != 30 && fps != 60) continue;
      for (const std::int64_t seconds : kCarries) {
        for (const std::int64_t frame : {seconds * fps - 1, seconds * fps, seconds * fps + 1}) {
          const std::int64_t firstSample = frame * (flags == kPlain ? 1000 : 1001);
          check(firstSample, fps, flags);
          check(-firstSample, fps, flags);
        }
      }
    }
  }
}

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

TEST(Parser, ReadsLeniently) {
  // At 1 frame per second and 1000 samples per second the fields and the fraction are the digits.
  const struct {
    std::string text;
    std::int64_t samples;
  } cases[] = {
      {"abc", 0},
      {".", 0},
      {"-5", 5000},
      {"-00:00:05:00", 5000},
      {"x00:00:05:00", 5000},
      {".00:00:05:00", 0},
      {" 12 34", 46000},
      {"1:2:3:4:5:6", 7389000},
      {"1:2:3:4:5.5", 7389000},
      {"1:2:3:4:.5", 3727500},
      {".5", 500},
      {"1.05", 1050},
      {"1.5x", 1050},
      {"1.2.3", 1002},
      {"1:2:3.", 3030},
      {"5:6.", 5060},
      {"1.", 1000},
      {"0.1234567890", 575},  // ten units behind the dot: 1234567890 / 2147483647
      {"00000000000000000000000000000012", 12000},
      {"99999999999", 2147483647000},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(Wide(c.text), 1000, 1), c.samples) << c.text;
}

TEST(Reading, TakesTheEstimateForLargeDividends) {
  // Known to be a sample late; the contract has it so.
  EXPECT_EQ(Read(u"1:40:00:00.000000000", 48000, 30), 288000001);
  EXPECT_EQ(Read(u"1:40:00:00.0", 48000, 30), 288000000);
  EXPECT_EQ(Read(u"36:06:40:00", std::numeric_limits<std::int32_t>::max(), 30, kPulldown),
            279452046984111);
}

TEST(MillisecondsDisplay, EqualsTheStreamsGeneralNotation) {
  EXPECT_EQ(InFormat(kTimecodeFormat_Milliseconds, -72), "-1.4");
  EXPECT_EQ(InFormat(kTimecodeFormat_Milliseconds, 4799995), "99999.9");
  EXPECT_EQ(InFormat(kTimecodeFormat_Milliseconds, 172800000), "3.6e+06");
  EXPECT_EQ(InFormat(kTimecodeFormat_Milliseconds, 1, 0), "nan");

  std::mt19937_64 random(7);
  for (int round = 0; round < 200000; ++round) {
    // At 10 samples a second a sample is 1000 tenths of a millisecond: all lengths of number, with
    // ties and nines at every digit.
    std::int64_t tenths = static_cast<std::int64_t>(random() >> (14 + random() % 50));
    if (round % 3 == 0) tenths = tenths / 100000 * 100000 + 50000 * static_cast<int>(random() % 2);
    if (round % 5 == 0) tenths = -tenths;
    plinth::oUTF16StringStream expected;
    expected << static_cast<double>(tenths) * 0.1;
    // The display adds half a tenth and drops the fraction toward zero.
    const std::int64_t position = tenths < 0 ? tenths - 1 : tenths;
    ASSERT_EQ(InFormat(kTimecodeFormat_Milliseconds, position, 10000), Shown(expected.str()))
        << tenths;
  }
}

TEST(BeatsDisplay, MirrorsCountsBelowZero) {
  const struct {
    std::int64_t samples;
    const char* text;
  } cases[] = {{96000, "4.000"},
               {100000, "4.167"},
               {-60000, "-2.500"},
               {-59988, "-2.500"},
               {-24, "-0.001"},
               {-5, "0.000"},
               {kSmallest, "-2147483647.312"}};
  for (const auto& c : cases) {
    EXPECT_EQ(InFormat(kTimecodeFormat_Beats, c.samples), c.text) << c.samples;
  }
}

std::string BarsAndBeats(double inSamples, const BeatInfo& inBeats, bool inIsDuration,
                         int inPrecision, UTF16String text = u"keep") {
  ConvertSamplesToBarsAndBeats(text, inSamples, 48000.0, inBeats, inIsDuration, inPrecision);
  return Shown(text);
}

TEST(BarsAndBeatsDisplay, CarriesAndShowsFractionsOfABeat) {
  test::RecordedReports reports;
  const BeatInfo decimal{-1, 120.0, 4, 4, 0.0};
  // Within half a thousandth of a tick of the beat.
  EXPECT_EQ(BarsAndBeats(24000 - 0.01, kFourFour, false, 3), "1:2.000.000");
  for (const int precision : {-1, 0, 2}) {
    EXPECT_EQ(BarsAndBeats(36013, decimal, false, precision), "1:2.500");
    EXPECT_EQ(BarsAndBeats(-36013, decimal, true, precision), "-1:2.498");
  }
  EXPECT_EQ(BarsAndBeats(36013, decimal, false, 3), "1:2.500.000");
}

TEST(BarsAndBeatsDisplay, WritesTheSameOverATextOfAnyLength) {
  for (const std::int32_t beatsPerBar : {1, 4, 9, 10, 12, 99, 100, 101}) {
    for (const std::int32_t ticks : {1, 10, 11, 960, 10000, 10001}) {
      const BeatInfo beats{ticks, 120.0, beatsPerBar, 4, 0.0};
      for (const int beat : {0, 8, 9, 10, 98, 99, 100, 999, 1000, 9999}) {
        const double samples = beat * 24000 + 23999.9;
        for (const bool isDuration : {false, true}) {
          const std::string expected = BarsAndBeats(samples, beats, isDuration, 2);
          const std::size_t size = expected.size();
          for (const std::size_t length : {std::size_t{0}, size - 1, size, size + 1}) {
            EXPECT_EQ(BarsAndBeats(samples, beats, isDuration, 2, UTF16String(length, u'?')),
                      expected);
          }
        }
      }
    }
  }
}

TEST(BarsAndBeats, ReadBackAsTheStartOfTheirTick) {
  std::mt19937_64 random(11);
  const auto pick = [&](auto... values) {
    const double list[] = {static_cast<double>(values)...};
    return list[random() % (sizeof...(values))];
  };
  for (int round = 0; round < 20000; ++round) {
    const BeatInfo beats{static_cast<std::int32_t>(pick(1, 10, 24, 480, 960, 15360)),
                         pick(33.333, 60, 119.88, 120, 240),
                         static_cast<std::int32_t>(pick(1, 3, 4, 7)),
                         static_cast<std::int32_t>(pick(2, 4, 8)), pick(0, 500, -12.5)};
    const double rate = pick(44100, 48000, 96000);
    const bool isDuration = random() % 2 == 0;
    const auto samples = static_cast<std::int64_t>(random() % 10000000000u) - 1000000000;
    UTF16String text;
    ConvertSamplesToBarsAndBeats(text, static_cast<double>(samples), rate, beats, isDuration, 2);
    const std::int64_t start = ConvertBarsAndBeatsToSamples(text, rate, beats, isDuration);
    const double samplesPerTick =
        rate * 240.0 / (beats.dTempo * beats.iBeatUnit * beats.iTicksPerBeat);
    // Within the tick, but for the display's half thousandth and the rounding to a whole sample.
    const double into = static_cast<double>(samples - start) / samplesPerTick;
    const double slack = 0.001 + 0.51 / samplesPerTick;
    ASSERT_TRUE(into > -slack && into < 1 + slack) << Shown(text) << ' ' << samples;
    UTF16String again;
    ConvertSamplesToBarsAndBeats(again, static_cast<double>(start) + 0.5, rate, beats, isDuration,
                                 2);
    if (samplesPerTick > 2) {
      ASSERT_EQ(ConvertBarsAndBeatsToSamples(again, rate, beats, isDuration), start) << Shown(text);
    }
  }
}

TEST(NumbersInPlace, ReadAsTheHostsParserDoes) {
  const char* texts[] = {"",
                         "12",
                         "-12",
                         " \t+7x",
                         "- 1",
                         "--1",
                         "+-1",
                         "0x1",
                         "2147483647",
                         "2147483648",
                         "-2147483648",
                         "-2147483649",
                         "99999999999999999999999",
                         "-000000000000000000000000000000005",
                         "\n1"};
  for (const char* text : texts) {
    int host = 0;
    plinth::string::StringToNumber(host, Wide(text), kParserFlags);
    const UTF16String wide = Wide(text);
    EXPECT_EQ(TextCursor(wide).ReadInteger(), host) << text;
  }
  const std::string manyDigits = "." + std::string(60, '3');
  for (const std::string& text :
       {std::string("."), std::string(".25"), std::string(".5e-3x"), std::string(".e1"),
        std::string(".5e999"), std::string(".5\xff"), manyDigits}) {
    double host = 0;
    plinth::string::StringToNumber(host, Wide(text), kParserFlags);
    EXPECT_EQ(TextCursor(Wide(text)).ReadFraction(), host) << text;
  }
}

TEST(ByFormat, RefusesWhatIsNoFormat) {
  test::RecordedReports reports;
  const auto format = [](int value) { return static_cast<TimecodeFormat>(value); };
  for (const int value :
       {-1, 15, 16, -2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_EQ(InFormat(format(value), 1), "keep");
    EXPECT_EQ(reports.Take().size(), 1u);
    EXPECT_EQ(Read(u"1", format(value)), 0);
    EXPECT_EQ(reports.Take().size(), value == -1 || value == 15 ? 1u : 0u);
    EXPECT_EQ(Read(u"", format(value)), -1);
  }
  EXPECT_EQ(InFormat(kTimecodeFormat_Reserved, 1), "keep");
  EXPECT_EQ(Read(u"1:00:00:00", kTimecodeFormat_Decimal), 0);
  EXPECT_EQ(reports.Take().at(0).condition, "hours==0");
}

TEST(OutsideTheDomain, FollowsSixtyFourBitArm) {
  const BeatInfo noTempo{960, 0.0, 4, 4, 0.0};
  const BeatInfo notANumber{960, kNaN, 4, 4, kInfinity};
  EXPECT_EQ(ConvertBarsAndBeatsToSamples(u"2", 48000, noTempo, true), kLargest);
  EXPECT_EQ(ConvertBarsAndBeatsToSamples(u"-2", 48000, noTempo, true), kSmallest);
  EXPECT_EQ(ConvertBarsAndBeatsToSamples(u"2", 48000, notANumber, true), 0);
  EXPECT_EQ(Read(u"1", kTimecodeFormat_Beats, noTempo), kLargest);
  EXPECT_EQ(Read(u"0", kTimecodeFormat_Beats, noTempo), 0);
  EXPECT_EQ(BarsAndBeats(48000, {0, 120.0, 4, 4, 0.0}, false, 2), "536870912:4.0");
  EXPECT_EQ(BarsAndBeats(48000, notANumber, true, 2), "-1:0.000");
  EXPECT_EQ(InFormat(kTimecodeFormat_Samples, kSmallest), "-9223372036854775808");
  EXPECT_EQ(Read(u"1", -48000, 30), -1599);
  EXPECT_EQ(Read(u"2147483647:0:0:0", 48000, 30), -172799999);
}

/// Every extreme of every argument, in every format and both directions: nothing here may crash,
/// throw or trip a sanitizer. The digests pin the results.
TEST(OutsideTheDomain, AnswersEverywhere) {
  test::RecordedReports reports;
  const std::int32_t ints[] = {std::numeric_limits<int>::min(), -48000, -1, 0, 1, 29, 30, 60, 48000,
                               std::numeric_limits<int>::max()};
  const double doubles[] = {-kInfinity, -1e300, -1.0, 0.0, 1e-310, 120.0, 1e300, kInfinity, kNaN};
  const std::int64_t positions[] = {kSmallest, kSmallest + 1, -1, 0, 1, 480000, kLargest};
  const UTF16String texts[] = {u"",
                               u"-9999999999999999999:.9e9",
                               u"2147483647:2147483647:7.5",
                               u"1:2:3:4.000000000000",
                               u"\xD800\xDFFF.\xFF11",
                               u"0.9999999999"};
  UTF16String text;
  std::int64_t samples = 0;
  std::size_t calls = 0;
  for (const std::int32_t rate : ints) {
    for (const std::int32_t other : ints) {
      for (const double value : doubles) {
        BeatInfo beats{other, value, rate, other, -value};
        for (int format = -2; format < 17; ++format) {
          const auto named = static_cast<TimecodeFormat>(format);
          for (const std::int64_t position : positions) {
            ConvertSamplesToTimecode(text, position, rate, named, other, &beats, calls++ % 2 == 0);
          }
          for (const auto& input : texts) {
            ConvertTimecodeToSamples(samples, input, named, rate, other, &beats, calls++ % 2 == 0);
          }
        }
        ConvertSamplesToBarsAndBeats(text, value, rate, beats, false, other);
      }
    }
    for (unsigned flags = 0; flags < 128; ++flags) {
      for (const std::int64_t position : positions) SMPTE(position, rate, ints[flags % 10], flags);
    }
  }
  EXPECT_EQ(reports.Take().empty(), false);
}

TEST(Heap, IsLeftAloneByEveryConversion) {
  UTF16String text;
  text.reserve(64);
  for (int format = 0; format < 15; ++format) {
    const auto named = static_cast<TimecodeFormat>(format);
    BeatInfo beats = kFourFour;
    const UTF16String typed = u"-00000012:34:56.78901234567890ab";
    ASSERT_EQ(typed.size(), 32u);
    const auto before = test::heap::AllocationCount();
    for (beats.iTicksPerBeat = -1; beats.iTicksPerBeat < 961; beats.iTicksPerBeat += 961) {
      std::int64_t samples = 0;
      for (const std::int64_t position :
           {std::int64_t{-123456789}, std::int64_t{4147200000000}, kLargest}) {
        ConvertSamplesToTimecode(text, position, 48000, named, 30, &beats, false);
      }
      ConvertTimecodeToSamples(samples, typed, named, 48000, 30, &beats, false);
    }
    EXPECT_EQ(test::heap::AllocationCount(), before) << format;
  }
}

TEST(BeatInfoComparison, FollowsIEEE754FieldByField) {
  const BeatInfo base{960, 120.0, 4, 4, 0.0};
  const std::pair<BeatInfo, bool> cases[] = {
      {{960, 120.0, 4, 4, -0.0}, true}, {{961, 120.0, 4, 4, 0.0}, false},
      {{960, 120.5, 4, 4, 0.0}, false}, {{960, 120.0, 3, 4, 0.0}, false},
      {{960, 120.0, 4, 8, 0.0}, false}, {{960, 120.0, 4, 4, 1.0}, false},
      {{960, kNaN, 4, 4, 0.0}, false}};
  for (const auto& [other, isEqual] : cases) {
    EXPECT_EQ(base == other, isEqual);
    EXPECT_EQ(base != other, !isEqual);
  }
  const BeatInfo notANumber{960, kNaN, 4, 4, 0.0};
  EXPECT_FALSE(notANumber == notANumber);
}

}  // namespace
}  // namespace mezzo::utility
