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

TEST(SMPTE, EveryLabelOfADayReadsBackAsItself) {
  enum Count { kNominal, kPulledDown, kDropFrame };
  for (const std::int32_t rate : {44100, 48000, 96000, 47952}) {
    for (const int count : {kNominal, kPulledDown, kDropFrame}) {
      for (const std::int32_t fps : {24, 25, 30, 50, 60}) {
        if (count == kDropFrame ? fps % 30 != 0 : rate != 44100 && rate != 48000) continue;
        const bool isDropFrame = count == kDropFrame, isPulledDown = count == kPulledDown;
        // A frame's first sample, from the definition of the rates.
        const std::int64_t factor = std::int64_t{rate} * (count == kNominal ? 1000 : 1001);
        const std::int64_t divisor = 1000 * fps;
        UTF16String text;
        std::int64_t read = 0;
        for (std::int32_t frame = 0; frame < 24 * 3600 * fps; ++frame) {
          const std::int64_t samples = (frame * factor + divisor - 1) / divisor;
          ConvertSamplesToTimecode(text, samples, rate, fps, isDropFrame, isPulledDown, false,
                                   false, false, false, false);
          ConvertTimecodeToSamples(read, text, rate, fps, count != kNominal, isDropFrame);
          ASSERT_EQ(read, samples) << Shown(text) << ' ' << rate << ' ' << fps;
        }
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
  std::fenv_t usual;
  std::fegetenv(&usual);
  for (std::uint64_t seed = 0; seed < 20000; ++seed) {
    const std::int64_t samples = test::DrawnArguments(seed).Integer(64) % 15876000000;  // 100 hours
    for (const int format : {1, 2, 3, 4, 8, 10}) {
      std::string results[4];
      const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
      for (std::size_t mode = 0; mode < 4; ++mode) {
        UTF16String text;
        std::int64_t read = 0;
        const auto display = static_cast<TimecodeFormat>(format);
        std::fesetround(modes[mode]);
#ifdef __SSE2__
        if (mode > 0) _mm_setcsr(_mm_getcsr() | 0x8040);  // denormals read and written as zero
#endif
        ConvertSamplesToTimecode(text, samples, 44100, display, 30, nullptr, false);
        ConvertTimecodeToSamples(read, text, display, 44100, 30, nullptr, false);
        std::fesetenv(&usual);
        results[mode] = Shown(text) + ' ' + std::to_string(read);
        ASSERT_EQ(results[mode], results[0]) << format << ' ' << samples;
      }
    }
  }
}
#endif

TEST(TextCursor, ReadsAsTheHostsParserDoes) {
  const std::string manyDigits = "." + std::string(1500, '3');
  for (const char* text : {"",
                           "12",
                           "-12",
                           " \t+7x",
                           "- 1",
                           "--1",
                           "+-1",
                           "0x1",
                           "\n1",
                           "2147483647",
                           "2147483648",
                           "-2147483648",
                           "-2147483649",
                           "99999999999999999999999",
                           "-000000000000000000000000000005",
                           ".",
                           ".25",
                           ".5e-3x",
                           ".e1",
                           ".5e999",
                           ".5\xff",
                           manyDigits.c_str()}) {
    const UTF16String wide = Wide(text);
    int integer = 0;
    double fraction = 0;
    plinth::string::StringToNumber(integer, wide, 6);
    plinth::string::StringToNumber(fraction, wide, 6);
    EXPECT_EQ(TextCursor(wide).ReadInteger(), integer) << text;
    EXPECT_TRUE(text[0] != '.' || TextCursor(wide).ReadFraction() == fraction) << text;
  }
}

}  // namespace
}  // namespace mezzo::utility
