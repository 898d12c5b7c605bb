/// \file
/// The allocator that standard containers take their memory from.
#pragma once

#include <plinth/allocator/MemoryRecycler.h>

#include <cstddef>
#include <limits>
#include <new>

namespace plinth::allocator {

/// Standard allocator over `MemoryRecycler`. It has no state, so all of them are equal.
template <class T>
class STLAllocator {
 public:
  using value_type = T;  ///< the type of the objects

  STLAllocator() noexcept = default;

  /// Turns an allocator of other objects into one of these.
  template <class U>
  STLAllocator(const STLAllocator<U>&) noexcept {}

  /// \param inCount number of objects.
  /// \return room for them, uninitialised.
  /// \exception std::bad_alloc when memory runs out; its subclass std::bad_array_new_length when
  ///     the size in bytes cannot be represented.
  [[nodiscard]] T* allocate(std::size_t inCount) {
    static_assert(alignof(T) <= alignof(std::max_align_t));
    if (inCount > std::numeric_limits<std::size_t>::max() / sizeof(T))
      throw std::bad_array_new_length();
    return static_cast<T*>(MemoryRecycler::Allocate(inCount * sizeof(T)));
  }

  /// Takes back what `allocate` gave.
  void deallocate(T* inObjects, std::size_t) noexcept { MemoryRecycler::Free(inObjects); }
};

/// \return true: what one allocator gave, any other takes back.
template <class T, class U>
bool operator==(const STLAllocator<T>&, const STLAllocator<U>&) noexcept {
  return true;
}

}  // namespace plinth::allocator
