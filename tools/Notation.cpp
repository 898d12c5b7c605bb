#include "Notation.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <iterator>

namespace mezzo::tool {

using namespace utility;

namespace {

/// The words for each unit, each between blanks. The first word is the name of the unit.
constexpr std::string_view kUnitWords[] = {
    " hours hour hrs hr h ",
    " minutes minute mins min m ",
    " seconds second secs sec s ",
    " milliseconds millisecond msec ms ",
    " frames frame fr f ",
    " bars bar ",
    " beats beat ",
    " ticks tick ",
};

}  // namespace

std::string GetName(Unit inUnit) {
  const std::string_view words = kUnitWords[inUnit];
  return std::string(words.substr(1, words.find(' ', 1) - 1));
}

std::optional<Unit> FindUnit(std::string_view inWord) {
  const std::string word = " " + boost::to_lower_copy(std::string(inWord)) + " ";
  for (std::size_t unit = 0; unit < std::size(kUnitWords); ++unit) {
    if (kUnitWords[unit].find(word) != std::string_view::npos) return static_cast<Unit>(unit);
  }
  return std::nullopt;
}

Notation GetNotation(const Timeline& inTimeline, TimecodeFormat inFormat) {
  const BeatInfo& beats = inTimeline.beats;
  const Field minutes{kUnit_Minutes, 60, ':'};
  const Field seconds{kUnit_Seconds, 60, ':'};
  const Field thousandths{kUnit_Fraction, 1000, '.'};
  const double rate = inTimeline.sampleRate;
  const double frame = rate / GetFrameRate(inTimeline.framesPerSecond, inFormat);
  const double quarterNote = rate * 60.0 / beats.dTempo;
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      return {{{kUnit_Hours}, minutes, seconds, thousandths}, rate / 1000.0};
    case kTimecodeFormat_Samples:
      return {{{kUnit_Samples}}, 1.0, true};
    case kTimecodeFormat_Beats:
      return {{{kUnit_Beats}, thousandths}, quarterNote / 1000.0};
    case kTimecodeFormat_BarsAndBeats: {
      const Field ticks =
          beats.iTicksPerBeat > 0 ? Field{kUnit_Ticks, beats.iTicksPerBeat, '.'} : thousandths;
      const int origin = inTimeline.isDuration ? 0 : 1;
      return {{{kUnit_Bars, 0, 0, origin}, {kUnit_Beats, beats.iBeatsPerBar, ':', origin}, ticks},
              quarterNote * 4.0 / beats.iBeatUnit / static_cast<double>(ticks.radix),
              true};
    }
    case kTimecodeFormat_Frames:
    case kTimecodeFormat_PulldownFrames:
      return {{{kUnit_Frames}}, frame};
    case kTimecodeFormat_Milliseconds:
      return {{{kUnit_Milliseconds}, {kUnit_Fraction, 10, '.'}}, rate / 10000.0};
    default:
      return {{{kUnit_Hours}, minutes, seconds, {kUnit_Frames, inTimeline.framesPerSecond, ':'}},
              frame};
  }
}

}  // namespace mezzo::tool
