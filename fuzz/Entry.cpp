#include "FuzzArguments.h"

#include <plinth/debug/AssertDialog.h>

/// Called by the fuzzing engine, or by what stands in for it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inBytes, std::size_t inCount) {
  plinth::debug::SetAssertDialogHandler([](bool&, const char*, const unsigned char*, const char*,
                                           int, const char*, bool) { return false; });
  mezzo::fuzz::FuzzArguments arguments(inBytes, inCount);
  mezzo::fuzz::Check(arguments);
  return 0;
}
