/// \file
/// The notation of each display format: the fields of its texts.
#pragma once

#include "DisplayFormats.h"

#include <boost/container/static_vector.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mezzo::tool {

/// The units that the numbers of a text count.
enum Unit {
  kUnit_Hours,
  kUnit_Minutes,
  kUnit_Seconds,
  kUnit_Milliseconds,
  kUnit_Frames,
  kUnit_Bars,
  kUnit_Beats,
  kUnit_Ticks,
  kUnit_Samples,
  kUnit_Fraction,  ///< the decimal fraction of the field to its left
};

/// \param inUnit a unit that people type: neither samples nor a fraction.
std::string GetName(Unit inUnit);

/// Finds a unit by a word that people type for it, such as "min", in any letter case.
std::optional<Unit> FindUnit(std::string_view inWord);

struct Field {
  Unit unit;
  std::int64_t radix = 0;  ///< units in one unit of the field to the left; 0 for the first
  char separator = 0;      ///< before the field; 0 for the first
  int origin = 0;          ///< the number that it counts from
};

/// The notation of a format on a timeline.
struct Notation {
  boost::container::static_vector<Field, 4> fields;  ///< from left to right
  double samplesInUnit;                              ///< samples per unit of the last field
  bool libraryParsesSign = false;                    ///< the tool need not negate the position

  /// \return whether this is the notation of bars and beats. Its last fields may be omitted; in
  /// every other notation, the leading ones.
  bool HasBars() const { return fields.front().unit == kUnit_Bars; }
  bool HasTicks() const { return fields.back().unit == kUnit_Ticks; }
  bool HasFractionField() const { return fields.back().unit == kUnit_Fraction; }
  bool HasFrames() const { return fields.back().unit == kUnit_Frames; }
};

Notation GetNotation(const Timeline& inTimeline, utility::TimecodeFormat inFormat);

}  // namespace mezzo::tool
