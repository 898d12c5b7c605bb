/// \file
/// Where the ticks of a time ruler lie and what they are called.
///
/// Neither is computed here: the library reads the round texts of the format into the positions of
/// the ticks, and writes these positions as the labels. So a ruler shows what both directions of
/// the library do.
#pragma once

#include "RulerNotation.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mezzo::tool {

struct Tick {
  std::int64_t position;
  std::string label;  ///< the library's text for the position
  bool readsBack;     ///< the label reads as this position
};

/// Two ticks that follow each other although labels are missing between theirs.
struct Seam {
  Tick before;
  Tick after;
};

/// The part of a timeline that a ruler shows, and what may stand on it.
class RulerScale {
 public:
  /// Each end is a text in the format, or "@" and a position.
  /// \exception InputError for ends that are neither, far away, or leave nothing between them.
  RulerScale(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
             const std::string& inFrom, const std::string& inTo);

  std::int64_t From() const { return fFrom; }
  std::int64_t To() const { return fTo; }

  /// Distances of ticks that make a good ruler, in units of the format, rising.
  const std::vector<std::int64_t>& Steps() const { return fNotation.steps; }

  /// The length of a step as a part of the ruler's; nearly, where labels are left out.
  double Share(std::int64_t inStep) const;

  /// All ticks at whole multiples of a step, rising.
  std::vector<Tick> Ticks(std::int64_t inStep) const;

  /// The places where drop-frame counting leaves labels out, if steps are shorter than their
  /// distance.
  std::vector<Seam> Seams(std::int64_t inStep) const;

 private:
  std::vector<std::int64_t> Multiples(std::int64_t inStep) const;
  std::int64_t PositionOf(std::int64_t inUnits) const;
  Tick TickAt(std::int64_t inPosition) const;
  std::int64_t ReadEnd(const std::string& inText) const;

  Timeline fTimeline;
  utility::TimecodeFormat fFormat;
  RulerNotation fNotation;
  std::int64_t fFrom;
  std::int64_t fTo;
};

}  // namespace mezzo::tool
