#pragma once
// A line that leads directly to a program double. Its clock jumps to the deadline when no bytes come.

#include "ProgramDouble.h"
#include "controller/ControllerLine.h"
#include "harness/ManualClock.h"

#include <algorithm>

namespace tarvin::controller::test {

class DoubleLine : public ControllerLine {
public:
    DoubleLine(ProgramDouble& program, tarvin::test::ManualClock& clock) : program(program), clock(clock) {}

    // One read returns at most this many bytes.
    std::size_t arrivalSize = 4096;
    // The clock advances by this time before a read returns bytes.
    Clock::Duration readTime = {};
    // All bytes that were written.
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
