#pragma once
// A line that leads straight to a program double, on a clock that jumps to the deadline when nothing comes.

#include "ProgramDouble.h"
#include "controller/ControllerLine.h"
#include "harness/ManualClock.h"

#include <algorithm>

namespace tarvin::controller::test {

class DoubleLine : public ControllerLine {
public:
    DoubleLine(ProgramDouble& otherSide, tarvin::test::ManualClock& movedClock)
        : program(otherSide), clock(movedClock) {}

    // The most bytes that one read gives.
    std::size_t arrivalSize = 4096;
    // What the clock moves on before a read gives something.
    Clock::Duration readTime = {};
    // All that was ever written.
    std::string written;
    std::size_t writeCount = 0;

    Status Read(char* bytes, std::size_t capacity, Clock::TimePoint deadline, std::size_t& byteCount) override {
        byteCount = std::min({capacity, arrivalSize, waiting.size()});
        if (byteCount == 0) {
            clock.Advance(std::max(deadline - clock.Now(), Clock::Duration::zero()));
            return Status::TimedOut;
        }
        clock.Advance(readTime);
        waiting.copy(bytes, byteCount);
        waiting.erase(0, byteCount);
        return Status::Done;
    }

    Status Write(std::string_view bytes, Clock::TimePoint) override {
        written += bytes;
        ++writeCount;
        waiting += program.Receive(bytes);
        return Status::Done;
    }

    Status WaitForPeer(Clock::TimePoint) override { return Status::Done; }
    void Pause(Clock::Duration duration) override { clock.Advance(duration); }
    const std::string& LastError() const override { return lastError; }

private:
    ProgramDouble& program;
    tarvin::test::ManualClock& clock;
    std::string waiting;
    const std::string lastError;
};

}
