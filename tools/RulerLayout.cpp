#include "RulerLayout.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>

namespace mezzo::tool {
namespace {

class LabelRow {
 public:
  LabelRow(const RulerScale& inScale, const Grid& inGrid) : fScale(inScale), fGrid(inGrid) {}

  // Labels the ticks of a step and both sides of each seam.
  // \return false when some of the step's ticks got no label for want of room.
  bool Fill(std::int64_t inStep) {
    const std::vector<Seam> seams = fScale.Seams(inStep);
    for (const Seam& seam : seams) {
      fSeamPositions.insert({seam.before.position, seam.after.position});
      // Where every frame has a label, these two stand like the others.
      if (inStep > 1) AddSeam(seam);
    }
    const std::vector<Tick> ticks = fScale.Ticks(inStep);
    return std::count_if(ticks.begin(), ticks.end(),
                         [this](const Tick& tick) { return !AddLabel(tick); }) == 0;
  }

  PlacedTick Place(const Tick& inTick) const {
    const double part = static_cast<double>(inTick.position - fScale.From()) /
                        static_cast<double>(fScale.To() - fScale.From());
    return {inTick, static_cast<int>(std::lround(part * (fGrid.width - fGrid.character)))};
  }

  const std::map<std::int64_t, PlacedTick>& Labels() const { return fLabels; }

 private:
  bool AddLabel(const Tick& inTick) {
    if (fLabels.contains(inTick.position)) return true;
    PlacedTick placed = Place(inTick);
    const int width = LabelWidth(inTick);
    placed.box = {placed.x + (fGrid.character - width) / 2, width, Alignment::kCentre};
    if (placed.box.left < 0) placed.box = {0, width, Alignment::kLeft};
    if (placed.box.left + width > fGrid.width) {
      placed.box = {fGrid.width - width, width, Alignment::kRight};
    }
    if (!HasRoom(placed.box)) return false;
    Add(placed);
    return true;
  }

  // The two ticks may be next to each other: their labels stand left and right of both.
  void AddSeam(const Seam& inSeam) {
    PlacedTick before = Place(inSeam.before);
    PlacedTick after = Place(inSeam.after);
    const int beforeWidth = LabelWidth(before.tick);
    const int afterWidth = LabelWidth(after.tick);
    before.box = {std::max(before.x - beforeWidth, 0), beforeWidth, Alignment::kRight};
    after.box = {std::min(after.x + fGrid.character, fGrid.width - afterWidth), afterWidth,
                 Alignment::kLeft};
    if (before.box.left + beforeWidth + fGrid.character > after.box.left) return;
    if (!HasRoom(before.box) || !HasRoom(after.box)) return;
    Add(before);
    Add(after);
  }

  void Add(PlacedTick inTick) {
    inTick.hasLabel = true;
    inTick.isAtSeam = fSeamPositions.contains(inTick.tick.position);
    fLabels.emplace(inTick.tick.position, inTick);
  }

  int LabelWidth(const Tick& inTick) const {
    const std::size_t length =
        std::max(DrawnLabel(inTick).size(), std::to_string(inTick.position).size());
    return static_cast<int>(length) * fGrid.character;
  }

  bool HasRoom(const LabelBox& inBox) const {
    return inBox.left >= 0 && inBox.left + inBox.width <= fGrid.width &&
           std::none_of(fLabels.begin(), fLabels.end(), [&](const auto& label) {
             const LabelBox& other = label.second.box;
             return inBox.left < other.left + other.width + fGrid.labelDistance &&
                    other.left < inBox.left + inBox.width + fGrid.labelDistance;
           });
  }

  const RulerScale& fScale;
  const Grid& fGrid;
  std::set<std::int64_t> fSeamPositions;
  std::map<std::int64_t, PlacedTick> fLabels;
};

double Distance(const RulerScale& inScale, const Grid& inGrid, std::int64_t inStep) {
  return inScale.Share(inStep) * (inGrid.width - inGrid.character);
}

// The finest step whose labels all have room; if none has, the coarsest that has ticks at all.
std::optional<std::int64_t> LabelStep(const RulerScale& inScale, const Grid& inGrid) {
  std::optional<std::int64_t> found;
  for (const std::int64_t step : inScale.Steps()) {
    if (Distance(inScale, inGrid, step) < inGrid.character + inGrid.labelDistance) continue;
    LabelRow row(inScale, inGrid);
    const bool haveAllRoom = row.Fill(step);
    if (row.Labels().empty()) break;
    found = step;
    if (haveAllRoom) break;
  }
  return found;
}

// The finest step whose ticks keep their distance and include the labelled ones.
std::int64_t TickStep(const RulerScale& inScale, const Grid& inGrid, std::int64_t inLabelStep) {
  const auto& steps = inScale.Steps();
  return *std::find_if(steps.begin(), steps.end(), [&](std::int64_t step) {
    return step == inLabelStep ||
           (inLabelStep % step == 0 && Distance(inScale, inGrid, step) >= inGrid.tickDistance);
  });
}

}  // namespace

std::string DrawnLabel(const Tick& inTick) {
  const std::size_t blanks = std::min(inTick.label.find_first_not_of(' '), inTick.label.size());
  return inTick.label.substr(blanks) + (inTick.readsBack ? "" : "*");
}

RulerLayout LayOut(const RulerScale& inScale, const Grid& inGrid) {
  RulerLayout layout;
  const std::optional<std::int64_t> labelStep = LabelStep(inScale, inGrid);
  if (!labelStep) return layout;
  LabelRow row(inScale, inGrid);
  row.Fill(*labelStep);
  std::map<std::int64_t, PlacedTick> ticks = row.Labels();
  layout.isEachReadBack = std::all_of(
      ticks.begin(), ticks.end(), [](const auto& label) { return label.second.tick.readsBack; });
  for (const Tick& tick : inScale.Ticks(TickStep(inScale, inGrid, *labelStep))) {
    ticks.emplace(tick.position, row.Place(tick));
  }
  for (const auto& [position, tick] : ticks) layout.ticks.push_back(tick);
  return layout;
}

}  // namespace mezzo::tool
