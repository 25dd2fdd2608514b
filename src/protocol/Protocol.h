#pragma once
// The interface of a protocol, the language of a controller. A protocol takes the received bytes, steers the transfer
// and answers through the sender. These three and the settings are all it needs, so a test can use it without an
// engine, a thread or a port. Monitor thread.

#include "base/Timer.h"
#include "line/ReceiveBuffer.h"
#include "line/Sender.h"
#include "settings/DownloadSettings.h"
#include "transfer/Transfer.h"

#include <functional>
#include <memory>

namespace tarvin {

// What a protocol works with. All of it outlives the protocol.
struct ProtocolParts {
    Transfer& transfer;
    Sender& sender;
    const DownloadSettings& settings;
    TimerQueue& timers;
    const Clock& clock;
    // The controller is taken, or no longer taken, to send checksums. Changes the settings.
    std::function<void(bool sendsChecksums)> onChecksumsLearned;
};

class Protocol {
public:
    virtual ~Protocol() = default;

    // Bytes have arrived. Removes the bytes that it has dealt with; what is left comes again with the next ones.
    virtual void OnReceived(ReceiveBuffer& received) = 0;
    // The driver had sent everything at the last look, and has been offered what was queued then. Nothing holds the
    // line.
    virtual void OnLineFree() {}
    // A user is about to begin a transfer by hand. Forgets the one before.
    virtual void OnBeginByHand() {}
    // The user, or a lost link, ends the transfer that is under way. Drops everything that belongs to it. The transfer
    // itself ends elsewhere.
    virtual void Abandon() {}
    // The device is gone, and a transfer with it.
    virtual void OnTransferLost() {}
    // Whether the controller begins every transfer. Otherwise a user begins them by hand.
    virtual bool IsConversation() const { return false; }
};

// Makes the protocol that `parts.settings` ask for.
using ProtocolMaker = std::function<std::unique_ptr<Protocol>(const ProtocolParts& parts)>;

}
