#pragma once
// A line on an open, non-blocking descriptor of a serial device or pseudo-terminal.

#include "controller/ControllerLine.h"

namespace tarvin::controller {

class DescriptorLine : public ControllerLine {
public:
    // Takes over the descriptor.
    explicit DescriptorLine(int descriptor) : descriptor(descriptor) {}
    ~DescriptorLine() override;
    DescriptorLine(const DescriptorLine&) = delete;
    DescriptorLine& operator=(const DescriptorLine&) = delete;

    Status Read(char* bytes, std::size_t capacity, Clock::TimePoint deadline, std::size_t& byteCount) override;
    Status Write(std::string_view bytes, Clock::TimePoint deadline) override;
    Status WaitForPeer(Clock::TimePoint deadline) override;
    void Pause(Clock::Duration duration) override;
    const std::string& LastError() const override { return lastError; }

private:
    // Called when the line is hung up. Waits for a program to open it again and says whether one has. A serial device
    // that has vanished stays away.
    virtual bool IsOpenedAgain(Clock::TimePoint) { return false; }
    Status WaitFor(short event, Clock::TimePoint deadline);
    // Returns Done if the failed system call has to be repeated.
    Status AfterError(int systemError, Clock::TimePoint deadline);
    Status Fail(int systemError);

    const int descriptor;
    std::string lastError;
};

}
