#include "DisplayFormats.h"

#include "InputError.h"
#include "NumberReading.h"
#include "TextEncoding.h"

#include <algorithm>

namespace mezzo::tool {

using namespace utility;

const std::array<DisplayFormat, kTimecodeFormat_AfterLast>& DisplayFormats() {
  static constexpr std::array<DisplayFormat, kTimecodeFormat_AfterLast> kFormats{{
      {kTimecodeFormat_Decimal, "decimal", "clock time, decimal seconds"},
      {kTimecodeFormat_Samples, "samples", "count of samples"},
      {kTimecodeFormat_SMPTE, "smpte", "SMPTE timecode"},
      {kTimecodeFormat_SMPTEPulldown, "smpte-pulldown", "SMPTE timecode, frame rate x 1000/1001"},
      {kTimecodeFormat_SMPTEDropFrame, "smpte-drop", "SMPTE drop-frame timecode"},
      {kTimecodeFormat_Beats, "beats", "quarter notes from sample 0"},
      {kTimecodeFormat_BarsAndBeats, "bars-beats", "bar, beat and tick"},
      {kTimecodeFormat_Reserved, "reserved", "no conversion"},
      {kTimecodeFormat_Frames, "frames", "count of frames"},
      {kTimecodeFormat_PulldownFrames, "pulldown-frames", "count of frames, rate x 1000/1001"},
      {kTimecodeFormat_CompactSubframes, "compact", "SMPTE, trimmed, hundredths of a frame"},
      {kTimecodeFormat_Milliseconds, "milliseconds", "milliseconds"},
      {kTimecodeFormat_SMPTEPulldown2, "smpte-pulldown2", "same as smpte-pulldown"},
      {kTimecodeFormat_SMPTEDropFrame2, "smpte-drop2", "same as smpte-drop"},
      {kTimecodeFormat_SMPTEPulldown3, "smpte-pulldown3", "same as smpte-pulldown"},
  }};
  return kFormats;
}

TimecodeFormat ReadFormat(const std::string& inNameOrNumber) {
  const auto& formats = DisplayFormats();
  const auto found = std::find_if(formats.begin(), formats.end(), [&](const DisplayFormat& format) {
    return format.name == inNameOrNumber || std::to_string(format.format) == inNameOrNumber;
  });
  if (found == formats.end()) {
    throw InputError("unknown format '" + inNameOrNumber + "'; 'mezzo formats' lists them");
  }
  return found->format;
}

std::string_view NameOf(TimecodeFormat inFormat) {
  return DisplayFormats()[static_cast<std::size_t>(inFormat)].name;
}

void RequireConversion(TimecodeFormat inFormat) {
  if (inFormat == kTimecodeFormat_Reserved) {
    throw InputError("format 'reserved' has no conversion");
  }
}

std::optional<std::string> WriteText(const Timeline& inTimeline, TimecodeFormat inFormat,
                                     std::int64_t inPosition) {
  plinth::UTF16String text;
  const bool isWritten = ConvertSamplesToTimecode(text, inPosition, inTimeline.sampleRate, inFormat,
                                                  inTimeline.framesPerSecond, &inTimeline.beats,
                                                  inTimeline.isDuration);
  if (!isWritten || text.empty()) return std::nullopt;
  return ToUTF8(text);
}

std::int64_t ReadText(const Timeline& inTimeline, TimecodeFormat inFormat,
                      std::string_view inText) {
  const plinth::UTF16String text = FromUTF8(inText);
  if (inText.find_first_of("0123456789") == std::string_view::npos) {
    throw InputError("no digit in '" + std::string(inText) + "'");
  }
  // The library reads 0 where a sample count has no number in front, and the nearest 64 bits.
  if (inFormat == kTimecodeFormat_Samples) ReadLeadingInteger(inText);
  std::int64_t position = 0;
  BeatInfo beats = inTimeline.beats;
  ConvertTimecodeToSamples(position, text, inFormat, inTimeline.sampleRate,
                           inTimeline.framesPerSecond, &beats, inTimeline.isDuration);
  return position;
}

}  // namespace mezzo::tool
