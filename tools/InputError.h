/// \file
/// How the tool's commands end.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace mezzo::tool {

/// What the process answers; the manual documents these numbers.
enum ExitStatus : int {
  kSuccess = 0,
  kSomeUnconverted = 1,  ///< something could not be converted, or the library made a report
  kBadArguments = 2,     ///< the arguments cannot be used, or a file cannot be read or written
};

/// Something that the user gave cannot be used; the text tells the user why.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A text as messages show it: in quotes, on one line and not too long. Control characters and
/// bytes that are not UTF-8 are escaped.
std::string Quoted(std::string_view inText);

/// Writes one line to standard error.
void Complain(const std::string& inMessage);

}  // namespace mezzo::tool
