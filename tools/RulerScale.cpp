#include "RulerScale.h"

#include "Messages.h"

#include <boost/iterator/counting_iterator.hpp>

#include <algorithm>
#include <initializer_list>

namespace mezzo::tool {
namespace {

constexpr std::int64_t kFarthestHours = 250;
// The search for ticks must reach 528 hours: 250 to the farthest position and 278 for the greatest
// offset of bar 1. It must not exceed the library's 32-bit counts. This limit is 596 hours for
// frames at 1000 frames per second. For formats whose last field follows a ".", the limit is 2^31
// units of the field before, such as beats or seconds.
constexpr double kSearchedHours = 550.0;
constexpr double kSearchedUnits = 2e9;
// Units of the last field; longer than any ruler at usual tempos and ticks per beat.
constexpr std::int64_t kLongestStep = 1'000'000'000'000'000;

/// Multiples of the powers of a base, such as 1, 2, 5, 10, 20, 50 and so on.
std::vector<std::int64_t> GetRoundNumbers(std::initializer_list<int> inMultiples, int inBase) {
  std::vector<std::int64_t> numbers;
  for (std::int64_t power = 1; power <= kLongestStep; power *= inBase) {
    for (const int multiple : inMultiples) numbers.push_back(power * multiple);
  }
  return numbers;
}

bool IsPowerOfTwo(std::int64_t inNumber) {
  return (inNumber & (inNumber - 1)) == 0;
}

/// The remainder of a division that rounds toward negative infinity.
std::int64_t GetModulo(std::int64_t inValue, std::int64_t inDivisor) {
  return (inValue % inDivisor + inDivisor) % inDivisor;
}

/// Writes a number of units of the last field as a text in the notation.
std::string FormatUnits(const Notation& inNotation, std::int64_t inUnits) {
  const bool isMirrored = inUnits < 0 && !inNotation.libraryParsesSign;
  std::int64_t units = isMirrored ? -inUnits : inUnits;
  std::string text;
  auto field = inNotation.fields.rbegin();
  for (; field->radix > 0; ++field) {
    const std::int64_t digit = GetModulo(units, field->radix);
    std::string number = std::to_string(digit + field->origin);
    const std::size_t width = std::to_string(field->radix - 1).size();
    if (number.size() < width) number.insert(0, width - number.size(), '0');
    text.insert(0, field->separator + number);
    units = (units - digit) / field->radix;
  }
  return (isMirrored ? "-" : "") + std::to_string(units + field->origin) + text;
}

}  // namespace

RulerScale::RulerScale(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                       const std::string& inFrom, const std::string& inTo)
    : fTimeline(inTimeline),
      fFormat(inFormat),
      fNotation(GetNotation(inTimeline, inFormat)),
      fFrom(ParseBound(inFrom)),
      fTo(ParseBound(inTo)) {
  if (fFrom >= fTo) {
    throw UserError("empty interval: from sample " + std::to_string(fFrom) + " to " +
                    std::to_string(fTo));
  }
}

std::vector<std::int64_t> RulerScale::GetSteps() const {
  const std::vector<std::int64_t> decimals = GetRoundNumbers({1, 2, 5}, 10);
  std::vector<std::int64_t> steps;
  std::int64_t unit = 1;
  // Within a field, the steps are the divisors of its radix that are 1, 2 or 5 times a power of
  // ten, and its half, quarter and so on.
  for (auto field = fNotation.fields.rbegin(); field->radix > 0; ++field) {
    for (std::int64_t step = 1; step < field->radix; ++step) {
      if (field->radix % step != 0) continue;
      const bool isDecimal = std::binary_search(decimals.begin(), decimals.end(), step);
      if (isDecimal || IsPowerOfTwo(field->radix / step)) steps.push_back(unit * step);
    }
    unit *= field->radix;
  }
  const auto counts =
      fNotation.HasBars() ? GetRoundNumbers({1}, 2) : GetRoundNumbers({1, 2, 5}, 10);
  for (const std::int64_t count : counts) {
    if (count <= kLongestStep / unit) steps.push_back(unit * count);
  }
  return steps;
}

double RulerScale::Locate(std::int64_t inPosition) const {
  return static_cast<double>(inPosition - fFrom) / static_cast<double>(fTo - fFrom);
}

double RulerScale::Measure(std::int64_t inStep) const {
  return static_cast<double>(inStep) * fNotation.samplesInUnit / static_cast<double>(fTo - fFrom);
}

std::vector<Tick> RulerScale::GetTicks(std::int64_t inStep) const {
  std::vector<Tick> ticks;
  for (const std::int64_t units : GetMultiples(inStep)) {
    const std::int64_t position = GetPosition(units);
    // A dropped label parses as the first one after the gap.
    if (ticks.empty() || ticks.back().position != position) ticks.push_back(MakeTick(position));
  }
  return ticks;
}

std::vector<Tick> RulerScale::GetGapTicks(std::int64_t inStep) const {
  std::vector<Tick> ticks;
  const std::int64_t minute = 60 * std::int64_t{fTimeline.framesPerSecond};
  if (!HasDropFrameLabels(fFormat) || inStep >= minute) return ticks;
  for (const std::int64_t units : GetMultiples(minute)) {
    // All labels that a minute drops parse as the same position. The first dropped label is the
    // one at the multiple of a minute; the next is one unit farther from 0.
    const std::int64_t direction = units < 0 ? -1 : 1;
    if (units == 0 || GetPosition(units) != GetPosition(units + direction)) continue;
    const auto [before, after] = std::minmax({GetPosition(units - direction), GetPosition(units)});
    if (before < fFrom || after > fTo) continue;
    ticks.push_back(MakeTick(before));
    ticks.back().alignment = kAlignment_Right;
    ticks.push_back(MakeTick(after));
    ticks.back().alignment = kAlignment_Left;
  }
  return ticks;
}

std::vector<std::int64_t> RulerScale::GetMultiples(std::int64_t inStep) const {
  const Field& last = fNotation.fields.back();
  double units = kSearchedHours * 3600.0 * fTimeline.sampleRate / fNotation.samplesInUnit;
  if (last.separator == '.')
    units = std::min(units, kSearchedUnits * static_cast<double>(last.radix));
  const auto reach = static_cast<std::int64_t>(units / static_cast<double>(inStep));
  using Iterator = boost::counting_iterator<std::int64_t>;
  const auto findFirst = [&](auto inIsBefore) {
    return *std::partition_point(
        Iterator(-reach - 1), Iterator(reach + 1),
        [&](std::int64_t inIndex) { return inIsBefore(GetPosition(inIndex * inStep)); });
  };
  const std::int64_t first =
      findFirst([this](std::int64_t inPosition) { return inPosition < fFrom; });
  const std::int64_t end = findFirst([this](std::int64_t inPosition) { return inPosition <= fTo; });
  std::vector<std::int64_t> multiples;
  for (std::int64_t index = first; index < end; ++index) {
    multiples.push_back(index * inStep);
  }
  return multiples;
}

std::int64_t RulerScale::GetPosition(std::int64_t inUnits) const {
  return ParseText(fTimeline, fFormat, FormatUnits(fNotation, inUnits));
}

Tick RulerScale::MakeTick(std::int64_t inPosition) const {
  const std::string label = FormatPosition(fTimeline, fFormat, inPosition);
  return {inPosition, label, ParseText(fTimeline, fFormat, label) == inPosition};
}

std::int64_t RulerScale::ParseBound(const std::string& inText) {
  const Conversion bound = inText.starts_with('@')
                               ? Conversion{ParseSampleCount(inText.substr(1)), inText, {}}
                               : ParseChecked(fTimeline, fFormat, inText);
  fNotes.insert(fNotes.end(), bound.notes.begin(), bound.notes.end());
  const std::int64_t farthest = kFarthestHours * 3600 * fTimeline.sampleRate;
  if (bound.position < -farthest || bound.position > farthest) {
    throw UserError(Quote(inText) + " is more than " + std::to_string(kFarthestHours) +
                    " hours from sample 0");
  }
  return bound.position;
}

}  // namespace mezzo::tool
