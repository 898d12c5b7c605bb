#include "RulerDrawing.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace mezzo::tool {
namespace {

void PutText(std::string& outRow, const LabelBox& inBox, const std::string& inText) {
  const int length = static_cast<int>(inText.size());
  const int spare = inBox.alignment == Alignment::kLeft ? 0
                    : inBox.alignment == Alignment::kRight
                        ? inBox.width - length
                        : (inBox.width - 1) / 2 - (length - 1) / 2;
  const auto begin = static_cast<std::size_t>(inBox.left) + static_cast<std::size_t>(spare);
  outRow.replace(begin, inText.size(), inText);
}

std::string DrawAxis(const RulerLayout& inLayout, int inColumns, bool inIsASCII) {
  enum Mark : std::size_t { kNone, kTick, kLabel };
  static constexpr const char* kLines[][3] = {
      {"─", "┌", "├"}, {"─", "┬", "┼"}, {"─", "┐", "┤"}};  // first, inner, last column
  static constexpr const char* kASCII[][3] = {{"-", "'", "|"}, {"-", "'", "|"}, {"-", "'", "|"}};
  std::vector<Mark> marks(static_cast<std::size_t>(inColumns), kNone);
  for (const PlacedTick& tick : inLayout.ticks) {
    Mark& mark = marks[static_cast<std::size_t>(tick.x)];
    mark = std::max(mark, tick.hasLabel ? kLabel : kTick);
  }
  std::string axis;
  for (std::size_t column = 0; column < marks.size(); ++column) {
    const std::size_t place = column == 0 ? 0 : column + 1 == marks.size() ? 2 : 1;
    axis += (inIsASCII ? kASCII : kLines)[place][marks[column]];
  }
  return axis;
}

std::string WithoutTrailingBlanks(const std::string& inRow) {
  return inRow.substr(0, inRow.find_last_not_of(' ') + 1);
}

}  // namespace

std::vector<std::string> WrapWords(const std::string& inText, int inColumns) {
  std::istringstream words(inText);
  std::vector<std::string> lines;
  for (std::string word; words >> word;) {
    const bool fits = !lines.empty() &&
                      lines.back().size() + 1 + word.size() <= static_cast<std::size_t>(inColumns);
    if (fits) {
      lines.back() += " " + word;
    } else {
      lines.push_back(word);
    }
  }
  return lines;
}

Grid TextGrid(int inColumns) {
  return {.width = inColumns, .character = 1, .tickDistance = 4, .labelDistance = 2};
}

std::string DrawText(const RulerScale& inScale, const std::string& inCaption, int inColumns,
                     bool inIsASCII) {
  const RulerLayout layout = LayOut(inScale, TextGrid(inColumns));
  std::string labels(static_cast<std::size_t>(inColumns), ' ');
  std::string positions = labels;
  for (const PlacedTick& tick : layout.ticks) {
    if (!tick.hasLabel) continue;
    PutText(labels, tick.box, DrawnLabel(tick.tick));
    PutText(positions, tick.box, std::to_string(tick.tick.position));
  }
  std::vector<std::string> lines = WrapWords(inCaption, inColumns);
  lines.insert(lines.end(),
               {"", WithoutTrailingBlanks(labels), DrawAxis(layout, inColumns, inIsASCII),
                WithoutTrailingBlanks(positions)});
  if (!layout.isEachReadBack) {
    for (const std::string& line : WrapWords(kMarkMeaning, inColumns)) lines.push_back(line);
  }
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace mezzo::tool
