#pragma once

#include <cstddef>

/// The global allocation functions of a program that links corvenna_allocation_count are counting ones.
namespace corvenna {

/// How often this program has taken memory so far.
std::size_t AllocationCount();

/// From now on taking more than so many bytes at once fails, as when memory has run out.
void LimitAllocations(std::size_t bytes);
inline constexpr std::size_t NoLimit = static_cast<std::size_t>(-1);

}  // namespace corvenna
