#include <Debug/ErrorHandling.h>

#include <plinth/debug/CachedDatabaseValue.h>
#include <plinth/debug/DebugDatabase.h>

namespace mezzo::debug {

namespace {

plinth::debug::ByteString MakeSwitchKey() {
  static constexpr unsigned char kKey[] = "mezzo.debug.DisableErrorHandling";
  return plinth::debug::ByteString(kKey, sizeof(kKey) - 1);
}

}  // namespace

bool DisableErrorHandling() {
  static plinth::debug::CachedDatabaseValue<bool> sDisabled(MakeSwitchKey(), false, true);
  return sDisabled.Get();
}

}  // namespace mezzo::debug
