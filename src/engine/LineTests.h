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

    // Sends a message that a plug between the transmit and receive lines returns. The state says that the test has
    // failed until the message has come back.
    void StartLoopback();
    // Looks for that message in what has arrived.
    void OnReceived(ReceiveBuffer& received);

    // Sends XOFF now and XON three seconds later: the controller pauses meanwhile.
    void StartXoff();

private:
    Transfer& transfer;
    Sender& sender;
    LineRecorder& recorder;
    Timer endOfXoff;
};

}
