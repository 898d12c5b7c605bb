// Calls every exported function with arbitrary arguments; none may crash. Compares timecode, and
// bars and beats, with references: labels from 64-bit divisions, texts parsed by a separate, simple
// parser, positions in extended precision.

#include "../tests/support/ExportedCalls.h"
#include "../tests/support/Reports.h"
#include "../tests/support/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace mezzo::fuzz {
namespace {

constexpr std::int64_t kLargestInt = 2147483647;

struct RecordedCall {
  std::string name;
  test::Fields arguments{};
  std::string result{};  ///< the text or the position that the call gave

  std::int64_t GetInt(std::size_t inIndex) const { return std::stoll(arguments[inIndex]); }
  long double GetDouble(std::size_t inIndex) const {
    return static_cast<long double>(std::strtod(arguments[inIndex].c_str(), nullptr));
  }
  bool GetFlag(std::size_t inIndex) const { return (GetInt(inIndex) & 1) != 0; }
  /// Code units outside ASCII, and NUL, become "x".
  std::string GetText(std::size_t inIndex) const {
    std::string text;
    for (const char16_t unit : test::Unquote(arguments[inIndex]))
      text += unit < 0x80 && unit > 0 ? static_cast<char>(unit) : 'x';
    return text;
  }

  /// Ends the process when the result is not what the reference says.
  void Require(bool inHolds, const std::string& inReference) const {
    if (inHolds) return;
    std::fprintf(stderr, "%s\t%s\t=>\t%s\nreference: %s\n", name.c_str(),
                 test::Join(arguments).c_str(), result.c_str(), inReference.c_str());
    std::abort();
  }
  void RequireEqual(const std::string& inReference) const {
    Require(result == inReference, inReference);
  }
  /// Requires a value to lie within a distance of the exact one.
  void RequireNear(long double inActual, long double inExact, long double inDistance) const {
    Require(std::fabs(inActual - inExact) <= inDistance,
            std::to_string(inExact) + " ± " + std::to_string(inDistance));
  }
};

std::string Pad(std::int64_t inValue, std::size_t inWidth) {
  const std::string digits = std::to_string(inValue);
  return std::string(inWidth - std::min(inWidth, digits.size()), '0') + digits;
}

/// The signed integer at the start of a text, saturated; 0 for none.
std::int64_t ParseLeadingInteger(const std::string& inText) {
  std::string number = inText.substr(std::min(inText.find_first_not_of(" \t"), inText.size()));
  const bool isSigned = !number.empty() && (number[0] == '-' || number[0] == '+');
  number.resize(std::min(number.find_first_not_of("0123456789", isSigned ? 1 : 0), number.size()));
  const long double value = std::strtold(number.c_str(), nullptr);
  return static_cast<std::int64_t>(std::clamp<long double>(value, -kLargestInt - 1, kLargestInt));
}

// ---------------------------------------------------------------------------------------- Timecode

void CheckFormattedTimecode(const RecordedCall& inCall) {
  const std::int64_t samples = inCall.GetInt(0), rate = inCall.GetInt(1), fps = inCall.GetInt(2);
  // Within these limits, nothing needs more than 64 bits.
  if (rate < 1 || fps < 1 || fps > 2000 || samples != samples << 29 >> 29) return;
  if (inCall.GetFlag(3) || inCall.GetFlag(6) || inCall.GetFlag(7) || inCall.GetFlag(9)) return;
  const std::int64_t dividend = std::abs(samples) * fps * 1000;
  const std::int64_t divisor = rate * (inCall.GetFlag(4) ? 1001 : 1000);
  const std::int64_t frames = dividend / divisor, seconds = frames / fps;
  if (frames > kLargestInt) return;
  if (inCall.GetFlag(5)) return inCall.RequireEqual(std::to_string(frames));
  std::string label = (samples < 0 ? "-" : "") + Pad(seconds / 3600, 2) + ':' +
                      Pad(seconds / 60 % 60, 2) + ':' + Pad(seconds % 60, 2) + ':' +
                      Pad(frames % fps, std::to_string(fps - 1).size());
  if (inCall.GetFlag(8)) label += '.' + Pad(dividend % divisor * 100 / divisor, 2);
  inCall.RequireEqual(label);
}

struct TimecodeText {
  std::vector<std::int64_t> values{
      0, 0, 0, 0};  // every number read is appended; the last four are hours to frames
  std::int64_t numerator = 0, denominator = 1;

  std::int64_t GetFromRight(std::size_t inIndex) const {
    return values[values.size() - 1 - inIndex];
  }
};

TimecodeText Parse(std::string inRest) {
  static constexpr char kDigits[] = "0123456789";
  TimecodeText timecode;
  std::size_t codeUnitsLeft = 0;
  for (int count = 0; count < 5; ++count) {
    const std::string separators = inRest.substr(0, inRest.find_first_of(kDigits));
    const bool isDotted = separators.find('.') != separators.npos;
    inRest.erase(0, separators.size());
    if (inRest.empty() && (!isDotted || count == 0)) break;
    std::int64_t value = 0;
    if (inRest.empty()) {  // a "." at the end makes the last number the fraction
      value = timecode.GetFromRight(0);
      timecode.values.pop_back();
    } else {
      if (isDotted || count > 0) codeUnitsLeft = inRest.size();
      value = ParseLeadingInteger(inRest);
      inRest.erase(0, inRest.find_first_not_of(kDigits));
    }
    if (isDotted) {
      timecode.numerator = value;
      timecode.denominator =
          ParseLeadingInteger('1' + std::string(std::min<std::size_t>(codeUnitsLeft, 10), '0'));
      break;
    }
    timecode.values.push_back(value);
  }
  return timecode;
}

void CheckParsedTimecode(const RecordedCall& inCall) {
  const std::string text = inCall.GetText(0);
  const std::int64_t rate = inCall.GetInt(1), fps = inCall.GetInt(2),
                     pulldown = inCall.GetFlag(3) ? 1 : 0;
  if (text.empty()) return inCall.RequireEqual("-1");
  const TimecodeText timecode = Parse(text);
  if (rate < 1 || fps < 1 || fps > 2000 || inCall.GetFlag(4)) return;
  const std::int64_t minutes = 60 * timecode.GetFromRight(3) + timecode.GetFromRight(2);
  const std::int64_t frames =
      (60 * minutes + timecode.GetFromRight(1)) * fps + timecode.GetFromRight(0);
  const std::int64_t factor = (1000 + pulldown) * rate, divisor = 1000 * timecode.denominator * fps;
  if (frames > kLargestInt) return;  // wraps in the library
  const std::int64_t fractions = timecode.denominator * frames + timecode.numerator;
  // Up to 7 × 2^60, the library computes in integers. The limit here is lower, so the dividend in
  // the last line fits in 64 bits, too.
  if (static_cast<long double>(fractions) * factor >= 0x1p62L) return;
  inCall.RequireEqual(std::to_string((fractions * factor + divisor - 1) / divisor));
}

// ------------------------------------------------------------------------------------ Musical time

/// The relative error of a double-precision result.
constexpr long double kRelativeError = 4e-15L;

struct MusicalTime {
  const RecordedCall& call;
  long double rate = call.GetDouble(1);
  std::int64_t ticks = call.GetInt(2);
  long double tempo = call.GetDouble(3);
  std::int64_t beatsPerBar = call.GetInt(4), unit = call.GetInt(5);
  long double offsetMs = call.GetDouble(6);
  /// 1 for a position, 0 for a length: the number of the first bar and of the first beat in a bar.
  /// A length ignores the offset.
  std::int64_t first = call.GetFlag(7) ? 0 : 1;

  bool IsUsual() const {
    return rate >= 1 && rate <= 1e7L && tempo >= 0.1L && tempo <= 1e4L && beatsPerBar >= 1 &&
           beatsPerBar <= 1000 && unit >= 1 && unit <= 128 && std::fabs(offsetMs) <= 1e9L &&
           (ticks == -1 || (ticks >= 1 && ticks <= 10000));
  }
  long double GetSamplesPerBeat() const { return rate * 240 / (tempo * unit); }
  /// The library rounds it; the tolerances allow for half a sample.
  long double GetOffset() const { return first * rate * offsetMs / 1000; }

  /// Beats from bar 1 beat 1 to the position that a text names.
  long double CountBeats(const std::string& inText) const {
    const std::size_t colon = inText.find(':'), dot = inText.find('.');
    auto count = static_cast<long double>((ParseLeadingInteger(inText) - first) * beatsPerBar);
    if (colon != inText.npos) count += ParseLeadingInteger(inText.substr(colon + 1)) - first;
    if (dot == inText.npos) return count;
    if (ticks == -1) return count + std::strtold(inText.c_str() + dot, nullptr);
    return count + static_cast<long double>(ParseLeadingInteger(inText.substr(dot + 1))) / ticks;
  }
};

void CheckParsedMusicalTime(const RecordedCall& inCall) {
  const MusicalTime time{inCall};
  const long double beats = time.CountBeats(inCall.GetText(0));
  const long double position = beats * time.GetSamplesPerBeat();
  // Whole beats are counted in 32 bits.
  if (!time.IsUsual() || !(std::fabs(beats) < 1e9L) || !(std::fabs(position) < 1e17L)) return;
  inCall.RequireNear(std::stoll(inCall.result), position + time.GetOffset(),
                     0.500001L + 0.5L * time.first + kRelativeError * std::fabs(position));
}

void CheckFormattedMusicalTime(const RecordedCall& inCall) {
  const MusicalTime time{inCall};
  const long double samplesPerBeat = time.GetSamplesPerBeat(),
                    position = inCall.GetDouble(0) - time.GetOffset();
  if (inCall.GetInt(8) < 3 || !time.IsUsual() || !(std::fabs(position / samplesPerBeat) < 1e9L))
    return;

  const std::string& text = inCall.result;
  const auto numberAfter = [&](std::size_t inIndex) {
    return ParseLeadingInteger(text.substr(inIndex + 1));
  };
  const bool isDecimal = time.ticks == -1;
  const std::int64_t beatOfBar = numberAfter(text.find(':')) - time.first;
  inCall.Require(beatOfBar >= 0 && beatOfBar < time.beatsPerBar &&
                     numberAfter(text.find('.')) < (isDecimal ? 1000 : time.ticks),
                 "a beat of the bar and a part of the beat");
  // With ticks, the library rounds to thousandths of a tick. They are the last field, which
  // CountBeats leaves out, so they are added here. Without ticks, the library subtracts half a
  // thousandth of a beat and truncates, so the text is 0.5 to 1.5 thousandths too low. The middle
  // of that error, one thousandth, is added here.
  const long double thousandth = samplesPerBeat / std::abs(time.ticks) / 1000;
  const std::int64_t thousandths = isDecimal ? 1 : numberAfter(text.rfind('.'));
  inCall.RequireNear(time.CountBeats(text) * samplesPerBeat + thousandth * thousandths, position,
                     thousandth * 0.500001L + 0.5L * time.first +
                         kRelativeError * std::max(std::fabs(position), samplesPerBeat));
}

void Check(test::DrawnArguments inArguments) {
  static const std::map<std::string, void (*)(const RecordedCall&)> sReferences{
      {"ConvertSamplesToTimecode-flags", &CheckFormattedTimecode},
      {"ConvertTimecodeToSamples-flags", &CheckParsedTimecode},
      {"ConvertBarsAndBeatsToSamples", &CheckParsedMusicalTime},
      {"ConvertSamplesToBarsAndBeats", &CheckFormattedMusicalTime}};
  const test::ReportRecorder reports;  // instead of lines on standard error
  const auto& call =
      test::GetExportedCalls()[inArguments.DrawBelow(test::GetExportedCalls().size())];
  inArguments.oldText.assign(inArguments.DrawBelow(32), u'?');
  RecordedCall made{call.name};
  inArguments.trace = &made.arguments;
  made.result = call.Run(std::move(inArguments)).back();
  if (made.result.starts_with('"')) made.result = made.result.substr(1, made.result.size() - 2);
  if (const auto reference = sReferences.find(call.name); reference != sReferences.end())
    reference->second(made);
}

}  // namespace
}  // namespace mezzo::fuzz

/// Called by the fuzzing engine. A byte below 0x80 is a draw of its own; any other byte precedes
/// the eight bytes of a draw. Zeros follow the input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inBytes, std::size_t inCount) {
  const auto next = [&] { return inCount == 0 ? std::uint8_t{0} : (--inCount, *inBytes++); };
  const auto bits = [&] {
    std::uint64_t value = next();
    for (int byte = value < 0x80 ? 8 : 0; byte < 8; ++byte) value = value << 8 | next();
    return value;
  };
  mezzo::fuzz::Check({bits, bits() % 2 == 0});
  return 0;
}

#ifdef MEZZO_REPLAYS
/// Replays without a fuzzing engine: runs every file of CORPUS-DIRECTORY, then the calls drawn from
/// the seeds 0 to COUNT - 1.
int main(int argc, char** argv) {
  if (argc != 3) return 2;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  const std::uint64_t count = std::strtoull(argv[2], nullptr, 10);
  for (std::uint64_t seed = 0; seed < count; ++seed)
    mezzo::fuzz::Check(mezzo::test::DrawnArguments(seed));
  return 0;
}
#endif
