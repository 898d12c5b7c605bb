// Bars and beats in both directions, against the exact position in extended precision.

#include "../tests/support/Text.h"
#include "FuzzArguments.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace mezzo::fuzz {
namespace {

using utility::BeatInfo;

/// Where a double-precision result may lie beside the exact one.
constexpr long double kRelativeError = 4e-15L;

struct Meter {
  double rate;  // samples per second
  BeatInfo beats;
  bool isDuration;
};

bool IsUsual(const Meter& inMeter) {
  const auto isWithin = [](double value, double least, double most) {
    return value >= least && value <= most;
  };
  const BeatInfo& beats = inMeter.beats;
  return isWithin(inMeter.rate, 1.0, 1e7) && isWithin(beats.dTempo, 0.1, 1e4) &&
         isWithin(beats.iBeatsPerBar, 1, 1000) && isWithin(beats.iBeatUnit, 1, 128) &&
         isWithin(beats.dOffsetMs, -1e9, 1e9) &&
         (beats.iTicksPerBeat == -1 || isWithin(beats.iTicksPerBeat, 1, 10000));
}

long double SamplesPerBeat(const Meter& inMeter) {
  return static_cast<long double>(inMeter.rate) * 240.0L /
         (static_cast<long double>(inMeter.beats.dTempo) * inMeter.beats.iBeatUnit);
}

/// Rounded by the library itself: half a sample more or less does not matter here.
long double Offset(const Meter& inMeter) {
  const long double samples = static_cast<long double>(inMeter.rate) *
                              static_cast<long double>(inMeter.beats.dOffsetMs) / 1000;
  return inMeter.isDuration ? 0.0L : samples;
}

/// The signed integer at the start of a text, saturated; 0 for none.
std::int64_t LeadingInteger(const std::string& inText) {
  std::string number = inText.substr(std::min(inText.find_first_not_of(" \t"), inText.size()));
  const bool isSigned = !number.empty() && (number[0] == '-' || number[0] == '+');
  number.resize(std::min(number.find_first_not_of("0123456789", isSigned ? 1 : 0), number.size()));
  const long double value = std::strtold(number.c_str(), nullptr);
  return static_cast<std::int64_t>(std::clamp<long double>(value, std::numeric_limits<int>::min(),
                                                           std::numeric_limits<int>::max()));
}

/// The exact value in beats of a text; not a number where the contract leaves exact arithmetic.
long double BeatsOf(const UTF16String& inText, const Meter& inMeter) {
  std::string text;
  for (const char16_t unit : inText)
    text += unit < 0x80 && unit > 0 ? static_cast<char>(unit) : 'x';
  const std::int64_t first = inMeter.isDuration ? 0 : 1;
  const std::size_t colon = text.find(':');
  const std::size_t dot = text.find('.');
  const std::int64_t bar = LeadingInteger(text) - first;
  const std::int64_t beat = colon == text.npos ? 0 : LeadingInteger(text.substr(colon + 1)) - first;
  const std::int64_t whole = inMeter.beats.iBeatsPerBar * bar + beat;
  long double part = 0.0L;
  if (dot != text.npos && inMeter.beats.iTicksPerBeat == -1) {
    part = std::strtold(text.c_str() + dot, nullptr);
  } else if (dot != text.npos) {
    part = static_cast<long double>(LeadingInteger(text.substr(dot + 1))) /
           inMeter.beats.iTicksPerBeat;
  }
  const bool fits = std::abs(whole) <= std::numeric_limits<int>::max() && std::fabs(part) < 1e9L;
  return fits ? static_cast<long double>(whole) + part : std::nanl("");
}

void CheckReading(FuzzArguments& ioArgs, const Meter& inMeter) {
  const UTF16String text = ioArgs.Text();
  const std::int64_t samples =
      utility::ConvertBarsAndBeatsToSamples(text, inMeter.rate, inMeter.beats, inMeter.isDuration);
  const long double position = BeatsOf(text, inMeter) * SamplesPerBeat(inMeter);
  if (!IsUsual(inMeter) || !(std::fabs(position) < 1e17L)) return;
  RequireNear(samples, position + Offset(inMeter),
              (inMeter.isDuration ? 0.5L : 1.0L) + 1e-6L + kRelativeError * std::fabs(position));
}

/// Requires a text to be what comes in front of, or is, the longest display.
void CheckPrecision(double inSamples, const Meter& inMeter, int inPrecision,
                    const std::string& inLongest) {
  const std::string text = Written([&](UTF16String& label) {
    utility::ConvertSamplesToBarsAndBeats(label, inSamples, inMeter.rate, inMeter.beats,
                                          inMeter.isDuration, inPrecision);
  });
  const std::size_t ends[] = {inLongest.find(':'), inLongest.find('.'), inLongest.rfind('.')};
  RequireEqual(text, inLongest.substr(0, ends[inPrecision]));
}

void CheckWriting(FuzzArguments& ioArgs, const Meter& inMeter) {
  const double samples =
      ioArgs.Flag() ? static_cast<double>(ioArgs.Int64() >> ioArgs.Byte() % 64) : ioArgs.Double({});
  UTF16String written;
  utility::ConvertSamplesToBarsAndBeats(written, samples, inMeter.rate, inMeter.beats,
                                        inMeter.isDuration, 3);
  const std::string text = test::Shown(written);
  const long double beats =
      (static_cast<long double>(samples) - Offset(inMeter)) / SamplesPerBeat(inMeter);
  if (!IsUsual(inMeter) || !(std::fabs(beats) < 1e9L)) return;

  long long bar, beat;
  char tick[16], thousandths[16];
  Require(
      std::sscanf(text.c_str(), "%lld:%lld.%15[0-9].%15[0-9]", &bar, &beat, tick, thousandths) == 4,
      text, "four numbers");
  const int first = inMeter.isDuration ? 0 : 1;
  const bool isDecimal = inMeter.beats.iTicksPerBeat == -1;
  const long double units = isDecimal ? 1000.0L : inMeter.beats.iTicksPerBeat * 1000.0L;
  const long double shownBeats =
      static_cast<long double>((bar - first) * inMeter.beats.iBeatsPerBar + beat - first);
  const long double shown =
      shownBeats * units +
      (isDecimal ? std::atoi(tick) : std::atoi(tick) * 1000 + std::atoi(thousandths));
  // The offset is rounded to a sample, and the decimal form is truncated from half a unit lower.
  const long double offsetError =
      inMeter.isDuration ? 0.0L : 0.5L / SamplesPerBeat(inMeter) * units;
  const long double exact = beats * units - (isDecimal ? 1.0L : 0.0L);
  const long double doubleError = kRelativeError * std::max(std::fabs(exact), units);
  RequireNear(shown, exact, 0.5L + 1e-6L + offsetError + doubleError);
  Require(beat >= first && beat - first < inMeter.beats.iBeatsPerBar, text, "a beat of the bar");
  if (isDecimal) return;
  Require(std::atoi(tick) < inMeter.beats.iTicksPerBeat, text, "a tick of the beat");
  for (int precision = 0; precision < 3; ++precision)
    CheckPrecision(samples, inMeter, precision, text);
}

}  // namespace

void Check(FuzzArguments& ioArgs) {
  const Meter meter{ioArgs.Double({44100.0, 48000.0, 88288.2}), ioArgs.Beats(), ioArgs.Flag()};
  CheckReading(ioArgs, meter);
  CheckWriting(ioArgs, meter);
}

}  // namespace mezzo::fuzz
