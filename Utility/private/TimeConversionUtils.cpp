// Positions on an audio timeline, to and from the texts of the time displays.
//
// Each display's rule stands here, in reading order: what every display shares, then the displays
// that write, then those that read. The order of evaluation, the type each step is computed in and
// the places of `std::fma` decide the last digit of the results and are part of the contract.

#include "../../Debug/private/Assertion.h"
#include "DefinedArithmetic.h"
#include "DropFrame.h"
#include "LabelText.h"
#include "NumberText.h"
#include <Utility/TimeConversionUtils.h>

#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16StringStream.h>
#include <plinth/utility/Cast.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace mezzo::utility {

using namespace arithmetic;
using plinth::UTF16String;

namespace {

// ------------------------------------------------------------------------------ Shared by displays

/// The width in digits of a field that counts up to, and not including, a number of divisions of
/// the next larger unit: the frames of a second, the ticks of a beat.
constexpr int DivisionWidth(std::int32_t inDivisions) {
  return inDivisions <= 10 ? 1 : inDivisions <= 100 ? 2 : inDivisions <= 1000 ? 3 : 4;
}

void WriteZero(UTF16String& outString) {
  label::Replace(outString, [](auto& sink) { sink.Unit(u'0'); });
}

// ------------------------------------------------------------------------------------------- SMPTE

/// A position in frames: `numerator / denominator`, before truncation.
struct FrameRatio {
  std::int64_t numerator;
  std::int64_t denominator;

  FrameRatio(std::int64_t inMagnitude, std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
             bool inIsPulledDown)
      : numerator(Multiply<std::int64_t>(
            inMagnitude, inIsPulledDown ? Multiply(inTimecodeFPS, 1000) : inTimecodeFPS)),
        denominator((inIsPulledDown ? 1001 : 1) * std::int64_t{inSampleRate}) {}

  std::int64_t WholeFrames() const { return Divide(numerator, denominator); }

  std::int32_t HundredthsOfFrame() const {
    return static_cast<std::int32_t>(
        Divide<std::int64_t>(Multiply<std::int64_t>(numerator, 100), denominator) % 100);
  }
};

/// The fields of a label, of which the low 32 bits are written.
struct TimecodeFields {
  std::int64_t hours = 0;
  std::int64_t minutes = 0;
  std::int64_t seconds = 0;
  std::int64_t frames = 0;
};

label::Number<std::int32_t> Field(std::int64_t inValue, int inWidth) {
  return label::Number(static_cast<std::int32_t>(inValue), inWidth);
}

/// Splits a frame count by the products of the frame rate.
TimecodeFields SplitFrames(std::int64_t inFrames, std::int32_t inTimecodeFPS) {
  const std::int64_t framesPerHour = Multiply(inTimecodeFPS, 3600);
  const std::int64_t framesPerMinute = Multiply(inTimecodeFPS, 60);
  const std::int64_t pastHour = Remainder(inFrames, framesPerHour);
  const std::int64_t pastMinute = Remainder(pastHour, framesPerMinute);
  return {Divide(inFrames, framesPerHour), Divide(pastHour, framesPerMinute),
          Divide<std::int64_t>(pastMinute, inTimecodeFPS),
          Remainder<std::int64_t>(pastMinute, inTimecodeFPS)};
}

/// Writes all four fields, zero-padded.
void WriteDropFrameLabel(UTF16String& outString, bool inIsNegative,
                         const TimecodeFields& inFields) {
  label::Replace(outString, [=](auto& sink) {
    if (inIsNegative) sink.Unit(u'-');
    for (const std::int64_t field : {inFields.hours, inFields.minutes, inFields.seconds}) {
      Field(field, 2).Write(sink);
      sink.Unit(u';');
    }
    Field(inFields.frames, 2).Write(sink);
  });
}

/// What a display shows: the flags of the exported function in one word.
enum SMPTEDisplay : unsigned {
  kFullLabel = 0,
  kNominalRate = 0,
  kDropFrame = 1u << 0,
  kPulldown = 1u << 1,
  kFramesOnly = 1u << 2,
  kNoFrames = 1u << 3,
  kTrimLeadingZeros = 1u << 4,
  kShowSubframes = 1u << 5,
  kNoHours = 1u << 6,
};

/// Writes the fields that a display shows. The sign stands before the first that is written.
template <class Sink>
void ComposeFields(Sink& ioSink, const TimecodeFields& inFields, unsigned inDisplay,
                   bool inIsNegative, int inFramesWidth, std::int32_t inHundredths) {
  bool isFirst = true;
  bool isLeading = (inDisplay & kTrimLeadingZeros) != 0;  // trimming, and only zeros so far
  const auto writeValue = [&](std::int64_t value, int width) {
    if (isFirst && inIsNegative) ioSink.Unit(u'-');
    isFirst = false;
    Field(value, width).Write(ioSink);
  };
  const auto writeField = [&](std::int64_t value) {
    if (isLeading && value == 0) return;
    writeValue(value, isLeading ? 1 : 2);
    ioSink.Unit(u':');
    isLeading = false;
  };

  if ((inDisplay & kNoHours) != 0) {
    writeField(Add(inFields.minutes, Multiply<std::int64_t>(60, inFields.hours)));
  } else {
    if (inFields.hours != 0) isLeading = false;  // hours are padded even where they lead
    writeField(inFields.hours);
    writeField(inFields.minutes);
  }
  if ((inDisplay & kNoFrames) != 0) return writeValue(inFields.seconds, 2);
  writeField(inFields.seconds);
  writeValue(inFields.frames, isLeading ? 1 : inFramesWidth);
  if ((inDisplay & kShowSubframes) != 0) {
    ioSink.Unit(u'.');
    Field(inHundredths, 2).Write(ioSink);
  }
}

/// The count of pulled-down frames as the frame-count display shows it: in double precision, which
/// is not always the integer count.
std::int32_t PulledDownFrameCount(std::int64_t inMagnitude, std::int32_t inSampleRate,
                                  std::int32_t inTimecodeFPS) {
  const double fps = inTimecodeFPS;
  return TruncateTo<std::int32_t>(
      ((fps * fps) * 598.8011988011989 * static_cast<double>(inMagnitude)) /
      ((inSampleRate * 599.4) * fps));
}

}  // namespace

bool operator==(const BeatInfo& inLeft, const BeatInfo& inRight) {
  return inLeft.iTicksPerBeat == inRight.iTicksPerBeat && inLeft.dTempo == inRight.dTempo &&
         inLeft.iBeatsPerBar == inRight.iBeatsPerBar && inLeft.iBeatUnit == inRight.iBeatUnit &&
         inLeft.dOffsetMs == inRight.dOffsetMs;
}

bool operator!=(const BeatInfo& inLeft, const BeatInfo& inRight) {
  return !(inLeft == inRight);
}

namespace {

/// The drop-frame label of a frame count; none below the lowest rate that has drop-frame labels.
std::optional<dropframe::Label<std::int64_t>> DropFrameLabel(std::int64_t inFrameCount,
                                                             std::int32_t inTimecodeFPS) {
  MEZZO_ASSERT((inTimecodeFPS == 30) || (inTimecodeFPS == 60), "",
               "void mezzo::utility::DropFrameToHMSF(std::int64_t, std::int32_t, std::uint32_t &, "
               "std::uint32_t &, std::uint32_t &, std::uint32_t &)");
  if (inTimecodeFPS < 30) return std::nullopt;
  return dropframe::Split<std::int64_t>(Magnitude(inFrameCount), inTimecodeFPS / 30);
}

TimecodeFields FieldsOf(const dropframe::Label<std::int64_t>& inLabel) {
  return {inLabel.hours, 10 * inLabel.tensOfMinutes + inLabel.minuteOfTen, inLabel.seconds,
          inLabel.frames};
}

}  // namespace

void DropFrameToHMSF(std::int64_t inFrameCount, std::int32_t inTimecodeFPS, std::uint32_t& outHours,
                     std::uint32_t& outMinutes, std::uint32_t& outSeconds,
                     std::uint32_t& outFrames) {
  const auto label = DropFrameLabel(inFrameCount, inTimecodeFPS);
  if (!label) return;
  const auto low = [](std::int64_t field) { return static_cast<std::uint32_t>(field); };
  if (label->hours > 0) outHours = low(label->hours);
  if (label->tensOfMinutes > 0) outMinutes = low(10 * label->tensOfMinutes);
  outMinutes += low(label->minuteOfTen);
  if (label->seconds > 0) outSeconds = low(label->seconds);
  outFrames = low(label->frames);
}

namespace {

/// Tells whether a display has no frames to count: contradicting flags, or a rate of 0.
bool IsUncountable(std::int32_t inSampleRate, std::int32_t inTimecodeFPS, unsigned inDisplay) {
  constexpr unsigned kContradiction = kDropFrame | kPulldown;
  return inSampleRate == 0 || inTimecodeFPS == 0 || (inDisplay & kContradiction) == kContradiction;
}

/// Answers where there are no frames to count.
[[gnu::cold]] bool AnswerUncountable(UTF16String& outString, std::int32_t inSampleRate,
                                     unsigned inDisplay) {
  if ((inDisplay & kDropFrame) != 0 && (inDisplay & kPulldown) != 0) {
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
  outString.clear();
  return false;
}

/// \tparam kRate kNominalRate, or kPulldown or kDropFrame for the pulled-down rate.
template <SMPTEDisplay kRate>
bool WriteFrameCount(UTF16String& outString, std::int64_t inSamples, std::int32_t inSampleRate,
                     std::int32_t inTimecodeFPS) {
  if (IsUncountable(inSampleRate, inTimecodeFPS, kRate)) [[unlikely]] {
    return AnswerUncountable(outString, inSampleRate, kRate);
  }
  const std::int64_t magnitude = Magnitude(inSamples);
  if constexpr (kRate == kDropFrame) {
    label::ReplaceByNumber(outString, PulledDownFrameCount(magnitude, inSampleRate, inTimecodeFPS));
  } else {
    const FrameRatio ratio(magnitude, inSampleRate, inTimecodeFPS, kRate == kPulldown);
    label::ReplaceByNumber(outString, static_cast<std::int32_t>(ratio.WholeFrames()));
  }
  return true;
}

/// Writes any display of any position.
[[gnu::noinline]] bool WriteAnySMPTE(UTF16String& outString, std::int64_t inSamples,
                                     std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                                     unsigned inDisplay) {
  if (IsUncountable(inSampleRate, inTimecodeFPS, inDisplay)) {
    return AnswerUncountable(outString, inSampleRate, inDisplay);
  }

  const bool isDropFrame = (inDisplay & kDropFrame) != 0;
  const bool isPulledDown = (inDisplay & kPulldown) != 0;
  if ((inDisplay & kFramesOnly) != 0) {
    const auto write = isDropFrame    ? &WriteFrameCount<kDropFrame>
                       : isPulledDown ? &WriteFrameCount<kPulldown>
                                      : &WriteFrameCount<kNominalRate>;
    return write(outString, inSamples, inSampleRate, inTimecodeFPS);
  }

  const bool isNegative = inSamples < 0;
  const std::int64_t magnitude = Magnitude(inSamples);
  const FrameRatio ratio(magnitude, inSampleRate, inTimecodeFPS, isDropFrame || isPulledDown);
  if (isDropFrame) {
    const auto label = DropFrameLabel(ratio.WholeFrames(), inTimecodeFPS);
    WriteDropFrameLabel(outString, isNegative, label ? FieldsOf(*label) : TimecodeFields());
  } else {
    const TimecodeFields fields = SplitFrames(ratio.WholeFrames(), inTimecodeFPS);
    const int framesWidth = DivisionWidth(inTimecodeFPS);
    const std::int32_t hundredths =
        (inDisplay & kShowSubframes) != 0 ? ratio.HundredthsOfFrame() : 0;
    // By reference: the wide loads of a copy would wait for the narrow stores just before them.
    label::Replace(outString, [&](auto& sink) {
      ComposeFields(sink, fields, inDisplay, isNegative, framesWidth, hundredths);
    });
  }
  return true;
}

/// The fields of a label in which nothing wraps and every field but the hours has two digits.
struct UsualFields {
  std::uint32_t hours;
  std::uint32_t minutes;
  std::uint32_t seconds;
  std::uint32_t frames;
};

/// In seconds: at the one a label becomes longer, from the other on it is no longer usual.
constexpr std::uint32_t kHundredHours = 100 * 3600;
constexpr std::uint32_t kThousandHours = 10 * kHundredHours;

/// The largest frame rate whose frames have two digits, and with which nothing wraps in 32 bits.
constexpr std::int32_t kLargestUsualRate = 100;

/// Multiplied by these, a usual frame count is divided by a usual rate: a division by a variable
/// costs as much as half a label.
constexpr int kReciprocalBits = 36;
constexpr auto kReciprocals = [] {
  std::array<std::uint64_t, kLargestUsualRate + 1> reciprocals{};
  for (std::uint64_t rate = 1; rate <= kLargestUsualRate; ++rate)
    reciprocals[rate] = (std::uint64_t{1} << kReciprocalBits) / rate + 1;
  return reciprocals;
}();
static_assert(std::uint64_t{kThousandHours} * kLargestUsualRate * kLargestUsualRate <=
                  (std::uint64_t{1} << kReciprocalBits),
              "What a reciprocal is too large by, up to the rate in 2^36, must not add up to one.");

UsualFields SplitUsualFrames(std::uint32_t inFrames, std::uint32_t inTimecodeFPS) {
  const auto seconds =
      static_cast<std::uint32_t>(inFrames * kReciprocals[inTimecodeFPS] >> kReciprocalBits);
  const std::uint32_t minutes = seconds / 60;
  const std::uint32_t hours = seconds / 3600;
  return {hours, minutes - hours * 60, seconds - minutes * 60, inFrames - seconds * inTimecodeFPS};
}

constexpr bool HasDropFrameLabels(std::int32_t inTimecodeFPS) {
  return inTimecodeFPS == 30 || inTimecodeFPS == 60;
}

/// \param inTimecodeFPS 30 or 60.
UsualFields SplitUsualDropFrames(std::uint32_t inFrames, std::uint32_t inTimecodeFPS) {
  const auto label = inTimecodeFPS == 30 ? dropframe::Split<std::uint32_t>(inFrames, 1)
                                         : dropframe::Split<std::uint32_t>(inFrames, 2);
  return {label.hours, 10 * label.tensOfMinutes + label.minuteOfTen, label.seconds, label.frames};
}

/// \tparam kHourDigits 2 or 3, as many as the hours have.
template <SMPTEDisplay kDisplay, int kHourDigits>
[[gnu::always_inline]] inline void WriteUsualFrames(label::Writer inWriter, std::uint64_t inFrames,
                                                    std::uint32_t inTimecodeFPS) {
  constexpr bool kIsDropFrame = kDisplay == kDropFrame;
  constexpr char16_t kSeparator = kIsDropFrame ? u';' : u':';
  const auto split = kIsDropFrame ? &SplitUsualDropFrames : &SplitUsualFrames;
  const UsualFields fields = split(static_cast<std::uint32_t>(inFrames), inTimecodeFPS);
  label::WriteDigits<kHourDigits>(inWriter, fields.hours);
  inWriter.Unit(kSeparator);
  inWriter.Pair(fields.minutes);
  inWriter.Unit(kSeparator);
  inWriter.Pair(fields.seconds);
  inWriter.Unit(kSeparator);
  inWriter.Pair(fields.frames);
}

/// The length of "01:02:03:04", which nearly every label has.
constexpr std::size_t kFullLabelUnits = 11;

/// Writes the label of a usual position, from 0 on, over a text of the same length, as a running
/// display has it. This is what displays show nearly always, and it needs no call.
/// \return false, with nothing written, for all else.
template <SMPTEDisplay kDisplay>
bool OverwriteFullLabel(char16_t* outUnits, std::size_t inLength, std::uint64_t inSamples,
                        std::int32_t inSampleRate, std::int32_t inTimecodeFPS) {
  constexpr bool kIsDropFrame = kDisplay == kDropFrame;
  constexpr std::uint32_t kFactor = kDisplay == kFullLabel ? 1 : 1000;
  constexpr std::uint64_t kDivisor = kDisplay == kFullLabel ? 1 : 1001;
  constexpr std::uint64_t kTooManySamples = std::uint64_t{1} << 46;
  static_assert(kTooManySamples <= (std::uint64_t{1} << 63) / kFactor / kLargestUsualRate);
  const bool isUsualRate =
      kIsDropFrame ? HasDropFrameLabels(inTimecodeFPS) : DivisionWidth(inTimecodeFPS) == 2;
  if (!isUsualRate || inSampleRate <= 0 || inSamples >= kTooManySamples) return false;

  const auto fps = static_cast<std::uint32_t>(inTimecodeFPS);
  const std::uint32_t factor = kFactor * fps;
  const std::uint64_t wholeFrames =
      inSamples * factor / (kDivisor * static_cast<std::uint64_t>(inSampleRate));
  // Of a thousand labels drop-frame counting leaves out one.
  const std::uint32_t framesOfHundredHours =
      (kIsDropFrame ? kHundredHours / 1000 * 999 : kHundredHours) * fps;
  const std::uint32_t framesOfThousandHours = 10 * framesOfHundredHours;
  if (wholeFrames < framesOfHundredHours) {
    if (inLength != kFullLabelUnits) return false;
    WriteUsualFrames<kDisplay, 2>(label::Writer(outUnits), wholeFrames, fps);
    return true;
  }
  if (wholeFrames >= framesOfThousandHours || inLength != kFullLabelUnits + 1) return false;
  WriteUsualFrames<kDisplay, 3>(label::Writer(outUnits), wholeFrames, fps);
  return true;
}

/// Writes the full labels that the usual way leaves: those of positions below 0 are a sign and the
/// label of the magnitude, which may be usual again; all else goes the general way.
template <SMPTEDisplay kDisplay>
[[gnu::noinline]] bool WriteOtherFullLabel(UTF16String& outString, std::int64_t inSamples,
                                           std::int32_t inSampleRate, std::int32_t inTimecodeFPS) {
  if (inSamples < 0 && !outString.empty() &&
      OverwriteFullLabel<kDisplay>(outString.data() + 1, outString.size() - 1,
                                   static_cast<std::uint64_t>(Magnitude(inSamples)), inSampleRate,
                                   inTimecodeFPS)) {
    outString.front() = u'-';
    return true;
  }
  return WriteAnySMPTE(outString, inSamples, inSampleRate, inTimecodeFPS, kDisplay);
}

template <SMPTEDisplay kDisplay>
bool WriteFullLabel(UTF16String& outString, std::int64_t inSamples, std::int32_t inSampleRate,
                    std::int32_t inTimecodeFPS) {
  // Taken without a sign, a position below 0 is 2^63 or more, which is never usual.
  return OverwriteFullLabel<kDisplay>(outString.data(), outString.size(),
                                      static_cast<std::uint64_t>(inSamples), inSampleRate,
                                      inTimecodeFPS) ||
         WriteOtherFullLabel<kDisplay>(outString, inSamples, inSampleRate, inTimecodeFPS);
}

}  // namespace

bool ConvertSamplesToTimecode(UTF16String& outString, std::int64_t inSamples,
                              std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                              bool inDropFrame, bool inPulldown, bool inFramesOnly, bool inNoFrames,
                              bool inTrimLeadingZeros, bool inShowSubframes, bool inNoHours) {
  const auto writeFullLabel = [&](auto write) {
    return write(outString, inSamples, inSampleRate, inTimecodeFPS);
  };
  if (!(inFramesOnly | inNoFrames | inTrimLeadingZeros | inShowSubframes | inNoHours)) [[likely]] {
    if (!(inDropFrame | inPulldown)) [[likely]]
      return writeFullLabel(&WriteFullLabel<kFullLabel>);
    if (!inPulldown) return writeFullLabel(&WriteFullLabel<kDropFrame>);
    if (!inDropFrame) return writeFullLabel(&WriteFullLabel<kPulldown>);
  }
  const auto flag = [](bool isSet, SMPTEDisplay display) { return isSet ? display : kFullLabel; };
  return WriteAnySMPTE(outString, inSamples, inSampleRate, inTimecodeFPS,
                       flag(inDropFrame, kDropFrame) | flag(inPulldown, kPulldown) |
                           flag(inFramesOnly, kFramesOnly) | flag(inNoFrames, kNoFrames) |
                           flag(inTrimLeadingZeros, kTrimLeadingZeros) |
                           flag(inShowSubframes, kShowSubframes) | flag(inNoHours, kNoHours));
}

// -------------------------------------------------------------------------------------- Clock time

namespace {

/// The milliseconds past the whole second, of the sample's middle.
std::int32_t MillisecondsPastSecond(std::int64_t inMagnitude, std::int64_t inWholeSeconds,
                                    std::int32_t inSampleRate) {
  const double rate = inSampleRate;
  const double rest =
      std::fma(-static_cast<double>(inWholeSeconds), rate, static_cast<double>(inMagnitude));
  return TruncateTo<std::int32_t>(std::fma(rest, 1000.0, 500.0) / rate);
}

std::int32_t HundredthsPastSecond(std::int64_t inMagnitude, std::int64_t inWholeSeconds,
                                  std::int64_t inSampleRate) {
  const std::int64_t rest = Subtract(inMagnitude, Multiply(inWholeSeconds, inSampleRate));
  return static_cast<std::int32_t>(
      Divide<std::int64_t>(Multiply<std::int64_t>(rest, 100), inSampleRate));
}

/// A clock display that is written nearly always: a fraction is shown, the hours have at most three
/// digits, and the sample rate is positive.
struct UsualClock {
  bool isNegative;
  std::uint32_t hours;
  std::uint32_t minutes;
  std::uint32_t seconds;
  std::int64_t samplesPastSecond;
  std::int32_t sampleRate;

  UsualClock(bool inIsNegative, std::int64_t inMagnitude, std::int32_t inSampleRate,
             std::uint32_t inWholeSeconds)
      : isNegative(inIsNegative),
        hours(inWholeSeconds / 3600),
        minutes(inWholeSeconds / 60 - hours * 60),
        seconds(inWholeSeconds - inWholeSeconds / 60 * 60),
        samplesPastSecond(inMagnitude - std::int64_t{inWholeSeconds} * inSampleRate),
        sampleRate(inSampleRate) {}

  /// \return false, with nothing written, for a text of another length.
  bool Overwrite(UTF16String& outString) const {
    if (hours >= 10) {
      const std::uint32_t hundredths = PastSecond(100, 0);
      return hours < 100 ? OverwriteHours<2, 2>(outString, hundredths)
                         : OverwriteHours<3, 2>(outString, hundredths);
    }
    const std::uint32_t milliseconds = PastSecond(1000, 500);
    if (hours > 0) return OverwriteHours<1, 3>(outString, milliseconds);
    return label::Overwrite(outString, [=, this](auto& sink) {
      sink.Unit(u' ');
      sink.Unit(u' ');
      sink.Unit(isNegative ? u'-' : u' ');
      if (minutes < 10) {
        sink.Digit(minutes);
      } else {
        sink.Pair(minutes);
      }
      sink.Unit(u':');
      sink.Pair(seconds);
      sink.Unit(u'.');
      label::WriteDigits<3>(sink, milliseconds);
    });
  }

 private:
  /// Both fused operations of the general case are exact here, so integers give the same; and no
  /// quotient of two integers this small rounds up to the next whole number.
  std::uint32_t PastSecond(std::int32_t inUnitsPerSecond, std::int32_t inHalfSample) const {
    const std::int64_t units = samplesPastSecond * inUnitsPerSecond + inHalfSample;
    return static_cast<std::uint32_t>(static_cast<double>(units) / sampleRate);
  }

  template <int kHourDigits, int kFractionDigits>
  bool OverwriteHours(UTF16String& outString, std::uint32_t inFraction) const {
    return label::Overwrite(outString, [=, this](auto& sink) {
      if (isNegative) sink.Unit(u'-');
      label::WriteDigits<kHourDigits>(sink, hours);
      sink.Unit(u':');
      sink.Pair(minutes);
      sink.Unit(u':');
      sink.Pair(seconds);
      sink.Unit(u'.');
      label::WriteDigits<kFractionDigits>(sink, inFraction);
    });
  }
};

/// Writes any clock time; under an hour the sign stands right-aligned in a field of three units,
/// before the minutes.
[[gnu::noinline]] void WriteAnyClock(UTF16String& outString, bool inIsNegative,
                                     std::int64_t inMagnitude, std::int64_t inWholeSeconds,
                                     std::int32_t inSampleRate, bool inShowsFraction) {
  const auto field = [](std::int64_t value, int width) {
    return label::Number(static_cast<std::int32_t>(value), width);
  };
  const std::int64_t wholeMinutes = inWholeSeconds / 60;
  const std::int64_t hours = wholeMinutes / 60;
  const auto fraction =
      !inShowsFraction ? field(0, 1)
      : hours >= 10    ? field(HundredthsPastSecond(inMagnitude, inWholeSeconds, inSampleRate), 2)
                    : field(MillisecondsPastSecond(inMagnitude, inWholeSeconds, inSampleRate), 3);
  label::Replace(outString, [=](auto& sink) {
    if (hours <= 0) {
      sink.Unit(u' ');
      sink.Unit(u' ');
      sink.Unit(inIsNegative ? u'-' : u' ');
      field(wholeMinutes, 1).Write(sink);
    } else {
      if (inIsNegative) sink.Unit(u'-');
      field(hours, 1).Write(sink);
      sink.Unit(u':');
      field(wholeMinutes % 60, 2).Write(sink);
    }
    sink.Unit(u':');
    field(inWholeSeconds % 60, 2).Write(sink);
    if (!inShowsFraction) return;
    sink.Unit(u'.');
    fraction.Write(sink);
  });
}

}  // namespace

void ConvertSamplesToDecimalTimecode(UTF16String& outString, std::int64_t inSamples,
                                     std::int32_t inSampleRate, bool inWholeSeconds) {
  if (inSampleRate == 0) return WriteZero(outString);

  const bool isNegative = inSamples < 0;
  const std::int64_t magnitude = Magnitude(inSamples);
  const std::int64_t wholeSeconds = Divide<std::int64_t>(magnitude, inSampleRate);
  const bool isUsual =
      !inWholeSeconds && inSampleRate > 0 && magnitude >= 0 && wholeSeconds < kThousandHours;
  if (isUsual &&
      UsualClock(isNegative, magnitude, inSampleRate, static_cast<std::uint32_t>(wholeSeconds))
          .Overwrite(outString)) {
    return;
  }
  WriteAnyClock(outString, isNegative, magnitude, wholeSeconds, inSampleRate, !inWholeSeconds);
}

// ------------------------------------------------------------------------------------ Milliseconds

namespace {

/// Tenths of a millisecond below this show all their digits.
constexpr std::uint64_t kAllDigitsShow = 1000000;

template <class Sink>
void ComposeTenths(Sink& ioSink, std::uint32_t inTenths) {
  const std::uint32_t whole = inTenths / 10;
  ioSink.Digits(whole, label::DigitCount(whole));
  if (inTenths % 10 == 0) return;
  ioSink.Unit(u'.');
  ioSink.Digit(inTenths % 10);
}

/// A number of milliseconds rounded half to even to six significant digits, of which those behind
/// the first show without zeros at their end where an exponent shows.
struct SixDigits {
  std::uint32_t digits;
  int exponent;  ///< the power of ten of the first digit
  int decimalCount = 5;
  std::uint32_t decimals = 0;

  /// \param inTenths at least kAllDigitsShow.
  explicit SixDigits(std::uint64_t inTenths) : exponent(label::DigitCount(inTenths) - 2) {
    const std::uint64_t unit = label::PowerOfTen(exponent - 4);
    const std::uint64_t rest = 2 * (inTenths % unit);
    digits = static_cast<std::uint32_t>(inTenths / unit);
    if (rest > unit || (rest == unit && digits % 2 != 0)) ++digits;
    if (digits == 1000000) {
      digits = 100000;
      ++exponent;
    }
    decimals = digits % 100000;
    for (; decimalCount > 0 && decimals % 10 == 0; --decimalCount) decimals /= 10;
  }
};

template <class Sink>
void ComposeSixDigits(Sink& ioSink, const SixDigits& inNumber) {
  if (inNumber.exponent < 6) return label::WriteDigits<6>(ioSink, inNumber.digits);
  ioSink.Digit(inNumber.digits / 100000);
  if (inNumber.decimalCount > 0) {
    ioSink.Unit(u'.');
    ioSink.Digits(inNumber.decimals, inNumber.decimalCount);
  }
  ioSink.Unit(u'e');
  ioSink.Unit(u'+');
  ioSink.Pair(static_cast<std::uint32_t>(inNumber.exponent));
}

/// Writes whole tenths of a millisecond in general notation with six significant digits, as a
/// stream writes the double nearest to them; exact below 10^15 tenths, where that double never
/// changes a digit.
void WriteTenths(UTF16String& outString, std::int64_t inTenths) {
  const std::uint64_t magnitude = label::MagnitudeOf(inTenths);
  const auto replace = [&](const auto& compose) {
    label::Replace(outString, [&](auto& sink) {
      if (inTenths < 0) sink.Unit(u'-');
      compose(sink);
    });
  };
  if (magnitude < kAllDigitsShow) {
    return replace([=](auto& sink) { ComposeTenths(sink, static_cast<std::uint32_t>(magnitude)); });
  }
  replace([number = SixDigits(magnitude)](auto& sink) { ComposeSixDigits(sink, number); });
}

[[gnu::cold, gnu::noinline]] void WriteByStream(UTF16String& outString, double inValue) {
  plinth::oUTF16StringStream stream;
  stream << inValue;
  outString.assign(stream.view());
}

[[gnu::noinline]] bool WriteMilliseconds(UTF16String& outString, std::int64_t inSamples,
                                         std::int32_t inSampleRate) {
  constexpr double kExactTenths = 1e15;
  const double rounded = static_cast<double>(inSamples) * 10000.0 / inSampleRate + 0.5;
  const double tenths = rounded - Fraction(rounded);
  if (std::fabs(tenths) < kExactTenths) {
    WriteTenths(outString, static_cast<std::int64_t>(tenths));
  } else {
    WriteByStream(outString, tenths * 0.1);
  }
  return true;
}

[[gnu::noinline]] bool WriteSampleCount(UTF16String& outString, std::int64_t inSamples) {
  label::ReplaceByNumber(outString, inSamples);
  return true;
}

}  // namespace

// ----------------------------------------------------------------------------------- Musical time

namespace {

/// Without an offset, the usual case, the fused operation below gives 0.5 for every finite rate.
bool HasOffset(double inSampleRate, const BeatInfo& inBeatInfo) {
  return inBeatInfo.dOffsetMs != 0.0 || !std::isfinite(inSampleRate);
}

/// Samples from sample 0 to bar 1 beat 1, rounded to the nearest, halves upward.
double OffsetInSamples(double inSampleRate, const BeatInfo& inBeatInfo) {
  if (!HasOffset(inSampleRate, inBeatInfo)) return 0.0;
  return Floor(std::fma(inSampleRate * 0.001, inBeatInfo.dOffsetMs, 0.5));
}

/// A point or length in musical time.
struct MusicalTime {
  std::int32_t bar = 0;
  std::int32_t beat = 0;
  std::int32_t tick = 0;
  double ticks = 0.0;  ///< with the fraction of a tick
  double beats = 0.0;  ///< with the fraction of a beat, whole bars past the zero point taken in

  std::int32_t ThousandthsOfTick() const {
    return static_cast<std::int32_t>(Subtract<std::int64_t>(
        TruncateTo<std::int64_t>(ticks * 1000.0), std::int64_t{tick} * 1000));
  }

  std::int32_t ThousandthsOfBeat() const {
    return TruncateTo<std::int32_t>(Fraction(beats) * 1000.0);
  }
};

/// Beats from the zero point, lifted by half a thousandth of a tick so that truncation rounds.
/// \param inSamples samples from the zero point.
double LiftedBeats(double inSamples, double inSampleRate, const BeatInfo& inBeatInfo) {
  constexpr double kOneTwoHundredFortieth = 0.004166666666666667;
  return inSamples * kOneTwoHundredFortieth * inBeatInfo.dTempo * inBeatInfo.iBeatUnit /
             inSampleRate +
         0.0005 / inBeatInfo.iTicksPerBeat;
}

MusicalTime SplitBeats(double inBeats, const BeatInfo& inBeatInfo, bool inIsDuration) {
  const std::int32_t beatsPerBar = inBeatInfo.iBeatsPerBar;
  const std::int32_t ticksPerBeat = inBeatInfo.iTicksPerBeat;
  MusicalTime time;
  time.beats = inBeats;
  std::int32_t barsBeforeZero = 0;
  if (!(inBeats >= 0.0)) {
    barsBeforeZero = Add(TruncateTo<std::int32_t>(-inBeats / beatsPerBar), 1);
    time.beats += Multiply(barsBeforeZero, beatsPerBar);
  }
  if (ticksPerBeat >= 1) {
    time.ticks = Fraction(time.beats) * ticksPerBeat;
    time.tick = TruncateTo<std::int32_t>(time.ticks);
    if (time.tick == ticksPerBeat) [[unlikely]] {
      // So close below a whole beat that the product rounded up, which only another rounding mode
      // than to nearest does: that beat it is.
      time.tick = 0;
      time.ticks = 0.0;
      time.beats += 1.0 / ticksPerBeat;
    }
  }

  const std::int32_t first = inIsDuration ? 0 : 1;
  const auto wholeBeats = TruncateTo<std::int32_t>(time.beats);
  const std::int32_t wholeBars = Divide(wholeBeats, beatsPerBar);
  time.beat = Add(Subtract(wholeBeats, Multiply(wholeBars, beatsPerBar)), first);
  time.bar = Subtract(Add(wholeBars, first), barsBeforeZero);
  return time;
}

/// Writes bar, beat and tick of nearly every display over a text of the same length: from the zero
/// point on, and with fewer than ten beats to a bar. Two digits of a beat would cost a fifth more.
/// \return false, with nothing written, for a text of another length and for any other time.
bool OverwriteUsualMusicalTime(UTF16String& outString, double inBeats, const BeatInfo& inBeatInfo,
                               bool inIsDuration) {
  constexpr double kFarAway = std::numeric_limits<std::int32_t>::max();
  const std::int32_t beatsPerBar = inBeatInfo.iBeatsPerBar;
  const std::int32_t ticksPerBeat = inBeatInfo.iTicksPerBeat;
  if (!(inBeats >= 0.0 && inBeats < kFarAway) || beatsPerBar < 1 || beatsPerBar > 9 ||
      ticksPerBeat < 1 || ticksPerBeat > 10000) {
    return false;
  }
  const auto wholeBeats = static_cast<std::int32_t>(inBeats);
  const auto tick = static_cast<std::int32_t>((inBeats - wholeBeats) * ticksPerBeat);
  if (tick == ticksPerBeat) return false;  // a host may have told its processor to round upward
  const auto wholeBars = static_cast<std::uint32_t>(wholeBeats / beatsPerBar);
  const auto beat = static_cast<std::uint32_t>(wholeBeats % beatsPerBar);

  const std::uint32_t first = inIsDuration ? 0 : 1;
  const std::uint32_t bar = wholeBars + first;
  const int tickWidth = DivisionWidth(ticksPerBeat);
  // Of a text too short this is a number of digits that no number has.
  const std::size_t barWidth = outString.size() - 3 - static_cast<std::size_t>(tickWidth);
  if (!label::HasDigits(bar, barWidth)) return false;
  label::Writer writer(outString.data());
  writer.Digits(bar, static_cast<int>(barWidth));
  writer.Unit(u':');
  writer.Digit(beat + first);
  writer.Unit(u'.');
  writer.Digits(static_cast<std::uint32_t>(tick), tickWidth);
  return true;
}

/// Writes the fields that a precision shows; the decimal-beat form shows its own at every one.
[[gnu::noinline]] bool WriteAnyMusicalTime(UTF16String& outString, double inBeats,
                                           const BeatInfo& inBeatInfo, bool inIsDuration,
                                           int inPrecision) {
  static constexpr char kFunction[] =
      "bool mezzo::utility::ConvertSamplesToBarsAndBeats(plinth::UTF16String &, double, double, "
      "const mezzo::utility::BeatInfo &, bool, int)";
  MEZZO_ASSERT(inPrecision >= 0, "", kFunction);
  MEZZO_ASSERT(inBeatInfo.iBeatsPerBar != 0, "programmer error!\n", kFunction);
  if (inBeatInfo.iBeatsPerBar == 0) return false;

  const MusicalTime time = SplitBeats(inBeats, inBeatInfo, inIsDuration);
  const bool isDecimal = inBeatInfo.iTicksPerBeat == -1;
  const label::Number bar(time.bar);
  const label::Number beat(time.beat);
  const label::Number part =
      isDecimal ? label::Number(time.ThousandthsOfBeat(), 3)
                : label::Number(time.tick, DivisionWidth(inBeatInfo.iTicksPerBeat));
  const label::Number thousandths(time.ThousandthsOfTick(), 3);
  label::Replace(outString, [=](auto& sink) {
    if (isDecimal || inPrecision >= 0) bar.Write(sink);
    if (isDecimal || inPrecision >= 1) {
      sink.Unit(u':');
      beat.Write(sink);
    }
    if (isDecimal || inPrecision >= 2) {
      sink.Unit(u'.');
      part.Write(sink);
    }
    if (inPrecision >= 3) {
      sink.Unit(u'.');
      thousandths.Write(sink);
    }
  });
  return true;
}

/// \param inSamples samples from the zero point.
[[gnu::noinline]] bool WriteMusicalTime(UTF16String& outString, double inSamples,
                                        double inSampleRate, const BeatInfo& inBeatInfo,
                                        bool inIsDuration, int inPrecision) {
  const double beats = LiftedBeats(inSamples, inSampleRate, inBeatInfo);
  if (inPrecision == 2 && OverwriteUsualMusicalTime(outString, beats, inBeatInfo, inIsDuration)) {
    return true;
  }
  return WriteAnyMusicalTime(outString, beats, inBeatInfo, inIsDuration, inPrecision);
}

}  // namespace

bool ConvertSamplesToBarsAndBeats(UTF16String& outString, double inSamples, double inSampleRate,
                                  const BeatInfo& inBeatInfo, bool inIsDuration, int inPrecision) {
  const double offset = inIsDuration ? 0.0 : OffsetInSamples(inSampleRate, inBeatInfo);
  return WriteMusicalTime(outString, inSamples - offset, inSampleRate, inBeatInfo, inIsDuration,
                          inPrecision);
}

void ConvertSamplesToBeats(UTF16String& outString, std::int64_t inSamples,
                           std::int32_t inSampleRate, double inTempo) {
  if (inSampleRate == 0) return WriteZero(outString);

  constexpr double kHalfThousandth = 0.0005;
  const double beats = static_cast<double>(inSamples) * inTempo / (inSampleRate * 60.0);
  const bool isBelowZero = beats + kHalfThousandth < 0.0;
  const double lifted = (isBelowZero ? -beats : beats) + kHalfThousandth;
  const auto whole = TruncateTo<std::int32_t>(lifted);
  const auto thousandths = TruncateTo<std::int32_t>(Fraction(lifted) * 1000.0);
  const label::Number wholeNumber(whole);
  const label::Number thousandthsNumber(thousandths, 3);
  label::Replace(outString, [=](auto& sink) {
    if (isBelowZero && (whole != 0 || thousandths != 0)) sink.Unit(u'-');
    wholeNumber.Write(sink);
    sink.Unit(u'.');
    thousandthsNumber.Write(sink);
  });
}

// ------------------------------------------------------------------------------ Writing any format

bool ConvertSamplesToTimecode(UTF16String& outString, std::int64_t inSamples,
                              std::int32_t inSampleRate, TimecodeFormat inFormat,
                              std::int32_t inTimecodeFPS, const BeatInfo* inBeatInfo,
                              bool inIsDuration) {
  static constexpr char kFunction[] =
      "bool mezzo::utility::ConvertSamplesToTimecode(plinth::UTF16String &, std::int64_t, "
      "std::int32_t, mezzo::utility::TimecodeFormat, std::int32_t, const mezzo::utility::BeatInfo "
      "*, bool)";
  const auto write = [&](auto writer, auto... display) {
    return writer(outString, inSamples, inSampleRate, inTimecodeFPS, display...);
  };

  MEZZO_ASSERT(inFormat > kTimecodeFormat_None && inFormat < kTimecodeFormat_AfterLast, "",
               kFunction);
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      ConvertSamplesToDecimalTimecode(outString, inSamples, inSampleRate, false);
      return true;
    case kTimecodeFormat_Samples:
      return WriteSampleCount(outString, inSamples);
    case kTimecodeFormat_SMPTE:
      return write(&WriteFullLabel<kFullLabel>);
    case kTimecodeFormat_SMPTEPulldown:
    case kTimecodeFormat_SMPTEPulldown2:
    case kTimecodeFormat_SMPTEPulldown3:
      return write(&WriteFullLabel<kPulldown>);
    case kTimecodeFormat_SMPTEDropFrame:
    case kTimecodeFormat_SMPTEDropFrame2:
      return write(&WriteFullLabel<kDropFrame>);
    case kTimecodeFormat_Beats:
      MEZZO_ASSERT(inBeatInfo, "programmer error!\n", kFunction);
      if (inBeatInfo == nullptr) return false;
      ConvertSamplesToBeats(outString, inSamples, inSampleRate, inBeatInfo->dTempo);
      return true;
    case kTimecodeFormat_BarsAndBeats:
      MEZZO_ASSERT(inBeatInfo, "programmer error!\n", kFunction);
      if (inBeatInfo == nullptr) return false;
      return ConvertSamplesToBarsAndBeats(outString, static_cast<double>(inSamples), inSampleRate,
                                          *inBeatInfo, inIsDuration, 2);
    case kTimecodeFormat_Frames:
      return write(&WriteFrameCount<kNominalRate>);
    case kTimecodeFormat_PulldownFrames:
      return write(&WriteFrameCount<kDropFrame>);
    case kTimecodeFormat_CompactSubframes:
      return write(&WriteAnySMPTE, kTrimLeadingZeros | kShowSubframes);
    case kTimecodeFormat_Milliseconds:
      return WriteMilliseconds(outString, inSamples, inSampleRate);
    case kTimecodeFormat_Reserved:
    case kTimecodeFormat_None:
    case kTimecodeFormat_AfterLast:
      break;
  }
  return true;
}

// ----------------------------------------------------------------------------------------- Reading

namespace {

/// Clock-like text split into its fields, aligned from the right, and a fraction of the last.
struct ParsedTimeCode {
  int hours = 0;
  int minutes = 0;
  int seconds = 0;
  int frames = 0;
  int fractionNumerator = 0;
  int fractionDenominator = 1;

  void AppendField(int inValue) {
    hours = minutes;
    minutes = seconds;
    seconds = frames;
    frames = inValue;
  }

  void TurnLastFieldIntoFraction(int inLength) {
    SetFraction(frames, inLength);
    frames = seconds;
    seconds = minutes;
    minutes = hours;
    hours = 0;
  }

  /// \param inLength code units from the fraction's first digit to the end of the text.
  void SetFraction(int inNumerator, int inLength) {
    static constexpr std::array<int, 10> kPowersOfTen{
        1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
    constexpr int kLongest = static_cast<int>(kPowersOfTen.size()) - 1;
    fractionNumerator = inNumerator;
    fractionDenominator = inLength > kLongest ? std::numeric_limits<int>::max()
                          : inLength < 0      ? 1
                                              : kPowersOfTen[static_cast<std::size_t>(inLength)];
  }
};

/// The number of code units from one to another, reported where it does not fit. The test in front
/// spares every field of every text the call.
int UnitCount(const char16_t* inUnit, const char16_t* inEnd) {
  const std::ptrdiff_t count = inEnd - inUnit;
  if (count <= std::numeric_limits<int>::max()) [[likely]]
    return static_cast<int>(count);
  return plinth::utility::NumericCast<int, long>(static_cast<long>(count));
}

/// Reads any text as clock fields. Whatever is not a digit separates them; a "." among what
/// separates makes the number behind it a decimal fraction, with which reading ends.
[[gnu::always_inline]] inline ParsedTimeCode ParseTimeCodeString(const UTF16String& inString) {
  constexpr int kMostFields = 5;
  ParsedTimeCode parsed;
  const char16_t* unit = inString.data();
  const char16_t* const end = unit + inString.size();
  int length = 0;  // stays 0 for a first number, which makes the fraction of "1." a whole unit
  for (int fields = 0; fields < kMostFields; ++fields) {
    bool isDotted = false;
    for (; unit != end && !number::IsDigit(*unit); ++unit) isDotted |= *unit == u'.';
    if (unit == end) {
      if (isDotted && fields > 0) parsed.TurnLastFieldIntoFraction(length);
      break;
    }
    if (isDotted || fields > 0) length = UnitCount(unit, end);
    const auto value = static_cast<int>(number::ReadDigits(unit, end, number::kLargestInt));
    if (isDotted) {
      parsed.SetFraction(value, length);
      break;
    }
    parsed.AppendField(value);
  }
  return parsed;
}

std::int64_t RoundUp(std::int64_t inProduct, std::int64_t inDivisor) {
  return Divide(Add(inProduct, Subtract<std::int64_t>(inDivisor, 1)), inDivisor);
}

/// The position, rounded up, is (factor × position in fractions of a frame + divisor - 1) /
/// divisor. Where the dividend is estimated to be larger than this, the estimate takes its place.
constexpr double kLargestDividend = 8070450532247928832.0;  // 7 × 2^60

/// No estimate is that large where the product is not larger than this: no divisor exceeds 2^62.
constexpr std::int64_t kSurelySmall = std::int64_t{1} << 61;

/// Rounds up a position whose product is large or has wrapped.
[[gnu::cold, gnu::noinline]] std::int64_t RoundUpLarge(
    std::int64_t inProduct, std::int64_t inFactor, std::int64_t inFractions,
    std::int32_t inWholeFrames, std::int32_t inNumerator, std::int64_t inDivisor) {
  const double position =
      std::fma(static_cast<double>(inFractions), static_cast<double>(inWholeFrames),
               static_cast<double>(inNumerator));
  const double estimate = std::fma(static_cast<double>(inFactor), position,
                                   static_cast<double>(Subtract<std::int64_t>(inDivisor, 1)));
  if (estimate <= kLargestDividend) return RoundUp(inProduct, inDivisor);
  return TruncateTo<std::int64_t>(estimate / static_cast<double>(inDivisor));
}

/// Reads any text.
[[gnu::noinline]] std::int64_t ReadAnySMPTE(const UTF16String& inString, std::int32_t inSampleRate,
                                            std::int32_t inTimecodeFPS, bool inPulldown,
                                            bool inDropFrame) {
  static constexpr char kFunction[] =
      "bool mezzo::utility::ConvertTimecodeToSamples(std::int64_t &, const plinth::UTF16String &, "
      "std::int32_t, std::int32_t, bool, bool)";
  if (inString.empty()) return -1;

  const ParsedTimeCode parsed = ParseTimeCodeString(inString);
  std::int32_t wholeFrames;
  if (inDropFrame) {
    const std::int32_t framesPerHour = dropframe::FramesPerHour(inTimecodeFPS);
    MEZZO_ASSERT(framesPerHour % 6 == 0, "Drop frame not supported on the given frame rate.\n",
                 kFunction);
    wholeFrames = dropframe::Count(parsed.hours, parsed.minutes, parsed.seconds, parsed.frames,
                                   inTimecodeFPS);
  } else {
    wholeFrames = Add(Add(Multiply(parsed.hours, Multiply(inTimecodeFPS, 3600)),
                          Multiply(parsed.minutes, Multiply(inTimecodeFPS, 60))),
                      Add(Multiply(parsed.seconds, inTimecodeFPS), parsed.frames));
  }

  const std::int64_t fractions = parsed.fractionDenominator;
  const std::int64_t divisor =
      Multiply<std::int64_t>(fractions, inPulldown ? Multiply(inTimecodeFPS, 1000) : inTimecodeFPS);
  if (divisor == 0) [[unlikely]] {
    MEZZO_REPORT("false", "Divide by zero in ConvertTimecodeToSamples\n", kFunction);
    return 0;
  }

  const std::int64_t factor = (inPulldown ? 1001 : 1) * std::int64_t{inSampleRate};
  const std::int64_t position =
      Add<std::int64_t>(fractions * wholeFrames, parsed.fractionNumerator);
  std::int64_t product = 0;
  if (!MultiplyFits(factor, position, product) || product > kSurelySmall) [[unlikely]] {
    return RoundUpLarge(product, factor, fractions, wholeFrames, parsed.fractionNumerator, divisor);
  }
  return RoundUp(product, divisor);
}

/// Reads a label as displays write it: four fields of two digits with a unit between them, and in
/// front a third digit of the hours or a sign, which means nothing here.
bool ReadFullLabel(const UTF16String& inString, ParsedTimeCode& outLabel) {
  const bool hasUnitInFront = inString.size() == kFullLabelUnits + 1;
  if (inString.size() != kFullLabelUnits && !hasUnitInFront) return false;
  const char16_t* const units = inString.data() + (hasUnitInFront ? 1 : 0);
  const auto separates = [](char16_t unit) { return !number::IsDigit(unit) && unit != u'.'; };
  if (!separates(units[2]) || !separates(units[5]) || !separates(units[8])) return false;

  bool areDigits = true;
  const auto digit = [&](char16_t unit) {
    const auto value = static_cast<std::uint32_t>(unit) - u'0';
    areDigits &= value < 10;
    return static_cast<int>(value);
  };
  const auto field = [&](std::size_t place) {
    return 10 * digit(units[place]) + digit(units[place + 1]);
  };
  outLabel = {.hours = field(0), .minutes = field(3), .seconds = field(6), .frames = field(9)};
  if (hasUnitInFront && !separates(inString.front()))
    outLabel.hours += 100 * digit(inString.front());
  return areDigits;
}

/// Reads a full label at a usual rate: the same that the general way reads, without its loops and
/// fractions.
/// \return false, with nothing read, for all else.
bool ReadUsualSMPTE(std::int64_t& outSamples, const UTF16String& inString,
                    std::int32_t inSampleRate, std::int32_t inTimecodeFPS, bool inPulldown,
                    bool inDropFrame) {
  ParsedTimeCode label;
  if (!ReadFullLabel(inString, label)) return false;
  const bool isUsualRate = inDropFrame ? HasDropFrameLabels(inTimecodeFPS)
                                       : inTimecodeFPS > 0 && inTimecodeFPS <= kLargestUsualRate;
  if (!isUsualRate || inSampleRate < 0) return false;

  const auto countAt = [&label](std::int32_t dropFrameRate) {
    return dropframe::Count(label.hours, label.minutes, label.seconds, label.frames, dropFrameRate);
  };
  const std::int32_t seconds = (60 * label.hours + label.minutes) * 60 + label.seconds;
  const std::int32_t wholeFrames = !inDropFrame          ? seconds * inTimecodeFPS + label.frames
                                   : inTimecodeFPS == 30 ? countAt(30)
                                                         : countAt(60);
  std::int64_t product = 0;
  if (!MultiplyFits((inPulldown ? 1001 : 1) * std::int64_t{inSampleRate}, std::int64_t{wholeFrames},
                    product) ||
      product > kSurelySmall) {
    return false;
  }
  const auto divisor =
      static_cast<std::uint32_t>(inPulldown ? 1000 * inTimecodeFPS : inTimecodeFPS);
  outSamples =
      static_cast<std::int64_t>((static_cast<std::uint64_t>(product) + divisor - 1) / divisor);
  return true;
}

}  // namespace

bool ConvertTimecodeToSamples(std::int64_t& outSamples, const UTF16String& inString,
                              std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                              bool inPulldown, bool inDropFrame) {
  if (!ReadUsualSMPTE(outSamples, inString, inSampleRate, inTimecodeFPS, inPulldown, inDropFrame)) {
    outSamples = ReadAnySMPTE(inString, inSampleRate, inTimecodeFPS, inPulldown, inDropFrame);
  }
  return true;
}

namespace {

/// Reads the part of a beat that begins with a ".": ticks, or a decimal fraction.
/// \param inUnit the "."; the text's end where there is none.
double ReadPartOfBeat(const char16_t* inUnit, const char16_t* inEnd, std::int32_t inTicksPerBeat) {
  const bool hasPart = inUnit != inEnd;
  if (inTicksPerBeat == -1) {
    return hasPart ? number::ReadFraction({inUnit, static_cast<std::size_t>(inEnd - inUnit)}) : 0.0;
  }
  const int tick = hasPart ? number::ReadInteger(++inUnit, inEnd) : 0;
  return static_cast<double>(tick) / inTicksPerBeat;
}

const char16_t* Find(const char16_t* inUnit, const char16_t* inEnd, char16_t inWanted) {
  while (inUnit != inEnd && *inUnit != inWanted) ++inUnit;
  return inUnit;
}

}  // namespace

std::int64_t ConvertBarsAndBeatsToSamples(const UTF16String& inString, double inSampleRate,
                                          const BeatInfo& inBeatInfo, bool inIsDuration) {
  const char16_t* unit = inString.data();
  const char16_t* const end = unit + inString.size();
  const std::int32_t first = inIsDuration ? 0 : 1;
  const std::int32_t bar = Subtract(number::ReadInteger(unit, end), first);
  // No separator lies within the number, so the search for each begins behind it.
  const char16_t* const dot = Find(unit, end, u'.');
  const char16_t* colon = Find(unit, end, u':');
  const std::int32_t beat = colon == end ? 0 : Subtract(number::ReadInteger(++colon, end), first);
  const double partOfBeat = ReadPartOfBeat(dot, end, inBeatInfo.iTicksPerBeat);
  const std::int32_t wholeBeats = Add(beat, Multiply(inBeatInfo.iBeatsPerBar, bar));
  const double samples = (inSampleRate * 60.0 * (partOfBeat + wholeBeats)) /
                         (inBeatInfo.dTempo * 0.25 * inBeatInfo.iBeatUnit);
  const std::int64_t position = TruncateTo<std::int64_t>(Floor(samples + 0.5));
  if (inIsDuration) return position;
  return Add(position, TruncateTo<std::int64_t>(OffsetInSamples(inSampleRate, inBeatInfo)));
}

// ------------------------------------------------------------------------------ Reading any format

namespace {

constexpr char kReadByFormat[] =
    "bool mezzo::utility::ConvertTimecodeToSamples(std::int64_t &, const plinth::UTF16String &, "
    "mezzo::utility::TimecodeFormat, std::int32_t, std::int32_t, mezzo::utility::BeatInfo *, bool)";

/// Reads clock time in units of the last field: the parser's names stand one field too low for it.
double ReadClock(const UTF16String& inString) {
  const ParsedTimeCode parsed = ParseTimeCodeString(inString);
  MEZZO_ASSERT_NAMED(parsed.hours == 0, "hours==0",
                     "These timecode formats are just hours, minutes, seconds.\n", kReadByFormat);
  const double last =
      parsed.frames + static_cast<double>(parsed.fractionNumerator) / parsed.fractionDenominator;
  // A lone number, as most people type it, needs neither call.
  if (parsed.minutes == 0 && parsed.seconds == 0) return last;
  return std::fma(parsed.minutes, 3600.0, std::fma(parsed.seconds, 60.0, last));
}

}  // namespace

bool ConvertTimecodeToSamples(std::int64_t& outSamples, const UTF16String& inString,
                              TimecodeFormat inFormat, std::int32_t inSampleRate,
                              std::int32_t inTimecodeFPS, BeatInfo* inBeatInfo, bool inIsDuration) {
  const auto readSMPTE = [&](bool inPulldown, bool inDropFrame) {
    return ConvertTimecodeToSamples(outSamples, inString, inSampleRate, inTimecodeFPS, inPulldown,
                                    inDropFrame);
  };
  // These formats write no full labels, so that none is looked for.
  const auto readAnySMPTE = [&](bool inPulldown, bool inDropFrame) {
    outSamples = ReadAnySMPTE(inString, inSampleRate, inTimecodeFPS, inPulldown, inDropFrame);
    return true;
  };
  if (inString.empty()) {
    outSamples = -1;
    return true;
  }
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      outSamples = TruncateTo<std::int64_t>(std::fma(ReadClock(inString), inSampleRate, 0.5));
      return true;
    case kTimecodeFormat_Samples: {
      long long samples = outSamples;
      plinth::string::StringToNumber(samples, inString, number::kParserFlags);
      outSamples = samples;
      return true;
    }
    case kTimecodeFormat_SMPTE:
      return readSMPTE(false, false);
    case kTimecodeFormat_Frames:
    case kTimecodeFormat_CompactSubframes:
      return readAnySMPTE(false, false);
    case kTimecodeFormat_SMPTEPulldown:
    case kTimecodeFormat_SMPTEPulldown2:
    case kTimecodeFormat_SMPTEPulldown3:
      return readSMPTE(true, false);
    case kTimecodeFormat_SMPTEDropFrame:
    case kTimecodeFormat_SMPTEDropFrame2:
      return readSMPTE(true, true);
    case kTimecodeFormat_PulldownFrames:
      return readAnySMPTE(true, true);
    case kTimecodeFormat_Beats: {
      const double beats = ReadClock(inString);
      MEZZO_ASSERT(inBeatInfo, "programmer error!\n", kReadByFormat);
      if (inBeatInfo == nullptr) return false;
      outSamples = TruncateTo<std::int64_t>(beats * inSampleRate * 60.0 / inBeatInfo->dTempo + 0.5);
      return true;
    }
    case kTimecodeFormat_BarsAndBeats:
      MEZZO_ASSERT(inBeatInfo, "programmer error!\n", kReadByFormat);
      if (inBeatInfo == nullptr) return false;
      outSamples = ConvertBarsAndBeatsToSamples(inString, inSampleRate, *inBeatInfo, inIsDuration);
      return true;
    case kTimecodeFormat_Milliseconds:
      outSamples =
          TruncateTo<std::int64_t>(std::fma(ReadClock(inString) * inSampleRate, 0.001, 0.5));
      return true;
    case kTimecodeFormat_None:
    case kTimecodeFormat_AfterLast:
      MEZZO_REPORT("0", "", kReadByFormat);
      break;
    case kTimecodeFormat_Reserved:
      break;
  }
  outSamples = 0;
  return true;
}

}  // namespace mezzo::utility
