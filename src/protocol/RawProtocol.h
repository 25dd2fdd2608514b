#pragma once
// No protocol at all: the bytes of a file as they are, in blocks, for a machine that only listens or only talks. Every
// transfer is begun by hand. Monitor thread.

#include "protocol/DelayedDownload.h"

namespace tarvin {

class RawProtocol : public Protocol {
public:
    explicit RawProtocol(const ProtocolParts& parts);

    // Stores them while a file is being received, and drops them otherwise. A loop-back test keeps them, because its
    // message may arrive in pieces.
    void OnReceived(ReceiveBuffer& received) override;
    // Sends the next block of the file.
    void OnLineFree() override;
    // Ends the transfer: half a file that goes on after a gap would be cut as if it were whole.
    void OnLinkLost() override;

    // Calls the user to send a file, after the start character and the delay. Nothing calls this yet: a machine without
    // a protocol cannot ask.
    void DownloadNow() { download.Start(); }

private:
    const ProtocolParts parts;
    DelayedDownload download;
};

}
