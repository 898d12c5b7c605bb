// ruler: from the command line to the drawing.
#include "Commands.h"
#include "InputError.h"
#include "JSONOutput.h"
#include "RulerDrawing.h"

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string_view>
#include <system_error>

namespace mezzo::tool {
namespace {

constexpr int kUsualColumns = 80;

int TerminalColumns() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
  return std::clamp(int{size.ws_col}, kNarrowestRuler, kWidestRuler);
}

/// Only UTF-8 has the lines.
bool IsTerminalASCII() {
  std::setlocale(LC_CTYPE, "");                              // NOLINT(concurrency-mt-unsafe)
  return std::string_view(nl_langinfo(CODESET)) != "UTF-8";  // NOLINT(concurrency-mt-unsafe)
}

/// The real frame rate, with three decimals at the most: "29.97", "25".
std::string RealRate(const Timeline& inTimeline, utility::TimecodeFormat inFormat) {
  std::ostringstream rate;
  rate.precision(5);
  rate << inTimeline.framesPerSecond / (IsPulledDown(inFormat) ? 1.001 : 1.0);
  return rate.str();
}

std::string CaptionOf(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                      const RulerScale& inScale) {
  std::ostringstream caption;
  caption << NameOf(inFormat) << ", " << inTimeline.sampleRate << " Hz";
  switch (inFormat) {
    case utility::kTimecodeFormat_Decimal:
    case utility::kTimecodeFormat_Samples:
    case utility::kTimecodeFormat_Milliseconds:
      break;
    case utility::kTimecodeFormat_BarsAndBeats:
      caption << ", " << inTimeline.beats.iBeatsPerBar << "/" << inTimeline.beats.iBeatUnit;
      [[fallthrough]];
    case utility::kTimecodeFormat_Beats:
      caption << ", " << inTimeline.beats.dTempo << " quarter notes a minute";
      break;
    default:
      caption << ", " << RealRate(inTimeline, inFormat) << " fps";
  }
  caption << ", samples " << inScale.From() << " to " << inScale.To();
  return caption.str();
}

JSON ToJSON(utility::TimecodeFormat inFormat, const RulerScale& inScale,
            const RulerLayout& inLayout) {
  JSON ruler{{"format", NameOf(inFormat)},
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
  const utility::TimecodeFormat format = inSettings.format.format;
  const Timeline timeline = inSettings.TimelineOf(inSettings.format);
  const RulerScale scale(timeline, format, inSettings.from, inSettings.to);
  const std::string caption = CaptionOf(timeline, format, scale);
  const int columns = inSettings.width.value_or(TerminalColumns());
  if (inSettings.isJSON) {
    std::cout << ToText(ToJSON(format, scale, LayOut(scale, TextGrid(columns)))) << '\n';
  } else if (inSettings.pictureFile.empty()) {
    std::cout << DrawText(scale, caption, columns, IsTerminalASCII());
  } else if (inSettings.pictureFile == "-") {
    std::cout << DrawSVG(scale, caption, columns);
  } else {
    WriteFile(inSettings.pictureFile, DrawSVG(scale, caption, columns));
  }
  return kSuccess;
}

}  // namespace mezzo::tool
