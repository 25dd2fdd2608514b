#pragma once
// The time in front of the lines of the traffic. User-interface thread.

#include "ui/TextLines.h"

#include <string>

namespace tarvin {

enum class Gutter { Off, TimeOfDay, SinceLast };

// The user's choice, kept between runs for all machines. Off if there is none.
Gutter RememberedGutter();
// A choice that cannot be kept is lost with the run.
void RememberGutter(Gutter gutter);

class TrafficTime {
public:
    // The width of each text below.
    static constexpr std::size_t columns = 12;

    // Reads both clocks, the engine's and the system's. Lines get wrong times of day after the system clock is set,
    // until the next call.
    void Synchronise();
    // For a test: the time of day that belongs to the engine's time.
    void Synchronise(std::chrono::system_clock::time_point timeOfDay, Clock::TimePoint engineTime);

    // "14:03:22.118" in local time, or the seconds since the line before: "+0.012". Empty without a gutter.
    std::string Text(Gutter gutter, const TextLines& lines, std::uint64_t number) const;

private:
    std::chrono::system_clock::time_point timeOfDay;
    Clock::TimePoint engineTime;
};

}
