#include "CommandLine.h"
#include "InputError.h"
#include "LibraryReports.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <iostream>
#include <system_error>

namespace {

using mezzo::tool::InputError;

int RunTool(int inCount, const char* const* inArguments) {
  std::ios::sync_with_stdio(false);
  std::cin.tie(nullptr);
  mezzo::tool::ShowLibraryReports();
  mezzo::tool::CommandLine commandLine;
  const int status = commandLine.Run(inCount, inArguments);
  if (!std::cout.flush()) {
    throw InputError("cannot write standard output: " + std::generic_category().message(errno));
  }
  const int reported =
      mezzo::tool::HasLibraryReported() ? mezzo::tool::kSomeUnconverted : mezzo::tool::kSuccess;
  return std::max(status, reported);
}

}  // namespace

int main(int inCount, char** inArguments) {
  try {
    return RunTool(inCount, inArguments);
  } catch (const std::exception& error) {
    mezzo::tool::Complain(error.what());
    return mezzo::tool::kBadArguments;
  }
}
