/// \file
/// The drawings of a time ruler: text and SVG.
#pragma once

#include "RulerLayout.h"

#include <string>
#include <vector>

namespace mezzo::tool {

/// Breaks a text at its blanks into lines no wider than `inColumns`. A word that is wider gets a
/// line of its own.
std::vector<std::string> WrapWords(const std::string& inText, int inColumns);

/// \return the note that explains marked labels; empty when no label is marked.
std::string GetFootnote(const std::vector<PlacedTick>& inTicks);

/// The grid of a ruler that is drawn as text.
Grid GetTextGrid(int inColumns);

/// Draws the ruler as text, in UTF-8 or ASCII. No line is wider than the ruler: every word of the
/// caption and the footnote is shorter than the narrowest ruler.
/// \param inCaption words that say what the ruler shows.
std::string DrawAsText(const RulerScale& inScale, const std::string& inCaption, int inColumns,
                       bool inIsASCII);

/// Draws an SVG document that follows the viewer's light or dark colour scheme.
/// \param inCaption words that say what the ruler shows; no markup characters.
/// \param inColumns the width, in columns of 8 pixels.
std::string DrawAsSVG(const RulerScale& inScale, const std::string& inCaption, int inColumns);

}  // namespace mezzo::tool
