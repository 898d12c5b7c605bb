/// \file
/// The scale of a time ruler: the positions and labels of its ticks.
///
/// The position of each tick is parsed from a round value, such as 00:00:05:00. Its label is the
/// text of that position. A ruler therefore shows both how texts are parsed and how positions are
/// formatted. If labels are less than a minute apart, the frames on both sides of a gap in
/// drop-frame labels have ticks, too.
#pragma once

#include "Conversion.h"
#include "Notation.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mezzo::tool {

/// Which point of a label is at its tick. At a gap, that point is just beside the tick, so the
/// labels on both sides do not meet.
enum Alignment {
  kAlignment_Left = 0,  ///< its left end
  kAlignment_Centre = 1,
  kAlignment_Right = 2,
};

struct Tick {
  std::int64_t position;
  std::string label;  ///< the position's text
  bool readsBack;     ///< the label is parsed as this position
  Alignment alignment = kAlignment_Centre;
};

/// The interval of a timeline that a ruler shows.
class RulerScale {
 public:
  /// \param inFrom the beginning, a text in the format or "@" and a sample count.
  /// \param inTo the end, likewise.
  /// \exception UserError for any other text, a distant position, and an empty interval.
  RulerScale(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
             const std::string& inFrom, const std::string& inTo);

  std::int64_t GetFrom() const { return fFrom; }
  std::int64_t GetTo() const { return fTo; }

  /// \return the notes on the texts of both ends.
  const std::vector<ConversionNote>& GetNotes() const { return fNotes; }

  /// \return the round distances between ticks, in units of the last field, in ascending order.
  std::vector<std::int64_t> GetSteps() const;

  /// \return where a position lies in the interval: 0 at its beginning, 1 at its end.
  double Locate(std::int64_t inPosition) const;

  /// \return the length of a step as a fraction of the interval; approximate for drop-frame labels.
  double Measure(std::int64_t inStep) const;

  /// \return all ticks at multiples of a step, in ascending order.
  std::vector<Tick> GetTicks(std::int64_t inStep) const;

  /// \return the ticks on both sides of each gap in drop-frame labels, if steps are shorter than
  ///     the distance between gaps. Their labels extend away from the gap.
  std::vector<Tick> GetGapTicks(std::int64_t inStep) const;

 private:
  std::vector<std::int64_t> GetMultiples(std::int64_t inStep) const;
  std::int64_t GetPosition(std::int64_t inUnits) const;
  Tick MakeTick(std::int64_t inPosition) const;
  std::int64_t ParseBound(const std::string& inText);

  Timeline fTimeline;
  utility::TimecodeFormat fFormat;
  Notation fNotation;
  std::vector<ConversionNote> fNotes;
  std::int64_t fFrom;
  std::int64_t fTo;
};

}  // namespace mezzo::tool
