#include "engine/TransferRate.h"

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto window = 30s;
constexpr auto samplePeriod = 1s;

}

void TransferRate::Add(Clock::TimePoint now, std::int64_t lineCount, std::int64_t byteCount) {
    const std::size_t count = samples.size();
    if (count >= 2 && now - samples[count - 2].time < samplePeriod)
        samples.pop_back();
    samples.push_back({now, lineCount, byteCount});
    while (samples.size() > 2 && now - samples[1].time >= window)
        samples.pop_front();
}

std::optional<double> TransferRate::PerSecond(std::int64_t Sample::*counter) const {
    if (samples.size() < 2)
        return std::nullopt;
    const auto elapsed = samples.back().time - samples.front().time;
    if (elapsed < samplePeriod)
        return std::nullopt;
    return static_cast<double>(samples.back().*counter - samples.front().*counter) /
           std::chrono::duration<double>(elapsed).count();
}

std::optional<double> TransferRate::LinesPerSecond() const {
    return PerSecond(&Sample::lineCount);
}

std::optional<double> TransferRate::BytesPerSecond() const {
    return PerSecond(&Sample::byteCount);
}

}
