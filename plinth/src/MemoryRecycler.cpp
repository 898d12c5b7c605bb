#include <plinth/allocator/MemoryRecycler.h>

#include <atomic>
#include <new>

namespace plinth::allocator {

namespace {

constinit std::atomic<std::uint64_t> sAllocationCount{0};

}  // namespace

void* MemoryRecycler::Allocate(std::size_t inSize) {
  void* const block = ::operator new(inSize);
  sAllocationCount.fetch_add(1, std::memory_order_relaxed);
  return block;
}

void MemoryRecycler::Free(void* inBlock) noexcept {
  ::operator delete(inBlock);
}

std::uint64_t MemoryRecycler::GetAllocationCount() noexcept {
  return sAllocationCount.load(std::memory_order_relaxed);
}

}  // namespace plinth::allocator
