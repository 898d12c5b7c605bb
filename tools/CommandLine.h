/// \file
/// The commands and options of the tool.
#pragma once

#include "Commands.h"

#include <CLI/CLI.hpp>

namespace mezzo::tool {

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

 private:
  using Command = int (*)(const Settings&);

  CLI::App& AddCommand(const char* inName, const char* inDescription, Command inCommand,
                       const char* inNotes);
  void AddTimelineOptions(CLI::App& outCommand, bool inHasDuration = true);
  void AddTextOptions(CLI::App& outCommand, const char* inName, const char* inDescription);
  void AddReadingOptions(CLI::App& outCommand);
  void AddConversionCommands();
  void AddRulerCommand();
  void AddNoteAndHandlerCommands();

  CLI::App fApp;
  Settings fSettings;
  Command fCommand = nullptr;
};

}  // namespace mezzo::tool
