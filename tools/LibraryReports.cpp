#include "LibraryReports.h"

#include "InputError.h"

#include <plinth/debug/AssertDialog.h>

#include <algorithm>
#include <atomic>
#include <string>

namespace mezzo::tool {
namespace {

std::atomic<bool> sHasReported{false};

// "DropFrameToHMSF" in "void mezzo::utility::DropFrameToHMSF(std::int64_t, ...)"
std::string NameIn(const std::string& inSignature) {
  const std::string name = inSignature.substr(0, inSignature.find('('));
  return name.substr(name.find_last_of(": ") + 1);
}

bool ShowOnce(bool& ioDisabled, const char* inCondition, const unsigned char* inMessage,
              const char*, int, const char* inFunction, bool) {
  sHasReported = true;
  __atomic_store_n(&ioDisabled, true, __ATOMIC_RELAXED);
  std::string message = reinterpret_cast<const char*>(inMessage);
  message.erase(std::min(message.find('\n'), message.size()));
  Complain("library report: " + NameIn(inFunction) + " requires " + inCondition +
           (message.empty() ? "" : ": " + message));
  return false;
}

}  // namespace

void ShowLibraryReports() {
  plinth::debug::SetAssertDialogHandler(&ShowOnce);
}

bool HasLibraryReported() {
  return sHasReported;
}

}  // namespace mezzo::tool
