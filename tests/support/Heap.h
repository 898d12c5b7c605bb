// Counts the heap allocations of the process and makes chosen ones fail.
#pragma once

#include <cstdint>

namespace mezzo::test::heap {

/// Allocations of the calling thread so far.
std::uint64_t AllocationCount();

/// Blocks that the calling thread has allocated less those that it has freed; a call that leaks
/// nothing leaves it as it was.
std::int64_t BlockCount();

/// Makes the calling thread's allocation number `inNth`, counted from 0 from now on, throw
/// std::bad_alloc; a negative number lets all succeed.
void FailAllocation(std::int64_t inNth);

}  // namespace mezzo::test::heap
