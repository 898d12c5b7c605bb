// Time conversion: positions on an audio timeline to and from the text of every time display.
//
// `WriteTimecode` writes all timecode and frame counts, and `ConvertTimecodeToSamples`, in the
// overload with flags, reads them. Clock time, milliseconds and beats are read by
// `ReadSexagesimal`. The order of evaluation, the type of each step and the fused operations decide
// the last digit of the results: do not change them.

#include "../../Debug/private/Assertion.h"
#include "DefinedArithmetic.h"
#include "DisplayText.h"
#include "DropFrame.h"
#include "TextCursor.h"
#include <Utility/TimeConversionUtils.h>

#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16StringStream.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace mezzo::utility {

using namespace arithmetic;
using plinth::UTF16String;

bool operator==(const BeatInfo& inLeft, const BeatInfo& inRight) {
  return inLeft.iTicksPerBeat == inRight.iTicksPerBeat && inLeft.dTempo == inRight.dTempo &&
         inLeft.iBeatsPerBar == inRight.iBeatsPerBar && inLeft.iBeatUnit == inRight.iBeatUnit &&
         inLeft.dOffsetMs == inRight.dOffsetMs;
}

bool operator!=(const BeatInfo& inLeft, const BeatInfo& inRight) {
  return !(inLeft == inRight);
}

namespace {

/// A frame rate as `frames` per `seconds`: the nominal rate, or nominal × 1000/1001.
struct FrameRate {
  FrameRate(Int32 inTimecodeFPS, bool inIsPulledDown)
      : frames(inIsPulledDown ? inTimecodeFPS * 1000 : inTimecodeFPS),
        seconds(inIsPulledDown ? 1001 : 1) {}

  Int32 frames;
  Int32 seconds;
};

/// Keeps the low 32 bits of a field that was counted in integers.
std::int32_t Narrow(Int64 inField) {
  return Int32(inField).GetValue();
}

/// The minimum width, 1 to 4 digits, of a field that counts from 0 to inDivisions - 1, such as the
/// frames of a second or the ticks of a beat.
int GetDivisionWidth(std::int32_t inDivisions) {
  return inDivisions <= 10 ? 1 : inDivisions <= 100 ? 2 : inDivisions <= 1000 ? 3 : 4;
}

/// Half a unit in the third decimal. Added before truncation, it rounds to the nearest.
constexpr double kHalfThousandth = 0.0005;

void WriteZero(UTF16String& outString) {
  outString.assign(1, u'0');
}

// -------------------------------------------------------------------------------- Writing timecode

/// Counts frames where both the frames-only and the drop-frame flag are set: magnitude × fps ×
/// 1000/1001 / sample rate, in double precision, which can differ from the integer count in the
/// last digit. Numerator and denominator both carry the factors fps and 599.4 (20 × 29.97). They
/// cancel, but take part in the rounding.
std::int32_t CountFramesInDouble(Int64 inMagnitude, std::int32_t inSampleRate, double inFPS) {
  constexpr double kScale = 599.4;
  constexpr double kPulledDownScale = kScale / 1.001;
  return TruncateTo<std::int32_t>(
      ((inFPS * inFPS) * kPulledDownScale * static_cast<double>(inMagnitude.GetValue())) /
      ((inSampleRate * kScale) * inFPS));
}

/// The flags of a timecode display, one bit each.
enum TimecodeFlag : unsigned {
  kTimecodeFlag_DropFrame = 1u << 0,
  kTimecodeFlag_Pulldown = 1u << 1,
  kTimecodeFlag_FramesOnly = 1u << 2,
  kTimecodeFlag_NoFrames = 1u << 3,
  kTimecodeFlag_TrimLeadingZeros = 1u << 4,
  kTimecodeFlag_ShowSubframes = 1u << 5,
  kTimecodeFlag_NoHours = 1u << 6,
};

bool HasFlag(unsigned inFlags, TimecodeFlag inFlag) {
  return (inFlags & inFlag) != 0;
}

void ComposeDropFrameLabel(DisplayText& ioText, Int64 inWholeFrames, std::int32_t inTimecodeFPS) {
  std::uint32_t hours = 0;
  std::uint32_t minutes = 0;
  std::uint32_t seconds = 0;
  std::uint32_t frames = 0;
  DropFrameToHMSF(inWholeFrames.GetValue(), inTimecodeFPS, hours, minutes, seconds, frames);
  ioText.Put(Narrow(hours), 2).Put(u';').Put(Narrow(minutes), 2).Put(u';');
  ioText.Put(Narrow(seconds), 2).Put(u';').Put(Narrow(frames), 2);
}

void ComposeLabel(DisplayText& ioText, Int64 inWholeFrames, std::int32_t inTimecodeFPS,
                  unsigned inFlags) {
  Int64 frames = inWholeFrames;
  const auto takeUnits = [&frames](Int32 inFramesPerUnit) {
    const Int64 count = frames / inFramesPerUnit;
    frames = frames - count * inFramesPerUnit;
    return count;
  };
  const Int32 fps = inTimecodeFPS;
  Int64 hours = takeUnits(fps * 3600);
  Int64 minutes = takeUnits(fps * 60);
  const Int64 seconds = takeUnits(fps);
  if (HasFlag(inFlags, kTimecodeFlag_NoHours)) {
    minutes = minutes + hours * 60;
    hours = 0;
  }

  // Trimming omits leading zero fields and the padding of the first field written. Hours are always
  // padded when they are written.
  bool isLeading = HasFlag(inFlags, kTimecodeFlag_TrimLeadingZeros) && hours == 0;
  const auto writeField = [&](Int64 inField) {
    if (isLeading && inField == 0) return;
    ioText.Put(Narrow(inField), isLeading ? 1 : 2).Put(u':');
    isLeading = false;
  };
  if (!HasFlag(inFlags, kTimecodeFlag_NoHours)) writeField(hours);
  writeField(minutes);
  if (HasFlag(inFlags, kTimecodeFlag_NoFrames)) {
    ioText.Put(Narrow(seconds), 2);
  } else {
    writeField(seconds);
    ioText.Put(Narrow(frames), isLeading ? 1 : GetDivisionWidth(inTimecodeFPS));
  }
}

bool WriteTimecode(UTF16String& outString, std::int64_t inSamples, std::int32_t inSampleRate,
                   std::int32_t inTimecodeFPS, unsigned inFlags) {
  const bool isDropFrame = HasFlag(inFlags, kTimecodeFlag_DropFrame);
  const bool isPulledDown = HasFlag(inFlags, kTimecodeFlag_Pulldown);
  if (isDropFrame && isPulledDown) {
    MEZZO_REPORT("false", "ConvertSamplesToTimecode programmer error!\n",
                 "bool mezzo::utility::ConvertSamplesToTimecode(plinth::UTF16String &, "
                 "std::int64_t, std::int32_t, std::int32_t, bool, bool, bool, bool, bool, bool, "
                 "bool)");
    return false;
  }
  if (inSampleRate == 0) {
    WriteZero(outString);
    return true;
  }
  if (inTimecodeFPS == 0) {
    outString.clear();
    return false;
  }

  const Int64 magnitude = GetMagnitude(Int64(inSamples));
  const FrameRate rate(inTimecodeFPS, isDropFrame || isPulledDown);
  const Int64 numerator = magnitude * rate.frames;
  const Int64 denominator = Int64(rate.seconds) * inSampleRate;
  const Int64 wholeFrames = numerator / denominator;
  DisplayText text;
  if (HasFlag(inFlags, kTimecodeFlag_FramesOnly)) {
    text.Put(isDropFrame ? CountFramesInDouble(magnitude, inSampleRate, inTimecodeFPS)
                         : Narrow(wholeFrames));
  } else {
    if (inSamples < 0) text.Put(u'-');
    if (isDropFrame) {
      ComposeDropFrameLabel(text, wholeFrames, inTimecodeFPS);
    } else {
      ComposeLabel(text, wholeFrames, inTimecodeFPS, inFlags);
      if (HasFlag(inFlags, kTimecodeFlag_ShowSubframes) &&
          !HasFlag(inFlags, kTimecodeFlag_NoFrames))
        text.Put(u'.').Put(Narrow(numerator * 100 / denominator % 100), 2);
    }
  }
  text.AssignTo(outString);
  return true;
}

}  // namespace

bool ConvertSamplesToTimecode(UTF16String& outString, std::int64_t inSamples,
                              std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                              bool inDropFrame, bool inPulldown, bool inFramesOnly, bool inNoFrames,
                              bool inTrimLeadingZeros, bool inShowSubframes, bool inNoHours) {
  const auto flag = [](bool inIsSet, TimecodeFlag inFlag) { return inIsSet ? inFlag : 0u; };
  return WriteTimecode(
      outString, inSamples, inSampleRate, inTimecodeFPS,
      flag(inDropFrame, kTimecodeFlag_DropFrame) | flag(inPulldown, kTimecodeFlag_Pulldown) |
          flag(inFramesOnly, kTimecodeFlag_FramesOnly) | flag(inNoFrames, kTimecodeFlag_NoFrames) |
          flag(inTrimLeadingZeros, kTimecodeFlag_TrimLeadingZeros) |
          flag(inShowSubframes, kTimecodeFlag_ShowSubframes) |
          flag(inNoHours, kTimecodeFlag_NoHours));
}

void DropFrameToHMSF(std::int64_t inFrameCount, std::int32_t inTimecodeFPS, std::uint32_t& outHours,
                     std::uint32_t& outMinutes, std::uint32_t& outSeconds,
                     std::uint32_t& outFrames) {
  MEZZO_ASSERT((inTimecodeFPS == 30) || (inTimecodeFPS == 60), "",
               "void mezzo::utility::DropFrameToHMSF(std::int64_t, std::int32_t, std::uint32_t &, "
               "std::uint32_t &, std::uint32_t &, std::uint32_t &)");
  if (inTimecodeFPS < 30) return;
  const auto label = dropframe::LabelOfFrameCount(GetMagnitude(Int64(inFrameCount)).GetValue(),
                                                  inTimecodeFPS / 30);
  const auto low = [](std::int64_t inField) { return static_cast<std::uint32_t>(inField); };
  if (label.hours > 0) outHours = low(label.hours);
  if (label.tensOfMinutes > 0) outMinutes = low(10 * label.tensOfMinutes);
  outMinutes += low(label.minuteOfTen);
  if (label.seconds > 0) outSeconds = low(label.seconds);
  outFrames = low(label.frames);
}

// ------------------------------------------------------------------------------ Writing clock time

void ConvertSamplesToDecimalTimecode(UTF16String& outString, std::int64_t inSamples,
                                     std::int32_t inSampleRate, bool inWholeSeconds) {
  if (inSampleRate == 0) return WriteZero(outString);

  const bool isNegative = inSamples < 0;
  const Int64 magnitude = GetMagnitude(Int64(inSamples));
  const Int64 wholeSeconds = magnitude / inSampleRate;
  const Int64 wholeMinutes = wholeSeconds / 60;
  DisplayText text;

  if (wholeSeconds >= 3600) {
    if (isNegative) text.Put(u'-');
    text.Put(Narrow(wholeSeconds / 3600)).Put(u':').Put(Narrow(wholeMinutes % 60), 2);
  } else {
    // The sign is right-aligned in a field of three characters.
    text.Put(u' ').Put(u' ').Put(isNegative ? u'-' : u' ').Put(Narrow(wholeMinutes));
  }
  text.Put(u':').Put(Narrow(wholeSeconds % 60), 2);

  if (!inWholeSeconds) {
    text.Put(u'.');
    if (wholeSeconds >= 36000) {
      const Int64 rest = magnitude - wholeSeconds * inSampleRate;
      text.Put(Narrow(rest * 100 / inSampleRate), 2);
    } else {
      const double rate = inSampleRate;
      const double rest = std::fma(-static_cast<double>(wholeSeconds.GetValue()), rate,
                                   static_cast<double>(magnitude.GetValue()));
      text.Put(TruncateTo<std::int32_t>(std::fma(rest, 1000.0, 500.0) / rate), 3);
    }
  }
  text.AssignTo(outString);
}

// ---------------------------------------------------------------------------- Writing musical time

namespace {

/// The samples from sample 0 to bar 1 beat 1, rounded half up.
double GetOffsetInSamples(double inSampleRate, const BeatInfo& inBeatInfo) {
  return std::floor(std::fma(inSampleRate * 0.001, inBeatInfo.dOffsetMs, 0.5));
}

}  // namespace

bool ConvertSamplesToBarsAndBeats(UTF16String& outString, double inSamples, double inSampleRate,
                                  const BeatInfo& inBeatInfo, bool inIsDuration, int inPrecision) {
  static constexpr char kSignature[] =
      "bool mezzo::utility::ConvertSamplesToBarsAndBeats(plinth::UTF16String &, double, double, "
      "const mezzo::utility::BeatInfo &, bool, int)";
  MEZZO_ASSERT(inPrecision >= 0, "", kSignature);
  MEZZO_ASSERT(inBeatInfo.iBeatsPerBar != 0, "programmer error!\n", kSignature);
  // Read after the reports, because the host may change inBeatInfo while its dialog is open.
  const Int32 beatsPerBar = inBeatInfo.iBeatsPerBar;
  const std::int32_t ticksPerBeat = inBeatInfo.iTicksPerBeat;
  if (beatsPerBar == 0) return false;

  const double samples =
      inIsDuration ? inSamples : inSamples - GetOffsetInSamples(inSampleRate, inBeatInfo);
  // Tempo × iBeatUnit × this is beats per second: a minute has 60 seconds, a whole note 4 quarter
  // notes.
  constexpr double kTempoToBeatsPerSecond = 1.0 / 240.0;
  // Adding half a thousandth of a tick makes the truncations below round to the nearest thousandth.
  // With -1 ticks the term is negative and lowers a decimal beat instead.
  double beats =
      samples * kTempoToBeatsPerSecond * inBeatInfo.dTempo * inBeatInfo.iBeatUnit / inSampleRate +
      kHalfThousandth / ticksPerBeat;

  // Whole bars to add so that the count of beats from bar 1 beat 1 is not negative.
  Int32 addedBars = 0;
  if (!(beats >= 0.0)) {
    addedBars = Int32(TruncateTo<std::int32_t>(-beats / beatsPerBar.GetValue())) + 1;
    beats += (addedBars * beatsPerBar).GetValue();
  }

  double ticks = 0.0;
  std::int32_t tick = 0;
  if (ticksPerBeat >= 1) {
    ticks = GetFraction(beats) * ticksPerBeat;
    tick = TruncateTo<std::int32_t>(ticks);
    if (tick == ticksPerBeat) {
      // The product was rounded up to a full beat. The fraction of `beats` is just below 1, so one
      // more tick moves on to the next beat.
      ticks = 0.0;
      tick = 0;
      beats += 1.0 / ticksPerBeat;
    }
  }

  const Int32 first = inIsDuration ? 0 : 1;
  const Int32 wholeBeats = TruncateTo<std::int32_t>(beats);
  const Int32 bar = wholeBeats / beatsPerBar + first - addedBars;
  const Int32 beat = wholeBeats % beatsPerBar + first;

  // With -1 ticks the text has its three fields at every precision.
  const bool isDecimal = ticksPerBeat == -1;
  DisplayText text;
  if (isDecimal || inPrecision >= 0) text.Put(bar.GetValue());
  if (isDecimal || inPrecision >= 1) text.Put(u':').Put(beat.GetValue());
  if (isDecimal) {
    text.Put(u'.').Put(TruncateTo<std::int32_t>(GetFraction(beats) * 1000.0), 3);
  } else if (inPrecision >= 2) {
    text.Put(u'.').Put(tick, GetDivisionWidth(ticksPerBeat));
  }
  if (inPrecision >= 3) {
    const Int64 thousandths = TruncateTo<std::int64_t>(ticks * 1000.0);
    text.Put(u'.').Put(Narrow(thousandths - Int64(tick) * 1000), 3);
  }
  text.AssignTo(outString);
  return true;
}

void ConvertSamplesToBeats(UTF16String& outString, std::int64_t inSamples,
                           std::int32_t inSampleRate, double inTempo) {
  if (inSampleRate == 0) return WriteZero(outString);

  const double beats = static_cast<double>(inSamples) * inTempo / (inSampleRate * 60.0);
  const bool isNegative = beats + kHalfThousandth < 0.0;
  const double lifted = (isNegative ? -beats : beats) + kHalfThousandth;
  const auto whole = TruncateTo<std::int32_t>(lifted);
  const auto thousandths = TruncateTo<std::int32_t>(GetFraction(lifted) * 1000.0);
  DisplayText text;
  if (isNegative && (whole != 0 || thousandths != 0)) text.Put(u'-');
  text.Put(whole).Put(u'.').Put(thousandths, 3).AssignTo(outString);
}

// ------------------------------------------------------------------------------ Writing any format

namespace {

void WriteSampleCount(UTF16String& outString, std::int64_t inSamples) {
  DisplayText text;
  text.Put(inSamples).AssignTo(outString);
}

/// Writes milliseconds: half a tenth is added, and the sum is truncated toward zero to tenths, in
/// general notation ("%g") with six significant digits.
void WriteMilliseconds(UTF16String& outString, std::int64_t inSamples, std::int32_t inSampleRate) {
  const double lifted = static_cast<double>(inSamples) * 10000.0 / inSampleRate + 0.5;
  const double tenths = lifted - GetFraction(lifted);
  plinth::oUTF16StringStream stream;
  stream << tenths * 0.1;
  outString.assign(stream.view());
}

}  // namespace

bool ConvertSamplesToTimecode(UTF16String& outString, std::int64_t inSamples,
                              std::int32_t inSampleRate, TimecodeFormat inFormat,
                              std::int32_t inTimecodeFPS, const BeatInfo* inBeatInfo,
                              bool inIsDuration) {
  static constexpr char kSignature[] =
      "bool mezzo::utility::ConvertSamplesToTimecode(plinth::UTF16String &, std::int64_t, "
      "std::int32_t, mezzo::utility::TimecodeFormat, std::int32_t, const mezzo::utility::BeatInfo "
      "*, bool)";
  const auto writeTimecode = [&](unsigned inFlags) {
    return WriteTimecode(outString, inSamples, inSampleRate, inTimecodeFPS, inFlags);
  };

  MEZZO_ASSERT(inFormat > kTimecodeFormat_None && inFormat < kTimecodeFormat_AfterLast, "",
               kSignature);
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      ConvertSamplesToDecimalTimecode(outString, inSamples, inSampleRate, false);
      return true;
    case kTimecodeFormat_Samples:
      WriteSampleCount(outString, inSamples);
      return true;
    case kTimecodeFormat_SMPTE:
      return writeTimecode(0);
    case kTimecodeFormat_SMPTEPulldown:
    case kTimecodeFormat_SMPTEPulldown2:
    case kTimecodeFormat_SMPTEPulldown3:
      return writeTimecode(kTimecodeFlag_Pulldown);
    case kTimecodeFormat_SMPTEDropFrame:
    case kTimecodeFormat_SMPTEDropFrame2:
      return writeTimecode(kTimecodeFlag_DropFrame);
    case kTimecodeFormat_Beats:
      MEZZO_ASSERT(inBeatInfo, "programmer error!\n", kSignature);
      if (inBeatInfo == nullptr) return false;
      ConvertSamplesToBeats(outString, inSamples, inSampleRate, inBeatInfo->dTempo);
      return true;
    case kTimecodeFormat_BarsAndBeats:
      MEZZO_ASSERT(inBeatInfo, "programmer error!\n", kSignature);
      if (inBeatInfo == nullptr) return false;
      return ConvertSamplesToBarsAndBeats(outString, static_cast<double>(inSamples), inSampleRate,
                                          *inBeatInfo, inIsDuration, 2);
    case kTimecodeFormat_Frames:
      return writeTimecode(kTimecodeFlag_FramesOnly);
    case kTimecodeFormat_PulldownFrames:
      // Together, these flags select the count in double precision; the pulldown flag would select
      // the count in integers.
      return writeTimecode(kTimecodeFlag_DropFrame | kTimecodeFlag_FramesOnly);
    case kTimecodeFormat_CompactSubframes:
      return writeTimecode(kTimecodeFlag_TrimLeadingZeros | kTimecodeFlag_ShowSubframes);
    case kTimecodeFormat_Milliseconds:
      WriteMilliseconds(outString, inSamples, inSampleRate);
      return true;
    case kTimecodeFormat_Reserved:
    case kTimecodeFormat_None:
    case kTimecodeFormat_AfterLast:
      break;
  }
  return true;
}

// -------------------------------------------------------------------------------- Reading timecode

namespace {

/// The fields of clock-like text and a fraction of the last one. Omitted fields are the leading
/// ones.
struct ParsedTimeCode {
  int hours = 0;
  int minutes = 0;
  int seconds = 0;
  int frames = 0;
  int fractionNumerator = 0;
  int fractionDenominator = 1;
};

/// Ten to the power of the number of code units from a fraction's first digit to the end of the
/// text, saturated.
int GetFractionDenominator(int inUnitCount) {
  static constexpr std::array<int, 10> kPowersOfTen{
      1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
  // A count that overflows int has wrapped and may be negative.
  const auto power = static_cast<std::size_t>(std::max(inUnitCount, 0));
  return power < kPowersOfTen.size() ? kPowersOfTen[power] : std::numeric_limits<int>::max();
}

/// Parses any text by the rules that the header states for SMPTE timecode.
ParsedTimeCode ParseTimeCodeString(const UTF16String& inString) {
  constexpr int kMaxFields = 5;
  ParsedTimeCode parsed;
  TextCursor cursor(inString);
  // The code units from the first digit of the last number to the end of the text. Not counted for
  // a first number without a "." before it, so the denominator of "1." is 1.
  int unitsToEnd = 0;
  const auto setFraction = [&](int inNumerator) {
    parsed.fractionNumerator = inNumerator;
    parsed.fractionDenominator = GetFractionDenominator(unitsToEnd);
  };
  for (int fields = 0; fields < kMaxFields; ++fields) {
    const bool isDotted = cursor.SkipSeparators();
    if (cursor.IsAtEnd()) {
      if (isDotted && fields > 0) {
        // A "." after the last number makes that number the fraction.
        setFraction(parsed.frames);
        parsed.frames = parsed.seconds;
        parsed.seconds = parsed.minutes;
        parsed.minutes = parsed.hours;
        parsed.hours = 0;
      }
      break;
    }
    if (isDotted || fields > 0) unitsToEnd = cursor.CountUnitsLeft();
    const int value = cursor.ReadDigits();
    if (isDotted) {
      setFraction(value);
      break;
    }
    parsed.hours = parsed.minutes;
    parsed.minutes = parsed.seconds;
    parsed.seconds = parsed.frames;
    parsed.frames = value;
  }
  return parsed;
}

}  // namespace

bool ConvertTimecodeToSamples(std::int64_t& outSamples, const UTF16String& inString,
                              std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                              bool inPulldown, bool inDropFrame) {
  static constexpr char kSignature[] =
      "bool mezzo::utility::ConvertTimecodeToSamples(std::int64_t &, const plinth::UTF16String &, "
      "std::int32_t, std::int32_t, bool, bool)";
  if (inString.empty()) {
    outSamples = -1;
    return true;
  }

  const ParsedTimeCode parsed = ParseTimeCodeString(inString);
  const Int32 fps = inTimecodeFPS;
  Int32 wholeFrames = 0;
  if (inDropFrame) {
    MEZZO_ASSERT_WITH_TEXT(dropframe::CountFramesPerHour(fps) % 6 == 0, "framesPerHour % 6 == 0",
                           "Drop frame not supported on the given frame rate.\n", kSignature);
    wholeFrames = dropframe::FrameCountOfLabel(parsed.hours, parsed.minutes, parsed.seconds,
                                               parsed.frames, fps);
  } else {
    wholeFrames = Int32(parsed.hours) * (fps * 3600) + Int32(parsed.minutes) * (fps * 60) +
                  Int32(parsed.seconds) * fps + parsed.frames;
  }

  const FrameRate rate(fps, inPulldown);
  const Int64 fractionsPerFrame = parsed.fractionDenominator;
  const Int64 divisor = fractionsPerFrame * rate.frames;
  if (divisor == 0) {
    MEZZO_REPORT("false", "Divide by zero in ConvertTimecodeToSamples\n", kSignature);
    outSamples = 0;
    return true;
  }

  // A period of `rate.seconds` seconds has `rate.frames` frames and samplesPerPeriod samples. The
  // label's value is labelInFractions parts of a frame, and each frame has fractionsPerFrame parts.
  // The result is samplesPerPeriod × labelInFractions / divisor, rounded up.
  const Int64 samplesPerPeriod = Int64(rate.seconds) * inSampleRate;
  const Int64 labelInFractions = fractionsPerFrame * wholeFrames + parsed.fractionNumerator;
  const auto asDouble = [](Int64 inValue) { return static_cast<double>(inValue.GetValue()); };
  const double approximateDividend = std::fma(
      asDouble(samplesPerPeriod),
      std::fma(asDouble(fractionsPerFrame), wholeFrames.GetValue(), parsed.fractionNumerator),
      asDouble(divisor - 1));
  constexpr double kLargestDividend = 8070450532247928832.0;  // 7 × 2^60
  outSamples = approximateDividend > kLargestDividend
                   ? TruncateTo<std::int64_t>(approximateDividend / asDouble(divisor))
                   : ((samplesPerPeriod * labelInFractions + (divisor - 1)) / divisor).GetValue();
  return true;
}

// ---------------------------------------------------------------------------- Reading musical time

std::int64_t ConvertBarsAndBeatsToSamples(const UTF16String& inString, double inSampleRate,
                                          const BeatInfo& inBeatInfo, bool inIsDuration) {
  const Int32 first = inIsDuration ? 0 : 1;
  const Int32 bar = TextCursor(inString).ReadInteger() - first;
  Int32 beat = 0;
  if (TextCursor cursor(inString); cursor.SkipTo(u':')) {
    cursor.Advance();
    beat = cursor.ReadInteger() - first;
  }
  const bool isDecimal = inBeatInfo.iTicksPerBeat == -1;
  double fraction = 0.0;
  int tick = 0;
  if (TextCursor cursor(inString); cursor.SkipTo(u'.')) {
    if (isDecimal) fraction = cursor.PeekFraction();
    cursor.Advance();
    tick = cursor.ReadInteger();
  }
  const double partOfBeat =
      isDecimal ? fraction : static_cast<double>(tick) / inBeatInfo.iTicksPerBeat;

  const Int32 wholeBeats = beat + inBeatInfo.iBeatsPerBar * bar;
  const double samples = (inSampleRate * 60.0 * (partOfBeat + wholeBeats.GetValue())) /
                         (inBeatInfo.dTempo * 0.25 * inBeatInfo.iBeatUnit);
  const Int64 position = TruncateTo<std::int64_t>(std::floor(samples + 0.5));
  if (inIsDuration) return position.GetValue();
  const Int64 offset = TruncateTo<std::int64_t>(GetOffsetInSamples(inSampleRate, inBeatInfo));
  return (position + offset).GetValue();
}

// ------------------------------------------------------------------------------ Reading any format

namespace {

constexpr char kSignature[] =
    "bool mezzo::utility::ConvertTimecodeToSamples(std::int64_t &, const plinth::UTF16String &, "
    "mezzo::utility::TimecodeFormat, std::int32_t, std::int32_t, mezzo::utility::BeatInfo *, bool)";

/// Reads up to three fields. One unit of a field is 60 of the next: "1:30" is 90 seconds,
/// milliseconds or beats. Returns the sum in units of the last field. In `ParsedTimeCode`, the last
/// field is `frames`, and the fields before it are `seconds` and `minutes`.
double ReadSexagesimal(const UTF16String& inString) {
  const ParsedTimeCode parsed = ParseTimeCodeString(inString);
  MEZZO_ASSERT_WITH_TEXT(parsed.hours == 0, "hours==0",
                         "These timecode formats are just hours, minutes, seconds.\n", kSignature);
  const double last =
      parsed.frames + static_cast<double>(parsed.fractionNumerator) / parsed.fractionDenominator;
  return std::fma(parsed.minutes, 3600.0, std::fma(parsed.seconds, 60.0, last));
}

}  // namespace

bool ConvertTimecodeToSamples(std::int64_t& outSamples, const UTF16String& inString,
                              TimecodeFormat inFormat, std::int32_t inSampleRate,
                              std::int32_t inTimecodeFPS, BeatInfo* inBeatInfo, bool inIsDuration) {
  const auto readTimecode = [&](bool inPulldown, bool inDropFrame) {
    return ConvertTimecodeToSamples(outSamples, inString, inSampleRate, inTimecodeFPS, inPulldown,
                                    inDropFrame);
  };
  if (inString.empty()) {
    outSamples = -1;
    return true;
  }
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      outSamples = TruncateTo<std::int64_t>(std::fma(ReadSexagesimal(inString), inSampleRate, 0.5));
      return true;
    case kTimecodeFormat_Samples: {
      constexpr unsigned short kParserOptions = 6;  // the host's option bits for sample counts
      long long samples = outSamples;               // unchanged if a host's parser writes nothing
      plinth::string::StringToNumber(samples, inString, kParserOptions);
      outSamples = samples;
      return true;
    }
    case kTimecodeFormat_SMPTE:
    case kTimecodeFormat_Frames:
    case kTimecodeFormat_CompactSubframes:
      return readTimecode(false, false);
    case kTimecodeFormat_SMPTEPulldown:
    case kTimecodeFormat_SMPTEPulldown2:
    case kTimecodeFormat_SMPTEPulldown3:
      return readTimecode(true, false);
    case kTimecodeFormat_SMPTEDropFrame:
    case kTimecodeFormat_SMPTEDropFrame2:
    case kTimecodeFormat_PulldownFrames:
      return readTimecode(true, true);
    case kTimecodeFormat_Beats: {
      const double beats = ReadSexagesimal(inString);
      MEZZO_ASSERT(inBeatInfo, "programmer error!\n", kSignature);
      if (inBeatInfo == nullptr) return false;
      outSamples = TruncateTo<std::int64_t>(beats * inSampleRate * 60.0 / inBeatInfo->dTempo + 0.5);
      return true;
    }
    case kTimecodeFormat_BarsAndBeats:
      MEZZO_ASSERT(inBeatInfo, "programmer error!\n", kSignature);
      if (inBeatInfo == nullptr) return false;
      outSamples = ConvertBarsAndBeatsToSamples(inString, inSampleRate, *inBeatInfo, inIsDuration);
      return true;
    case kTimecodeFormat_Milliseconds:
      outSamples =
          TruncateTo<std::int64_t>(std::fma(ReadSexagesimal(inString) * inSampleRate, 0.001, 0.5));
      return true;
    case kTimecodeFormat_None:
    case kTimecodeFormat_AfterLast:
      MEZZO_REPORT("0", "", kSignature);
      break;
    case kTimecodeFormat_Reserved:
      break;
  }
  outSamples = 0;
  return true;
}

}  // namespace mezzo::utility
