#include "RulerDrawing.h"

#include <sstream>

namespace mezzo::tool {
namespace {

// Pixels; the fonts' own characters are narrower.
constexpr int kCharacter = 8;
constexpr int kTickDistance = 6;
constexpr int kLabelDistance = 12;
constexpr int kMargin = 24;
constexpr int kLineHeight = 16;

// Pixels from the top of the ruler proper.
constexpr int kLabelLine = 28;
constexpr int kLabelledTickTop = 38;
constexpr int kTickTop = 46;
constexpr int kAxis = 54;
constexpr int kPositionLine = 74;
constexpr int kRulerHeight = 78;

/// What the light scheme draws with stands at the elements, for viewers that know no style sheets;
/// the dark scheme overrides it.
struct Colour {
  const char* name;
  const char* light;
  const char* dark;
};
constexpr Colour kPaper{"paper", "#ffffff", "#16191d"};
constexpr Colour kInk{"label", "#1c2024", "#e8eaed"};
constexpr Colour kQuiet{"quiet", "#60666d", "#a0a7b0"};
constexpr Colour kLine{"tick", "#9aa1a9", "#666e78"};
constexpr Colour kSeam{"seam", "#b3470b", "#ff9e64"};

std::string Style() {
  std::string style = "  <style>\n    @media (prefers-color-scheme: dark) {\n";
  for (const Colour& colour : {kPaper, kInk, kQuiet, kLine, kSeam}) {
    const std::string name = colour.name;
    style.append("      rect.").append(name).append(", text.").append(name);
    style.append(" { fill: ").append(colour.dark).append("; }\n      path.").append(name);
    style.append(" { stroke: ").append(colour.dark).append("; }\n");
  }
  return style + "    }\n  </style>\n";
}

std::string Escaped(const std::string& inText) {
  std::string escaped;
  for (const char character : inText) {
    switch (character) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += character;
    }
  }
  return escaped;
}

void DrawLine(std::ostream& outPicture, const Colour& inColour, const std::string& inPath) {
  outPicture << "  <path class=\"" << inColour.name << "\" stroke=\"" << inColour.light
             << "\" fill=\"none\" d=\"" << inPath << "\"/>\n";
}

void WriteText(std::ostream& outPicture, const Colour& inColour, int inSize, const LabelBox& inBox,
               int inLine, const std::string& inText) {
  const int x = inBox.alignment == Alignment::kLeft    ? inBox.left
                : inBox.alignment == Alignment::kRight ? inBox.left + inBox.width
                                                       : inBox.left + inBox.width / 2;
  const char* const anchor = inBox.alignment == Alignment::kLeft    ? "start"
                             : inBox.alignment == Alignment::kRight ? "end"
                                                                    : "middle";
  outPicture << "  <text class=\"" << inColour.name << "\" fill=\"" << inColour.light << "\" x=\""
             << kMargin + x << "\" y=\"" << inLine << "\" font-size=\"" << inSize
             << "\" text-anchor=\"" << anchor << "\">" << Escaped(inText) << "</text>\n";
}

void WriteLines(std::ostream& outPicture, int inFirstLine,
                const std::vector<std::string>& inLines) {
  for (int line = inFirstLine; const std::string& text : inLines) {
    WriteText(outPicture, kQuiet, 12, {0, 0, Alignment::kLeft}, line, text);
    line += kLineHeight;
  }
}

int HeightOf(const std::vector<std::string>& inLines) {
  return static_cast<int>(inLines.size()) * kLineHeight;
}

}  // namespace

std::string DrawSVG(const RulerScale& inScale, const std::string& inCaption, int inColumns) {
  const Grid grid{inColumns * kCharacter, kCharacter, kTickDistance, kLabelDistance};
  const RulerLayout layout = LayOut(inScale, grid);
  const std::vector<std::string> caption = WrapWords(inCaption, inColumns);
  const std::vector<std::string> note =
      WrapWords(layout.isEachReadBack ? "" : kMarkMeaning, inColumns);
  const int width = grid.width + 2 * kMargin;
  const int rulerTop = kMargin + HeightOf(caption);
  const int noteTop = rulerTop + kRulerHeight;
  const int height = noteTop + HeightOf(note) + kMargin;

  std::ostringstream picture;
  picture << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << width << " " << height
          << "\" width=\"" << width << "\" height=\"" << height << "\" role=\"img\">\n  <title>"
          << Escaped(inCaption) << "</title>\n"
          << Style() << "  <rect class=\"" << kPaper.name << "\" fill=\"" << kPaper.light
          << "\" width=\"100%\" height=\"100%\"/>\n"
          << "  <g font-family=\"ui-monospace, 'SF Mono', Menlo, Consolas, 'DejaVu Sans Mono', "
             "monospace\">\n";
  WriteLines(picture, kMargin + kLineHeight / 2, caption);
  WriteLines(picture, noteTop + kLineHeight, note);
  picture << "  <g transform=\"translate(0 " << rulerTop << ")\">\n";
  DrawLine(picture, kLine,
           "M" + std::to_string(kMargin) + " " + std::to_string(kAxis) + ".5H" +
               std::to_string(kMargin + grid.width));
  for (const PlacedTick& tick : layout.ticks) {
    const Colour& colour = tick.isAtSeam ? kSeam : tick.hasLabel ? kInk : kLine;
    // Half a pixel to the right, a line one pixel wide is crisp.
    DrawLine(picture, colour,
             "M" + std::to_string(kMargin + tick.x + kCharacter / 2) + ".5 " +
                 std::to_string(tick.hasLabel ? kLabelledTickTop : kTickTop) + "V" +
                 std::to_string(kAxis));
    if (!tick.hasLabel) continue;
    WriteText(picture, colour, 13, tick.box, kLabelLine, DrawnLabel(tick.tick));
    WriteText(picture, kQuiet, 12, tick.box, kPositionLine, std::to_string(tick.tick.position));
  }
  picture << "  </g>\n  </g>\n</svg>\n";
  return picture.str();
}

}  // namespace mezzo::tool
