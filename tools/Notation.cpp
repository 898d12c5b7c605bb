#include "Notation.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <algorithm>
#include <iterator>

namespace mezzo::tool {

using namespace utility;

namespace {

struct UnitWord {
  std::string_view word;
  Unit unit;
};

/// The first word of each unit is its name.
constexpr UnitWord kUnitWords[] = {
    {"hours", kUnit_Hours},     {"hour", kUnit_Hours},
    {"hrs", kUnit_Hours},       {"hr", kUnit_Hours},
    {"h", kUnit_Hours},         {"minutes", kUnit_Minutes},
    {"minute", kUnit_Minutes},  {"mins", kUnit_Minutes},
    {"min", kUnit_Minutes},     {"m", kUnit_Minutes},
    {"seconds", kUnit_Seconds}, {"second", kUnit_Seconds},
    {"secs", kUnit_Seconds},    {"sec", kUnit_Seconds},
    {"s", kUnit_Seconds},       {"milliseconds", kUnit_Milliseconds},
    {"ms", kUnit_Milliseconds}, {"frames", kUnit_Frames},
    {"frame", kUnit_Frames},    {"fr", kUnit_Frames},
    {"f", kUnit_Frames},        {"bars", kUnit_Bars},
    {"bar", kUnit_Bars},        {"beats", kUnit_Beats},
    {"beat", kUnit_Beats},      {"ticks", kUnit_Ticks},
    {"tick", kUnit_Ticks},      {"samples", kUnit_Samples},
};

}  // namespace

std::string GetName(Unit inUnit) {
  const auto found = std::find_if(std::begin(kUnitWords), std::end(kUnitWords),
                                  [=](const UnitWord& inWord) { return inWord.unit == inUnit; });
  return std::string(found->word);
}

std::optional<Unit> FindUnit(std::string_view inWord) {
  const std::string word = boost::to_lower_copy(std::string(inWord));
  for (const UnitWord& unitWord : kUnitWords) {
    if (unitWord.word == word) return unitWord.unit;
  }
  return std::nullopt;
}

Notation GetNotation(const Timeline& inTimeline, TimecodeFormat inFormat) {
  const BeatInfo& beats = inTimeline.beats;
  const Field minutes{kUnit_Minutes, 60, ':'};
  const Field seconds{kUnit_Seconds, 60, ':'};
  const Field thousandths{kUnit_Fraction, 1000, '.'};
  const double rate = inTimeline.sampleRate;
  const double frame = rate / inTimeline.framesPerSecond * (IsPulledDown(inFormat) ? 1.001 : 1.0);
  const double quarterNote = rate * 60.0 / beats.dTempo;
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      return {{{kUnit_Hours}, minutes, seconds, thousandths}, rate / 1000.0};
    case kTimecodeFormat_Samples:
      return {{{kUnit_Samples}}, 1.0, true};
    case kTimecodeFormat_Beats:
      return {{{kUnit_Beats}, thousandths}, quarterNote / 1000.0};
    case kTimecodeFormat_BarsAndBeats: {
      // Without ticks, the library shows thousandths of the beat.
      const Field ticks{kUnit_Ticks, beats.iTicksPerBeat > 0 ? beats.iTicksPerBeat : 1000, '.'};
      return {{{kUnit_Bars, 0, 0, 1}, {kUnit_Beats, beats.iBeatsPerBar, ':', 1}, ticks},
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
