// The displays without frames and bars: clock time and beats against exact integers, samples and
// milliseconds against the C library's notation.

#include "FuzzArguments.h"

#include <cinttypes>
#include <cmath>
#include <limits>

namespace mezzo::fuzz {
namespace {

__extension__ using Wide = __int128;

std::string Clock(std::int64_t inSamples, std::int64_t inRate, bool inWholeSeconds) {
  const Wide magnitude = inSamples < 0 ? -Wide{inSamples} : Wide{inSamples};
  const auto seconds = static_cast<std::int64_t>(magnitude / inRate);
  const Wide rest = magnitude % inRate;
  const bool isLong = seconds >= 36000;
  const char* const sign = inSamples < 0 ? "-" : "";
  char text[80];
  int end = seconds < 3600 ? std::snprintf(text, sizeof text, "%3s%" PRId64 ":%02d", sign,
                                           seconds / 60, static_cast<int>(seconds % 60))
                           : std::snprintf(text, sizeof text, "%s%" PRId64 ":%02d:%02d", sign,
                                           seconds / 3600, static_cast<int>(seconds / 60 % 60),
                                           static_cast<int>(seconds % 60));
  if (!inWholeSeconds) {
    const Wide fraction = isLong ? rest * 100 / inRate : (rest * 1000 + 500) / inRate;
    std::snprintf(text + end, sizeof text - static_cast<std::size_t>(end), ".%0*d", isLong ? 2 : 3,
                  static_cast<int>(fraction));
  }
  return text;
}

void CheckBeats(std::int64_t inSamples, std::int32_t inRate, double inTempo) {
  const std::string shown = Written(
      [&](UTF16String& text) { utility::ConvertSamplesToBeats(text, inSamples, inRate, inTempo); });
  const long double exact =
      static_cast<long double>(inSamples) * static_cast<long double>(inTempo) / (inRate * 60.0L);
  if (inRate < 1 || !(inTempo >= 0.0) || !(std::fabs(exact) < 1e9L)) return;
  RequireNear(std::strtold(shown.c_str(), nullptr), exact,
              0.0005L + 1e-15L * std::fabs(exact) + 1e-9L);
  Require(shown.size() >= 5 && shown[shown.size() - 4] == '.', shown, "three decimals");
  Require(shown != "-0.000", shown, "0.000");
}

std::string InFormat(utility::TimecodeFormat inFormat, std::int64_t inSamples,
                     std::int32_t inRate) {
  return Written([&](UTF16String& text) {
    utility::ConvertSamplesToTimecode(text, inSamples, inRate, inFormat, 30, nullptr, false);
  });
}

}  // namespace

void Check(FuzzArguments& ioArgs) {
  const std::int64_t samples = ioArgs.Int64() >> (ioArgs.Byte() % 64);
  const std::int32_t rate = ioArgs.SampleRate();
  const bool wholeSeconds = ioArgs.Flag();
  CheckBeats(samples, rate, ioArgs.Double({60.0, 120.0, 125.5}));
  RequireEqual(InFormat(utility::kTimecodeFormat_Samples, samples, rate), std::to_string(samples));

  const std::string clock = Written([&](UTF16String& text) {
    utility::ConvertSamplesToDecimalTimecode(text, samples, rate, wholeSeconds);
  });
  const std::string milliseconds = InFormat(utility::kTimecodeFormat_Milliseconds, samples, rate);
  if (rate < 1 || samples == std::numeric_limits<std::int64_t>::min()) return;
  const double tenths = static_cast<double>(samples) * 10000.0 / rate + 0.5;
  char notation[32];
  std::snprintf(notation, sizeof notation, "%g", (tenths - std::fmod(tenths, 1.0)) * 0.1);
  RequireEqual(milliseconds, notation);
  const std::int64_t hours = samples / rate / 3600;
  if (std::abs(hours) < std::int64_t{1} << 31) {
    RequireEqual(clock, Clock(samples, rate, wholeSeconds));
  }
}

}  // namespace mezzo::fuzz
