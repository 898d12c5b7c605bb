/// \file
/// The commands. Each prints its result, or writes it to a file, and returns the exit status.
#pragma once

#include "DisplayFormats.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mezzo::tool {

/// The narrowest and the widest ruler, in columns.
constexpr int kNarrowestRuler = 20;
constexpr int kWidestRuler = 2000;

/// The values of the command line; each command uses some of them.
struct Settings {
  Timeline timeline;
  std::optional<std::int32_t> framesPerSecond;  ///< --fps, if given
  bool isJSON = false;
  std::string argument;  ///< the only argument of show or handler

  FormatChoice fromFormat{utility::kTimecodeFormat_Samples, {}};  ///< of the input
  FormatChoice toFormat{utility::kTimecodeFormat_Samples, {}};    ///< of the output or the ruler
  std::vector<std::string> texts;  ///< none, or "-", stands for the lines of standard input
  bool isLenient = false;
  std::size_t field = 0;  ///< of tables, counted from 1; 0 for the whole line
  char delimiter = ',';
  bool hasHeader = false;

  std::string rulerFrom;
  std::string rulerTo;
  std::optional<int> width;
  std::string pictureFile;

  std::optional<double> frequency;
  std::optional<int> noteIndex;
  int octave = -1;
  bool isFlatOnly = false;

  /// \return the timeline at the frame rate of the format's rate name, or else of --fps, or else of
  ///     the other format's rate name, or else the default.
  /// \exception UserError when the rate name and --fps differ, or the frame rate does not support
  ///     the format.
  Timeline GetTimeline(const FormatChoice& inChoice) const;
};

int Show(const Settings& inSettings);
int Convert(const Settings& inSettings);
int ListFormats(const Settings& inSettings);
int DrawRuler(const Settings& inSettings);
int ShowNote(const Settings& inSettings);
int ListHandlers(const Settings& inSettings);
int FindHandler(const Settings& inSettings);

}  // namespace mezzo::tool
