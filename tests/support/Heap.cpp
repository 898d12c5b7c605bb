#include "Heap.h"

#include <cstdlib>
#include <new>

namespace mezzo::test::heap {

static thread_local std::uint64_t sAllocations = 0;
thread_local std::int64_t blocks = 0;
thread_local std::int64_t untilFailure = -1;

std::uint64_t GetAllocationCount() {
  return sAllocations;
}

}  // namespace mezzo::test::heap

using namespace mezzo::test;

// What the standard library allocates in any other way ends here, too.
void* operator new(std::size_t inSize) {
  ++heap::sAllocations;
  const bool fails = heap::untilFailure >= 0 && heap::untilFailure-- == 0;
  void* const block = fails ? nullptr : std::malloc(inSize);
  if (block == nullptr) throw std::bad_alloc();
  ++heap::blocks;
  return block;
}
void operator delete(void* inBlock) noexcept {
  if (inBlock != nullptr) --heap::blocks;
  std::free(inBlock);
}
void operator delete(void* inBlock, std::size_t) noexcept {
  operator delete(inBlock);
}
