// Every exported function with every argument: nothing is compared, but nothing may break.

#include "FuzzArguments.h"

namespace mezzo::fuzz {

void Check(FuzzArguments& ioArgs) {
  const auto calls = test::ExportedCalls();
  const auto& call = calls[ioArgs.Byte() % calls.size()];
  ioArgs.oldText.assign(ioArgs.Byte() % 32, u'?');
  call.call(ioArgs);
}

}  // namespace mezzo::fuzz
