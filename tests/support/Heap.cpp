#include "Heap.h"

#include <cstdlib>
#include <new>

namespace mezzo::test::heap {

static thread_local std::uint64_t sAllocations = 0;
thread_local std::int64_t sBlocks = 0;
thread_local std::int64_t sUntilFailure = -1;

std::uint64_t GetAllocationCount() {
  return sAllocations;
}

}  // namespace mezzo::test::heap

using namespace mezzo::test;

// The default operator new[] and the default nothrow forms call this function.
void* operator new(std::size_t inSize) {
  ++heap::sAllocations;
  const bool fails = heap::sUntilFailure >= 0 && heap::sUntilFailure-- == 0;
  void* const block = fails ? nullptr : std::malloc(inSize);
  if (block == nullptr) throw std::bad_alloc();
  ++heap::sBlocks;
  return block;
}
void operator delete(void* inBlock) noexcept {
  if (inBlock != nullptr) --heap::sBlocks;
  std::free(inBlock);
}
void operator delete(void* inBlock, std::size_t) noexcept {
  operator delete(inBlock);
}
