/// \file
/// Time conversion: positions on an audio timeline to and from the text of every time display.
///
/// A position is a signed count of samples from the start of the timeline. A sample rate is a count
/// of samples per second. A frame rate is the nominal count of whole frames per second (SMPTE
/// ST 12-1). A pulled-down rate is never passed as a fraction: a flag or a format selects nominal ×
/// 1000/1001.
///
/// \par Guarantee
/// Every function is defined for every input and gives the same bits on every platform. Outside the
/// documented ranges the arithmetic is that of 64-bit Arm: floating point converts to integers by
/// truncation and saturates, NaN converts to 0, integers wrap, integer division by zero gives 0. A
/// broken precondition is reported to the host's assertion dialog and never ends the process.
/// Functions throw only std::bad_alloc, when the caller's string cannot grow; the string then keeps
/// its text. Exceptions of the dialog pass through.
///
/// \par Cost
/// A call that reports nothing takes no lock and makes no system call. It does not allocate if the
/// caller's string has enough capacity.
///
/// \par Thread safety
/// Any thread may call any function. The only shared state is the flag of each assertion site,
/// which the host's dialog sets to silence the site. The dialog may run on several threads at once.
#pragma once

#include <Module/Export.h>

#include <plinth/string/UTF16String.h>

#include <cstdint>

/// Timeline utilities for audio applications.
namespace mezzo {}

/// Time conversion (`Utility/TimeConversionUtils.h`), musical notes (`Utility/MusicalNoteUtils.h`),
/// media handlers (`Utility/SerializationUtils.h`), and the application's state and activation
/// (`Utility/AppRunningState.h`).
namespace mezzo::utility {

/// The display formats of a position. Valid formats lie strictly between the two bounds.
enum TimecodeFormat : std::int32_t {
  kTimecodeFormat_None = -1,              ///< lower bound, not a format
  kTimecodeFormat_Decimal = 0,            ///< clock time with decimal seconds, "1:02:03.250"
  kTimecodeFormat_Samples = 1,            ///< the sample count, "-1234"
  kTimecodeFormat_SMPTE = 2,              ///< SMPTE timecode at the nominal rate, "01:02:03:04"
  kTimecodeFormat_SMPTEPulldown = 3,      ///< as SMPTE, at frame rate × 1000/1001
  kTimecodeFormat_SMPTEDropFrame = 4,     ///< drop-frame timecode, "01;02;03;04"
  kTimecodeFormat_Beats = 5,              ///< quarter-note beats, "4.167"
  kTimecodeFormat_BarsAndBeats = 6,       ///< bar, beat and tick, "2:3.480"
  kTimecodeFormat_Reserved = 7,           ///< no conversion in either direction
  kTimecodeFormat_Frames = 8,             ///< frame count at the nominal rate, "1234"
  kTimecodeFormat_PulldownFrames = 9,     ///< frame count at frame rate × 1000/1001
  kTimecodeFormat_CompactSubframes = 10,  ///< SMPTE, trimmed, hundredths of a frame, "1:15.00"
  kTimecodeFormat_Milliseconds = 11,      ///< six significant digits, "1234.5", "3.6e+06"
  kTimecodeFormat_SMPTEPulldown2 = 12,    ///< the same as SMPTEPulldown
  kTimecodeFormat_SMPTEDropFrame2 = 13,   ///< the same as SMPTEDropFrame
  kTimecodeFormat_SMPTEPulldown3 = 14,    ///< the same as SMPTEPulldown
  kTimecodeFormat_AfterLast = 15,         ///< upper bound, not a format
};

/// Tempo, meter, tick resolution and start offset of musical time.
struct BeatInfo {
  std::int32_t iTicksPerBeat;  ///< ticks in one beat, 1 or more; -1: decimal fraction of the beat
  double dTempo;               ///< quarter notes per minute
  std::int32_t iBeatsPerBar;   ///< beats in one bar; not 0
  std::int32_t iBeatUnit;      ///< note value of one beat: 4 a quarter note, 8 an eighth
  double dOffsetMs;  ///< milliseconds from sample 0 to bar 1 beat 1; rounded to whole samples
};

/// Compares all five fields. Doubles compare by IEEE 754, so NaN equals nothing.
MEZZO_EXPORT bool operator==(const BeatInfo& inLeft, const BeatInfo& inRight);

/// The negation of `operator==`.
MEZZO_EXPORT bool operator!=(const BeatInfo& inLeft, const BeatInfo& inRight);

/// Writes a position as SMPTE timecode (SMPTE ST 12-1) or as a frame count.
///
/// Frames are counted in exact integers and truncated toward zero. With `inDropFrame` and
/// `inFramesOnly`, the count is computed in double precision instead. A negative position is
/// written as "-" and its magnitude; frame counts have no sign. Hours do not wrap at 24.
///
/// \param[out] outString replaced by the text.
/// \param inSamples the position in samples.
/// \param inSampleRate samples per second; 0 writes "0".
/// \param inTimecodeFPS nominal frames per second; 0 writes an empty text. Drop-frame labels exist
///     at 30 and 60; `DropFrameToHMSF` reports other rates.
/// \param inDropFrame count at the pulled-down rate and write drop-frame labels, "01;02;03;04". The
///     four flags after `inFramesOnly` have no effect then.
/// \param inPulldown count at the pulled-down rate without dropping labels. Excludes `inDropFrame`.
/// \param inFramesOnly write the frame count alone; the four flags after it have no effect then.
/// \param inNoFrames end the text after the seconds, which are then always written in two digits.
/// \param inTrimLeadingZeros omit leading hours, minutes and seconds that are zero. The first field
///     written is not padded, unless it is the hours.
/// \param inShowSubframes append "." and hundredths of a frame, truncated; no effect with
///     `inNoFrames`.
/// \param inNoHours write hours as minutes: 62:03:02 instead of 01:02:03:02.
/// \return true if a text was written. False if `inDropFrame` and `inPulldown` are both set
///     (checked first; reported, text unchanged), or if the frame rate is 0 and the sample rate is
///     not (text empty).
MEZZO_EXPORT bool ConvertSamplesToTimecode(plinth::UTF16String& outString, std::int64_t inSamples,
                                           std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                                           bool inDropFrame, bool inPulldown, bool inFramesOnly,
                                           bool inNoFrames, bool inTrimLeadingZeros,
                                           bool inShowSubframes, bool inNoHours);

/// Writes a position in any display format.
///
/// The sample rate comes before the format here, but after it in the function that reads.
///
/// \param[out] outString replaced by the text; unchanged for a format that writes none.
/// \param inSamples the position in samples.
/// \param inSampleRate samples per second.
/// \param inFormat the format. `kTimecodeFormat_Reserved` writes nothing. A value outside 0 to 14
///     is reported and writes nothing.
/// \param inTimecodeFPS nominal frames per second, for the SMPTE and frame-count formats.
/// \param inBeatInfo tempo and meter, for beats and for bars and beats; may be null otherwise.
/// \param inIsDuration for bars and beats: the value is a length, counted from 0 without offset.
/// \return true, also for formats that write nothing. False if `inBeatInfo` is missing (reported,
///     text unchanged) or the function that writes this format returns false.
MEZZO_EXPORT bool ConvertSamplesToTimecode(plinth::UTF16String& outString, std::int64_t inSamples,
                                           std::int32_t inSampleRate, TimecodeFormat inFormat,
                                           std::int32_t inTimecodeFPS, const BeatInfo* inBeatInfo,
                                           bool inIsDuration);

/// Reads SMPTE timecode (SMPTE ST 12-1): hours, minutes, seconds, frames, fraction of a frame.
///
/// The parser is lenient. Any non-digit separates fields, a minus sign included; omitted fields are
/// the leading ones. A number after "." is a decimal fraction of the field before it and ends
/// parsing. At most five numbers are read, a fraction included. If all five are fields, the first
/// is dropped, and the text after the fifth is ignored. The fraction's denominator is 10 to the
/// power of the number of code units from its first digit to the end of the text, or 2147483647 for
/// ten or more. If a "." without a digit behind it follows the last number, that number is itself
/// the fraction: "5:12." is 5 frames and 12/1000 of a frame, because "12." is three code units. If
/// it is the only number, its denominator is 1: "7." is 7/1, which is 7 frames. A "." behind the
/// fifth number is ignored.
///
/// The result is the first sample at or after the start of the labelled frame, computed as a
/// quotient of integers. If the dividend exceeds 7 × 2^60, which takes extreme rates or a long
/// fraction, the result is computed in double precision and is only approximate. Writing the result
/// at the same rates gives back every label that is not a dropped one, if a frame lasts at least
/// one sample, the sample rate is at most 3 MHz, and the frame count and the frame rate × 3600 fit
/// in 32 bits.
///
/// \param[out] outSamples receives the position in samples; -1 for an empty text; 0 for a text
///     without digits; 0, with a report, for a frame rate of 0.
/// \param inString the text.
/// \param inSampleRate samples per second.
/// \param inTimecodeFPS nominal frames per second.
/// \param inPulldown frames run at `inTimecodeFPS` × 1000/1001.
/// \param inDropFrame the labels are drop-frame labels, which exist at 30 and 60 frames per second.
///     A dropped label stands for the first frame of its minute. Unlike in writing, this flag does
///     not imply the pulled-down rate. To read 29.97 or 59.94 drop-frame timecode, set both flags.
///     At rates other than 30 and 60 the same arithmetic applies, but the result has no meaning. A
///     rate is reported if its frames in a drop-frame hour are not a multiple of six: 24 is
///     reported, 25 is not.
/// \return true, always.
MEZZO_EXPORT bool ConvertTimecodeToSamples(std::int64_t& outSamples,
                                           const plinth::UTF16String& inString,
                                           std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                                           bool inPulldown, bool inDropFrame);

/// Reads a position from text in any display format.
///
/// The format comes before the sample rate here, but after it in the function that writes.
///
/// \param[out] outSamples receives the position in samples. An empty text gives -1, whatever the
///     other arguments. `kTimecodeFormat_Reserved` and a value outside 0 to 14 give 0; only
///     the format numbers -1 and 15 are reported.
/// \param inString the text. A leading minus sign negates a sample count, or in bars and beats the
///     bar number alone; in all other formats it is a separator. Clock time, milliseconds and beats
///     have up to three fields. One unit of a field is 60 of the next: "1:30" is 90 seconds,
///     milliseconds or beats. A fourth field in front is dropped, and reported if it is not 0.
///     Pulled-down frames are read like drop-frame timecode, with its reports: a single number is
///     the frame count, and several fields are a label.
/// \param inFormat the format of the text.
/// \param inSampleRate samples per second.
/// \param inTimecodeFPS nominal frames per second, for the SMPTE and frame-count formats.
/// \param inBeatInfo tempo and meter, for beats and for bars and beats; may be null otherwise;
///     not modified.
/// \param inIsDuration for bars and beats: the text is a length, counted from 0 without offset.
/// \return true, also for a text that is not a position. False if the text is not empty and
///     `inBeatInfo` is missing (reported, `outSamples` unchanged).
MEZZO_EXPORT bool ConvertTimecodeToSamples(std::int64_t& outSamples,
                                           const plinth::UTF16String& inString,
                                           TimecodeFormat inFormat, std::int32_t inSampleRate,
                                           std::int32_t inTimecodeFPS, BeatInfo* inBeatInfo,
                                           bool inIsDuration);

/// Splits a frame count into its drop-frame label (SMPTE ST 12-1).
///
/// The first two labels of a minute (four at 60 frames per second) do not exist, except in every
/// tenth minute. Set all four outputs to 0 before the call: a 0 for hours, tens of minutes or
/// seconds is not written, and the minute within a ten-minute block is added to `outMinutes`.
///
/// \param inFrameCount frames from zero; the sign is ignored.
/// \param inTimecodeFPS 30 or 60. Any other rate is reported and rounded down to a multiple of 30;
///     below 30 the outputs stay unchanged.
/// \param[out] outHours hours, not wrapped.
/// \param[in,out] outMinutes minutes, 0 to 59.
/// \param[out] outSeconds seconds, 0 to 59.
/// \param[out] outFrames frames within the second.
MEZZO_EXPORT void DropFrameToHMSF(std::int64_t inFrameCount, std::int32_t inTimecodeFPS,
                                  std::uint32_t& outHours, std::uint32_t& outMinutes,
                                  std::uint32_t& outSeconds, std::uint32_t& outFrames);

/// Writes a position as clock time: "   1:30.500" below one hour, "1:02:03.250" below ten hours,
/// "10:00:00.50" from ten hours on.
///
/// Milliseconds are taken at the middle of the sample and truncated; hundredths are taken at its
/// start and truncated. The fraction never carries into the next second.
///
/// \param[out] outString replaced by the text.
/// \param inSamples the position in samples; a negative one is written as "-" and its magnitude.
/// \param inSampleRate samples per second; 0 writes "0".
/// \param inWholeSeconds omit the fraction.
MEZZO_EXPORT void ConvertSamplesToDecimalTimecode(plinth::UTF16String& outString,
                                                  std::int64_t inSamples, std::int32_t inSampleRate,
                                                  bool inWholeSeconds);

/// Writes a position or length as bar, beat, tick and thousandths of a tick, "2:3.480.125".
///
/// The value is rounded to the nearest thousandth of a tick, so a position on a beat shows tick 0
/// of that beat. A position counts bars and beats from 1; bars before bar 1 are 0 and negative. A
/// length counts bars and beats from 0. With `iTicksPerBeat` -1 the text is bar, beat and decimal
/// fraction of the beat, lowered by half a thousandth and truncated, "2:3.499".
///
/// \param[out] outString replaced by the text; empty for a negative precision. With `iTicksPerBeat`
///     -1 the text has bar, beat and fraction at every precision, followed by ".000" from 3 on.
/// \param inSamples the position or length in samples; may be fractional.
/// \param inSampleRate samples per second.
/// \param inBeatInfo tempo, meter, ticks and offset; read after the reports, so changes that the
///     host makes while its dialog is open take effect.
/// \param inIsDuration true: a length, `dOffsetMs` is ignored; false: a position.
/// \param inPrecision the last field: 0 bar, 1 beat, 2 tick, 3 and above thousandths. A negative
///     precision is reported.
/// \return true. False if `iBeatsPerBar` is 0 (reported, text unchanged).
MEZZO_EXPORT bool ConvertSamplesToBarsAndBeats(plinth::UTF16String& outString, double inSamples,
                                               double inSampleRate, const BeatInfo& inBeatInfo,
                                               bool inIsDuration, int inPrecision);

/// Writes a position as a count of quarter-note beats from sample 0, rounded to three decimals.
///
/// \param[out] outString replaced by the text, such as "4.167"; a count that rounds below zero is
///     written as "-" and its magnitude.
/// \param inSamples the position in samples.
/// \param inSampleRate samples per second; 0 writes "0".
/// \param inTempo quarter notes per minute.
MEZZO_EXPORT void ConvertSamplesToBeats(plinth::UTF16String& outString, std::int64_t inSamples,
                                        std::int32_t inSampleRate, double inTempo);

/// Reads bars and beats as `ConvertSamplesToBarsAndBeats` writes them or as people type them.
///
/// The text is bar, optionally ":" and beat, optionally "." and ticks (with `iTicksPerBeat` -1: the
/// decimal fraction of the beat). Only the first ":" and the first "." in the text are separators,
/// wherever they are. Blanks (space, tab) and a sign may precede each number except the decimal
/// fraction. Text after a number is ignored, but the decimal fraction may have an exponent, as in
/// ".5e-1". A missing number is 0; without ":" the beat is the first of the bar.
///
/// \param inString the text.
/// \param inSampleRate samples per second.
/// \param inBeatInfo tempo, meter, ticks and offset.
/// \param inIsDuration true: a length, counted from 0, `dOffsetMs` is ignored; false: a position.
/// \return the position or length in samples, rounded half up.
MEZZO_EXPORT std::int64_t ConvertBarsAndBeatsToSamples(const plinth::UTF16String& inString,
                                                       double inSampleRate,
                                                       const BeatInfo& inBeatInfo,
                                                       bool inIsDuration);

}  // namespace mezzo::utility
