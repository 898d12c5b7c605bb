// Every exported function with every argument: nothing is compared, but nothing may break.

#include "FuzzArguments.h"

namespace mezzo::fuzz {

void Check(FuzzArguments& ioArgs) {
  const auto calls = test::ExportedCalls();
  calls[ioArgs.Byte() % calls.size()].call(ioArgs);
}

}  // namespace mezzo::fuzz
