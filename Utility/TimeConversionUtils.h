/// \file
/// Positions on an audio timeline, to and from every text in which people read and type them.
///
/// A position is a count of samples from the start of the timeline, signed; a sample rate is a
/// count of samples per second; a frame rate is the nominal count of whole frames per second (SMPTE
/// ST 12-1). A pulled-down video rate is never passed as a fraction: a flag or a format selects
/// nominal × 1000/1001.
///
/// \par Guarantee
/// Every function is defined for every input and gives the same bits on every platform; outside the
/// documented ranges the arithmetic is that of 64-bit Arm (conversions truncate and saturate, not a
/// number gives 0, integers wrap, division by zero gives 0). Broken preconditions are reported to
/// the host's assertion dialog and never stop the process. Nothing is thrown but std::bad_alloc,
/// when a caller's string cannot grow; it then keeps its text.
///
/// \par Cost
/// No lock, no system call, and no heap allocation where the caller's string has the room.
///
/// \par Thread safety
/// Any thread may call any function. They share no state but the flags with which the host's
/// assertion dialog silences a site; the dialog may be entered on several threads.
#pragma once

#include <Module/Export.h>

#include <plinth/string/UTF16String.h>

#include <cstdint>

/// Timeline utilities for audio applications.
namespace mezzo {}

/// Positions to and from text, in `Utility/TimeConversionUtils.h`; musical notes, in
/// `Utility/MusicalNoteUtils.h`; media handlers, in `Utility/SerializationUtils.h`; the
/// application's state and its activation, in `Utility/AppRunningState.h`.
namespace mezzo::utility {

/// The display formats of a position. Valid ones lie strictly between the two bounds.
enum TimecodeFormat : std::int32_t {
  kTimecodeFormat_None = -1,              ///< lower bound; no format
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
  kTimecodeFormat_Milliseconds = 11,      ///< milliseconds in six digits, "1234.5", "3.6e+06"
  kTimecodeFormat_SMPTEPulldown2 = 12,    ///< the same as SMPTEPulldown
  kTimecodeFormat_SMPTEDropFrame2 = 13,   ///< the same as SMPTEDropFrame
  kTimecodeFormat_SMPTEPulldown3 = 14,    ///< the same as SMPTEPulldown
  kTimecodeFormat_AfterLast = 15,         ///< upper bound; no format
};

/// Tempo, meter and tick resolution: what turns samples into musical time and back.
struct BeatInfo {
  std::int32_t iTicksPerBeat;  ///< ticks in one beat, 1 or more; -1: decimal fraction of the beat
  double dTempo;               ///< quarter notes per minute
  std::int32_t iBeatsPerBar;   ///< beats in one bar; not 0
  std::int32_t iBeatUnit;      ///< note value of one beat: 4 a quarter note, 8 an eighth
  double dOffsetMs;            ///< milliseconds from sample 0 to bar 1 beat 1
};

/// Tells whether all five fields are equal; doubles compare by IEEE 754, so a NaN equals nothing.
MEZZO_EXPORT bool operator==(const BeatInfo& inLeft, const BeatInfo& inRight);

/// Tells whether any of the five fields differs; the exact negation of `operator==`.
MEZZO_EXPORT bool operator!=(const BeatInfo& inLeft, const BeatInfo& inRight);

/// Writes a position as SMPTE timecode (SMPTE ST 12-1) or as a frame count.
///
/// Frames are counted in whole numbers, truncated toward zero. A negative position is written as
/// its magnitude behind one "-"; frame counts carry no sign. Hours are not wrapped at 24.
///
/// \param[out] outString replaced by the text.
/// \param inSamples the position in samples.
/// \param inSampleRate samples per second; 0 writes "0".
/// \param inTimecodeFPS nominal frames per second; 0 writes an empty text. Drop-frame labels have
///     30 or 60; other rates are reported and counted as `DropFrameToHMSF` says.
/// \param inDropFrame count at the pulled-down rate and write drop-frame labels, "01;02;03;04". The
///     four flags after `inFramesOnly` then have no effect.
/// \param inPulldown count at the pulled-down rate without dropping labels. Excludes `inDropFrame`.
/// \param inFramesOnly write the frame count alone; the four flags after it have no effect.
/// \param inNoFrames end the text after the seconds.
/// \param inTrimLeadingZeros leave out leading hours, minutes and seconds that are zero; the first
///     field that shows is not padded, unless it is the hours, or the seconds under `inNoFrames`,
///     which always show.
/// \param inShowSubframes append "." and hundredths of a frame, truncated.
/// \param inNoHours count whole hours into the minutes.
/// \return true when a text was written. Both rate flags set, looked at first: false, with the text
///     unchanged and a report. A frame rate of 0 at a sample rate that is not: false, with an empty
///     text.
MEZZO_EXPORT bool ConvertSamplesToTimecode(plinth::UTF16String& outString, std::int64_t inSamples,
                                           std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                                           bool inDropFrame, bool inPulldown, bool inFramesOnly,
                                           bool inNoFrames, bool inTrimLeadingZeros,
                                           bool inShowSubframes, bool inNoHours);

/// Writes a position in any display format.
///
/// The sample rate comes before the format here, and after it in the function that reads.
///
/// \param[out] outString replaced by the text; untouched where no text is written.
/// \param inSamples the position in samples.
/// \param inSampleRate samples per second.
/// \param inFormat the format. `kTimecodeFormat_Reserved` writes nothing; a value outside 0 to
///     14 is reported and writes nothing.
/// \param inTimecodeFPS nominal frames per second, for the SMPTE and frame-count formats.
/// \param inBeatInfo tempo and meter, for beats and for bars and beats; may be null otherwise.
/// \param inIsDuration for bars and beats: the value is a length, counted from 0 without offset.
/// \return true, also for the formats that write nothing; false when `inBeatInfo` is missing
///     (reported, text untouched) or the format's converter fails.
MEZZO_EXPORT bool ConvertSamplesToTimecode(plinth::UTF16String& outString, std::int64_t inSamples,
                                           std::int32_t inSampleRate, TimecodeFormat inFormat,
                                           std::int32_t inTimecodeFPS, const BeatInfo* inBeatInfo,
                                           bool inIsDuration);

/// Reads SMPTE timecode (SMPTE ST 12-1): hours, minutes, seconds, frames, fraction of a frame.
///
/// The reading is lenient: whatever is not a digit separates fields, fields fill up from the right,
/// and a number behind a "." is a decimal fraction of the field before it, with which reading ends.
/// Of five numbers the first is dropped, any further ones are ignored. A fraction counts in units
/// of 1/10 to the power of the characters from its first digit to the end of the text; a "." that
/// ends the text makes the last number the fraction. A minus sign only separates. The result is the
/// first sample at or after the start of the labelled frame, in exact integers, rounded up;
/// products past 7 × 2^60 are computed in double precision. Reading a label and writing the
/// position back gives the label, for a label that exists, under the same rates and flags, as long
/// as a frame lasts at least one sample.
///
/// \param[out] outSamples receives the position in samples; -1 for an empty text, 0 for a text
///     without digits and for a frame rate of 0 (which is reported).
/// \param inString the text.
/// \param inSampleRate samples per second.
/// \param inTimecodeFPS nominal frames per second.
/// \param inPulldown frames run at `inTimecodeFPS` × 1000/1001.
/// \param inDropFrame the labels are drop-frame labels, which 30 and 60 frames per second have. A
///     dropped label stands for the first frame of its minute. Unlike in writing, this does not
///     imply the pulled-down rate: real drop-frame labels need both flags. Other rates are counted
///     by the same rule, without meaning; those that do not divide an hour of such labels into six
///     equal parts, such as 24, are reported, others, such as 25, are not.
/// \return true, always.
MEZZO_EXPORT bool ConvertTimecodeToSamples(std::int64_t& outSamples,
                                           const plinth::UTF16String& inString,
                                           std::int32_t inSampleRate, std::int32_t inTimecodeFPS,
                                           bool inPulldown, bool inDropFrame);

/// Reads a position from text in any display format.
///
/// The format comes before the sample rate here, and after it in the function that writes.
///
/// \param[out] outSamples receives the position in samples: -1 for an empty text; 0 for
///     `kTimecodeFormat_Reserved` and for a value outside 0 to 14 (the two bounds are reported).
/// \param inString the text. A leading minus sign counts for samples and for bars and beats; it
///     only separates in all other formats. Clock time, milliseconds and beats have up to three
///     fields; a fourth in front is reported and dropped. Pulled-down frames are read as drop-frame
///     labels, with the reports of those.
/// \param inFormat the format of the text.
/// \param inSampleRate samples per second.
/// \param inTimecodeFPS nominal frames per second, for the SMPTE and frame-count formats.
/// \param inBeatInfo tempo and meter, for beats and for bars and beats; may be null otherwise.
/// \param inIsDuration for bars and beats: the text is a length, counted from 0 without offset.
/// \return true, also where the text could not be read; false when `inBeatInfo` is missing
///     (reported, `outSamples` untouched).
MEZZO_EXPORT bool ConvertTimecodeToSamples(std::int64_t& outSamples,
                                           const plinth::UTF16String& inString,
                                           TimecodeFormat inFormat, std::int32_t inSampleRate,
                                           std::int32_t inTimecodeFPS, BeatInfo* inBeatInfo,
                                           bool inIsDuration);

/// Splits a frame count into its drop-frame label (SMPTE ST 12-1).
///
/// The first two labels of a minute (four at 60 frames per second) do not exist, except in every
/// tenth minute. Call it with all four outputs zero: what the count does not reach is not written,
/// and minutes within a ten-minute block are added to `outMinutes`.
///
/// \param inFrameCount frames from zero; only the magnitude counts.
/// \param inTimecodeFPS 30 or 60. Any other rate is reported and counted as the multiple of 30
///     below it; a rate below 30 leaves the outputs as they are.
/// \param[out] outHours hours, written from one full hour on.
/// \param[in,out] outMinutes minutes, 0 to 59.
/// \param[out] outSeconds seconds, 0 to 59, written from one full second on.
/// \param[out] outFrames frames within the second.
MEZZO_EXPORT void DropFrameToHMSF(std::int64_t inFrameCount, std::int32_t inTimecodeFPS,
                                  std::uint32_t& outHours, std::uint32_t& outMinutes,
                                  std::uint32_t& outSeconds, std::uint32_t& outFrames);

/// Writes a position as clock time: "   1:30.500" under an hour, "1:02:03.250" under ten hours,
/// "10:00:00.50" from there on.
///
/// Everything is truncated; the milliseconds are those of the sample's middle, so that half a
/// sample is added to them. No fraction is carried into the next second.
///
/// \param[out] outString replaced by the text.
/// \param inSamples the position in samples; a negative one is written as its magnitude behind "-".
/// \param inSampleRate samples per second; 0 writes "0".
/// \param inWholeSeconds leave out the fraction.
MEZZO_EXPORT void ConvertSamplesToDecimalTimecode(plinth::UTF16String& outString,
                                                  std::int64_t inSamples, std::int32_t inSampleRate,
                                                  bool inWholeSeconds);

/// Writes a position or length as bar, beat, tick and thousandths of a tick, "2:3.480.125".
///
/// Rounded to the nearest thousandth of a tick, so that a position on a beat shows tick 0 of that
/// beat. A position counts bars and beats from 1, with bar 0 and negative bars before the zero
/// point; a length counts from 0. With `iTicksPerBeat` -1 the text is bar, beat and the decimal
/// fraction of the beat, lowered by half a thousandth and truncated, "2:3.499".
///
/// \param[out] outString replaced by the text; empty for a negative precision, except in the
///     decimal form, which shows bar, beat and fraction at every precision.
/// \param inSamples the position or length in samples; may be fractional.
/// \param inSampleRate samples per second.
/// \param inBeatInfo tempo, meter, ticks and offset.
/// \param inIsDuration true: a length, `dOffsetMs` is ignored; false: a position.
/// \param inPrecision 0 bar, 1 and beat, 2 and tick, 3 and thousandths; a negative one is reported.
/// \return true; false, with the text unchanged and a report, when `iBeatsPerBar` is 0. Reports
///     come first: what a dialog changes in the record counts.
MEZZO_EXPORT bool ConvertSamplesToBarsAndBeats(plinth::UTF16String& outString, double inSamples,
                                               double inSampleRate, const BeatInfo& inBeatInfo,
                                               bool inIsDuration, int inPrecision);

/// Writes a position as a count of quarter-note beats from sample 0, rounded to three decimals.
///
/// \param[out] outString replaced by the text, such as "4.167"; a count that rounds below zero is
///     the text of its magnitude behind "-".
/// \param inSamples the position in samples.
/// \param inSampleRate samples per second; 0 writes "0".
/// \param inTempo quarter notes per minute.
MEZZO_EXPORT void ConvertSamplesToBeats(plinth::UTF16String& outString, std::int64_t inSamples,
                                        std::int32_t inSampleRate, double inTempo);

/// Reads bars and beats as `ConvertSamplesToBarsAndBeats` writes them or as a person types them.
///
/// Bar, optionally ":" and beat, optionally "." and ticks (with `iTicksPerBeat` -1: the decimal
/// fraction of a beat). The "." is looked for in the whole text, the ":" as well. What follows is
/// ignored; a missing number counts as 0. Without ":" the beat is the first of the bar.
///
/// \param inString the text.
/// \param inSampleRate samples per second.
/// \param inBeatInfo tempo, meter, ticks and offset.
/// \param inIsDuration true: a length, counted from 0, `dOffsetMs` is ignored; false: a position.
/// \return the position or length in samples, rounded to the nearest, halves upward.
MEZZO_EXPORT std::int64_t ConvertBarsAndBeatsToSamples(const plinth::UTF16String& inString,
                                                       double inSampleRate,
                                                       const BeatInfo& inBeatInfo,
                                                       bool inIsDuration);

}  // namespace mezzo::utility
