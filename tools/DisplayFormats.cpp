#include "DisplayFormats.h"

#include "Messages.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <algorithm>
#include <numeric>
#include <vector>

namespace mezzo::tool {

using namespace utility;

namespace {

/// The number of characters to insert, remove or replace to turn one word into the other.
std::size_t GetEditDistance(std::string_view inFrom, std::string_view inTo) {
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

/// The format or rate name with the most similar spelling; empty when none is similar.
std::string FindSimilarName(std::string_view inName) {
  std::string_view similar;
  std::size_t least = 2;
  const auto consider = [&](std::string_view inCandidate) {
    const std::size_t distance = GetEditDistance(inName, inCandidate);
    if (distance > least || distance == inCandidate.size()) return;
    least = distance;
    similar = inCandidate;
  };
  for (const DisplayFormat& format : kDisplayFormats) consider(format.name);
  for (const RateName& rate : kRateNames) consider(rate.name);
  return std::string(similar);
}

}  // namespace

FormatChoice FindFormat(const std::string& inName) {
  const std::string name = boost::to_lower_copy(inName);
  for (const DisplayFormat& format : kDisplayFormats) {
    if (format.name == name || std::to_string(format.format) == name) return {format.format, {}};
  }
  for (const RateName& rate : kRateNames) {
    if (rate.name == name) return {rate.format, rate.framesPerSecond};
  }
  const std::string similar = FindSimilarName(name);
  throw InputError("unknown format " + Quote(inName) +
                   (similar.empty() ? "; 'mezzo formats' lists the formats"
                                    : "; did you mean '" + similar + "'?"));
}

std::string GetName(TimecodeFormat inFormat) {
  return std::string(kDisplayFormats[static_cast<std::size_t>(inFormat)].name);
}

bool HasDropFrameLabels(TimecodeFormat inFormat) {
  return inFormat == kTimecodeFormat_SMPTEDropFrame || inFormat == kTimecodeFormat_SMPTEDropFrame2;
}

bool IsPulledDown(TimecodeFormat inFormat) {
  return HasDropFrameLabels(inFormat) || inFormat == kTimecodeFormat_SMPTEPulldown ||
         inFormat == kTimecodeFormat_SMPTEPulldown2 || inFormat == kTimecodeFormat_SMPTEPulldown3 ||
         inFormat == kTimecodeFormat_PulldownFrames;
}

std::string ExplainUnavailable(const Timeline& inTimeline, TimecodeFormat inFormat) {
  const std::int32_t fps = inTimeline.framesPerSecond;
  if (inFormat == kTimecodeFormat_Reserved) return "no conversion";
  if (!HasDropFrameLabels(inFormat) || fps == 30 || fps == 60) return "";
  return "not at " + std::to_string(fps) + " fps";
}

void RequireAvailable(const Timeline& inTimeline, TimecodeFormat inFormat) {
  const std::string reason = ExplainUnavailable(inTimeline, inFormat);
  if (reason.empty()) return;
  throw InputError("format '" + GetName(inFormat) + "': " + reason +
                   (HasDropFrameLabels(inFormat) ? "; only 30 and 60 have drop-frame labels" : ""));
}

}  // namespace mezzo::tool
