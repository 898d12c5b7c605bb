/// \file
/// UTF-16 string: the host's string type.
#pragma once

#include <plinth/allocator/STLAllocator.h>

#include <string>

namespace plinth {

/// UTF-16 text in memory allocated by `allocator::MemoryRecycler`.
using UTF16String =
    std::basic_string<char16_t, std::char_traits<char16_t>, allocator::STLAllocator<char16_t>>;

}  // namespace plinth
