/// \file
/// A debug setting that is read only when the database has changed.
#pragma once

#include <plinth/debug/DebugDatabase.h>

#include <atomic>
#include <cstdint>
#include <utility>

namespace plinth::debug {

/// Keeps the value of one entry of the debug database.
///
/// While the database does not change, reading takes no lock and no memory. Any thread may read at
/// any time. Threads that find a change at once each store what they read from the database.
template <class T>
class CachedDatabaseValue {
 public:
  /// \param inKey the entry's key.
  /// \param inDefault the value for a key without an entry, and before the first reading.
  /// \param inReadWhenMissing true: an entry that is gone gives the default; false: it leaves the
  ///     value as it was.
  CachedDatabaseValue(ByteString inKey, T inDefault, bool inReadWhenMissing)
      : fKey(std::move(inKey)),
        fDefault(inDefault),
        fValue(inDefault),
        fReadWhenMissing(inReadWhenMissing) {}

  /// Reads the value, from the database if that has changed since the last reading.
  /// \return the value.
  /// \exception std::bad_alloc when memory runs out on a call that reads the database.
  T Get() {
    const DebugDatabase& database = DebugDatabase::Instance();
    const std::uint32_t generation = database.Generation();
    // The generation is stored last and so has to be read first. Of two threads that refresh while
    // the database changes, the later may store the older value, which then stays until the next
    // change.
    if (fGeneration.load(std::memory_order_acquire) == generation)
      return fValue.load(std::memory_order_acquire);
    const bool reads = fReadWhenMissing || database.HasEntry(fKey);
    const T value = reads ? database.GetEntryAs<T>(fKey, fDefault) : fValue.load();
    fValue.exchange(value, std::memory_order_acq_rel);
    fGeneration.store(generation, std::memory_order_release);
    return value;
  }

 private:
  /// A generation that a database reaches last, so that the first call reads.
  static constexpr std::uint32_t kNeverRead = 0xFFFFFFFF;

  ByteString fKey;
  std::atomic<std::uint32_t> fGeneration{kNeverRead};
  T fDefault;
  std::atomic<T> fValue;
  bool fReadWhenMissing;
};

}  // namespace plinth::debug
