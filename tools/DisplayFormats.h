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

/// Finds a format by its name or its number.
/// \exception InputError when there is none.
utility::TimecodeFormat ReadFormat(const std::string& inNameOrNumber);

std::string_view NameOf(utility::TimecodeFormat inFormat);

/// Refuses the reserved format for commands that can do nothing with it.
/// \exception InputError when the format has no conversion.
void RequireConversion(utility::TimecodeFormat inFormat);

/// Writes a position.
/// \return the library's text; nothing for the reserved format and where the library refuses.
std::optional<std::string> WriteText(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                                     std::int64_t inPosition);

/// Reads a position.
/// \exception InputError for a text without a number in it, and one that is not UTF-8.
std::int64_t ReadText(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                      std::string_view inText);

}  // namespace mezzo::tool
