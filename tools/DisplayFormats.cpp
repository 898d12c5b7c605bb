#include "DisplayFormats.h"

#include "InputError.h"
#include "TextEncoding.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <charconv>
#include <numeric>
#include <system_error>
#include <vector>

namespace mezzo::tool {

using namespace utility;

namespace {

/// The least number of characters to insert, remove or replace that turns one word into the other.
std::size_t EditDistance(std::string_view inFrom, std::string_view inTo) {
  std::vector<std::size_t> distances(inTo.size() + 1);
  std::iota(distances.begin(), distances.end(), std::size_t{0});
  for (const char character : inFrom) {
    std::size_t diagonal = distances[0]++;
    for (std::size_t place = 0; place < inTo.size(); ++place) {
      const std::size_t replaced = diagonal + (character == inTo[place] ? 0 : 1);
      diagonal = distances[place + 1];
      distances[place + 1] = std::min({replaced, diagonal + 1, distances[place] + 1});
    }
  }
  return distances.back();
}

/// The name nearest to a misspelled one; empty when none is near.
std::string_view NearestName(std::string_view inName) {
  constexpr std::size_t kNear = 2;
  std::string_view nearest;
  std::size_t least = kNear + 1;
  const auto consider = [&](std::string_view name) {
    const std::size_t distance = EditDistance(inName, name);
    if (distance >= least || distance >= name.size()) return;
    least = distance;
    nearest = name;
  };
  for (const DisplayFormat& format : DisplayFormats()) consider(format.name);
  for (const RateName& rate : RateNames()) consider(rate.name);
  return nearest;
}

/// These read a minus sign themselves.
bool KeepsSign(TimecodeFormat inFormat) {
  return inFormat == kTimecodeFormat_Samples || inFormat == kTimecodeFormat_BarsAndBeats;
}

bool CountsFrames(TimecodeFormat inFormat) {
  return inFormat == kTimecodeFormat_Frames || inFormat == kTimecodeFormat_PulldownFrames;
}

}  // namespace

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

const std::array<RateName, 16>& RateNames() {
  static constexpr std::array<RateName, 16> kRates{{
      {"23.976", kTimecodeFormat_SMPTEPulldown, 24},
      {"23.98", kTimecodeFormat_SMPTEPulldown, 24},
      {"24", kTimecodeFormat_SMPTE, 24},
      {"25", kTimecodeFormat_SMPTE, 25},
      {"29.97", kTimecodeFormat_SMPTEPulldown, 30},
      {"29.97df", kTimecodeFormat_SMPTEDropFrame, 30},
      {"30", kTimecodeFormat_SMPTE, 30},
      {"47.952", kTimecodeFormat_SMPTEPulldown, 48},
      {"48", kTimecodeFormat_SMPTE, 48},
      {"50", kTimecodeFormat_SMPTE, 50},
      {"59.94", kTimecodeFormat_SMPTEPulldown, 60},
      {"59.94df", kTimecodeFormat_SMPTEDropFrame, 60},
      {"60", kTimecodeFormat_SMPTE, 60},
      {"100", kTimecodeFormat_SMPTE, 100},
      {"119.88", kTimecodeFormat_SMPTEPulldown, 120},
      {"120", kTimecodeFormat_SMPTE, 120},
  }};
  return kRates;
}

FormatChoice ReadFormat(const std::string& inName) {
  const std::string name = boost::to_lower_copy(inName);
  for (const DisplayFormat& format : DisplayFormats()) {
    if (format.name == name || std::to_string(format.format) == name)
      return {format.format, std::nullopt};
  }
  for (const RateName& rate : RateNames()) {
    if (rate.name == name) return {rate.format, rate.framesPerSecond};
  }
  const std::string_view nearest = NearestName(name);
  throw InputError("unknown format " + Quoted(inName) +
                   (nearest.empty() ? "; 'mezzo formats' lists them"
                                    : "; did you mean '" + std::string(nearest) + "'?"));
}

std::string_view NameOf(TimecodeFormat inFormat) {
  return DisplayFormats()[static_cast<std::size_t>(inFormat)].name;
}

bool HasDropFrameLabels(TimecodeFormat inFormat) {
  return inFormat == kTimecodeFormat_SMPTEDropFrame || inFormat == kTimecodeFormat_SMPTEDropFrame2;
}

bool IsPulledDown(TimecodeFormat inFormat) {
  return HasDropFrameLabels(inFormat) || inFormat == kTimecodeFormat_SMPTEPulldown ||
         inFormat == kTimecodeFormat_SMPTEPulldown2 || inFormat == kTimecodeFormat_SMPTEPulldown3 ||
         inFormat == kTimecodeFormat_PulldownFrames;
}

std::optional<std::string> WhyUnavailable(const Timeline& inTimeline, TimecodeFormat inFormat) {
  const std::int32_t fps = inTimeline.framesPerSecond;
  if (inFormat == kTimecodeFormat_Reserved) return "no conversion";
  if (HasDropFrameLabels(inFormat) && fps != 30 && fps != 60)
    return "not at " + std::to_string(fps) + " fps";
  return std::nullopt;
}

void RequireAvailable(const Timeline& inTimeline, TimecodeFormat inFormat) {
  const auto why = WhyUnavailable(inTimeline, inFormat);
  if (!why) return;
  throw InputError("format '" + std::string(NameOf(inFormat)) + "': " + *why +
                   (HasDropFrameLabels(inFormat) ? "; 30 and 60 have drop-frame labels" : ""));
}

std::optional<std::string> WriteText(const Timeline& inTimeline, TimecodeFormat inFormat,
                                     std::int64_t inPosition) {
  plinth::UTF16String text;
  const bool isWritten = ConvertSamplesToTimecode(text, inPosition, inTimeline.sampleRate, inFormat,
                                                  inTimeline.framesPerSecond, &inTimeline.beats,
                                                  inTimeline.isDuration);
  if (!isWritten || text.empty()) return std::nullopt;
  const bool lacksSign = inPosition < 0 && CountsFrames(inFormat) && text != u"0";
  return (lacksSign ? "-" : "") + ToUTF8(text);
}

std::int64_t ReadText(const Timeline& inTimeline, TimecodeFormat inFormat,
                      std::string_view inText) {
  const plinth::UTF16String text = FromUTF8(inText);
  if (inText.find_first_of("0123456789") == std::string_view::npos)
    throw InputError("no digit in " + Quoted(inText));
  std::int64_t position = 0;
  BeatInfo beats = inTimeline.beats;
  if (inFormat == kTimecodeFormat_PulldownFrames) {
    // By format this would be read as drop-frame labels, which most rates do not have.
    ConvertTimecodeToSamples(position, text, inTimeline.sampleRate, inTimeline.framesPerSecond,
                             true, false);
  } else {
    ConvertTimecodeToSamples(position, text, inFormat, inTimeline.sampleRate,
                             inTimeline.framesPerSecond, &beats, inTimeline.isDuration);
  }
  const bool isMirrored =
      !KeepsSign(inFormat) && inText.substr(inText.find_first_not_of(" \t")).starts_with('-');
  return isMirrored ? -position : position;
}

std::int64_t ReadPosition(std::string_view inText) {
  std::string number = boost::trim_copy_if(std::string(inText),
                                           [](char unit) { return unit == ' ' || unit == '\t'; });
  if (number.starts_with('+') && !number.starts_with("+-")) number.erase(0, 1);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error == std::errc::result_out_of_range)
    throw InputError(Quoted(inText) + " does not fit in 64 bits");
  if (error != std::errc() || end != number.data() + number.size())
    throw InputError(Quoted(inText) + " is not a position in samples");
  return value;
}

}  // namespace mezzo::tool
