// Every conversion beside what a competent engineer would write instead: integer arithmetic,
// `snprintf` and widening, or narrowing and `sscanf`.

#include "Floor.h"
#include "Rows.h"
#include <Utility/TimeConversionUtils.h>

#include <plinth/string/UTF16String.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace mezzo::bench {
namespace {

using namespace mezzo::utility;
using plinth::UTF16String;

constexpr std::int32_t kRate = 48000;
constexpr std::int32_t kFps = 30;
constexpr std::size_t kPositions = 1024;  // a power of two
const BeatInfo kBeats{960, 120.0, 4, 4, 0.0};

/// Positions spread over a stretch of the timeline, in order, as a ruler or a marker list has them.
std::vector<std::int64_t> Positions(std::int64_t inFrom, std::int64_t inTo) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::int64_t> distribution(inFrom, inTo);
  std::vector<std::int64_t> positions(kPositions);
  for (auto& position : positions) position = distribution(random);
  std::sort(positions.begin(), positions.end());
  return positions;
}

constexpr std::int64_t kHour = std::int64_t{3600} * kRate;
const std::vector<std::int64_t> kDay = Positions(0, 24 * kHour);

std::int64_t Position(std::size_t inNumber) {
  return kDay[inNumber % kPositions];
}

/// Full, since a copy has room for its text only.
UTF16String StringWithRoom() {
  return UTF16String(64, u' ');
}

// -------------------------------------------------------------------------------------- Displays

/// Formats into narrow text and widens it into the string.
template <class... Values>
void Print(UTF16String& outString, const char* inFormat, Values... inValues) {
  char narrow[64];
  const int length = std::snprintf(narrow, sizeof narrow, inFormat, inValues...);
  outString.resize(static_cast<std::size_t>(length));
  for (std::size_t unit = 0; unit < outString.size(); ++unit) {
    outString[unit] = static_cast<unsigned char>(narrow[unit]);
  }
}

struct Split {
  int hours, minutes, seconds, frames;

  Split(std::int64_t inLabel, std::int64_t inFps)
      : hours(static_cast<int>(inLabel / (3600 * inFps))),
        minutes(static_cast<int>(inLabel / (60 * inFps) % 60)),
        seconds(static_cast<int>(inLabel / inFps % 60)),
        frames(static_cast<int>(inLabel % inFps)) {}
};

void PrintSMPTE(UTF16String& outString, std::int64_t inSamples) {
  const Split split(inSamples * kFps / kRate, kFps);
  Print(outString, "%02d:%02d:%02d:%02d", split.hours, split.minutes, split.seconds, split.frames);
}

void PrintDropFrame(UTF16String& outString, std::int64_t inSamples) {
  const std::int64_t count = inSamples * kFps * 1000 / (std::int64_t{1001} * kRate);
  const std::int64_t rest = count % 17982;
  const std::int64_t dropped =
      18 * (count / 17982) + (rest < 1800 ? 0 : 2 + (rest - 1800) / 1798 * 2);
  const Split split(count + dropped, kFps);
  Print(outString, "%02d;%02d;%02d;%02d", split.hours, split.minutes, split.seconds, split.frames);
}

void StreamSMPTE(UTF16String& outString, std::int64_t inSamples) {
  const Split split(inSamples * kFps / kRate, kFps);
  std::ostringstream stream;
  stream.fill('0');
  for (const int field : {split.hours, split.minutes, split.seconds}) {
    stream.width(2);
    stream << field << ':';
  }
  stream.width(2);
  stream << split.frames;
  const std::string narrow = stream.str();
  outString.assign(narrow.begin(), narrow.end());
}

void PrintDecimal(UTF16String& outString, std::int64_t inSamples) {
  const std::int64_t seconds = inSamples / kRate;
  const int past = static_cast<int>(inSamples % kRate);
  const int h = static_cast<int>(seconds / 3600);
  const int m = static_cast<int>(seconds / 60 % 60);
  const int s = static_cast<int>(seconds % 60);
  if (h >= 10) return Print(outString, "%d:%02d:%02d.%02d", h, m, s, past * 100 / kRate);
  const int milliseconds = static_cast<int>((past * 1000.0 + 500.0) / kRate);
  if (h >= 1) return Print(outString, "%d:%02d:%02d.%03d", h, m, s, milliseconds);
  Print(outString, "%3s%d:%02d.%03d", "", m, s, milliseconds);
}

void PrintBarsAndBeats(UTF16String& outString, std::int64_t inSamples) {
  const double beats = static_cast<double>(inSamples) * kBeats.dTempo / (60.0 * kRate) +
                       0.0005 / kBeats.iTicksPerBeat;
  const int whole = static_cast<int>(beats);
  const int tick = static_cast<int>((beats - whole) * kBeats.iTicksPerBeat);
  Print(outString, "%d:%d.%03d", whole / kBeats.iBeatsPerBar + 1, whole % kBeats.iBeatsPerBar + 1,
        tick);
}

void PrintBeats(UTF16String& outString, std::int64_t inSamples) {
  Print(outString, "%.3f", static_cast<double>(inSamples) * kBeats.dTempo / (60.0 * kRate));
}

void PrintMilliseconds(UTF16String& outString, std::int64_t inSamples) {
  Print(outString, "%g", static_cast<double>(inSamples) * 1000.0 / kRate);
}

void PrintSamples(UTF16String& outString, std::int64_t inSamples) {
  Print(outString, "%lld", static_cast<long long>(inSamples));
}

void PrintFrames(UTF16String& outString, std::int64_t inSamples) {
  Print(outString, "%d", static_cast<int>(inSamples * kFps / kRate));
}

void PrintCompact(UTF16String& outString, std::int64_t inSamples) {
  const std::int64_t frames = inSamples * kFps;
  const Split s(frames / kRate, kFps);
  const int hundredths = static_cast<int>(frames * 100 / kRate % 100);
  if (s.hours != 0) {
    Print(outString, "%02d:%02d:%02d:%02d.%02d", s.hours, s.minutes, s.seconds, s.frames,
          hundredths);
  } else if (s.minutes != 0) {
    Print(outString, "%d:%02d:%02d.%02d", s.minutes, s.seconds, s.frames, hundredths);
  } else {
    Print(outString, "%d:%02d.%02d", s.seconds, s.frames, hundredths);
  }
}

using Display = void (*)(UTF16String&, std::int64_t);

template <class Call>
void AddDisplay(const std::string& inRow, const std::string& inVariant, Call inCall) {
  Add(inRow, inVariant, [inCall, text = StringWithRoom()](std::size_t number) mutable {
    inCall(text, Position(number));
    benchmark::DoNotOptimize(text.data());
  });
}

void AddFormat(const std::string& inRow, TimecodeFormat inFormat, Display inBaseline) {
  AddDisplay(inRow, kLibrary, [inFormat](UTF16String& text, std::int64_t position) {
    ConvertSamplesToTimecode(text, position, kRate, inFormat, kFps, &kBeats, false);
  });
  AddDisplay(inRow, "snprintf", inBaseline);
}

/// Keeps the compiler from making a kernel for the benchmarks' rates alone.
template <class Kernel>
Kernel General(Kernel inKernel) {
  benchmark::DoNotOptimize(inKernel);
  return inKernel;
}

template <class Kernel>
void AddWritingFloor(const std::string& inRow, Kernel inKernel) {
  Add(inRow, kFloor, [kernel = General(inKernel)](std::size_t number) {
    char16_t units[12];
    kernel(units, Position(number), kRate, kFps);
    benchmark::DoNotOptimize(units);
  });
}

// --------------------------------------------------------------------------------------- Reading

/// The labels of the positions in a format, as a person would have typed them.
std::vector<UTF16String> Labels(TimecodeFormat inFormat) {
  // Past 100 seconds the milliseconds show no tenths, later an exponent, as nobody types them.
  const bool isShort = inFormat == kTimecodeFormat_Milliseconds;
  std::vector<UTF16String> labels;
  for (const std::int64_t position : isShort ? Positions(0, 100 * kRate) : kDay) {
    labels.emplace_back();
    ConvertSamplesToTimecode(labels.back(), position, kRate, inFormat, kFps, &kBeats, false);
    const std::size_t text = labels.back().find_first_not_of(u' ');
    labels.back().erase(0, text);
  }
  return labels;
}

/// Narrows a text and scans it with `sscanf`.
template <class... Values>
void Scan(const UTF16String& inText, const char* inFormat, Values*... outValues) {
  char narrow[64];
  const std::size_t length = std::min(inText.size(), sizeof narrow - 1);
  for (std::size_t unit = 0; unit < length; ++unit) narrow[unit] = static_cast<char>(inText[unit]);
  narrow[length] = '\0';
  std::sscanf(narrow, inFormat, outValues...);
}

std::int64_t ScanSMPTE(const UTF16String& inText) {
  int h = 0, m = 0, s = 0, f = 0;
  Scan(inText, "%d:%d:%d:%d", &h, &m, &s, &f);
  const std::int64_t frames = ((h * 60 + m) * 60 + s) * kFps + f;
  return (frames * kRate + kFps - 1) / kFps;
}

std::int64_t ScanDropFrame(const UTF16String& inText) {
  int h = 0, m = 0, s = 0, f = 0;
  Scan(inText, "%d;%d;%d;%d", &h, &m, &s, &f);
  const int minutes = 60 * h + m;
  const std::int64_t frames =
      std::int64_t{60 * minutes + s} * kFps + f - 2 * (minutes - minutes / 10);
  return (frames * kRate * 1001 + kFps * 1000 - 1) / (kFps * 1000);
}

std::int64_t ScanCompact(const UTF16String& inText) {
  int h = 0, m = 0, s = 0;
  double f = 0;
  Scan(inText, "%d:%d:%d:%lf", &h, &m, &s, &f);
  return static_cast<std::int64_t>((((h * 60 + m) * 60 + s) * kFps + f) * kRate / kFps + 0.5);
}

std::int64_t ScanDecimal(const UTF16String& inText) {
  int h = 0, m = 0;
  double s = 0;
  Scan(inText, "%d:%d:%lf", &h, &m, &s);
  return static_cast<std::int64_t>(((h * 60 + m) * 60 + s) * kRate + 0.5);
}

template <int kSamplesPerUnit>
std::int64_t ScanNumber(const UTF16String& inText) {
  double value = 0;
  Scan(inText, "%lf", &value);
  return static_cast<std::int64_t>(value * kSamplesPerUnit + 0.5);
}

std::int64_t ScanSamples(const UTF16String& inText) {
  long long value = 0;
  Scan(inText, "%lld", &value);
  return value;
}

std::int64_t ScanBarsAndBeats(const UTF16String& inText) {
  int bar = 0, beat = 0, tick = 0;
  Scan(inText, "%d:%d.%d", &bar, &beat, &tick);
  const double beats = (bar - 1) * kBeats.iBeatsPerBar + (beat - 1) +
                       static_cast<double>(tick) / kBeats.iTicksPerBeat;
  return static_cast<std::int64_t>(beats * 60.0 * kRate / kBeats.dTempo + 0.5);
}

template <class Read>
void AddReading(const std::string& inRow, const std::string& inVariant,
                std::vector<UTF16String> inLabels, Read inRead) {
  Add(inRow, inVariant, [inRead, labels = std::move(inLabels)](std::size_t number) {
    benchmark::DoNotOptimize(inRead(labels[number % kPositions]));
  });
}

template <class Kernel>
void AddReadingFloor(const std::string& inRow, const std::vector<UTF16String>& inLabels,
                     Kernel inKernel) {
  AddReading(inRow, kFloor, inLabels, [kernel = General(inKernel)](const UTF16String& text) {
    return kernel(text.data(), kRate, kFps);
  });
}

void AddReadingFormat(const std::string& inRow, TimecodeFormat inFormat,
                      std::int64_t (*inBaseline)(const UTF16String&)) {
  AddReading(inRow, kLibrary, Labels(inFormat), [inFormat](const UTF16String& text) {
    BeatInfo beats = kBeats;
    std::int64_t samples = 0;
    ConvertTimecodeToSamples(samples, text, inFormat, kRate, kFps, &beats, false);
    return samples;
  });
  AddReading(inRow, "sscanf", Labels(inFormat), inBaseline);
}

std::int64_t ReadRate(const UTF16String& inText, bool inPulldown, bool inDropFrame) {
  std::int64_t samples = 0;
  ConvertTimecodeToSamples(samples, inText, kRate, kFps, inPulldown, inDropFrame);
  return samples;
}

void AddDisplays() {
  const std::string plain = "01 samples to SMPTE";
  AddDisplay(plain, kLibrary, [](UTF16String& text, std::int64_t position) {
    ConvertSamplesToTimecode(text, position, kRate, kFps, false, false, false, false, false, false,
                             false);
  });
  AddDisplay(plain, "snprintf", &PrintSMPTE);
  AddDisplay(plain, "ostringstream", &StreamSMPTE);
  AddWritingFloor(plain, &floor::WriteSMPTE);
  const std::string drop = "02 samples to drop-frame SMPTE";
  AddDisplay(drop, kLibrary, [](UTF16String& text, std::int64_t position) {
    ConvertSamplesToTimecode(text, position, kRate, kFps, true, false, false, false, false, false,
                             false);
  });
  AddDisplay(drop, "snprintf", &PrintDropFrame);
  AddWritingFloor(drop, &floor::WriteDropFrame);

  const std::string plainFormat = "03 samples to SMPTE by format";
  AddFormat(plainFormat, kTimecodeFormat_SMPTE, &PrintSMPTE);
  AddWritingFloor(plainFormat, &floor::WriteSMPTE);
  const std::string dropFormat = "04 samples to drop-frame SMPTE by format";
  AddFormat(dropFormat, kTimecodeFormat_SMPTEDropFrame, &PrintDropFrame);
  AddWritingFloor(dropFormat, &floor::WriteDropFrame);
  AddFormat("05 samples to compact SMPTE", kTimecodeFormat_CompactSubframes, &PrintCompact);
  AddFormat("06 samples to decimal clock", kTimecodeFormat_Decimal, &PrintDecimal);
  AddFormat("07 samples to bars and beats", kTimecodeFormat_BarsAndBeats, &PrintBarsAndBeats);
  AddFormat("08 samples to beats", kTimecodeFormat_Beats, &PrintBeats);
  AddFormat("09 samples to milliseconds", kTimecodeFormat_Milliseconds, &PrintMilliseconds);
  AddFormat("10 samples to samples text", kTimecodeFormat_Samples, &PrintSamples);
  AddFormat("11 samples to frames", kTimecodeFormat_Frames, &PrintFrames);
  AddFormat("12 samples to pulled-down frames", kTimecodeFormat_PulldownFrames, &PrintFrames);
}

void AddReadings() {
  const std::string plain = "20 SMPTE to samples";
  const auto plainLabels = Labels(kTimecodeFormat_SMPTE);
  AddReading(plain, kLibrary, plainLabels,
             [](const UTF16String& text) { return ReadRate(text, false, false); });
  AddReading(plain, "sscanf", plainLabels, &ScanSMPTE);
  AddReadingFloor(plain, plainLabels, &floor::ReadSMPTE);
  const std::string drop = "21 drop-frame SMPTE to samples";
  const auto dropLabels = Labels(kTimecodeFormat_SMPTEDropFrame);
  AddReading(drop, kLibrary, dropLabels,
             [](const UTF16String& text) { return ReadRate(text, true, true); });
  AddReading(drop, "sscanf", dropLabels, &ScanDropFrame);
  AddReadingFloor(drop, dropLabels, &floor::ReadDropFrame);

  AddReadingFormat("22 SMPTE to samples by format", kTimecodeFormat_SMPTE, &ScanSMPTE);
  AddReadingFormat("23 compact SMPTE to samples", kTimecodeFormat_CompactSubframes, &ScanCompact);
  AddReadingFormat("24 decimal clock to samples", kTimecodeFormat_Decimal, &ScanDecimal);
  AddReadingFormat("25 bars and beats to samples", kTimecodeFormat_BarsAndBeats, &ScanBarsAndBeats);
  AddReadingFormat("26 beats to samples", kTimecodeFormat_Beats, &ScanNumber<kRate / 2>);
  AddReadingFormat("27 milliseconds to samples", kTimecodeFormat_Milliseconds,
                   &ScanNumber<kRate / 1000>);
  AddReadingFormat("28 samples text to samples", kTimecodeFormat_Samples, &ScanSamples);
  AddReadingFormat("29 frames to samples", kTimecodeFormat_Frames, &ScanNumber<kRate / kFps>);
}

/// The cost of a display hardly depends on where the position lies.
void AddRange() {
  const struct {
    const char* row;
    std::vector<std::int64_t> positions;
  } stretches[] = {{"40 SMPTE display within the first second", Positions(0, kRate)},
                   {"41 SMPTE display past 100 hours", Positions(100 * kHour, 101 * kHour)}};
  for (const auto& stretch : stretches) {
    for (const bool dropFrame : {false, true}) {
      Add(stretch.row + std::string(dropFrame ? ", drop-frame" : ""), kLibrary,
          [dropFrame, positions = stretch.positions,
           text = StringWithRoom()](std::size_t number) mutable {
            ConvertSamplesToTimecode(text, positions[number % kPositions], kRate, kFps, dropFrame,
                                     false, false, false, false, false, false);
            benchmark::DoNotOptimize(text.data());
          });
    }
  }
}

/// The floors only measure what they compute rightly.
void CheckFloors() {
  UTF16String text;
  for (const std::int64_t position : kDay) {
    char16_t units[12];
    for (const std::int32_t fps : {30, 60}) {
      for (const bool drop : {false, true}) {
        ConvertSamplesToTimecode(text, position, kRate, fps, drop, false, false, false, false,
                                 false, false);
        (drop ? floor::WriteDropFrame : floor::WriteSMPTE)(units, position, kRate, fps);
        std::int64_t samples = 0;
        ConvertTimecodeToSamples(samples, text, kRate, fps, drop, drop);
        const auto read = (drop ? floor::ReadDropFrame : floor::ReadSMPTE)(units, kRate, fps);
        if (text != std::u16string_view(units, floor::kLabelUnits) || samples != read) {
          std::fprintf(stderr, "a floor is wrong at position %lld\n",
                       static_cast<long long>(position));
          std::exit(EXIT_FAILURE);
        }
      }
    }
  }
}

}  // namespace

void AddTimeConversions() {
  CheckFloors();
  AddDisplays();
  AddReadings();
  AddRange();
}

}  // namespace mezzo::bench
