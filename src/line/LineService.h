#pragma once
// Serves the line: looks at its status, reads what has arrived, writes what is queued, and says when there is something
// to do again. Knows nothing of transfers, messages or windows. Monitor thread only, apart from Wake and CancelWrite.

#include "base/Clock.h"
#include "line/LineRecorder.h"
#include "line/PortLink.h"
#include "line/ReceiveBuffer.h"
#include "line/TransmitQueue.h"

#include <chrono>
#include <memory>

namespace tarvin {

struct Lamps {
    bool received = false;
    bool transmitted = false;
    bool ctsHold = false;
    bool dsrHold = false;
    bool rlsdHold = false;
    bool xoffHold = false;
    bool xoffSent = false;
    bool operator==(const Lamps&) const = default;
};

// Whoever works with what the line brings. Called within CheckLineStatus.
class LineClient {
public:
    virtual ~LineClient() = default;
    // The receive buffer holds bytes: after each read that brought some, and at the end of a look while some are left.
    virtual void OnReceived() = 0;
    // The driver has sent all it was given, nothing holds the line, and what was queued has been offered to it.
    virtual void OnLineFree() = 0;
    // The receive buffer was full when more arrived, and its content is lost; then the first read after that.
    virtual void OnOverrun() = 0;
    virtual void OnOverrunEnded() = 0;
    // The device has vanished, with all that was on its way.
    virtual void OnLinkLost() = 0;
};

class LineService {
public:
    LineService(std::unique_ptr<SerialPort> port, const Clock& timeSource, LineRecorder& lineRecorder,
                LineClient& lineClient, PortLink::ShowMessage showMessage);

    // See PortLink. What has arrived of a message is dropped with what the port is purged of: its rest must not be
    // taken for the head of the next one.
    void OpenPort(const DownloadSettings& settings, const KelText& title);
    bool Reopen(const DownloadSettings& settings, const KelText& title) { return link.Reopen(settings, title); }
    void ClosePort() { link.ClosePort(); }
    bool IsOpen() const { return link.IsOpen(); }
    bool IsLinked() const { return link.IsLinked(); }
    const KelText& Title() const { return link.Title(); }
    // As the settings say that the port was opened with; 1 if they say nothing sensible.
    int BitsPerSecond() const { return bitsPerSecond; }

    // One look at the line and all that follows from it. True if the next look is due at once: there is more to handle
    // or to write, and nothing that a wait would end with tells of it.
    bool CheckLineStatus();
    // Whether nothing is queued and, at the last look, the driver had sent all it was given.
    bool IsDrained() const { return transmit.IsEmpty() && status.outputCount == 0; }

    // Until there is something to do, but no longer than `longest`. `isWatched`: somebody waits for IsDrained.
    void Wait(std::chrono::nanoseconds longest, bool isWatched);
    void Wake() { link.Port().Wake(); }
    void CancelWrite() { link.Port().CancelWrite(); }

    ReceiveBuffer& Receive() { return receive; }
    TransmitQueue& Transmit() { return transmit; }
    // The traffic lamps stay lit until somebody who has shown them clears them.
    Lamps& LineLamps() { return lamps; }

private:
    void NoteStatus(const LineStatus& previous);
    void ReadData();
    bool IsWriteDue() const;
    void NoteReceived(std::span<const std::uint8_t> bytes);
    std::size_t FlushOutput();
    std::size_t WriteData();
    void NoteOutage(LineStep step, const Error& error);
    std::chrono::nanoseconds NextLook(Clock::TimePoint now) const;

    const Clock& clock;
    LineRecorder& recorder;
    LineClient& client;
    PortLink link;
    ReceiveBuffer receive;
    TransmitQueue transmit;
    LineStatus status;
    Lamps lamps;
    int bitsPerSecond = 1;
    bool isOverrun = false;
};

}
