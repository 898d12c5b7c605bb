/// \file
/// Messages to the user, and the exit status.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace mezzo::tool {

/// The exit status; the manual documents these numbers.
enum ExitStatus : int {
  kExitStatus_Success = 0,
  kExitStatus_SomeUnconverted = 1,
  kExitStatus_BadArguments = 2,  ///< or a file cannot be read or written
};

/// The user's input cannot be used, or a file cannot be read or written; the text says why.
class UserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Puts a text in quotes for a message. Control characters and bytes that are not UTF-8 are
/// escaped, and the text is cut after 80 characters.
std::string Quote(std::string_view inText);

/// \return the end of a message about an unknown word: a suggestion of a known word that begins
/// with the unknown one, has it after a hyphen, or is spelled similarly; failing that, the command
/// that lists the known words.
std::string SuggestWord(const std::string& inUnknown, const std::vector<std::string>& inKnown,
                        const std::string& inListingCommand);

/// Writes a message to standard error as one line.
void PrintMessage(std::string_view inMessage);

}  // namespace mezzo::tool
