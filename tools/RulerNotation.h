/// \file
/// The round texts of each display format, from which a ruler picks its ticks.
#pragma once

#include "DisplayFormats.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace mezzo::tool {

/// How a person would type times in a format, counted in its smallest unit: a frame, a millisecond,
/// a tick of a beat.
struct RulerNotation {
  double samplesInUnit;             ///< nearly, where the counting leaves labels out
  std::vector<std::int64_t> steps;  ///< distances of ticks that make a good ruler, in units, rising
  std::function<std::string(std::int64_t)> type;  ///< units into text
  bool keepsSign = false;          ///< negative units can be typed: the library reads a minus sign
  std::int64_t unitsInMinute = 0;  ///< where a minute may leave labels out; otherwise 0
};

/// \exception InputError when the format has no conversion.
RulerNotation NotationOf(const Timeline& inTimeline, utility::TimecodeFormat inFormat);

}  // namespace mezzo::tool
