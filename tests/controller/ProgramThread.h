#pragma once
// A program double on a descriptor of its own, in a thread of its own.

#include "ProgramDouble.h"

#include <atomic>
#include <filesystem>
#include <thread>

namespace tarvin::controller::test {

class ProgramThread {
public:
    // Opens the device as soon as it is there, throws away what is waiting in it, as the program does, and answers
    // until the other side hangs up; or hangs up itself in place of answering read number `readsToAnswer`.
    ProgramThread(ProgramDouble otherSide, std::filesystem::path devicePath, int readsToAnswer = -1);
    // The same on a descriptor that is open, which stays the caller's, until the destructor.
    ProgramThread(ProgramDouble otherSide, int openDescriptor);
    ~ProgramThread() { Join(); }
    ProgramThread(const ProgramThread&) = delete;
    ProgramThread& operator=(const ProgramThread&) = delete;

    // Blocks until the thread has ended, which does not take long once the other side has ended.
    void Join();
    // After Join: what the program has got.
    const ProgramDouble& Program() const { return program; }
    bool SawHangUp() const { return sawHangUp; }

private:
    void Serve(int descriptor, int readsToAnswer);

    ProgramDouble program;
    bool sawHangUp = false;
    std::atomic<bool> stopRequested = false;
    std::thread thread;
};

}
