/// \file
/// The tool's commands. Each takes what the command line says, writes to standard output and
/// answers with the exit status.
#pragma once

#include "DisplayFormats.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mezzo::tool {

/// The limits of a ruler's width, in columns.
constexpr int kNarrowestRuler = 20;
constexpr int kWidestRuler = 2000;

/// Everything that a command line can say; each command reads its own part.
struct Settings {
  Timeline timeline;
  std::optional<std::int32_t> framesPerSecond;
  bool isJSON = false;

  FormatChoice format{utility::kTimecodeFormat_SMPTE, {}};
  FormatChoice target{utility::kTimecodeFormat_SMPTE, {}};  ///< of convert
  std::optional<FormatChoice> typedFormat;                  ///< of show
  std::string position;
  std::vector<std::string> texts;  ///< what to convert; none: the lines of standard input
  bool isLenient = false;
  std::size_t field = 0;  ///< the column that is converted, counted from 1; 0: the whole line
  char delimiter = ',';
  bool hasHeader = false;

  std::optional<float> frequency;
  std::optional<int> noteIndex;
  int octave = -1;
  bool isFlatOnly = false;
  std::string handler;

  std::string from;
  std::string to;
  std::optional<int> width;
  std::string pictureFile;

  /// The timeline at the frame rate that a format's name or else the option chooses.
  /// \exception InputError where the two disagree, and for a format that the rate does not have.
  Timeline TimelineOf(const FormatChoice& inChoice) const;
};

int Show(const Settings& inSettings);
int Parse(const Settings& inSettings);
int Format(const Settings& inSettings);
int Convert(const Settings& inSettings);
int ListFormats(const Settings& inSettings);
int ShowNote(const Settings& inSettings);
int ListHandlers(const Settings& inSettings);
int FindHandler(const Settings& inSettings);
int DrawRuler(const Settings& inSettings);

}  // namespace mezzo::tool
