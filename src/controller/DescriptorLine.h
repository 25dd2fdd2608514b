#pragma once
// A line on an open, non-blocking POSIX descriptor. Knows nothing of how it was opened or set.

#include "controller/ControllerLine.h"

namespace tarvin::controller {

class DescriptorLine : public ControllerLine {
public:
    // Owns the descriptor.
    explicit DescriptorLine(int openDescriptor) : descriptor(openDescriptor) {}
    ~DescriptorLine() override;
    DescriptorLine(const DescriptorLine&) = delete;
    DescriptorLine& operator=(const DescriptorLine&) = delete;

    Status Read(char* bytes, std::size_t capacity, Clock::TimePoint deadline, std::size_t& byteCount) override;
    Status Write(std::string_view bytes, Clock::TimePoint deadline) override;
    Status WaitForPeer(Clock::TimePoint deadline) override;
    void Pause(Clock::Duration duration) override;
    const std::string& LastError() const override { return lastError; }

private:
    // Waits whether a line that was found hung up is opened again. A device that has gone does not come back.
    virtual bool IsOpenedAgain(Clock::TimePoint) { return false; }
    Status WaitFor(short event, Clock::TimePoint deadline);
    // Done if the call is to be made again.
    Status AfterError(int systemError, Clock::TimePoint deadline);
    Status Fail(int systemError);

    const int descriptor;
    std::string lastError;
};

}
