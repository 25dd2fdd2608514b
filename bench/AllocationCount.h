#pragma once
// How often this program has asked for memory.

#include <cstddef>

namespace tarvin::bench {

// Calls of operator new in all threads so far.
std::size_t AllocationCount();

}
