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

constexpr char kStyle[] = R"(  <style>
    svg { --paper: #ffffff; --ink: #1c2024; --quiet: #60666d; --line: #9aa1a9; --seam: #b3470b; }
    @media (prefers-color-scheme: dark) {
      svg { --paper: #16191d; --ink: #e8eaed; --quiet: #a0a7b0; --line: #666e78; --seam: #ff9e64; }
    }
    text { font: 13px ui-monospace, "SF Mono", Menlo, Consolas, "DejaVu Sans Mono", monospace; }
    text { fill: var(--ink); }
    .caption { font-family: system-ui, -apple-system, "Segoe UI", sans-serif; }
    .caption, .position { fill: var(--quiet); font-size: 12px; }
    .paper { fill: var(--paper); }
    path { stroke: var(--line); fill: none; }
    path.label { stroke: var(--ink); }
    path.seam { stroke: var(--seam); stroke-width: 1.5; }
    text.seam { fill: var(--seam); }
  </style>
)";

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

void DrawLine(std::ostream& outPicture, const char* inClass, int inX, int inTop) {
  // Half a pixel to the right, a line one pixel wide is crisp.
  outPicture << "  <path class=\"" << inClass << "\" d=\"M" << kMargin + inX + kCharacter / 2
             << ".5 " << inTop << "V" << kAxis << "\"/>\n";
}

void WriteText(std::ostream& outPicture, const char* inClass, const LabelBox& inBox, int inLine,
               const std::string& inText) {
  const int x = inBox.alignment == Alignment::kLeft    ? inBox.left
                : inBox.alignment == Alignment::kRight ? inBox.left + inBox.width
                                                       : inBox.left + inBox.width / 2;
  const char* const anchor = inBox.alignment == Alignment::kLeft    ? "start"
                             : inBox.alignment == Alignment::kRight ? "end"
                                                                    : "middle";
  outPicture << "  <text class=\"" << inClass << "\" x=\"" << kMargin + x << "\" y=\"" << inLine
             << "\" text-anchor=\"" << anchor << "\">" << Escaped(inText) << "</text>\n";
}

void WriteLines(std::ostream& outPicture, int inFirstLine,
                const std::vector<std::string>& inLines) {
  for (int line = inFirstLine; const std::string& text : inLines) {
    WriteText(outPicture, "caption", {0, 0, Alignment::kLeft}, line, text);
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
          << kStyle << "  <rect class=\"paper\" width=\"100%\" height=\"100%\"/>\n";
  WriteLines(picture, kMargin + kLineHeight / 2, caption);
  WriteLines(picture, noteTop + kLineHeight, note);
  picture << "  <g transform=\"translate(0 " << rulerTop << ")\">\n"
          << "  <path d=\"M" << kMargin << " " << kAxis << ".5H" << kMargin + grid.width
          << "\"/>\n";
  for (const PlacedTick& tick : layout.ticks) {
    const char* const kind = tick.isAtSeam ? "seam" : tick.hasLabel ? "label" : "tick";
    DrawLine(picture, kind, tick.x, tick.hasLabel ? kLabelledTickTop : kTickTop);
    if (!tick.hasLabel) continue;
    WriteText(picture, kind, tick.box, kLabelLine, DrawnLabel(tick.tick));
    WriteText(picture, "position", tick.box, kPositionLine, std::to_string(tick.tick.position));
  }
  picture << "  </g>\n</svg>\n";
  return picture.str();
}

}  // namespace mezzo::tool
