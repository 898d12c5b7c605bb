#include "Heap.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::uint64_t sAllocations = 0;
thread_local std::int64_t sBlocks = 0;
thread_local std::int64_t sUntilFailure = -1;

}  // namespace

namespace mezzo::test::heap {

std::uint64_t AllocationCount() {
  return sAllocations;
}

std::int64_t BlockCount() {
  return sBlocks;
}

void FailAllocation(std::int64_t inNth) {
  sUntilFailure = inNth;
}

}  // namespace mezzo::test::heap

// What the standard library allocates in any other way ends here, too.
void* operator new(std::size_t inSize) {
  ++sAllocations;
  if (sUntilFailure >= 0 && sUntilFailure-- == 0) throw std::bad_alloc();
  void* const block = std::malloc(inSize);
  if (block == nullptr) throw std::bad_alloc();
  ++sBlocks;
  return block;
}
void operator delete(void* inBlock) noexcept {
  if (inBlock != nullptr) --sBlocks;
  std::free(inBlock);
}
void operator delete(void* inBlock, std::size_t) noexcept {
  operator delete(inBlock);
}
