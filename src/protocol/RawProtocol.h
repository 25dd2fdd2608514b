#pragma once
// Sends and receives the plain bytes of a file, in blocks, for a machine that only listens or only talks. Every
// transfer begins by hand. Monitor thread.

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
    void Abandon() override;

    // Calls the user to send a file, after the start character and the delay. Nothing calls this yet: a machine without
    // a protocol cannot ask.
    void DownloadNow() { download.Start(); }

private:
    void EndDownload();

    const ProtocolParts parts;
    DelayedDownload download;
    bool isAtLineStart = false;  // the last block of the download has ended a line
    bool isEndSent = false;      // and the end character of the download is queued or sent
    std::size_t testedCount = 0; // received bytes that belong to a loop-back test and to no file
};

}
