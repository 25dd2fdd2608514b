#include "transfer/NewNameCount.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace tarvin {

void NewNameCount::Add() {
    Advance();
    ++minutes[static_cast<std::size_t>(newestMinute) % minutes.size()];
}

std::int64_t NewNameCount::Total() {
    Advance();
    return std::accumulate(minutes.begin(), minutes.end(), std::int64_t{0});
}

// Empties the minutes that have passed since the last call.
void NewNameCount::Advance() {
    const std::int64_t minute = std::chrono::floor<std::chrono::minutes>(clock.Now().time_since_epoch()).count();
    const auto passed = std::min(minute - newestMinute, static_cast<std::int64_t>(minutes.size()));
    for (std::int64_t each = 0; each < passed; ++each)
        minutes[static_cast<std::size_t>(minute - each) % minutes.size()] = 0;
    newestMinute = minute;
}

}
