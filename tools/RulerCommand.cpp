// The ruler command.
#include "Commands.h"
#include "JSONOutput.h"
#include "Messages.h"
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

int GetTerminalColumns() {
  constexpr int kUsualColumns = 80;
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
  return std::clamp(int{size.ws_col}, kNarrowestRuler, kWidestRuler);
}

bool IsLocaleUTF8() {
  locale_t const locale = newlocale(LC_CTYPE_MASK, "", locale_t{});
  if (locale == locale_t{}) return false;
  const bool isUTF8 = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
  freelocale(locale);
  return isUTF8;
}

std::string GetCaption(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                       const RulerScale& inScale) {
  constexpr int kDigitsOfRate = 5;  // "29.97", "119.88"
  const Notation notation = GetNotation(inTimeline, inFormat);
  std::ostringstream caption;
  caption << GetName(inFormat) << ", " << inTimeline.sampleRate << " Hz";
  if (notation.HasBars())
    caption << ", " << inTimeline.beats.iBeatsPerBar << "/" << inTimeline.beats.iBeatUnit;
  if (notation.HasBars() || inFormat == utility::kTimecodeFormat_Beats)
    caption << ", " << inTimeline.beats.dTempo << " quarter notes per minute";
  if (notation.HasFrames()) {
    caption.precision(kDigitsOfRate);
    caption << ", " << GetFrameRate(inTimeline.framesPerSecond, inFormat) << " fps";
  }
  caption << ", samples " << inScale.GetFrom() << " to " << inScale.GetTo();
  return caption.str();
}

JSON MakeJSON(utility::TimecodeFormat inFormat, const RulerScale& inScale,
              const std::vector<PlacedTick>& inTicks, const std::vector<ConversionNote>& inNotes) {
  JSON ruler{{"format", GetName(inFormat)}, {"from", inScale.GetFrom()}, {"to", inScale.GetTo()}};
  AddConversionNotes(ruler, inNotes);
  ruler["ticks"] = JSON::array();
  for (const PlacedTick& placed : inTicks) {
    ruler["ticks"].push_back({{"position", placed.tick.position},
                              {"text", placed.tick.label},
                              {"labelled", placed.box.has_value()},
                              {"reads_back", placed.tick.readsBack}});
  }
  return ruler;
}

void WriteFile(const std::string& inName, const std::string& inContent) {
  std::ofstream file(inName, std::ios::binary);
  file << inContent;
  file.close();
  if (!file) {
    throw UserError("cannot write " + Quote(inName) + ": " +
                    std::generic_category().message(errno));
  }
}

}  // namespace

int DrawRuler(const Settings& inSettings) {
  if (inSettings.isJSON && !inSettings.pictureFile.empty())
    throw UserError("--json and --svg exclude each other");
  const utility::TimecodeFormat format = inSettings.toFormat.format;
  const Timeline timeline = inSettings.GetTimeline(inSettings.toFormat);
  const RulerScale scale(timeline, format, inSettings.rulerFrom, inSettings.rulerTo);
  const std::string caption = GetCaption(timeline, format, scale);
  const int columns = inSettings.width.value_or(GetTerminalColumns());
  const std::vector<PlacedTick> ticks = LayOut(scale, GetTextGrid(columns));
  std::vector<ConversionNote> notes = scale.GetNotes();
  if (ticks.empty())
    notes.push_back({kConversionNoteKind_EmptyRuler, "no tick falls within this interval"});
  ConversionNotePrinter().Print(notes);
  if (inSettings.isJSON) {
    std::cout << FormatJSON(MakeJSON(format, scale, ticks, notes)) << '\n';
  } else if (inSettings.pictureFile.empty()) {
    std::cout << DrawAsText(scale, caption, columns, !IsLocaleUTF8());
  } else if (inSettings.pictureFile == "-") {
    std::cout << DrawAsSVG(scale, caption, columns);
  } else {
    WriteFile(inSettings.pictureFile, DrawAsSVG(scale, caption, columns));
  }
  return kExitStatus_Success;
}

}  // namespace mezzo::tool
