/// \file
/// The layout of a time ruler: which ticks are drawn, which of them have labels, and where.
#pragma once

#include "RulerScale.h"

#include <optional>
#include <string>
#include <vector>

namespace mezzo::tool {

/// The drawing area: columns of a terminal, or pixels of a picture.
struct Grid {
  int width;
  int characterWidth;
  int tickDistance;   ///< the least distance between ticks
  int labelDistance;  ///< the least distance between labels
};

/// The room for a tick's label, and for the sample position that is written below it.
struct LabelBox {
  int left;
  int width;
  Alignment alignment;  ///< of the texts in the box; may differ from the tick's at the ruler's ends
};

struct PlacedTick {
  Tick tick;
  int x;                          ///< left edge of the character that shows the tick
  std::optional<LabelBox> box{};  ///< of a labelled tick
};

/// A label as it is drawn: without leading blanks, and marked if it does not read back.
std::string GetDrawnLabel(const Tick& inTick);

/// Lays out a ruler.
///
/// The labels are at the multiples of the finest step at which all of them have room. If these are
/// fewer than two, a finer step is used, and labels without room are left out. The ticks are at the
/// multiples of the finest step that divides the step of the labels and keeps the ticks apart.
/// Labels beside a gap take precedence over all others.
/// \return the ticks in ascending order, one for each position.
std::vector<PlacedTick> LayOut(const RulerScale& inScale, const Grid& inGrid);

}  // namespace mezzo::tool
