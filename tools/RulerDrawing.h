/// \file
/// A ruler as text and as a picture.
#pragma once

#include "RulerLayout.h"

#include <string>
#include <vector>

namespace mezzo::tool {

/// Breaks a text at blanks into lines of a width; a longer word has a line of its own.
std::vector<std::string> WrapWords(const std::string& inText, int inColumns);

/// The grid of a ruler drawn as text.
/// \param inColumns the width, in columns of a terminal.
Grid TextGrid(int inColumns);

/// Draws with the lines of UTF-8, or in ASCII; no line is wider than the ruler.
/// \param inCaption words that tell what the ruler shows.
/// \param inColumns the width, in columns of a terminal.
std::string DrawText(const RulerScale& inScale, const std::string& inCaption, int inColumns,
                     bool inIsASCII);

/// Draws an SVG document that follows the viewer's light or dark colour scheme.
/// \param inCaption words that tell what the ruler shows.
/// \param inColumns the width, in columns of 8 pixels.
std::string DrawSVG(const RulerScale& inScale, const std::string& inCaption, int inColumns);

/// Stands below a ruler with marked labels.
constexpr char kMarkMeaning[] = "* reads back as another position";

}  // namespace mezzo::tool
