/// \file
/// Debug database: the process's debug settings.
#pragma once

#include <plinth/Export.h>
#include <plinth/allocator/STLAllocator.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace plinth::debug {

/// UTF-8 text in memory allocated by `allocator::MemoryRecycler`.
using ByteString = std::basic_string<unsigned char, std::char_traits<unsigned char>,
                                     allocator::STLAllocator<unsigned char>>;

/// An in-memory map from keys to texts. Any thread may call any function at any time. Functions
/// that take or return text throw std::bad_alloc if memory runs out.
class PLINTH_EXPORT DebugDatabase {
 public:
  DebugDatabase(const DebugDatabase&) = delete;
  DebugDatabase& operator=(const DebugDatabase&) = delete;

  /// \return the process's database; never destroyed.
  static DebugDatabase& Instance();

  /// Returns the generation, a number that changes whenever an entry is set or removed; 0 at first.
  /// One atomic load.
  std::uint32_t GetGeneration() const noexcept {
    return fGeneration.load(std::memory_order_acquire);
  }

  /// \param inKey the key.
  /// \param inDefault the result for a key without an entry.
  /// \return the entry's text, or `inDefault`.
  ByteString GetEntry(const ByteString& inKey, const ByteString& inDefault) const;

  /// \param inKey the key.
  /// \return true if the key has an entry.
  bool HasEntry(const ByteString& inKey) const;

  /// Reads an entry as a value of type `T`; only bool is provided.
  template <class T>
  T GetEntryAs(const ByteString& inKey, const T& inDefault) const;

  /// Sets or replaces an entry.
  /// \param inKey the key.
  /// \param inText the text.
  void SetEntry(const ByteString& inKey, const ByteString& inText);

  /// Removes an entry. A key without an entry changes nothing, not even the generation.
  /// \param inKey the key.
  void RemoveEntry(const ByteString& inKey);

 private:
  DebugDatabase() = default;

  void AdvanceGeneration() noexcept { fGeneration.fetch_add(1, std::memory_order_release); }

  mutable std::mutex fMutex;
  std::map<ByteString, ByteString> fEntries;
  std::atomic<std::uint32_t> fGeneration{0};
};

/// Reads an entry as a bool.
/// \param inKey the key.
/// \param inDefault the result for a key without an entry.
/// \return true if the text is "true"; false for any other text.
template <>
PLINTH_EXPORT bool DebugDatabase::GetEntryAs<bool>(const ByteString& inKey,
                                                   const bool& inDefault) const;

}  // namespace plinth::debug
