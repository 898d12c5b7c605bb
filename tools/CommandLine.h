/// \file
/// The commands and options of the tool. Help, manual page and completion are made from this tree.
#pragma once

#include "Commands.h"

#include <CLI/CLI.hpp>

#include <string>

namespace mezzo::tool {

/// The limits of a ruler's width, in columns.
constexpr int kNarrowestRuler = 20;
constexpr int kWidestRuler = 2000;

/// The options that every conversion takes.
constexpr char kTimelineGroup[] = "Timeline";

/// What a value is, where completion can offer something for it.
constexpr char kFormatValue[] = "FORMAT";
constexpr char kFileValue[] = "FILE";
constexpr char kHandlerValue[] = "HANDLER";

/// The tool's command line. Reading it fills the settings.
class CommandLine {
 public:
  CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  /// Reads the arguments and runs the command that they name.
  /// \return the exit status.
  /// \exception InputError when arguments or inputs cannot be used.
  int Run(int inCount, const char* const* inArguments);

  const CLI::App& Tree() const { return fApp; }

 private:
  using Command = int (*)(const Settings&);

  CLI::App& AddCommand(const char* inName, const char* inDescription, Command inCommand,
                       const char* inNotes);
  void AddConversionCommands();
  void AddRulerCommand();
  void AddNoteAndHandlerCommands();

  CLI::App fApp;
  Settings fSettings;
  Command fCommand = nullptr;
};

}  // namespace mezzo::tool
