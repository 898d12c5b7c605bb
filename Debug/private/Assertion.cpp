#include "Assertion.h"

#include <plinth/debug/AssertDialog.h>

#include <csignal>

namespace mezzo::debug {

void ReportAssertion(bool& ioDisabled, const char* inCondition, const char* inMessage,
                     const char* inFile, int inLine, const char* inFunction) {
  // The dialog of another thread may silence this site at the same time.
  if (__atomic_load_n(&ioDisabled, __ATOMIC_RELAXED)) return;

  const bool wantsBreak = plinth::debug::BreakAfterAssertDialog(
      ioDisabled, inCondition, reinterpret_cast<const unsigned char*>(inMessage), inFile, inLine,
      inFunction, true);
  if (wantsBreak && plinth::debug::IsDebuggerAttached()) std::raise(SIGTRAP);
}

}  // namespace mezzo::debug
