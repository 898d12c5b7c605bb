// Properties of every ruler, whatever its format, interval and width.
#include "Conversion.h"
#include "RulerDrawing.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace mezzo::tool {
namespace {

using utility::TimecodeFormat;

constexpr std::pair<std::int64_t, std::int64_t> kIntervals[] = {
    {2786784, 2975773},    // four seconds around a dropped label
    {-96000, 96000},       // around sample 0
    {-2975773, -2786784},  // a dropped label before sample 0
    {0, 172800000},        // an hour
    {1, 5},
    {-30000000000, 30000000000}};

/// Labels that need not read back: the library truncates the decimal fraction in bars and beats,
/// writes some negative milliseconds a tenth of a millisecond too near to zero, and writes
/// milliseconds with exponents from 1000 seconds on.
bool MayFailToReadBack(TimecodeFormat inFormat, const Timeline& inTimeline, const Tick& inTick) {
  if (inFormat == utility::kTimecodeFormat_BarsAndBeats) return inTimeline.beats.iTicksPerBeat < 0;
  return inFormat == utility::kTimecodeFormat_Milliseconds &&
         (inTick.position < 0 || inTick.label.find('e') != std::string::npos);
}

void CheckLayout(const RulerScale& inScale, const Grid& inGrid, TimecodeFormat inFormat,
                 const Timeline& inTimeline) {
  int lastEnd = -inGrid.labelDistance;
  std::int64_t lastPosition = inScale.GetFrom() - 1;
  for (const auto& [tick, x, box] : LayOut(inScale, inGrid)) {
    SCOPED_TRACE(tick.label);
    EXPECT_GT(tick.position, lastPosition);
    EXPECT_LE(lastPosition = tick.position, inScale.GetTo());
    EXPECT_GE(x, 0);
    EXPECT_LE(x, inGrid.width - inGrid.characterWidth);
    EXPECT_EQ(FormatPosition(inTimeline, inFormat, tick.position), tick.label);
    EXPECT_EQ(ParseText(inTimeline, inFormat, tick.label) == tick.position, tick.readsBack);
    EXPECT_TRUE(tick.readsBack || MayFailToReadBack(inFormat, inTimeline, tick));
    if (!box) continue;
    EXPECT_GE(box->left, lastEnd + inGrid.labelDistance);
    lastEnd = box->left + box->width;
    EXPECT_LE(lastEnd, inGrid.width);
  }
}

TEST(Ruler, KeepsLabelsApartAndReadsThemBack) {
  Timeline waltz{44100, 60, {100, 90.0, 3, 8, 250.0}};  // a tick of a beat is 147 samples
  Timeline decimal{48000, 24, {-1, 120.0, 4, 4, 0.0}, true};
  Timeline extreme{48000, 1000, {1, 100000.0, 999, 128, 1e9}};  // more beats than fit in 32 bits
  for (const Timeline& timeline : {Timeline{}, waltz, decimal, extreme}) {
    for (const DisplayFormat& format : kDisplayFormats) {
      if (!ExplainUnavailable(timeline, format.format).empty()) continue;
      for (const auto& [from, to] : kIntervals) {
        const RulerScale scale(timeline, format.format, "@" + std::to_string(from),
                               "@" + std::to_string(to));
        for (const int columns : {20, 33, 80, 200}) {
          SCOPED_TRACE(std::string(format.name) + " from " + std::to_string(from) + " in " +
                       std::to_string(columns));
          for (const Grid& grid : {GetTextGrid(columns), Grid{8 * columns, 8, 6, 12}}) {
            CheckLayout(scale, grid, format.format, timeline);
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace mezzo::tool
