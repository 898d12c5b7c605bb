// The conversions against slow references: labels counted minute by minute, the grammar followed
// step by step in copies of the text, exact positions in extended precision. The first byte chooses
// a direction.

#include "../tests/support/Text.h"
#include "FuzzArguments.h"

#include <plinth/debug/AssertDialog.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <vector>

namespace mezzo::fuzz {
namespace {

using utility::BeatInfo;

constexpr std::int64_t kLargestInt = std::numeric_limits<std::int32_t>::max();

/// Ends the process when a result is not what the reference says.
void Require(bool inHolds, const std::string& inActual, const std::string& inExpected) {
  if (inHolds) return;
  std::fprintf(stderr, "result %s, reference %s\n", inActual.c_str(), inExpected.c_str());
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

std::string Padded(std::int64_t inValue, int inWidth) {
  const std::string digits = std::to_string(inValue);
  return std::string(
             static_cast<std::size_t>(std::max(0, inWidth - static_cast<int>(digits.size()))),
             '0') +
         digits;
}

// -------------------------------------------------------------------------------- Writing timecode

std::string DropFrameLabel(std::int64_t inFrames, std::int64_t inFps) {
  std::int64_t minute = 0;
  std::int64_t frame = inFrames;
  const auto dropped = [&] { return minute % 10 == 0 ? 0 : inFps / 15; };
  for (; frame >= 60 * inFps - dropped(); ++minute) frame -= 60 * inFps - dropped();
  frame += dropped();
  return Padded(minute / 60, 2) + ';' + Padded(minute % 60, 2) + ';' + Padded(frame / inFps, 2) +
         ';' + Padded(frame % inFps, 2);
}

struct Display {
  bool dropFrame, pulldown, framesOnly, noFrames, trimLeadingZeros, showSubframes, noHours;
};

std::string FieldLabel(std::int64_t inFrames, std::int64_t inFps, std::int64_t inHundredths,
                       const Display& inDisplay) {
  const std::int64_t seconds = inFrames / inFps;
  const std::int64_t minutes = seconds / 60;
  const int framesWidth = inFps <= 10 ? 1 : inFps <= 100 ? 2 : inFps <= 1000 ? 3 : 4;
  std::vector<std::pair<std::int64_t, int>> fields{
      {minutes / 60, 2}, {minutes % 60, 2}, {seconds % 60, 2}, {inFrames % inFps, framesWidth}};
  if (inDisplay.noHours) fields.erase(fields.begin()), fields[0].first = minutes;
  if (inDisplay.noFrames) fields.pop_back();
  if (inDisplay.trimLeadingZeros) {
    const std::size_t all = fields.size();
    while (fields.size() > 1 && fields[0].first == 0) fields.erase(fields.begin());
    const bool startsWithHours = fields.size() == all && !inDisplay.noHours;
    const bool isSecondsAlone = fields.size() == 1 && inDisplay.noFrames;
    if (!startsWithHours && !isSecondsAlone) fields[0].second = 1;
  }
  std::string text;
  for (const auto& [value, width] : fields)
    text += (text.empty() ? "" : ":") + Padded(value, width);
  if (inDisplay.showSubframes && !inDisplay.noFrames) text += '.' + Padded(inHundredths, 2);
  return text;
}

void WriteTimecode(FuzzArguments& ioArgs) {
  const std::int64_t samples = ioArgs.Int64() >> (ioArgs.Byte() % 64);
  const std::int32_t rate = ioArgs.SampleRate();
  const std::int32_t fps = ioArgs.FrameRate();
  const auto flag = [&] { return ioArgs.Flag(); };
  const Display d{flag(), flag(), flag(), flag(), flag(), flag(), flag()};
  const std::string actual = Written([&](UTF16String& text) {
    utility::ConvertSamplesToTimecode(text, samples, rate, fps, d.dropFrame, d.pulldown,
                                      d.framesOnly, d.noFrames, d.trimLeadingZeros, d.showSubframes,
                                      d.noHours);
  });
  // Within these, nothing needs more than 64 bits.
  if (rate < 1 || fps < 1 || fps > 2000 || samples != samples << 29 >> 29) return;
  if (d.dropFrame && (d.pulldown || (fps != 30 && fps != 60))) return;
  const bool isPulledDown = d.dropFrame || d.pulldown;
  const std::int64_t dividend = std::abs(samples) * fps * (isPulledDown ? 1000 : 1);
  const std::int64_t divisor = std::int64_t{rate} * (isPulledDown ? 1001 : 1);
  const std::int64_t frames = dividend / divisor;
  if (frames > kLargestInt) return;
  // At the pulled-down rate with dropped labels the count is made in double precision.
  if (d.framesOnly) return RequireNear(std::stoll(actual), frames, d.dropFrame ? 1 : 0);
  const std::int64_t hundredths = dividend % divisor * 100 / divisor;
  RequireEqual(actual,
               (samples < 0 ? "-" : "") + (d.dropFrame ? DropFrameLabel(frames, fps)
                                                       : FieldLabel(frames, fps, hundredths, d)));
}

// --------------------------------------------------------------------------- Writing other
// displays

void WriteNumbers(FuzzArguments& ioArgs) {
  const std::int64_t samples = ioArgs.Int64() >> (ioArgs.Byte() % 64);
  const std::int32_t rate = ioArgs.SampleRate();
  const bool wholeSeconds = ioArgs.Flag();
  const double tempo = ioArgs.Double({60.0, 120.0, 125.5});
  const auto inFormat = [&](utility::TimecodeFormat format) {
    return Written([&](UTF16String& text) {
      utility::ConvertSamplesToTimecode(text, samples, rate, format, 30, nullptr, false);
    });
  };
  const std::string beats = Written(
      [&](UTF16String& text) { utility::ConvertSamplesToBeats(text, samples, rate, tempo); });
  const std::string clock = Written([&](UTF16String& text) {
    utility::ConvertSamplesToDecimalTimecode(text, samples, rate, wholeSeconds);
  });
  RequireEqual(inFormat(utility::kTimecodeFormat_Samples), std::to_string(samples));
  if (rate < 1 || samples != samples << 16 >> 16) return;

  const long double exact =
      static_cast<long double>(samples) * static_cast<long double>(tempo) / (rate * 60.0L);
  if (tempo >= 0.0 && std::fabs(exact) < 1e9L) {
    RequireNear(std::strtold(beats.c_str(), nullptr), exact,
                0.0005L + 1e-15L * std::fabs(exact) + 1e-9L);
    Require(beats != "-0.000", beats, "0.000");
  }

  const double tenths = static_cast<double>(samples) * 10000.0 / rate + 0.5;
  char notation[32];
  std::snprintf(notation, sizeof notation, "%g", (tenths - std::fmod(tenths, 1.0)) * 0.1);
  RequireEqual(inFormat(utility::kTimecodeFormat_Milliseconds), notation);

  const std::int64_t seconds = std::abs(samples) / rate;
  const std::int64_t rest = std::abs(samples) % rate;
  if (seconds / 3600 > kLargestInt) return;
  const std::string sign = samples < 0 ? "-" : "";
  std::string expected =
      seconds < 3600 ? (sign.empty() ? "   " : "  -") + std::to_string(seconds / 60)
                     : sign + std::to_string(seconds / 3600) + ':' + Padded(seconds / 60 % 60, 2);
  expected += ':' + Padded(seconds % 60, 2);
  if (!wholeSeconds) {
    expected += '.' + (seconds >= 36000 ? Padded(rest * 100 / rate, 2)
                                        : Padded((rest * 1000 + 500) / rate, 3));
  }
  RequireEqual(clock, expected);
}

// -------------------------------------------------------------------------------- Reading timecode

struct ClockText {
  std::vector<std::int64_t> values{0, 0, 0, 0};  // the last four are hours to frames
  std::int64_t numerator = 0;
  std::int64_t denominator = 1;

  std::int64_t FromRight(std::size_t inPlace) const { return values[values.size() - 1 - inPlace]; }
};

std::int64_t Saturated(const UTF16String& inDigits) {
  const long double value = std::strtold(test::Shown(inDigits).c_str(), nullptr);
  return static_cast<std::int64_t>(std::min<long double>(value, kLargestInt));
}

ClockText Parse(UTF16String inRest) {
  static const UTF16String kDigits = u"0123456789";
  ClockText clock;
  std::size_t length = 0;
  const auto setFraction = [&](std::int64_t value) {
    clock.numerator = value;
    clock.denominator = Saturated(u'1' + UTF16String(std::min<std::size_t>(length, 10), u'0'));
  };
  for (int count = 0; count < 5; ++count) {
    const UTF16String separators = inRest.substr(0, inRest.find_first_of(kDigits));
    const bool isDotted = separators.find(u'.') != separators.npos;
    inRest.erase(0, separators.size());
    if (inRest.empty()) {
      if (!isDotted || count == 0) break;
      setFraction(clock.FromRight(0));
      clock.values.pop_back();
      break;
    }
    if (isDotted || count > 0) length = inRest.size();
    const UTF16String digits = inRest.substr(0, inRest.find_first_not_of(kDigits));
    inRest.erase(0, digits.size());
    if (isDotted) {
      setFraction(Saturated(digits));
      break;
    }
    clock.values.push_back(Saturated(digits));
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

void ReadTimecode(FuzzArguments& ioArgs) {
  const UTF16String text = ioArgs.Text({});
  const ClockText clock = Parse(text);
  const std::int32_t rate = ioArgs.SampleRate();
  const std::int32_t fps = ioArgs.FrameRate();
  const bool pulldown = ioArgs.Flag();
  const bool dropFrame = ioArgs.Flag();
  std::int64_t samples = 0;
  utility::ConvertTimecodeToSamples(samples, text, rate, fps, pulldown, dropFrame);
  if (text.empty()) return Require(samples == -1, std::to_string(samples), "-1");

  const bool isUsual = rate > 0 && fps > 0 && fps <= 2000 &&
                       (!dropFrame || fps == 30 || fps == 60) && clock.FromRight(3) <= 100 &&
                       clock.FromRight(2) <= 6000;
  if (isUsual) {
    const std::int64_t frames = CountFrames(clock, fps, dropFrame);
    const long double fractions =
        static_cast<long double>(clock.denominator) * frames + clock.numerator;
    const long double factor = (pulldown ? 1001.0L : 1.0L) * rate;
    // Further out the result comes from an estimate in double precision.
    if (frames <= kLargestInt && fractions * factor < 0x1p62L) {
      const std::int64_t divisor = clock.denominator * fps * (pulldown ? 1000 : 1);
      const auto dividend =
          static_cast<std::int64_t>(fractions) * static_cast<std::int64_t>(factor);
      const std::int64_t expected = dividend / divisor + (dividend % divisor > 0 ? 1 : 0);
      RequireEqual(std::to_string(samples), std::to_string(expected));
    }
  }

  utility::ConvertTimecodeToSamples(samples, text, utility::kTimecodeFormat_Decimal, rate, 30,
                                    nullptr, false);
  const auto seconds = static_cast<long double>(
      (clock.FromRight(2) * 60 + clock.FromRight(1)) * 60 + clock.FromRight(0));
  const long double exact =
      (seconds + static_cast<long double>(clock.numerator) / clock.denominator) * rate;
  if (rate >= 0 && exact <= 1e18L) RequireNear(samples, exact, 0.5L + 1e-9L + exact * 1e-15L);
}

// ------------------------------------------------------------------------------------ Musical time

/// Where a double-precision result may lie beside the exact one.
constexpr long double kRelativeError = 4e-15L;

struct Meter {
  double rate;  // samples per second
  BeatInfo beats;
  bool isDuration;

  bool IsUsual() const {
    const auto isWithin = [](double value, double least, double most) {
      return value >= least && value <= most;
    };
    return isWithin(rate, 1.0, 1e7) && isWithin(beats.dTempo, 0.1, 1e4) &&
           isWithin(beats.iBeatsPerBar, 1, 1000) && isWithin(beats.iBeatUnit, 1, 128) &&
           isWithin(beats.dOffsetMs, -1e9, 1e9) &&
           (beats.iTicksPerBeat == -1 || isWithin(beats.iTicksPerBeat, 1, 10000));
  }

  long double SamplesPerBeat() const {
    return static_cast<long double>(rate) * 240.0L /
           (static_cast<long double>(beats.dTempo) * beats.iBeatUnit);
  }

  /// Rounded by the library itself: half a sample more or less does not matter here.
  long double Offset() const {
    return isDuration
               ? 0.0L
               : static_cast<long double>(rate) * static_cast<long double>(beats.dOffsetMs) / 1000;
  }
};

/// The signed integer at the start of a text, saturated; 0 for none.
std::int64_t LeadingInteger(const std::string& inText) {
  std::string number = inText.substr(std::min(inText.find_first_not_of(" \t"), inText.size()));
  const bool isSigned = !number.empty() && (number[0] == '-' || number[0] == '+');
  number.resize(std::min(number.find_first_not_of("0123456789", isSigned ? 1 : 0), number.size()));
  const long double value = std::strtold(number.c_str(), nullptr);
  return static_cast<std::int64_t>(std::clamp<long double>(value, -kLargestInt - 1, kLargestInt));
}

void ReadMusicalTime(FuzzArguments& ioArgs) {
  const Meter meter{ioArgs.Double({44100.0, 48000.0, 88288.2}), ioArgs.Beats(), ioArgs.Flag()};
  const UTF16String typed = ioArgs.Text({});
  const std::int64_t samples =
      utility::ConvertBarsAndBeatsToSamples(typed, meter.rate, meter.beats, meter.isDuration);
  std::string text;
  for (const char16_t unit : typed) text += unit < 0x80 && unit > 0 ? static_cast<char>(unit) : 'x';
  const std::int64_t first = meter.isDuration ? 0 : 1;
  const std::size_t colon = text.find(':');
  const std::size_t dot = text.find('.');
  const std::int64_t beat = colon == text.npos ? 0 : LeadingInteger(text.substr(colon + 1)) - first;
  const std::int64_t whole = meter.beats.iBeatsPerBar * (LeadingInteger(text) - first) + beat;
  long double part = 0.0L;
  if (dot != text.npos) {
    part = meter.beats.iTicksPerBeat == -1
               ? std::strtold(text.c_str() + dot, nullptr)
               : static_cast<long double>(LeadingInteger(text.substr(dot + 1))) /
                     meter.beats.iTicksPerBeat;
  }
  const long double position = (static_cast<long double>(whole) + part) * meter.SamplesPerBeat();
  if (!meter.IsUsual() || std::abs(whole) > kLargestInt || !(std::fabs(part) < 1e9L) ||
      !(std::fabs(position) < 1e17L))
    return;
  RequireNear(samples, position + meter.Offset(),
              (meter.isDuration ? 0.5L : 1.0L) + 1e-6L + kRelativeError * std::fabs(position));
}

void WriteMusicalTime(FuzzArguments& ioArgs) {
  const Meter meter{ioArgs.Double({44100.0, 48000.0, 88288.2}), ioArgs.Beats(), ioArgs.Flag()};
  const double samples =
      ioArgs.Flag() ? static_cast<double>(ioArgs.Int64() >> ioArgs.Byte() % 64) : ioArgs.Double({});
  const std::string text = Written([&](UTF16String& written) {
    utility::ConvertSamplesToBarsAndBeats(written, samples, meter.rate, meter.beats,
                                          meter.isDuration, 3);
  });
  const long double beats =
      (static_cast<long double>(samples) - meter.Offset()) / meter.SamplesPerBeat();
  if (!meter.IsUsual() || !(std::fabs(beats) < 1e9L)) return;

  long long bar, beat;
  int tick, thousandths;
  Require(std::sscanf(text.c_str(), "%lld:%lld.%d.%d", &bar, &beat, &tick, &thousandths) == 4, text,
          "four numbers");
  const int first = meter.isDuration ? 0 : 1;
  const bool isDecimal = meter.beats.iTicksPerBeat == -1;
  const long double units = isDecimal ? 1000.0L : meter.beats.iTicksPerBeat * 1000.0L;
  const auto shownBeats =
      static_cast<long double>((bar - first) * meter.beats.iBeatsPerBar + beat - first);
  const long double shown = shownBeats * units + (isDecimal ? tick : tick * 1000 + thousandths);
  // The offset is rounded to a sample, and the decimal form is truncated from half a unit lower.
  const long double offsetError = meter.isDuration ? 0.0L : 0.5L / meter.SamplesPerBeat() * units;
  const long double exact = beats * units - (isDecimal ? 1.0L : 0.0L);
  const long double doubleError = kRelativeError * std::max(std::fabs(exact), units);
  RequireNear(shown, exact, 0.5L + 1e-6L + offsetError + doubleError);
  Require(beat >= first && beat - first < meter.beats.iBeatsPerBar, text, "a beat of the bar");
  Require(isDecimal || tick < meter.beats.iTicksPerBeat, text, "a tick of the beat");
}

/// Every exported function with every argument: nothing is compared, but nothing may break.
void CallAny(FuzzArguments& ioArgs) {
  const auto calls = test::ExportedCalls();
  const auto& call = calls[ioArgs.Byte() % calls.size()];
  ioArgs.oldText.assign(ioArgs.Byte() % 32, u'?');
  call.call(ioArgs);
}

constexpr void (*kTargets[])(FuzzArguments&) = {&WriteTimecode,   &WriteNumbers,     &ReadTimecode,
                                                &ReadMusicalTime, &WriteMusicalTime, &CallAny};

}  // namespace
}  // namespace mezzo::fuzz

/// Called by the fuzzing engine, or by what stands in for it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inBytes, std::size_t inCount) {
  using namespace mezzo::fuzz;
  plinth::debug::SetAssertDialogHandler([](bool&, const char*, const unsigned char*, const char*,
                                           int, const char*, bool) { return false; });
  FuzzArguments arguments(inBytes, inCount);
  kTargets[arguments.Byte() % std::size(kTargets)](arguments);
  return 0;
}
