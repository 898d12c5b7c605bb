/// \file
/// Cached debug setting: an entry of the debug database, read again only if the database has
/// changed.
#pragma once

#include <plinth/debug/DebugDatabase.h>

#include <atomic>
#include <cstdint>
#include <utility>

namespace plinth::debug {

/// Caches the value of one entry of the debug database.
///
/// While the database does not change, reading neither locks nor allocates. Any thread may read at
/// any time. If two threads read during a change, the older value may stay until the next change.
template <class T>
class CachedDatabaseValue {
 public:
  /// \param inKey the entry's key.
  /// \param inDefault the value for a key without an entry, and before the first read.
  /// \param inResetWhenRemoved true: a removed entry gives the default; false: it leaves the value
  ///     unchanged.
  CachedDatabaseValue(ByteString inKey, T inDefault, bool inResetWhenRemoved)
      : fKey(std::move(inKey)),
        fDefault(inDefault),
        fValue(inDefault),
        fResetWhenRemoved(inResetWhenRemoved) {}

  /// Returns the value, read again if the database has changed since the last read.
  /// \exception std::bad_alloc if memory runs out on a call that reads the database.
  T Get() {
    const DebugDatabase& database = DebugDatabase::Instance();
    const std::uint32_t generation = database.GetGeneration();
    // The generation is read first and stored last, so the next call notices a change in between.
    if (fGeneration.load(std::memory_order_acquire) == generation)
      return fValue.load(std::memory_order_acquire);
    const bool reads = fResetWhenRemoved || database.HasEntry(fKey);
    const T value = reads ? database.GetEntryAs<T>(fKey, fDefault) : fValue.load();
    fValue.exchange(value, std::memory_order_acq_rel);
    fGeneration.store(generation, std::memory_order_release);
    return value;
  }

 private:
  /// Stands for no generation. The first call reads the database, unless the database's own
  /// generation happens to be this number.
  static constexpr std::uint32_t kNeverRead = 0xFFFFFFFF;

  ByteString fKey;
  std::atomic<std::uint32_t> fGeneration{kNeverRead};
  T fDefault;
  std::atomic<T> fValue;
  bool fResetWhenRemoved;
};

}  // namespace plinth::debug
