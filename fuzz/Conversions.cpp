// The conversions against slow references: labels counted minute by minute, the grammar followed
// step by step in copies of the text, exact positions in extended precision. What is drawn first
// chooses a direction.

#include "../tests/support/ExportedCalls.h"
#include "../tests/support/Text.h"

#include <plinth/debug/AssertDialog.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

namespace mezzo::fuzz {
namespace {

using plinth::UTF16String;
using test::DrawnArguments;
using utility::BeatInfo;

constexpr std::int64_t kLargestInt = std::numeric_limits<std::int32_t>::max();

test::Fields sArguments;

/// Ends the process when a result is not what the reference says.
void Require(bool inHolds, const std::string& inActual, const std::string& inExpected) {
  if (inHolds) return;
  std::fprintf(stderr, "%s\nresult %s, reference %s\n", test::Joined(sArguments).c_str(),
               inActual.c_str(), inExpected.c_str());
  std::abort();
}

void RequireEqual(const std::string& inActual, const std::string& inExpected) {
  Require(inActual == inExpected, inActual, inExpected);
}

/// Requires a value to lie within a distance of the exact one.
void RequireNear(long double inActual, long double inExact, long double inDistance) {
  Require(std::fabs(inActual - inExact) <= inDistance, std::to_string(inActual),
          std::to_string(inExact) + " ± " + std::to_string(inDistance));
}

template <class Write>
std::string Written(const Write& inWrite) {
  UTF16String text;
  inWrite(text);
  return test::Shown(text);
}

std::string Padded(std::int64_t inValue, std::size_t inWidth) {
  const std::string digits = std::to_string(inValue);
  return std::string(inWidth - std::min(inWidth, digits.size()), '0') + digits;
}

/// A text whose every unit is a byte; "x" stands for those that are no ASCII.
std::string Bytes(const UTF16String& inText) {
  std::string bytes;
  for (const char16_t unit : inText)
    bytes += unit < 0x80 && unit > 0 ? static_cast<char>(unit) : 'x';
  return bytes;
}

/// The signed integer at the start of a text, saturated; 0 for none.
std::int64_t LeadingInteger(const std::string& inText) {
  std::string number = inText.substr(std::min(inText.find_first_not_of(" \t"), inText.size()));
  const bool isSigned = !number.empty() && (number[0] == '-' || number[0] == '+');
  number.resize(std::min(number.find_first_not_of("0123456789", isSigned ? 1 : 0), number.size()));
  const long double value = std::strtold(number.c_str(), nullptr);
  return static_cast<std::int64_t>(std::clamp<long double>(value, -kLargestInt - 1, kLargestInt));
}

// -------------------------------------------------------------------------------- Writing timecode

std::string DropFrameLabel(std::int64_t inFrames, std::int64_t inFps) {
  std::int64_t minute = 0, frame = inFrames;
  const auto dropped = [&] { return minute % 10 == 0 ? 0 : inFps / 15; };
  for (; frame >= 60 * inFps - dropped(); ++minute) frame -= 60 * inFps - dropped();
  frame += dropped();
  return Padded(minute / 60, 2) + ';' + Padded(minute % 60, 2) + ';' + Padded(frame / inFps, 2) +
         ';' + Padded(frame % inFps, 2);
}

void WriteTimecode(DrawnArguments& ioArgs) {
  const std::int64_t samples = ioArgs.Integer(64);
  const std::int32_t rate = ioArgs.Int32(test::kSampleRates), fps = ioArgs.Int32(test::kFrameRates);
  const bool dropFrame = ioArgs.Flag(), pulldown = ioArgs.Flag(), framesOnly = ioArgs.Flag();
  const bool showSubframes = ioArgs.Flag();
  const std::string actual = Written([&](UTF16String& text) {
    utility::ConvertSamplesToTimecode(text, samples, rate, fps, dropFrame, pulldown, framesOnly,
                                      false, false, showSubframes, false);
  });
  // Within these, nothing needs more than 64 bits.
  if (rate < 1 || fps < 1 || fps > 2000 || samples != samples << 29 >> 29) return;
  if (dropFrame && (pulldown || (fps != 30 && fps != 60))) return;
  const bool isPulledDown = dropFrame || pulldown;
  const std::int64_t dividend = std::abs(samples) * fps * (isPulledDown ? 1000 : 1);
  const std::int64_t divisor = std::int64_t{rate} * (isPulledDown ? 1001 : 1);
  const std::int64_t frames = dividend / divisor, seconds = frames / fps;
  if (frames > kLargestInt) return;
  // At the pulled-down rate with dropped labels the count is made in double precision.
  if (framesOnly) return RequireNear(std::stoll(actual), frames, dropFrame ? 1 : 0);
  std::string label = samples < 0 ? "-" : "";
  if (dropFrame) {
    label += DropFrameLabel(frames, fps);
  } else {
    label += Padded(seconds / 3600, 2) + ':' + Padded(seconds / 60 % 60, 2) + ':' +
             Padded(seconds % 60, 2) + ':' + Padded(frames % fps, std::to_string(fps - 1).size());
    if (showSubframes) label += '.' + Padded(dividend % divisor * 100 / divisor, 2);
  }
  RequireEqual(actual, label);
}

// ------------------------------------------------------------------------------ Writing clock time

void WriteClock(DrawnArguments& ioArgs) {
  const std::int64_t samples = ioArgs.Integer(64);
  const std::int32_t rate = ioArgs.Int32(test::kSampleRates);
  const bool wholeSeconds = ioArgs.Flag();
  if (rate < 1 || samples != samples << 16 >> 16) return;
  const std::int64_t seconds = std::abs(samples) / rate, rest = std::abs(samples) % rate;
  if (seconds / 3600 > kLargestInt) return;
  const std::string sign = samples < 0 ? "-" : "";
  std::string clock =
      seconds < 3600 ? (sign.empty() ? "   " : "  -") + std::to_string(seconds / 60)
                     : sign + std::to_string(seconds / 3600) + ':' + Padded(seconds / 60 % 60, 2);
  clock += ':' + Padded(seconds % 60, 2);
  if (!wholeSeconds) {
    clock += '.' + (seconds >= 36000 ? Padded(rest * 100 / rate, 2)
                                     : Padded((rest * 1000 + 500) / rate, 3));
  }
  RequireEqual(Written([&](UTF16String& text) {
                 utility::ConvertSamplesToDecimalTimecode(text, samples, rate, wholeSeconds);
               }),
               clock);
}

// -------------------------------------------------------------------------------- Reading timecode

struct ClockText {
  std::vector<std::int64_t> values{0, 0, 0, 0};  // the last four are hours to frames
  std::int64_t numerator = 0, denominator = 1;

  std::int64_t FromRight(std::size_t inPlace) const { return values[values.size() - 1 - inPlace]; }
};

ClockText Parse(std::string inRest) {
  static const char kDigits[] = "0123456789";
  ClockText clock;
  std::size_t length = 0;
  const auto setFraction = [&](std::int64_t value) {
    clock.numerator = value;
    clock.denominator = LeadingInteger('1' + std::string(std::min<std::size_t>(length, 10), '0'));
  };
  for (int count = 0; count < 5; ++count) {
    const std::string separators = inRest.substr(0, inRest.find_first_of(kDigits));
    const bool isDotted = separators.find('.') != separators.npos;
    inRest.erase(0, separators.size());
    if (inRest.empty()) {
      if (!isDotted || count == 0) break;
      setFraction(clock.FromRight(0));
      clock.values.pop_back();
      break;
    }
    if (isDotted || count > 0) length = inRest.size();
    const std::int64_t value = LeadingInteger(inRest);
    inRest.erase(0, inRest.find_first_not_of(kDigits));
    if (isDotted) {
      setFraction(value);
      break;
    }
    clock.values.push_back(value);
  }
  return clock;
}

/// Frames before a label, counting the labels that are left out minute by minute.
std::int64_t CountFrames(const ClockText& inClock, std::int64_t inFps, bool inDropFrame) {
  const std::int64_t minutes = 60 * inClock.FromRight(3) + inClock.FromRight(2);
  const std::int64_t dropped = inDropFrame ? inFps / 15 : 0;
  std::int64_t frame = inClock.FromRight(0);
  if (minutes % 10 != 0 && inClock.FromRight(1) == 0) frame = std::max(frame, dropped);
  std::int64_t frames = (60 * minutes + inClock.FromRight(1)) * inFps + frame;
  for (std::int64_t minute = 1; minute <= minutes && dropped != 0; ++minute)
    if (minute % 10 != 0) frames -= dropped;
  return frames;
}

void ReadTimecode(DrawnArguments& ioArgs) {
  const UTF16String text = ioArgs.Text(test::kClockForms);
  const ClockText clock = Parse(Bytes(text));
  const std::int32_t rate = ioArgs.Int32(test::kSampleRates), fps = ioArgs.Int32(test::kFrameRates);
  const bool pulldown = ioArgs.Flag(), dropFrame = ioArgs.Flag();
  std::int64_t samples = 0;
  utility::ConvertTimecodeToSamples(samples, text, rate, fps, pulldown, dropFrame);
  if (text.empty()) return RequireEqual(std::to_string(samples), "-1");

  if (rate < 1 || fps < 1 || fps > 2000 || (dropFrame && fps != 30 && fps != 60)) return;
  if (clock.FromRight(3) <= 100 && clock.FromRight(2) <= 6000) {
    const std::int64_t frames = CountFrames(clock, fps, dropFrame);
    const long double fractions =
        static_cast<long double>(clock.denominator) * frames + clock.numerator;
    const long double factor = (pulldown ? 1001.0L : 1.0L) * rate;
    // Further out the result comes from an estimate in double precision.
    if (frames <= kLargestInt && fractions * factor < 0x1p62L) {
      const std::int64_t divisor = clock.denominator * fps * (pulldown ? 1000 : 1);
      const auto dividend =
          static_cast<std::int64_t>(fractions) * static_cast<std::int64_t>(factor);
      RequireEqual(std::to_string(samples), std::to_string((dividend + divisor - 1) / divisor));
    }
  }
}

// ------------------------------------------------------------------------------------ Musical time

/// Where a double-precision result may lie beside the exact one.
constexpr long double kRelativeError = 4e-15L;

struct Meter {
  explicit Meter(DrawnArguments& ioArgs)
      : rate(ioArgs.Double(test::kExactRates)), beats(ioArgs.Beats()), isDuration(ioArgs.Flag()) {}

  bool IsUsual() const {
    const auto isWithin = [](double value, double least, double most) {
      return value >= least && value <= most;
    };
    return isWithin(rate, 1.0, 1e7) && isWithin(beats.dTempo, 0.1, 1e4) &&
           isWithin(beats.iBeatsPerBar, 1, 1000) && isWithin(beats.iBeatUnit, 1, 128) &&
           isWithin(beats.dOffsetMs, -1e9, 1e9) &&
           (IsDecimal() || isWithin(beats.iTicksPerBeat, 1, 10000));
  }
  bool IsDecimal() const { return beats.iTicksPerBeat == -1; }
  std::int64_t First() const { return isDuration ? 0 : 1; }
  long double SamplesPerBeat() const {
    return rate * 240.0L / (static_cast<long double>(beats.dTempo) * beats.iBeatUnit);
  }
  /// Rounded by the library itself: half a sample more or less does not matter here.
  long double Offset() const { return isDuration ? 0.0L : rate * 0.001L * beats.dOffsetMs; }

  /// Beats from bar 1 beat 1 to the position that a text names.
  long double BeatsOf(const std::string& inText) const {
    const std::size_t colon = inText.find(':'), dot = inText.find('.');
    auto count = static_cast<long double>((LeadingInteger(inText) - First()) * beats.iBeatsPerBar);
    if (colon != inText.npos) count += LeadingInteger(inText.substr(colon + 1)) - First();
    if (dot == inText.npos) return count;
    if (IsDecimal()) return count + std::strtold(inText.c_str() + dot, nullptr);
    const auto ticks = static_cast<long double>(LeadingInteger(inText.substr(dot + 1)));
    return count + ticks / beats.iTicksPerBeat;
  }

  double rate;  // samples per second
  BeatInfo beats;
  bool isDuration;
};

void ReadMusicalTime(DrawnArguments& ioArgs) {
  const Meter meter(ioArgs);
  const UTF16String text = ioArgs.Text(test::kMusicalForms);
  const std::int64_t samples =
      utility::ConvertBarsAndBeatsToSamples(text, meter.rate, meter.beats, meter.isDuration);
  const long double beats = meter.BeatsOf(Bytes(text));
  const long double position = beats * meter.SamplesPerBeat();
  // Whole beats are counted in 32 bits.
  if (!meter.IsUsual() || !(std::fabs(beats) < 1e9L) || !(std::fabs(position) < 1e17L)) return;
  RequireNear(samples, position + meter.Offset(),
              (meter.isDuration ? 0.5L : 1.0L) + 1e-6L + kRelativeError * std::fabs(position));
}

void WriteMusicalTime(DrawnArguments& ioArgs) {
  const Meter meter(ioArgs);
  const double samples = ioArgs.Flag() ? static_cast<double>(ioArgs.Integer(64)) : ioArgs.Double();
  const std::string text = Written([&](UTF16String& written) {
    utility::ConvertSamplesToBarsAndBeats(written, samples, meter.rate, meter.beats,
                                          meter.isDuration, 3);
  });
  const long double unit = meter.SamplesPerBeat(), position = samples - meter.Offset();
  if (!meter.IsUsual() || !(std::fabs(position / unit) < 1e9L)) return;

  const std::int64_t beat = LeadingInteger(text.substr(text.find(':') + 1)) - meter.First();
  Require(beat >= 0 && beat < meter.beats.iBeatsPerBar, text, "a beat of the bar");
  const std::int64_t tick = LeadingInteger(text.substr(text.find('.') + 1));
  Require(tick < (meter.IsDecimal() ? 1000 : meter.beats.iTicksPerBeat), text, "part of a beat");
  // Thousandths of a tick, rounded, or of a beat, truncated from half of one lower.
  const long double thousandth = unit / std::abs(meter.beats.iTicksPerBeat) / 1000;
  const std::int64_t more =
      meter.IsDecimal() ? 1 : LeadingInteger(text.substr(text.rfind('.') + 1));
  RequireNear(meter.BeatsOf(text) * unit + thousandth * more, position,
              thousandth * 0.500001L + (meter.isDuration ? 0.0L : 0.5L) +
                  kRelativeError * std::max(std::fabs(position), unit));
}

/// Every exported function with every argument: nothing is compared, but nothing may break.
void CallAny(DrawnArguments& ioArgs) {
  const auto& calls = test::ExportedCalls();
  const auto& call = calls[ioArgs.Below(calls.size())];
  ioArgs.oldText.assign(ioArgs.Below(32), u'?');
  call.Results(std::move(ioArgs));
}

void Check(DrawnArguments inArguments) {
  constexpr void (*kDirections[])(DrawnArguments&) = {
      &WriteTimecode, &WriteClock, &ReadTimecode, &ReadMusicalTime, &WriteMusicalTime, &CallAny};
  plinth::debug::SetAssertDialogHandler([](bool&, const char*, const unsigned char*, const char*,
                                           int, const char*, bool) { return false; });
  sArguments.clear();
  inArguments.trace = &sArguments;
  kDirections[inArguments.Below(std::size(kDirections))](inArguments);
}

}  // namespace
}  // namespace mezzo::fuzz

/// Called by the fuzzing engine. A byte below 0x80 is a number to draw from; another one stands
/// before eight bytes of it. Behind the last there are zeros.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inBytes, std::size_t inCount) {
  const auto next = [&] { return inCount == 0 ? std::uint8_t{0} : (--inCount, *inBytes++); };
  const auto bits = [&] {
    std::uint64_t value = next();
    if (value < 0x80) return value;
    for (int byte = 0; byte < 8; ++byte) value = value << 8 | next();
    return value;
  };
  mezzo::fuzz::Check({bits, bits()});
  return 0;
}

#ifdef MEZZO_REPLAYS
/// Stands in for the fuzzing engine: CORPUS-DIRECTORY COUNT runs the files and as many seeds.
int main(int argc, char** argv) {
  if (argc != 3) return 2;
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++files;
  }
  const std::uint64_t count = std::strtoull(argv[2], nullptr, 10);
  for (std::uint64_t seed = 0; seed < count; ++seed)
    mezzo::fuzz::Check(mezzo::test::DrawnArguments(seed));
  std::printf("%d files, %llu seeds\n", files, static_cast<unsigned long long>(count));
  return files == 0 ? 1 : 0;
}
#endif
