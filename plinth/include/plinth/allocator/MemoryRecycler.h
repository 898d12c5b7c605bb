/// \file
/// Memory recycler: allocates the memory of every string.
#pragma once

#include <plinth/Export.h>

#include <cstddef>
#include <cstdint>

namespace plinth::allocator {

/// Allocates and frees memory blocks. The stand-in recycles none: it uses operator new and delete.
/// Any thread may call any function.
class PLINTH_EXPORT MemoryRecycler {
 public:
  MemoryRecycler() = delete;

  /// Allocates a block aligned for every fundamental type.
  /// \param inSize size in bytes; 0 allocates a block too.
  /// \return the block, never null; release it with `Free`.
  /// \exception std::bad_alloc if memory runs out.
  static void* Allocate(std::size_t inSize);

  /// Releases a block.
  /// \param inBlock a block from `Allocate`; null does nothing.
  static void Free(void* inBlock) noexcept;

  /// Returns the number of successful calls of `Allocate` in this process; it never decreases.
  static std::uint64_t GetAllocationCount() noexcept;
};

}  // namespace plinth::allocator
