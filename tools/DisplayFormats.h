/// \file
/// The display formats and the names that people type for them.
#pragma once

#include <Utility/TimeConversionUtils.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mezzo::tool {

/// Everything that a conversion depends on besides the position and the format.
struct Timeline {
  std::int32_t sampleRate = 48000;
  std::int32_t framesPerSecond = 30;
  utility::BeatInfo beats{960, 120.0, 4, 4, 0.0};
  bool isDuration = false;
};

struct DisplayFormat {
  utility::TimecodeFormat format;
  std::string_view name;
  std::string_view meaning;
};

/// All formats, in the order of their numbers.
inline constexpr std::array<DisplayFormat, utility::kTimecodeFormat_AfterLast> kDisplayFormats{{
    {utility::kTimecodeFormat_Decimal, "decimal", "clock time, decimal seconds"},
    {utility::kTimecodeFormat_Samples, "samples", "sample count"},
    {utility::kTimecodeFormat_SMPTE, "smpte", "SMPTE timecode"},
    {utility::kTimecodeFormat_SMPTEPulldown, "smpte-pulldown",
     "SMPTE timecode, frame rate x 1000/1001"},
    {utility::kTimecodeFormat_SMPTEDropFrame, "smpte-drop", "SMPTE drop-frame timecode"},
    {utility::kTimecodeFormat_Beats, "beats", "quarter notes from sample 0"},
    {utility::kTimecodeFormat_BarsAndBeats, "bars-beats", "bar, beat and tick"},
    {utility::kTimecodeFormat_Reserved, "reserved", "no conversion"},
    {utility::kTimecodeFormat_Frames, "frames", "frame count"},
    {utility::kTimecodeFormat_PulldownFrames, "pulldown-frames",
     "frame count, frame rate x 1000/1001"},
    {utility::kTimecodeFormat_CompactSubframes, "compact",
     "SMPTE timecode, shortened, with hundredths of a frame"},
    {utility::kTimecodeFormat_Milliseconds, "milliseconds", "milliseconds"},
    {utility::kTimecodeFormat_SMPTEPulldown2, "smpte-pulldown2", "same as smpte-pulldown"},
    {utility::kTimecodeFormat_SMPTEDropFrame2, "smpte-drop2", "same as smpte-drop"},
    {utility::kTimecodeFormat_SMPTEPulldown3, "smpte-pulldown3", "same as smpte-pulldown"},
}};

/// The common name of a frame rate, which selects a format and the nominal rate.
struct RateName {
  std::string_view name;
  utility::TimecodeFormat format;
  std::int32_t framesPerSecond;
};

/// All rate names, in the order of the rates.
inline constexpr std::array<RateName, 16> kRateNames{{
    {"23.976", utility::kTimecodeFormat_SMPTEPulldown, 24},
    {"23.98", utility::kTimecodeFormat_SMPTEPulldown, 24},
    {"24", utility::kTimecodeFormat_SMPTE, 24},
    {"25", utility::kTimecodeFormat_SMPTE, 25},
    {"29.97", utility::kTimecodeFormat_SMPTEPulldown, 30},
    {"29.97df", utility::kTimecodeFormat_SMPTEDropFrame, 30},
    {"30", utility::kTimecodeFormat_SMPTE, 30},
    {"47.952", utility::kTimecodeFormat_SMPTEPulldown, 48},
    {"48", utility::kTimecodeFormat_SMPTE, 48},
    {"50", utility::kTimecodeFormat_SMPTE, 50},
    {"59.94", utility::kTimecodeFormat_SMPTEPulldown, 60},
    {"59.94df", utility::kTimecodeFormat_SMPTEDropFrame, 60},
    {"60", utility::kTimecodeFormat_SMPTE, 60},
    {"100", utility::kTimecodeFormat_SMPTE, 100},
    {"119.88", utility::kTimecodeFormat_SMPTEPulldown, 120},
    {"120", utility::kTimecodeFormat_SMPTE, 120},
}};

/// A format as the user selected it.
struct FormatChoice {
  utility::TimecodeFormat format;
  std::optional<std::int32_t> framesPerSecond;  ///< only if selected by a rate name
};

/// Finds a format by its name or a rate name, in any letter case.
/// \exception UserError when there is none; it suggests a name with similar spelling.
FormatChoice FindFormat(const std::string& inName);

/// Finds the rate name that a text such as "23.97", "24fps" or "30df" stands for.
/// \return null when no rate is near.
const RateName* FindNearestRate(const std::string& inText);

std::string GetName(utility::TimecodeFormat inFormat);

bool HasDropFrameLabels(utility::TimecodeFormat inFormat);

bool IsFrameCount(utility::TimecodeFormat inFormat);

/// \return whether frames run at 1000/1001 of the nominal rate.
bool IsPulledDown(utility::TimecodeFormat inFormat);

/// \return frames per second of real time.
double GetFrameRate(std::int32_t inNominalRate, utility::TimecodeFormat inFormat);

/// Explains why a format cannot be used at the timeline's frame rate.
/// \return a few words; empty when it can be used.
std::string ExplainUnavailable(const Timeline& inTimeline, utility::TimecodeFormat inFormat);

/// \exception UserError when the format cannot be used; the message says why.
void RequireAvailable(const Timeline& inTimeline, utility::TimecodeFormat inFormat);

}  // namespace mezzo::tool
