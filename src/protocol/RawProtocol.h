#pragma once
// Sends and receives the plain bytes of a file, in blocks, for any machine with a serial port. Every transfer begins by
// hand. Monitor thread.
//
// A file that is sent goes out as: start code, file, end code. A file that is received begins behind the start code and
// ends before the end code. The settings switch each code on or off, for both directions.

#include "protocol/Protocol.h"

namespace tarvin {

class RawProtocol : public Protocol {
public:
    explicit RawProtocol(const ProtocolParts& parts);

    // Stores the bytes of the file while one is being received, and drops all others. Completes the upload at the end
    // code. A loop-back test keeps the bytes, because its message may arrive in pieces.
    void OnReceived(ReceiveBuffer& received) override;
    // Sends the start code, the next block of the file, or the end code.
    void OnLineFree() override;
    void OnBeginByHand() override;
    void Abandon() override;

private:
    void SendNextBlock();
    void EndDownload();
    void Receive(std::string_view bytes);
    void CompleteUpload();

    const ProtocolParts parts;
    // Of the transfer that is under way.
    bool hasStartCode = false;   // the start code is queued, or has been received
    bool isEndSent = false;      // the end code of a download is queued or sent
    bool isAtLineStart = false;  // the last block of a download has ended a line
    std::size_t testedCount = 0; // received bytes that belong to a loop-back test and to no file
    Timer silence;               // ends an upload; runs from the first stored byte on
};

}
