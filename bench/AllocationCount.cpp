#include "AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count = 0;

}

// All other forms of operator new call this one.
void* operator new(std::size_t byteCount) {
    count.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(byteCount > 0 ? byteCount : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tarvin::bench {

std::size_t AllocationCount() {
    return count;
}

}
