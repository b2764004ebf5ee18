#pragma once

#include <cstddef>

/// The global allocation functions of a program that links corvenna_allocation_count are counting ones.
namespace corvenna {

/// How often this program has taken memory so far.
std::size_t AllocationCount();

}  // namespace corvenna
