#include "RulerScale.h"

#include "CheckedConversion.h"
#include "InputError.h"

#include <boost/iterator/counting_iterator.hpp>

#include <algorithm>
#include <limits>

namespace mezzo::tool {
namespace {

constexpr std::int64_t kFarthestHours = 250;
// Reaches beyond the farthest position by the greatest offset of bar 1, and no farther than the
// library's 32-bit frame counts at the highest frame rate.
constexpr double kSearchedHours = 550.0;
// Many more than there is room for. Where a scale is not monotonic, such as drop-frame labels at a
// rate that has none, the search below could otherwise span anything.
constexpr std::int64_t kMostTicks = 20000;

}  // namespace

RulerScale::RulerScale(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                       const std::string& inFrom, const std::string& inTo)
    : fTimeline(inTimeline),
      fFormat(inFormat),
      fNotation(NotationOf(inTimeline, inFormat)),
      fFrom(ReadEnd(inFrom)),
      fTo(ReadEnd(inTo)) {
  if (fFrom >= fTo) {
    throw InputError("empty interval: from sample " + std::to_string(fFrom) + " to " +
                     std::to_string(fTo));
  }
}

double RulerScale::Share(std::int64_t inStep) const {
  return static_cast<double>(inStep) * fNotation.samplesInUnit / static_cast<double>(fTo - fFrom);
}

std::vector<Tick> RulerScale::Ticks(std::int64_t inStep) const {
  std::vector<Tick> ticks;
  for (const std::int64_t units : Multiples(inStep)) {
    const std::int64_t position = PositionOf(units);
    // Labels that do not exist are read as the first that does.
    if (ticks.empty() || ticks.back().position != position) ticks.push_back(TickAt(position));
  }
  return ticks;
}

std::vector<Seam> RulerScale::Seams(std::int64_t inStep) const {
  std::vector<Seam> seams;
  if (inStep >= fNotation.unitsInMinute) return seams;
  for (const std::int64_t minute : Multiples(fNotation.unitsInMinute)) {
    // A minute that leaves labels out reads its first two labels as the same position.
    const std::int64_t away = minute < 0 ? -1 : 1;
    if (minute == 0 || PositionOf(minute) != PositionOf(minute + away)) continue;
    const auto [before, after] = std::minmax({PositionOf(minute - away), PositionOf(minute)});
    if (before >= fFrom && after <= fTo) seams.push_back({TickAt(before), TickAt(after)});
  }
  return seams;
}

std::vector<std::int64_t> RulerScale::Multiples(std::int64_t inStep) const {
  const auto reach =
      static_cast<std::int64_t>(kSearchedHours * 3600.0 * fTimeline.sampleRate /
                                fNotation.samplesInUnit / static_cast<double>(inStep));
  using Iterator = boost::counting_iterator<std::int64_t>;
  const auto firstWith = [&](auto inIsBefore) {
    return *std::partition_point(
        Iterator(-reach - 1), Iterator(reach + 1),
        [&](std::int64_t index) { return inIsBefore(PositionOf(index * inStep)); });
  };
  const std::int64_t first = firstWith([&](std::int64_t position) { return position < fFrom; });
  const std::int64_t end = firstWith([&](std::int64_t position) { return position <= fTo; });
  std::vector<std::int64_t> multiples;
  for (std::int64_t index = first; index < std::min(end, first + kMostTicks); ++index) {
    multiples.push_back(index * inStep);
  }
  return multiples;
}

std::int64_t RulerScale::PositionOf(std::int64_t inUnits) const {
  const bool isMirrored = inUnits < 0 && !fNotation.keepsSign;
  return ReadText(fTimeline, fFormat,
                  (isMirrored ? "-" : "") + fNotation.type(isMirrored ? -inUnits : inUnits));
}

Tick RulerScale::TickAt(std::int64_t inPosition) const {
  const std::string label = WriteText(fTimeline, fFormat, inPosition).value_or("0");
  return {inPosition, label, ReadText(fTimeline, fFormat, label) == inPosition};
}

std::int64_t RulerScale::ReadEnd(const std::string& inText) const {
  const std::int64_t position = inText.starts_with('@')
                                    ? ReadPosition(inText.substr(1))
                                    : ReadTyped(fTimeline, fFormat, inText).position;
  const std::int64_t farthest = kFarthestHours * 3600 * fTimeline.sampleRate;
  if (position < -farthest || position > farthest) {
    throw InputError(Quoted(inText) + " lies more than " + std::to_string(kFarthestHours) +
                     " hours from sample 0");
  }
  return position;
}

}  // namespace mezzo::tool
