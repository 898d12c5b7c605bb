/// \file
/// The process's debug settings.
#pragma once

#include <plinth/Export.h>
#include <plinth/allocator/STLAllocator.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace plinth::debug {

/// Text in UTF-8 bytes, in memory of `allocator::MemoryRecycler`.
using ByteString = std::basic_string<unsigned char, std::char_traits<unsigned char>,
                                     allocator::STLAllocator<unsigned char>>;

/// Texts under keys, in memory. Any thread may call any function at any time.
class PLINTH_EXPORT DebugDatabase {
 public:
  DebugDatabase(const DebugDatabase&) = delete;
  DebugDatabase& operator=(const DebugDatabase&) = delete;

  /// \return the process's database; it stays usable until the process has ended.
  static DebugDatabase& Instance();

  /// Tells whether anything has changed: the number differs from an earlier one when an entry was
  /// set or removed since.
  /// \return the generation, 0 at first. One atomic load.
  std::uint32_t Generation() const noexcept { return fGeneration.load(std::memory_order_acquire); }

  /// \param inKey the key.
  /// \param inDefault the answer for a key without an entry.
  /// \return the entry's text, or `inDefault`.
  ByteString GetEntry(const ByteString& inKey, const ByteString& inDefault) const;

  /// \param inKey the key.
  /// \return true when the key has an entry.
  bool HasEntry(const ByteString& inKey) const;

  /// Reads an entry as a value of type `T`; bool is the type there is.
  template <class T>
  T GetEntryAs(const ByteString& inKey, const T& inDefault) const;

  /// Sets the text of an entry, with or without one before.
  /// \param inKey the key.
  /// \param inText the text.
  void SetEntry(const ByteString& inKey, const ByteString& inText);

  /// Removes an entry; a key without one changes nothing, the generation included.
  /// \param inKey the key.
  void RemoveEntry(const ByteString& inKey);

 private:
  DebugDatabase() = default;

  void AdvanceGeneration() noexcept { fGeneration.fetch_add(1, std::memory_order_release); }

  mutable std::mutex fMutex;
  std::map<ByteString, ByteString> fEntries;
  std::atomic<std::uint32_t> fGeneration{0};
};

/// Reads an entry as a truth value.
/// \param inKey the key.
/// \param inDefault the answer for a key without an entry.
/// \return true exactly when the text is "true"; any other text gives false.
template <>
PLINTH_EXPORT bool DebugDatabase::GetEntryAs<bool>(const ByteString& inKey,
                                                   const bool& inDefault) const;

}  // namespace plinth::debug
