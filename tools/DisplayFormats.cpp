#include "DisplayFormats.h"

#include "Messages.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <cmath>
#include <cstdlib>
#include <regex>
#include <vector>

namespace mezzo::tool {

using namespace utility;

FormatChoice FindFormat(const std::string& inName) {
  const std::string name = boost::to_lower_copy(inName);
  for (const DisplayFormat& format : kDisplayFormats) {
    if (format.name == name) return {format.format, {}};
  }
  for (const RateName& rate : kRateNames) {
    if (rate.name == name) return {rate.format, rate.framesPerSecond};
  }
  if (const RateName* const nearest = FindNearestRate(name); nearest != nullptr)
    throw UserError("unknown format " + Quote(inName) + "; did you mean '" +
                    std::string(nearest->name) + "'?");
  std::vector<std::string> names;
  names.reserve(kDisplayFormats.size());
  for (const DisplayFormat& format : kDisplayFormats) names.emplace_back(format.name);
  throw UserError("unknown format " + Quote(inName) + SuggestWord(name, names, "mezzo formats"));
}

const RateName* FindNearestRate(const std::string& inText) {
  static const std::regex sRate("[0-9]+([.][0-9]*)?[a-z]*");
  if (!std::regex_match(inText, sRate)) return nullptr;
  constexpr double kFarthest = 0.1;
  const double typed = std::strtod(inText.c_str(), nullptr);
  const auto has = [&](char inLetter) { return inText.find(inLetter) != std::string::npos; };
  const bool isDropFrame = has('d') && !has('n');
  const RateName* nearest = nullptr;
  double least = kFarthest;
  for (const RateName& rate : kRateNames) {
    const double distance = std::fabs(GetFrameRate(rate.framesPerSecond, rate.format) - typed);
    if (HasDropFrameLabels(rate.format) != isDropFrame || !(distance < least)) continue;
    least = distance;
    nearest = &rate;
  }
  return nearest;
}

std::string GetName(TimecodeFormat inFormat) {
  return std::string(kDisplayFormats[static_cast<std::size_t>(inFormat)].name);
}

bool HasDropFrameLabels(TimecodeFormat inFormat) {
  return inFormat == kTimecodeFormat_SMPTEDropFrame || inFormat == kTimecodeFormat_SMPTEDropFrame2;
}

bool IsFrameCount(TimecodeFormat inFormat) {
  return inFormat == kTimecodeFormat_Frames || inFormat == kTimecodeFormat_PulldownFrames;
}

bool IsPulledDown(TimecodeFormat inFormat) {
  return HasDropFrameLabels(inFormat) || inFormat == kTimecodeFormat_SMPTEPulldown ||
         inFormat == kTimecodeFormat_SMPTEPulldown2 || inFormat == kTimecodeFormat_SMPTEPulldown3 ||
         inFormat == kTimecodeFormat_PulldownFrames;
}

double GetFrameRate(std::int32_t inNominalRate, TimecodeFormat inFormat) {
  return inNominalRate / (IsPulledDown(inFormat) ? 1.001 : 1.0);
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
  throw UserError("format '" + GetName(inFormat) + "': " + reason +
                  (HasDropFrameLabels(inFormat) ? "; only 30 and 60 have drop-frame labels" : ""));
}

}  // namespace mezzo::tool
