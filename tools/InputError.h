/// \file
/// How the tool's commands end.
#pragma once

#include <stdexcept>
#include <string>

namespace mezzo::tool {

/// What the process answers; the manual documents these numbers.
enum ExitStatus : int {
  kSuccess = 0,
  kSomeUnconverted =
      1,              ///< a line could not be read, or the library reported a broken precondition
  kBadArguments = 2,  ///< nothing sensible could be done, or a file could not be read or written
};

/// Writes one line to standard error, whatever characters the message quotes.
void Complain(const std::string& inMessage);

/// Something that the user gave cannot be used; the text tells the user why.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace mezzo::tool
