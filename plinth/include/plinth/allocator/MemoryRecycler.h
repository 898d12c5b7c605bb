/// \file
/// The memory behind every string of the library.
#pragma once

#include <plinth/Export.h>

#include <cstddef>
#include <cstdint>

namespace plinth::allocator {

/// Hands out memory blocks and takes them back. Any thread may call any function.
class PLINTH_EXPORT MemoryRecycler {
 public:
  MemoryRecycler() = delete;

  /// Gives a block of memory, aligned for every fundamental type.
  /// \param inSize size in bytes; 0 gives a block too.
  /// \return the block, never null; hand it back with `Free`.
  /// \exception std::bad_alloc when memory runs out.
  static void* Allocate(std::size_t inSize);

  /// Takes a block back.
  /// \param inBlock a block from `Allocate`, or null, which does nothing.
  static void Free(void* inBlock) noexcept;

  /// Counts the blocks that this process has been given so far.
  /// \return the number of calls of `Allocate` that succeeded; it never decreases.
  static std::uint64_t AllocationCount() noexcept;
};

}  // namespace plinth::allocator
