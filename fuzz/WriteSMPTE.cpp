// Samples to SMPTE timecode, against exact arithmetic in 128 bits and labels counted minute by
// minute.

#include "FuzzArguments.h"

#include <cinttypes>

namespace mezzo::fuzz {
namespace {

__extension__ using Wide = __int128;

struct Display {
  bool dropFrame, pulldown, framesOnly, noFrames, trimLeadingZeros, showSubframes, noHours;
};

struct Field {
  std::int64_t value;
  int width;
};

std::string Padded(const Field& inField) {
  char text[32];
  std::snprintf(text, sizeof text, "%0*" PRId64, inField.width, inField.value);
  return text;
}

std::string DropFrameLabel(std::int64_t inFrames, std::int64_t inFps) {
  std::int64_t minute = 0;
  std::int64_t frame = inFrames;
  const auto dropped = [&] { return minute % 10 == 0 ? 0 : inFps / 15; };
  while (frame >= 60 * inFps - dropped()) {
    frame -= 60 * inFps - dropped();
    ++minute;
  }
  frame += dropped();
  return Padded({minute / 60, 2}) + ';' + Padded({minute % 60, 2}) + ';' +
         Padded({frame / inFps, 2}) + ';' + Padded({frame % inFps, 2});
}

std::string FieldLabel(std::int64_t inFrames, std::int64_t inFps, int inHundredths,
                       const Display& inDisplay) {
  const std::int64_t seconds = inFrames / inFps;
  const std::int64_t minutes = seconds / 60;
  const int framesWidth = inFps <= 10 ? 1 : inFps <= 100 ? 2 : inFps <= 1000 ? 3 : 4;
  std::vector<Field> fields{
      {minutes / 60, 2}, {minutes % 60, 2}, {seconds % 60, 2}, {inFrames % inFps, framesWidth}};
  if (inDisplay.noHours) fields.erase(fields.begin()), fields[0].value = minutes;
  if (inDisplay.noFrames) fields.pop_back();
  if (inDisplay.trimLeadingZeros) {
    const std::size_t all = fields.size();
    while (fields.size() > 1 && fields[0].value == 0) fields.erase(fields.begin());
    const bool startsWithHours = fields.size() == all && !inDisplay.noHours;
    const bool isSecondsAlone = fields.size() == 1 && inDisplay.noFrames;
    if (!startsWithHours && !isSecondsAlone) fields[0].width = 1;
  }
  std::string text;
  for (const auto& field : fields) {
    if (!text.empty()) text += ':';
    text += Padded(field);
  }
  if (!inDisplay.showSubframes || inDisplay.noFrames) return text;
  return text + '.' + Padded({inHundredths, 2});
}

}  // namespace

void Check(FuzzArguments& ioArgs) {
  const std::int64_t samples = ioArgs.Int64() >> (ioArgs.Byte() % 64);
  const std::int32_t rate = ioArgs.SampleRate();
  const std::int32_t fps = ioArgs.FrameRate();
  const auto flag = [&] { return ioArgs.Flag(); };
  const Display display{flag(), flag(), flag(), flag(), flag(), flag(), flag()};
  bool isWritten = false;
  const std::string actual = Written([&](UTF16String& text) {
    isWritten = utility::ConvertSamplesToTimecode(
        text, samples, rate, fps, display.dropFrame, display.pulldown, display.framesOnly,
        display.noFrames, display.trimLeadingZeros, display.showSubframes, display.noHours);
  });

  const bool isPulledDown = display.dropFrame || display.pulldown;
  const Wide magnitude = samples < 0 ? -Wide{samples} : Wide{samples};
  if (rate < 1 || fps < 1 || fps > 2000 || magnitude >= Wide{1} << 35) return;
  if (display.dropFrame && (display.pulldown || (fps != 30 && fps != 60))) return;
  const Wide dividend = magnitude * fps * (isPulledDown ? 1000 : 1);
  const Wide divisor = Wide{rate} * (isPulledDown ? 1001 : 1);
  const auto frames = static_cast<std::int64_t>(dividend / divisor);
  if (frames >= std::int64_t{1} << 31) return;
  const auto hundredths = static_cast<int>(dividend * 100 / divisor % 100);
  if (display.framesOnly) {
    // At the pulled-down rate with dropped labels the count is made in double precision.
    return RequireNear(std::stoll(actual), frames, display.dropFrame ? 1 : 0);
  }
  const std::string sign = samples < 0 ? "-" : "";
  RequireEqual(actual, sign + (display.dropFrame ? DropFrameLabel(frames, fps)
                                                 : FieldLabel(frames, fps, hundredths, display)));
  Require(isWritten, "false", "true");
}

}  // namespace mezzo::fuzz
