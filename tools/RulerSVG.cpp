#include "RulerDrawing.h"

#include <array>
#include <sstream>

namespace mezzo::tool {
namespace {

// Pixels. The characters of the fonts are narrower than kCharacter.
constexpr int kCharacter = 8;
constexpr int kTickDistance = 6;
constexpr int kLabelDistance = 12;
constexpr int kMargin = 24;
constexpr int kLineHeight = 16;

// Pixels from the top of the scale.
constexpr int kLabelLine = 28;
constexpr int kLabelledTickTop = 38;
constexpr int kTickTop = 46;
constexpr int kAxis = 54;
constexpr int kPositionLine = 74;
constexpr int kScaleHeight = 78;

/// A CSS class and its colour in the light scheme. The colour is an attribute of the elements, for
/// viewers without style sheets; the dark scheme overrides it.
struct Ink {
  const char* name;
  const char* light;
};
constexpr Ink kLabel{"label", "#1c2024"};
constexpr Ink kQuiet{"quiet", "#60666d"};
constexpr Ink kTick{"tick", "#9aa1a9"};
constexpr Ink kGap{"gap", "#b3470b"};

constexpr char kStyleAndBackground[] = R"(  <style>
    @media (prefers-color-scheme: dark) {
      rect { fill: #16191d; }
      text.label { fill: #e8eaed; }
      path.label { stroke: #e8eaed; }
      text.quiet { fill: #a0a7b0; }
      path.tick { stroke: #666e78; }
      text.gap { fill: #ff9e64; }
      path.gap { stroke: #ff9e64; }
    }
  </style>
  <rect fill="#ffffff" width="100%" height="100%"/>
)";

void DrawPath(std::ostream& outPicture, const Ink& inInk, const std::string& inPath) {
  outPicture << "  <path class=\"" << inInk.name << "\" stroke=\"" << inInk.light
             << "\" fill=\"none\" d=\"" << inPath << "\"/>\n";
}

void AddText(std::ostream& outPicture, const Ink& inInk, int inSize, const LabelBox& inBox,
             int inLine, const std::string& inText) {
  static constexpr std::array<const char*, 3> kAnchors{"start", "middle", "end"};
  const int x = kMargin + inBox.left + inBox.width * inBox.alignment / 2;
  outPicture << "  <text class=\"" << inInk.name << "\" fill=\"" << inInk.light << "\" x=\"" << x
             << "\" y=\"" << inLine << "\" font-size=\"" << inSize << "\" text-anchor=\""
             << kAnchors[inBox.alignment] << "\">" << inText << "</text>\n";
}

/// \return the height of the lines.
int DrawTextLines(std::ostream& outPicture, int inTop, const std::vector<std::string>& inLines) {
  int height = 0;
  for (const std::string& line : inLines) {
    AddText(outPicture, kQuiet, 12, {0, 0, kAlignment_Left}, inTop + height + kLineHeight - 4,
            line);
    height += kLineHeight;
  }
  return height;
}

}  // namespace

std::string DrawAsSVG(const RulerScale& inScale, const std::string& inCaption, int inColumns) {
  const Grid grid{inColumns * kCharacter, kCharacter, kTickDistance, kLabelDistance};
  const std::vector<PlacedTick> ticks = LayOut(inScale, grid);
  std::ostringstream content;
  const int top = kMargin + DrawTextLines(content, kMargin, WrapWords(inCaption, inColumns));
  DrawPath(content, kTick,
           "M" + std::to_string(kMargin) + " " + std::to_string(top + kAxis) + ".5H" +
               std::to_string(kMargin + grid.width));
  for (const PlacedTick& tick : ticks) {
    const bool isAtGap = tick.tick.alignment != kAlignment_Centre;
    const Ink& ink = isAtGap ? kGap : tick.box ? kLabel : kTick;
    // A line one pixel wide is sharp when it is centred on a pixel.
    DrawPath(content, ink,
             "M" + std::to_string(kMargin + tick.x + kCharacter / 2) + ".5 " +
                 std::to_string(top + (tick.box ? kLabelledTickTop : kTickTop)) + "V" +
                 std::to_string(top + kAxis));
    if (!tick.box) continue;
    AddText(content, ink, 13, *tick.box, top + kLabelLine, GetDrawnLabel(tick.tick));
    AddText(content, kQuiet, 12, *tick.box, top + kPositionLine,
            std::to_string(tick.tick.position));
  }
  const int bottom = top + kScaleHeight;
  const int height =
      bottom + DrawTextLines(content, bottom, WrapWords(GetFootnote(ticks), inColumns)) + kMargin;
  const int width = grid.width + 2 * kMargin;
  std::ostringstream picture;
  picture << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << width << " " << height
          << "\" width=\"" << width << "\" height=\"" << height << "\" role=\"img\">\n  <title>"
          << inCaption << "</title>\n"
          << kStyleAndBackground
          << "  <g font-family=\"ui-monospace, 'SF Mono', Menlo, Consolas, 'DejaVu Sans Mono', "
             "monospace\">\n"
          << content.str() << "  </g>\n</svg>\n";
  return picture.str();
}

}  // namespace mezzo::tool
