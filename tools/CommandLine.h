/// \file
/// The command line: commands, options and help.
#pragma once

#include <string>
#include <vector>

namespace mezzo::tool {

/// Runs the command that the arguments name. Throws nothing and may be called repeatedly.
/// \param inArguments the command and its arguments, without the name of the program.
/// \return the exit status.
int Run(const std::vector<std::string>& inArguments);

}  // namespace mezzo::tool
