#include "RulerLayout.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace mezzo::tool {
namespace {

/// The labelled ticks of a ruler.
struct LabelRow {
  std::int64_t step = 0;
  std::map<std::int64_t, PlacedTick> ticks;
  bool isComplete = true;  ///< every tick of the step, and every tick beside a gap, has a label
};

PlacedTick Place(const Tick& inTick, const RulerScale& inScale, const Grid& inGrid) {
  const double x = inScale.Locate(inTick.position) * (inGrid.width - inGrid.characterWidth);
  return {inTick, static_cast<int>(std::lround(x))};
}

/// The box of a label. It shifts inward at the ends of the ruler.
LabelBox GetBox(const PlacedTick& inTick, const Grid& inGrid) {
  const std::size_t length =
      std::max(GetDrawnLabel(inTick.tick).size(), std::to_string(inTick.tick.position).size());
  const int width = static_cast<int>(length) * inGrid.characterWidth;
  const int tickEnd = inTick.x + inGrid.characterWidth;
  switch (inTick.tick.alignment) {
    case kAlignment_Left:
      return {std::min(tickEnd, inGrid.width - width), width, kAlignment_Left};
    case kAlignment_Right:
      return {std::max(tickEnd - inGrid.labelDistance - width, 0), width, kAlignment_Right};
    case kAlignment_Centre:
      break;
  }
  const int left = inTick.x + (inGrid.characterWidth - width) / 2;
  if (left < 0) return {0, width, kAlignment_Left};
  if (left + width > inGrid.width) return {inGrid.width - width, width, kAlignment_Right};
  return {left, width, kAlignment_Centre};
}

bool HasRoom(const LabelRow& inRow, const LabelBox& inBox, const Grid& inGrid) {
  return inBox.left >= 0 && inBox.left + inBox.width <= inGrid.width &&
         std::none_of(inRow.ticks.begin(), inRow.ticks.end(), [&](const auto& inPlaced) {
           const LabelBox& other = *inPlaced.second.box;
           return inBox.left < other.left + other.width + inGrid.labelDistance &&
                  other.left < inBox.left + inBox.width + inGrid.labelDistance;
         });
}

/// Labels the ticks of a step, and those beside gaps, wherever there is room.
LabelRow LabelTicks(const RulerScale& inScale, const Grid& inGrid, std::int64_t inStep) {
  LabelRow row;
  row.step = inStep;
  const auto add = [&](const Tick& inTick) {
    if (row.ticks.contains(inTick.position)) return;
    PlacedTick placed = Place(inTick, inScale, inGrid);
    placed.box = GetBox(placed, inGrid);
    if (HasRoom(row, *placed.box, inGrid)) {
      row.ticks.emplace(inTick.position, placed);
    } else {
      row.isComplete = false;
    }
  };
  for (const Tick& tick : inScale.GetGapTicks(inStep)) add(tick);
  for (const Tick& tick : inScale.GetTicks(inStep)) add(tick);
  return row;
}

}  // namespace

std::string GetDrawnLabel(const Tick& inTick) {
  const std::size_t blanks = std::min(inTick.label.find_first_not_of(' '), inTick.label.size());
  return inTick.label.substr(blanks) + (inTick.readsBack ? "" : "*");
}

std::vector<PlacedTick> LayOut(const RulerScale& inScale, const Grid& inGrid) {
  const auto getDistance = [&](std::int64_t inStep) {
    return inScale.Measure(inStep) * (inGrid.width - inGrid.characterWidth);
  };
  const std::vector<std::int64_t> steps = inScale.GetSteps();
  LabelRow labels;
  for (const std::int64_t step : steps) {
    if (getDistance(step) < inGrid.characterWidth + inGrid.labelDistance) continue;
    const LabelRow row = LabelTicks(inScale, inGrid, step);
    if (row.ticks.size() < std::min<std::size_t>(labels.ticks.size(), 2)) break;
    labels = row;
    if (row.isComplete) break;
  }
  const auto tickStep = std::find_if(steps.begin(), steps.end(), [&](std::int64_t inStep) {
    return inStep == labels.step ||
           (labels.step % inStep == 0 && getDistance(inStep) >= inGrid.tickDistance);
  });
  std::map<std::int64_t, PlacedTick> placed = labels.ticks;
  for (const Tick& tick : inScale.GetTicks(*tickStep)) {
    placed.emplace(tick.position, Place(tick, inScale, inGrid));
  }
  std::vector<PlacedTick> ticks;
  ticks.reserve(placed.size());
  for (const auto& [position, tick] : placed) ticks.push_back(tick);
  return ticks;
}

}  // namespace mezzo::tool
