#include "RulerDrawing.h"

#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <sstream>

namespace mezzo::tool {
namespace {

/// Writes a text into a row of blanks.
void PutText(std::string& ioRow, const LabelBox& inBox, const std::string& inText) {
  const int spare = inBox.width - static_cast<int>(inText.size());
  const int left = inBox.left + spare * inBox.alignment / 2;
  ioRow.replace(static_cast<std::size_t>(left), inText.size(), inText);
}

std::string DrawAxis(const std::vector<PlacedTick>& inTicks, std::size_t inColumns,
                     bool inIsASCII) {
  enum Mark : std::size_t { kMark_None, kMark_Tick, kMark_Label };
  static constexpr const char* kLines[][3] = {
      {"─", "┌", "├"}, {"─", "┬", "┼"}, {"─", "┐", "┤"}};  // first, inner, last column
  static constexpr const char* kASCII[] = {"-", "'", "|"};
  std::vector<Mark> marks(inColumns, kMark_None);
  for (const PlacedTick& tick : inTicks) {
    Mark& mark = marks[static_cast<std::size_t>(tick.x)];
    mark = std::max(mark, tick.box ? kMark_Label : kMark_Tick);
  }
  std::string axis;
  for (std::size_t column = 0; column < inColumns; ++column) {
    const std::size_t index = column == 0 ? 0 : column + 1 == inColumns ? 2 : 1;
    axis += inIsASCII ? kASCII[marks[column]] : kLines[index][marks[column]];
  }
  return axis;
}

}  // namespace

std::vector<std::string> WrapWords(const std::string& inText, int inColumns) {
  std::istringstream words(inText);
  std::vector<std::string> lines;
  for (std::string word; words >> word;) {
    const auto width = static_cast<std::size_t>(inColumns);
    if (!lines.empty() && lines.back().size() + 1 + word.size() <= width) {
      lines.back() += " " + word;
    } else {
      lines.push_back(word);
    }
  }
  return lines;
}

std::string GetFootnote(const std::vector<PlacedTick>& inTicks) {
  const bool isMarked = std::any_of(inTicks.begin(), inTicks.end(), [](const PlacedTick& inTick) {
    return inTick.box && !inTick.tick.readsBack;
  });
  return isMarked ? "* does not read back as its position" : "";
}

Grid GetTextGrid(int inColumns) {
  return {.width = inColumns, .characterWidth = 1, .tickDistance = 4, .labelDistance = 2};
}

std::string DrawAsText(const RulerScale& inScale, const std::string& inCaption, int inColumns,
                       bool inIsASCII) {
  const std::vector<PlacedTick> ticks = LayOut(inScale, GetTextGrid(inColumns));
  const auto columns = static_cast<std::size_t>(inColumns);
  std::string labels(columns, ' ');
  std::string positions = labels;
  for (const PlacedTick& tick : ticks) {
    if (!tick.box) continue;
    PutText(labels, *tick.box, GetDrawnLabel(tick.tick));
    PutText(positions, *tick.box, std::to_string(tick.tick.position));
  }
  std::vector<std::string> lines = WrapWords(inCaption, inColumns);
  lines.insert(lines.end(), {"", labels, DrawAxis(ticks, columns, inIsASCII), positions});
  for (const std::string& line : WrapWords(GetFootnote(ticks), inColumns)) lines.push_back(line);
  std::string text;
  for (const std::string& line : lines) text += boost::trim_right_copy(line) + "\n";
  return text;
}

}  // namespace mezzo::tool
