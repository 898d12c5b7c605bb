/// \file
/// Which ticks of a ruler are drawn, which carry labels, and where all of it stands.
#pragma once

#include "RulerScale.h"

#include <string>
#include <vector>

namespace mezzo::tool {

/// What a ruler is drawn on: whole cells of a terminal, or the pixels of a picture.
struct Grid {
  int width;          ///< in the grid's units, like everything that follows
  int character;      ///< width of a character
  int tickDistance;   ///< what ticks keep from each other at least
  int labelDistance;  ///< and labels
};

enum class Alignment { kLeft, kCentre, kRight };

/// The room of a label and of the position below it, from its left edge.
struct LabelBox {
  int left;
  int width;
  Alignment alignment;
};

struct PlacedTick {
  Tick tick;
  int x;  ///< left edge of the character that shows the tick
  bool hasLabel = false;
  bool isAtSeam = false;
  LabelBox box{};  ///< with a label only
};

struct RulerLayout {
  std::vector<PlacedTick> ticks;  ///< rising, one for each position
  bool isEachReadBack = true;     ///< no label is marked
};

/// The label as it is drawn: without leading blanks, and marked when it does not read back.
std::string DrawnLabel(const Tick& inTick);

/// Labels the finest step whose labels all have room, and ticks the finest that divides it. Labels
/// on both sides of a seam go before others.
RulerLayout LayOut(const RulerScale& inScale, const Grid& inGrid);

}  // namespace mezzo::tool
