// Clock-like text to samples, against the grammar followed step by step in copies of the text and
// exact arithmetic in 128 bits.

#include "FuzzArguments.h"

#include <limits>

namespace mezzo::fuzz {
namespace {

__extension__ using Wide = __int128;

struct ClockText {
  std::vector<std::int64_t> values{0, 0, 0, 0};  // the last four are hours to frames
  std::int64_t numerator = 0;
  std::int64_t denominator = 1;

  std::int64_t FromRight(std::size_t inPlace) const { return values[values.size() - 1 - inPlace]; }
};

std::int64_t PowerOfTen(std::size_t inExponent) {
  return inExponent > 9 ? std::numeric_limits<int>::max()
                        : std::stoll('1' + std::string(inExponent, '0'));
}

std::int64_t Saturated(UTF16String inDigits) {
  inDigits.erase(0, inDigits.find_first_not_of(u'0'));
  if (inDigits.size() > 10) return std::numeric_limits<int>::max();
  const std::string digits(inDigits.begin(), inDigits.end());
  return std::min<std::int64_t>(std::stoll('0' + digits), std::numeric_limits<int>::max());
}

ClockText Parse(UTF16String inRest) {
  static const UTF16String kDigits = u"0123456789";
  ClockText clock;
  std::size_t length = 0;
  for (int count = 0; count < 5; ++count) {
    const UTF16String separators = inRest.substr(0, inRest.find_first_of(kDigits));
    const bool isDotted = separators.find(u'.') != separators.npos;
    inRest.erase(0, separators.size());
    if (inRest.empty()) {
      if (isDotted && count > 0) {
        clock.numerator = clock.FromRight(0);
        clock.denominator = PowerOfTen(length);
        clock.values.pop_back();
      }
      break;
    }
    if (isDotted || count > 0) length = inRest.size();
    const UTF16String digits = inRest.substr(0, inRest.find_first_not_of(kDigits));
    inRest.erase(0, digits.size());
    if (isDotted) {
      clock.numerator = Saturated(digits);
      clock.denominator = PowerOfTen(length);
      break;
    }
    clock.values.push_back(Saturated(digits));
  }
  return clock;
}

/// Frames before a label, counting the labels that are left out minute by minute.
Wide CountFrames(const ClockText& inClock, std::int64_t inFps, bool inDropFrame) {
  const std::int64_t minutes = 60 * inClock.FromRight(3) + inClock.FromRight(2);
  const std::int64_t dropped = inDropFrame ? inFps / 15 : 0;
  const auto hasAllLabels = [](std::int64_t minute) { return minute % 10 == 0; };
  std::int64_t frame = inClock.FromRight(0);
  if (!hasAllLabels(minutes) && inClock.FromRight(1) == 0) frame = std::max(frame, dropped);
  Wide frames = Wide{60 * minutes + inClock.FromRight(1)} * inFps + frame;
  for (std::int64_t minute = 1; minute <= minutes && dropped != 0; ++minute) {
    if (!hasAllLabels(minute)) frames -= dropped;
  }
  return frames;
}

void CheckSMPTE(FuzzArguments& ioArgs, const UTF16String& inText, const ClockText& inClock) {
  const std::int32_t rate = ioArgs.SampleRate();
  const std::int32_t fps = ioArgs.FrameRate();
  const bool pulldown = ioArgs.Flag();
  const bool dropFrame = ioArgs.Flag();
  std::int64_t samples = 0;
  utility::ConvertTimecodeToSamples(samples, inText, rate, fps, pulldown, dropFrame);
  if (inText.empty()) return Require(samples == -1, std::to_string(samples), "-1");

  if (rate < 1 || fps < 1 || fps > 2000 || (dropFrame && fps != 30 && fps != 60)) return;
  if (inClock.FromRight(3) > 100 || inClock.FromRight(2) > 6000) return;
  const Wide frames = CountFrames(inClock, fps, dropFrame);
  const Wide divisor = Wide{inClock.denominator} * fps * (pulldown ? 1000 : 1);
  const Wide dividend =
      Wide{rate} * (pulldown ? 1001 : 1) * (inClock.denominator * frames + inClock.numerator) +
      divisor - 1;
  // Further out the result comes from an estimate in double precision.
  if (frames > std::numeric_limits<int>::max() || dividend >= Wide{1} << 62) return;
  RequireEqual(std::to_string(samples),
               std::to_string(static_cast<std::int64_t>(dividend / divisor)));
}

void CheckClock(FuzzArguments& ioArgs, const UTF16String& inText, const ClockText& inClock) {
  const std::int32_t rate = ioArgs.SampleRate();
  std::int64_t samples = 0;
  utility::ConvertTimecodeToSamples(samples, inText, utility::kTimecodeFormat_Decimal, rate, 30,
                                    nullptr, false);
  const long double seconds =
      static_cast<long double>((inClock.FromRight(2) * 60 + inClock.FromRight(1)) * 60 +
                               inClock.FromRight(0)) +
      static_cast<long double>(inClock.numerator) / inClock.denominator;
  const long double exact = seconds * rate;
  if (inText.empty() || rate < 0 || exact > 1e18L) return;
  RequireNear(samples, exact, 0.5L + 1e-9L + exact * 1e-15L);
}

}  // namespace

void Check(FuzzArguments& ioArgs) {
  const UTF16String text = ioArgs.Text();
  const ClockText clock = Parse(text);
  CheckSMPTE(ioArgs, text, clock);
  CheckClock(ioArgs, text, clock);
}

}  // namespace mezzo::fuzz
