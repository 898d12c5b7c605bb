#include <plinth/debug/AssertDialog.h>
#include <plinth/debug/DemangleName.h>
#include <plinth/utility/Cast.h>

#include <csignal>

namespace plinth::utility {

namespace {

bool ShowNumericCast(bool& ioDisabled, const char* inError, const std::string& inValue,
                     const char* inTarget, const char* inSource, const char* inFile, int inLine) {
  const std::string target = debug::DemangleName(inTarget);
  const std::string source = debug::DemangleName(inSource);
  const std::string message =
      std::string(inError) + " from " + source + " (" + inValue + ") to " + target + "\n";
  const std::string function =
      "T plinth::utility::NumericCast(F) [T = " + target + ", F = " + source + "]";
  return debug::BreakAfterAssertDialog(ioDisabled, "false",
                                       reinterpret_cast<const unsigned char*>(message.c_str()),
                                       inFile, inLine, function.c_str(), true);
}

}  // namespace

void ReportNumericCast(bool& ioDisabled, const char* inError, const std::string& inValue,
                       const char* inTarget, const char* inSource, const char* inFile, int inLine) {
  // The strings belong to ShowNumericCast, so they are freed before the process stops in the
  // debugger.
  const bool wantsBreak =
      ShowNumericCast(ioDisabled, inError, inValue, inTarget, inSource, inFile, inLine);
  if (wantsBreak && debug::IsDebuggerAttached()) std::raise(SIGTRAP);
}

template int NumericCast<int, long>(long);

}  // namespace plinth::utility
