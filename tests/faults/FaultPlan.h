#pragma once
// Which call of a program's way to its files fails. The test and the library that stands between the program and the
// system share one such plan, in a file that both map. Any thread, any process.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace tarvin::test {

enum class FailingCall : std::int32_t { Open, Write, Sync, Rename, Close, Thread };
inline constexpr std::size_t failingCallCount = 6;

// The environment variable that names the file of the plan.
inline constexpr const char* faultPlanVariable = "TARVIN_FAULT_PLAN";

struct FaultPlan {
    // The files that count: those below this folder, and no devices.
    std::array<char, 512> folder = {};
    FailingCall call = FailingCall::Open;
    // Counted from 1 among the calls of this kind. 0 and 0: none fails.
    std::int32_t first = 0;
    std::int32_t last = 0;
    std::int32_t error = 0; // errno
    // Written by the library.
    std::array<std::atomic<std::int32_t>, failingCallCount> counts = {};
    std::atomic<std::int32_t> failed = 0;
};

}
