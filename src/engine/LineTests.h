#pragma once
// The tests that a technician starts by hand. Monitor thread.

#include "base/Timer.h"
#include "line/LineRecorder.h"
#include "line/ReceiveBuffer.h"
#include "line/Sender.h"
#include "transfer/Transfer.h"

namespace tarvin {

class LineTests {
public:
    LineTests(Transfer& transfer, Sender& sender, LineRecorder& recorder, TimerQueue& timers, const Clock& clock);

    // Sends a message that a plug between the transmit and receive lines returns. The verdict comes when the message
    // has returned, or after the line time of the message and one second more.
    void StartLoopback(int bitsPerSecond);
    // Looks for that message in the received bytes while the test runs.
    void OnReceived(ReceiveBuffer& received);

    // Sends XOFF now and XON three seconds later: the controller pauses meanwhile.
    void StartXoff();

private:
    void EndLoopback();

    Transfer& transfer;
    Sender& sender;
    LineRecorder& recorder;
    Timer endOfXoff;
    Timer endOfLoopback;
};

}
