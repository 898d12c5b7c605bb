/// \file
/// Standard-library allocator over the memory recycler.
#pragma once

#include <plinth/allocator/MemoryRecycler.h>

#include <cstddef>
#include <limits>
#include <new>

namespace plinth::allocator {

/// Allocator for standard containers over `MemoryRecycler`. It has no state; all instances are
/// equal.
template <class T>
class STLAllocator {
 public:
  using value_type = T;  ///< the type of the objects

  STLAllocator() noexcept = default;

  /// Converts from an allocator of another type.
  template <class U>
  STLAllocator(const STLAllocator<U>&) noexcept {}

  /// \param inCount number of objects.
  /// \return uninitialised memory for them.
  /// \exception std::bad_alloc if memory runs out; its subclass std::bad_array_new_length if the
  ///     size in bytes overflows.
  [[nodiscard]] T* allocate(std::size_t inCount) {
    static_assert(alignof(T) <= alignof(std::max_align_t));
    if (inCount > std::numeric_limits<std::size_t>::max() / sizeof(T))
      throw std::bad_array_new_length();
    return static_cast<T*>(MemoryRecycler::Allocate(inCount * sizeof(T)));
  }

  /// Releases memory from `allocate`.
  void deallocate(T* inObjects, std::size_t) noexcept { MemoryRecycler::Free(inObjects); }
};

/// \return true: any allocator can release the memory of another.
template <class T, class U>
bool operator==(const STLAllocator<T>&, const STLAllocator<U>&) noexcept {
  return true;
}

}  // namespace plinth::allocator
