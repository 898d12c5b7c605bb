// Counts the heap allocations of each thread and makes chosen ones fail.
#pragma once

#include <cstdint>

namespace mezzo::test::heap {

std::uint64_t GetAllocationCount();
/// The number of blocks allocated minus the number freed; a call that leaks nothing leaves it as it
/// was.
extern thread_local std::int64_t sBlocks;
/// The number of allocations that succeed before one throws std::bad_alloc. While it is negative,
/// all succeed.
extern thread_local std::int64_t sUntilFailure;

}  // namespace mezzo::test::heap
