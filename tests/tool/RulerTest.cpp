// What every ruler keeps to, whatever its format, interval and width.
#include "InputError.h"
#include "RulerDrawing.h"

#include <boost/property_tree/xml_parser.hpp>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <tuple>

namespace mezzo::tool {
namespace {

using utility::TimecodeFormat;

struct Interval {
  std::int64_t from;
  std::int64_t to;
};

constexpr Interval kIntervals[] = {{2786784, 2975773},    // four seconds around a dropped label
                                   {-96000, 96000},       // around sample 0
                                   {-2975773, -2786784},  // a dropped label before sample 0
                                   {0, 172800000},        // an hour
                                   {1, 5},
                                   {-30000000000, 30000000000}};

RulerScale ScaleOf(TimecodeFormat inFormat, const Interval& inInterval,
                   const Timeline& inTimeline) {
  return {inTimeline, inFormat, "@" + std::to_string(inInterval.from),
          "@" + std::to_string(inInterval.to)};
}

// The library shows negative milliseconds a tenth short, and exponents from a thousand seconds on.
bool MayBeMarked(TimecodeFormat inFormat, const Tick& inTick) {
  return inFormat == utility::kTimecodeFormat_Milliseconds &&
         (inTick.position < 0 || inTick.label.find('e') != std::string::npos);
}

void CheckLayout(const RulerLayout& inLayout, const Grid& inGrid, const Interval& inInterval,
                 TimecodeFormat inFormat, const Timeline& inTimeline) {
  int lastEnd = -inGrid.labelDistance;
  std::int64_t lastPosition = inInterval.from - 1;
  for (const auto& [tick, x, hasLabel, isAtSeam, box] : inLayout.ticks) {
    SCOPED_TRACE(tick.label);
    EXPECT_GT(tick.position, lastPosition);
    EXPECT_LE(lastPosition = tick.position, inInterval.to);
    EXPECT_GE(x, 0);
    EXPECT_LE(x, inGrid.width - inGrid.character);
    EXPECT_EQ(WriteText(inTimeline, inFormat, tick.position), tick.label);
    EXPECT_EQ(ReadText(inTimeline, inFormat, tick.label) == tick.position, tick.readsBack);
    EXPECT_TRUE(tick.readsBack || MayBeMarked(inFormat, tick));
    if (!hasLabel) continue;
    EXPECT_GE(box.left, lastEnd + (isAtSeam ? inGrid.character : inGrid.labelDistance));
    lastEnd = box.left + box.width;
    EXPECT_LE(lastEnd, inGrid.width);
  }
}

TEST(Ruler, KeepsLabelsApartAndReadsThemBack) {
  Timeline waltz;
  waltz.sampleRate = 44100;
  waltz.framesPerSecond = 60;
  waltz.beats = {100, 90.0, 3, 8, 250.0};  // a tick is 147 samples
  for (const Timeline& timeline : {Timeline{}, waltz}) {
    for (const DisplayFormat& format : DisplayFormats()) {
      if (format.format == utility::kTimecodeFormat_Reserved) continue;
      for (const Interval& interval : kIntervals) {
        const RulerScale scale = ScaleOf(format.format, interval, timeline);
        for (const int columns : {20, 33, 80, 200}) {
          SCOPED_TRACE(std::string(format.name) + " from " + std::to_string(interval.from) +
                       " in " + std::to_string(columns));
          for (const Grid& grid : {TextGrid(columns), Grid{8 * columns, 8, 6, 12}}) {
            CheckLayout(LayOut(scale, grid), grid, interval, format.format, timeline);
          }
        }
      }
    }
  }
}

TEST(Ruler, ShowsBothSidesOfADroppedLabel) {
  for (const auto& [from, to, order] :
       {std::tuple{"00;00;58;00", "00;01;02;00", "00;00;59;29 +00;01;00;02"},
        std::tuple{"-00;01;02;00", "-00;00;58;00", "-00;01;00;02 +-00;00;59;29"},
        std::tuple{"00;00;59;28", "00;01;00;04", "00;00;59;29 +00;01;00;02"}}) {
    const RulerScale scale(Timeline{}, utility::kTimecodeFormat_SMPTEDropFrame, from, to);
    for (const int columns : {40, 80, 120, 200}) {
      EXPECT_TRUE(std::regex_search(DrawText(scale, "", columns, false), std::regex(order)))
          << DrawText(scale, "", columns, false);
    }
  }
  // The tenth minute leaves nothing out.
  const RulerScale tenth(Timeline{}, utility::kTimecodeFormat_SMPTEDropFrame, "9;58;00",
                         "10;02;00");
  EXPECT_TRUE(tenth.Seams(1).empty());
  EXPECT_NE(DrawText(tenth, "", 80, true).find("00;10;00;00"), std::string::npos);
}

TEST(Ruler, IsAPictureInWellFormedXML) {
  std::istringstream picture(DrawSVG(
      ScaleOf(utility::kTimecodeFormat_SMPTEDropFrame, kIntervals[0], {}), "a < b & c", 80));
  boost::property_tree::ptree tree;
  read_xml(picture, tree);
  EXPECT_NE(picture.str().find("<title>a &lt; b &amp; c</title>"), std::string::npos);
  EXPECT_EQ(tree.get<std::string>("svg.<xmlattr>.viewBox").substr(0, 8), "0 0 688 ");
  EXPECT_EQ(tree.get_child("svg.g.g").count("text"), 2u * 6u);
  EXPECT_EQ(tree.get<std::string>("svg.g.g.path.<xmlattr>.d"), "M24 54.5H664");
  // The first labelled tick stands half a character from the left, its label at its left.
  EXPECT_NE(picture.str().find("d=\"M28.5 38V54\""), std::string::npos);
  EXPECT_NE(picture.str().find("x=\"24\" y=\"28\" font-size=\"13\" text-anchor=\"start\""),
            std::string::npos);
}

TEST(Ruler, WrapsItsCaption) {
  EXPECT_EQ(WrapWords("ab cd efghi", 5), (std::vector<std::string>{"ab cd", "efghi"}));
  EXPECT_EQ(WrapWords("ab cd efghi", 4), (std::vector<std::string>{"ab", "cd", "efghi"}));
}

TEST(Ruler, NeedsAnInterval) {
  for (const auto& [from, to] : {std::pair{"1:00", "1:00"},
                                 {"2:00", "1:00"},
                                 {"x", "1:00"},
                                 {"0", "@"},
                                 {"0", "999:0:0:0"}}) {
    EXPECT_THROW(RulerScale({}, utility::kTimecodeFormat_SMPTE, from, to), InputError);
  }
}

}  // namespace
}  // namespace mezzo::tool
