/// \file
/// The display formats by the names that people type, and the library's two conversions for them.
#pragma once

#include <Utility/TimeConversionUtils.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mezzo::tool {

/// What the conversions need to know besides the position: one set of options in every command.
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
const std::array<DisplayFormat, utility::kTimecodeFormat_AfterLast>& DisplayFormats();

/// A frame rate as people say it, which chooses a format and the nominal rate at once.
struct RateName {
  std::string_view name;
  utility::TimecodeFormat format;
  std::int32_t framesPerSecond;
};

/// Lists them by the rate.
const std::array<RateName, 16>& RateNames();

/// What the name of a format chooses.
struct FormatChoice {
  utility::TimecodeFormat format;
  std::optional<std::int32_t> framesPerSecond;  ///< with the name of a rate only
};

/// Finds a format by its name, its number or the name of a rate, in any letter case.
/// \exception InputError when there is none; it names one that is spelled nearly so.
FormatChoice ReadFormat(const std::string& inName);

std::string_view NameOf(utility::TimecodeFormat inFormat);

bool HasDropFrameLabels(utility::TimecodeFormat inFormat);
bool IsPulledDown(utility::TimecodeFormat inFormat);

/// Tells why a format cannot be used at a frame rate.
/// \return words for brackets; nothing where it can.
std::optional<std::string> WhyUnavailable(const Timeline& inTimeline,
                                          utility::TimecodeFormat inFormat);

/// Refuses a format that cannot be used.
/// \exception InputError says which rates have it.
void RequireAvailable(const Timeline& inTimeline, utility::TimecodeFormat inFormat);

/// Writes a position: the library's text. Frame counts, which the library writes without a sign,
/// get one, so that they read back. \return nothing where the library writes nothing.
std::optional<std::string> WriteText(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                                     std::int64_t inPosition);

/// Reads a position as leniently as the library does. A minus sign in front counts in every format.
/// \exception InputError for a text without a number in it, and one that is not UTF-8.
std::int64_t ReadText(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                      std::string_view inText);

/// Reads a text that is a position in samples and nothing else but blanks.
/// \exception InputError when it is not or has more than 64 bits.
std::int64_t ReadPosition(std::string_view inText);

}  // namespace mezzo::tool
