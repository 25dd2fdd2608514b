#pragma once
// A program double that serves a line in a thread of its own.

#include "ProgramDouble.h"

#include <atomic>
#include <filesystem>
#include <thread>

namespace tarvin::controller::test {

class ProgramThread {
public:
    // Opens the device as soon as it exists, drops the bytes that wait in it, as the real program does, and answers
    // until the controller hangs up. Hangs up itself after `readsToAnswer` reads; -1: never.
    ProgramThread(ProgramDouble program, std::filesystem::path device, int readsToAnswer = -1);
    // Answers on an open descriptor, which stays the caller's, until the destructor.
    ProgramThread(ProgramDouble program, int descriptor);
    ~ProgramThread() { Join(); }
    ProgramThread(const ProgramThread&) = delete;
    ProgramThread& operator=(const ProgramThread&) = delete;

    // Asks the thread to end and blocks until it has, after at most one more look at the line.
    void Join();
    // The program with the files it has received. Call it after Join.
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
