// Benchmarks of writing every display, and of reading the texts. The baselines format with
// `snprintf` and widen the text, or narrow it and parse it with `sscanf`. SMPTE also has a baseline
// with `push_back`.
//
// The cost of writing may depend on the caller's string, so there are three states: "same", one
// string with texts of nearly always the same length; "changing", one string with changing lengths
// and signs; "fresh", a new string for each text, including any allocation.

#include "../tests/support/Heap.h"
#include <Utility/TimeConversionUtils.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace mezzo::utility {
namespace {

using plinth::UTF16String;
using Positions = std::vector<std::int64_t>;

constexpr std::int32_t kRate = 48000;
constexpr std::int32_t kFps = 30;
constexpr std::int64_t kHour = std::int64_t{3600} * kRate;
constexpr std::size_t kPositionCount = 4096;  // a power of two
BeatInfo sBeats{960, 120.0, 4, 4, 0.0};

/// Makes random positions in ascending order, like those of a ruler or a marker list.
Positions MakePositions(std::int64_t inFrom, std::int64_t inTo) {
  std::mt19937_64 random(1);
  Positions positions(kPositionCount);
  for (auto& position : positions)
    position =
        inFrom + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(inTo - inFrom));
  std::sort(positions.begin(), positions.end());
  return positions;
}

const Positions sDay = MakePositions(0, 24 * kHour);

const Positions sChanging = [] {
  Positions positions = sDay;
  for (std::size_t place = 1; place < kPositionCount; place += 2) positions[place] /= -50;
  return positions;
}();

// ----------------------------------------------------------------------------------------- Writing

using Writer = void (*)(UTF16String&, std::int64_t);

template <TimecodeFormat kFormat>
void Write(UTF16String& outString, std::int64_t inSamples) {
  ConvertSamplesToTimecode(outString, inSamples, kRate, kFormat, kFps, &sBeats, false);
}

/// Formats a narrow text and widens it.
template <class... Values>
void Print(UTF16String& outString, const char* inFormat, Values... inValues) {
  std::array<char, 64> narrow;
  const int length = std::snprintf(narrow.data(), narrow.size(), inFormat, inValues...);
  outString.resize(static_cast<std::size_t>(length));
  std::copy_n(narrow.data(), length, outString.data());
}

struct Split {
  const char* sign;
  int hours, minutes, seconds, frames;

  Split(std::int64_t inSamples, std::int64_t inLabelNumber)
      : sign(inSamples < 0 ? "-" : ""),
        hours(static_cast<int>(inLabelNumber / (3600 * kFps))),
        minutes(static_cast<int>(inLabelNumber / (60 * kFps) % 60)),
        seconds(static_cast<int>(inLabelNumber / kFps % 60)),
        frames(static_cast<int>(inLabelNumber % kFps)) {}
};

Split SplitSMPTE(std::int64_t inSamples) {
  return {inSamples, std::abs(inSamples) * kFps / kRate};
}

Split SplitPulledDown(std::int64_t inSamples, bool inDropsLabels) {
  const std::int64_t count = std::abs(inSamples) * kFps * 1000 / (std::int64_t{1001} * kRate);
  const std::int64_t rest = count % 17982;
  const std::int64_t dropped =
      18 * (count / 17982) + (rest < 1800 ? 0 : 2 + (rest - 1800) / 1798 * 2);
  return {inSamples, inDropsLabels ? count + dropped : count};
}

void PrintLabel(UTF16String& outString, const Split& inSplit) {
  Print(outString, "%s%02d:%02d:%02d:%02d", inSplit.sign, inSplit.hours, inSplit.minutes,
        inSplit.seconds, inSplit.frames);
}

void PrintCompact(UTF16String& outString, std::int64_t inSamples) {
  const Split s = SplitSMPTE(inSamples);
  const int hundredths = static_cast<int>(std::abs(inSamples) * kFps * 100 / kRate % 100);
  if (s.hours != 0) {
    Print(outString, "%s%02d:%02d:%02d:%02d.%02d", s.sign, s.hours, s.minutes, s.seconds, s.frames,
          hundredths);
  } else if (s.minutes != 0) {
    Print(outString, "%s%d:%02d:%02d.%02d", s.sign, s.minutes, s.seconds, s.frames, hundredths);
  } else {
    Print(outString, "%s%d:%02d.%02d", s.sign, s.seconds, s.frames, hundredths);
  }
}

void PrintClock(UTF16String& outString, std::int64_t inSamples) {
  const char* const sign = inSamples < 0 ? "-" : "";
  const std::int64_t magnitude = std::abs(inSamples);
  const std::int64_t seconds = magnitude / kRate;
  const int past = static_cast<int>(magnitude % kRate);
  const int h = static_cast<int>(seconds / 3600);
  const int m = static_cast<int>(seconds / 60 % 60);
  const int s = static_cast<int>(seconds % 60);
  if (h >= 10) return Print(outString, "%s%d:%02d:%02d.%02d", sign, h, m, s, past * 100 / kRate);
  const int milliseconds = static_cast<int>((past * 1000.0 + 500.0) / kRate);
  if (h >= 1) return Print(outString, "%s%d:%02d:%02d.%03d", sign, h, m, s, milliseconds);
  Print(outString, "%3s%d:%02d.%03d", sign, m, s, milliseconds);
}

void PrintBarsAndBeats(UTF16String& outString, std::int64_t inSamples) {
  const double beats = static_cast<double>(inSamples) * sBeats.dTempo / (60.0 * kRate) +
                       0.0005 / sBeats.iTicksPerBeat;
  const int whole = static_cast<int>(std::floor(beats));
  const int tick = static_cast<int>((beats - whole) * sBeats.iTicksPerBeat);
  const int bar = whole >= 0 ? whole / 4 : (whole + 1) / 4 - 1;
  Print(outString, "%d:%d.%03d", bar + 1, whole - bar * 4 + 1, tick);
}

void PushDigits(UTF16String& outString, int inValue) {
  outString.push_back(static_cast<char16_t>(u'0' + inValue / 10));
  outString.push_back(static_cast<char16_t>(u'0' + inValue % 10));
}

void PushSMPTE(UTF16String& outString, std::int64_t inSamples) {
  const Split split = SplitSMPTE(inSamples);
  outString.clear();
  if (*split.sign != '\0') outString.push_back(u'-');
  PushDigits(outString, split.hours);
  for (const int field : {split.minutes, split.seconds, split.frames}) {
    outString.push_back(u':');
    PushDigits(outString, field);
  }
}

struct DisplayRow {
  const char* name;
  Writer library;
  Writer snprintf;
  Writer byHand = nullptr;
};

const DisplayRow sDisplays[] = {
    {"SMPTE", &Write<kTimecodeFormat_SMPTE>,
     [](UTF16String& outText, std::int64_t inSamples) {
       PrintLabel(outText, SplitSMPTE(inSamples));
     },
     &PushSMPTE},
    {"pulled-down", &Write<kTimecodeFormat_SMPTEPulldown>,
     [](UTF16String& outText, std::int64_t inSamples) {
       PrintLabel(outText, SplitPulledDown(inSamples, false));
     }},
    {"drop-frame", &Write<kTimecodeFormat_SMPTEDropFrame>,
     [](UTF16String& outText, std::int64_t inSamples) {
       PrintLabel(outText, SplitPulledDown(inSamples, true));
     }},
    {"compact", &Write<kTimecodeFormat_CompactSubframes>, &PrintCompact},
    {"clock", &Write<kTimecodeFormat_Decimal>, &PrintClock},
    {"bars-beats", &Write<kTimecodeFormat_BarsAndBeats>, &PrintBarsAndBeats},
    {"beats", &Write<kTimecodeFormat_Beats>,
     [](UTF16String& outText, std::int64_t inSamples) {
       Print(outText, "%.3f", static_cast<double>(inSamples) * sBeats.dTempo / (60.0 * kRate));
     }},
    {"milliseconds", &Write<kTimecodeFormat_Milliseconds>,
     [](UTF16String& outText, std::int64_t inSamples) {
       Print(outText, "%g", static_cast<double>(inSamples) * 1000.0 / kRate);
     }},
    {"samples", &Write<kTimecodeFormat_Samples>,
     [](UTF16String& outText, std::int64_t inSamples) {
       Print(outText, "%lld", static_cast<long long>(inSamples));
     }},
    {"frames", &Write<kTimecodeFormat_Frames>,
     [](UTF16String& outText, std::int64_t inSamples) {
       Print(outText, "%d", static_cast<int>(std::abs(inSamples) * kFps / kRate));
     }},
    {"pulled-down-frames", &Write<kTimecodeFormat_PulldownFrames>,
     [](UTF16String& outText, std::int64_t inSamples) {
       Print(outText, "%d", static_cast<int>(std::abs(inSamples) * kFps * 1000 / (1001LL * kRate)));
     }},
};

void WriteIntoOneString(benchmark::State& ioState, Writer inWriter, const Positions& inPositions) {
  UTF16String text;
  text.reserve(64);
  std::size_t place = 0;
  const auto before = test::heap::GetAllocationCount();
  for (auto _ : ioState) {
    inWriter(text, inPositions[place++ % kPositionCount]);
    benchmark::DoNotOptimize(text.data());
    benchmark::ClobberMemory();
  }
  if (test::heap::GetAllocationCount() != before) ioState.SkipWithError("the conversion allocates");
}

void WriteIntoFreshStrings(benchmark::State& ioState, Writer inWriter) {
  std::size_t place = 0;
  for (auto _ : ioState) {
    UTF16String text;
    inWriter(text, sDay[place++ % kPositionCount]);
    benchmark::DoNotOptimize(text.data());
  }
}

void RegisterDisplay(const char* inName, const std::string& inVariant, Writer inWriter) {
  if (inWriter == nullptr) return;
  const auto name = [&](const char* inState) {
    return std::string(inName) + '/' + inState + inVariant;
  };
  benchmark::RegisterBenchmark(name("same").c_str(), &WriteIntoOneString, inWriter, sDay);
  benchmark::RegisterBenchmark(name("changing").c_str(), &WriteIntoOneString, inWriter, sChanging);
  benchmark::RegisterBenchmark(name("fresh").c_str(), &WriteIntoFreshStrings, inWriter);
}

// ----------------------------------------------------------------------------------------- Reading

using Reader = std::int64_t (*)(const UTF16String&);

template <TimecodeFormat kFormat>
std::int64_t Read(const UTF16String& inText) {
  std::int64_t samples = 0;
  ConvertTimecodeToSamples(samples, inText, kFormat, kRate, kFps, &sBeats, false);
  return samples;
}

/// Narrows a text and parses it with `sscanf`.
template <class... Values>
void Scan(const UTF16String& inText, const char* inFormat, Values*... outValues) {
  std::array<char, 64> narrow{};
  const std::size_t length = std::min(inText.size(), narrow.size() - 1);
  for (std::size_t unit = 0; unit < length; ++unit) narrow[unit] = static_cast<char>(inText[unit]);
  std::sscanf(narrow.data(), inFormat, outValues...);
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

std::int64_t ScanClock(const UTF16String& inText) {
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

std::int64_t ScanBarsAndBeats(const UTF16String& inText) {
  int bar = 0, beat = 0, tick = 0;
  Scan(inText, "%d:%d.%d", &bar, &beat, &tick);
  const double beats = (bar - 1) * sBeats.iBeatsPerBar + (beat - 1) +
                       static_cast<double>(tick) / sBeats.iTicksPerBeat;
  return static_cast<std::int64_t>(beats * 60.0 * kRate / sBeats.dTempo + 0.5);
}

struct ReadingRow {
  const char* name;
  Writer writer;  ///< writes the texts to read
  Reader library;
  Reader sscanf;
};

const ReadingRow sReadings[] = {
    {"SMPTE", &Write<kTimecodeFormat_SMPTE>, &Read<kTimecodeFormat_SMPTE>, &ScanSMPTE},
    {"drop-frame", &Write<kTimecodeFormat_SMPTEDropFrame>, &Read<kTimecodeFormat_SMPTEDropFrame>,
     &ScanDropFrame},
    {"compact", &Write<kTimecodeFormat_CompactSubframes>, &Read<kTimecodeFormat_CompactSubframes>,
     &ScanCompact},
    {"clock", &Write<kTimecodeFormat_Decimal>, &Read<kTimecodeFormat_Decimal>, &ScanClock},
    {"bars-beats", &Write<kTimecodeFormat_BarsAndBeats>, &Read<kTimecodeFormat_BarsAndBeats>,
     &ScanBarsAndBeats},
    {"beats", &Write<kTimecodeFormat_Beats>, &Read<kTimecodeFormat_Beats>, &ScanNumber<kRate / 2>},
    // Within 100 seconds, where six digits still show tenths of a millisecond.
    {"milliseconds",
     [](UTF16String& outText, std::int64_t inSamples) {
       Write<kTimecodeFormat_Milliseconds>(outText, inSamples % (100 * kRate));
     },
     &Read<kTimecodeFormat_Milliseconds>, &ScanNumber<kRate / 1000>},
    {"samples", &Write<kTimecodeFormat_Samples>, &Read<kTimecodeFormat_Samples>, &ScanNumber<1>},
    {"frames", &Write<kTimecodeFormat_Frames>, &Read<kTimecodeFormat_Frames>,
     &ScanNumber<kRate / kFps>},
};

void ReadTexts(benchmark::State& ioState, Reader inReader, Writer inWriter) {
  std::vector<UTF16String> texts(kPositionCount);
  for (std::size_t place = 0; place < kPositionCount; ++place) inWriter(texts[place], sDay[place]);
  std::size_t place = 0;
  for (auto _ : ioState) benchmark::DoNotOptimize(inReader(texts[place++ % kPositionCount]));
}

// -------------------------------------------------------------------------------------------------

[[maybe_unused]] const bool sIsRegistered = [] {
  for (const DisplayRow& row : sDisplays) {
    RegisterDisplay(row.name, "", row.library);
    RegisterDisplay(row.name, "/snprintf", row.snprintf);
    RegisterDisplay(row.name, "/push_back", row.byHand);
  }
  for (const ReadingRow& row : sReadings) {
    const std::string name = row.name + std::string("/read");
    benchmark::RegisterBenchmark(name.c_str(), &ReadTexts, row.library, row.writer);
    benchmark::RegisterBenchmark((name + "/sscanf").c_str(), &ReadTexts, row.sscanf, row.writer);
  }
  // Late positions need divisions of 64 bits, which are slower.
  const Positions stretches[] = {MakePositions(0, kRate), MakePositions(100 * kHour, 101 * kHour)};
  for (const DisplayRow& row : {sDisplays[0], sDisplays[2]}) {
    const std::string name = row.name;
    benchmark::RegisterBenchmark((name + "/first second").c_str(), &WriteIntoOneString, row.library,
                                 stretches[0]);
    benchmark::RegisterBenchmark((name + "/past 100 hours").c_str(), &WriteIntoOneString,
                                 row.library, stretches[1]);
  }
  return true;
}();

}  // namespace
}  // namespace mezzo::utility
