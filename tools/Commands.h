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

/// Everything that a command line can say; each command reads its own part.
struct Settings {
  Timeline timeline;
  bool isJSON = false;

  utility::TimecodeFormat format = utility::kTimecodeFormat_SMPTE;
  std::string position;
  std::vector<std::string> texts;  ///< what to convert; none: the lines of standard input

  std::optional<float> frequency;
  std::optional<int> noteIndex;
  int octave = -1;
  bool isFlatOnly = false;
  std::string handler;

  std::string from;
  std::string to;
  std::optional<int> width;
  std::string pictureFile;
};

int Show(const Settings& inSettings);
int Parse(const Settings& inSettings);
int Format(const Settings& inSettings);
int ListFormats(const Settings& inSettings);
int ShowNote(const Settings& inSettings);
int ListHandlers(const Settings& inSettings);
int FindHandler(const Settings& inSettings);
int DrawRuler(const Settings& inSettings);

/// The names of the native media handlers, in the order of their indices.
std::vector<std::string> HandlerNames();

}  // namespace mezzo::tool
