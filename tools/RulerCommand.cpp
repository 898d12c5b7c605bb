// ruler: from the command line to the drawing.
#include "CommandLine.h"
#include "InputError.h"
#include "JSONOutput.h"
#include "RulerDrawing.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iostream>
#include <sstream>
#include <system_error>

namespace mezzo::tool {
namespace {

constexpr int kUsualColumns = 80;

int TerminalColumns() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
  return std::clamp(int{size.ws_col}, kNarrowestRuler, kWidestRuler);
}

std::string CaptionOf(const Settings& inSettings, const RulerScale& inScale) {
  const Timeline& timeline = inSettings.timeline;
  std::ostringstream caption;
  caption << NameOf(inSettings.format) << ", " << timeline.sampleRate << " Hz";
  switch (inSettings.format) {
    case utility::kTimecodeFormat_Decimal:
    case utility::kTimecodeFormat_Samples:
    case utility::kTimecodeFormat_Milliseconds:
      break;
    case utility::kTimecodeFormat_BarsAndBeats:
      caption << ", " << timeline.beats.iBeatsPerBar << "/" << timeline.beats.iBeatUnit;
      [[fallthrough]];
    case utility::kTimecodeFormat_Beats:
      caption << ", " << timeline.beats.dTempo << " quarter notes a minute";
      break;
    default:
      caption << ", " << timeline.framesPerSecond << " fps";
  }
  caption << ", samples " << inScale.From() << " to " << inScale.To();
  return caption.str();
}

JSON ToJSON(const Settings& inSettings, const RulerScale& inScale, const RulerLayout& inLayout) {
  JSON ruler{{"format", NameOf(inSettings.format)},
             {"from", inScale.From()},
             {"to", inScale.To()},
             {"ticks", JSON::array()}};
  for (const PlacedTick& tick : inLayout.ticks) {
    ruler["ticks"].push_back({{"position", tick.tick.position},
                              {"text", tick.tick.label},
                              {"labelled", tick.hasLabel},
                              {"reads_back", tick.tick.readsBack}});
  }
  return ruler;
}

void WriteFile(const std::string& inName, const std::string& inContent) {
  std::ofstream file(inName, std::ios::binary);
  file << inContent;
  file.close();
  if (!file) {
    throw InputError("cannot write '" + inName + "': " + std::generic_category().message(errno));
  }
}

}  // namespace

int DrawRuler(const Settings& inSettings) {
  if (inSettings.isJSON && !inSettings.pictureFile.empty()) {
    throw InputError("ruler: give either --json or --svg");
  }
  const RulerScale scale(inSettings.timeline, inSettings.format, inSettings.from, inSettings.to);
  const std::string caption = CaptionOf(inSettings, scale);
  const int columns = inSettings.width.value_or(TerminalColumns());
  if (inSettings.isJSON) {
    std::cout << ToText(ToJSON(inSettings, scale, LayOut(scale, TextGrid(columns)))) << '\n';
  } else if (inSettings.pictureFile.empty()) {
    std::cout << DrawText(scale, caption, columns);
  } else if (inSettings.pictureFile == "-") {
    std::cout << DrawSVG(scale, caption, columns);
  } else {
    WriteFile(inSettings.pictureFile, DrawSVG(scale, caption, columns));
  }
  return kSuccess;
}

}  // namespace mezzo::tool
