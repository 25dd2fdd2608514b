#pragma once
// Counts the memory allocations of this program, by replacing operator new in all of it.

#include <cstddef>

namespace tarvin::bench {

// Calls of operator new in all threads so far.
std::size_t AllocationCount();

}
