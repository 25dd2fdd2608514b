#pragma once
// Serves the line: looks at its state, reads what has arrived, writes what is queued, and says when the next look is
// due. Monitor thread, apart from Wake and CancelWrite.

#include "base/Clock.h"
#include "base/ThreadOwner.h"
#include "line/PortLink.h"
#include "line/ReceiveBuffer.h"
#include "line/Sender.h"
#include "line/TransmitQueue.h"

#include <chrono>
#include <memory>

namespace tarvin {

// Gets what happens on the line. Called within LineService::Look and OpenPort.
class LineClient {
public:
    virtual ~LineClient() = default;
    // Called once for each read that brought bytes. Bytes that the client leaves are offered again with the next bytes.
    virtual void OnReceived(ReceiveBuffer& received) = 0;
    // The driver has sent everything, nothing holds the line, and what was queued has been offered to the driver.
    virtual void OnLineFree() = 0;
    // More bytes arrived than the receive buffer holds, and its content is lost.
    virtual void OnOverrun() = 0;
    // The first read after an overrun.
    virtual void OnOverrunEnded() = 0;
    // The device is gone, and with it everything on its way.
    virtual void OnLinkLost() = 0;
    virtual void OnPortProblem(const PortProblem& problem) = 0;
    // What the user should know of a port that works all the same. Each text comes once in a run of the program.
    virtual void OnPortAdvice(const KelText& advice) = 0;
};

class LineService : public Sender {
public:
    LineService(std::unique_ptr<SerialPort> port, const Clock& clock, LineRecorder& recorder, LineClient& client,
                const ThreadOwner& thread);

    // Closes an open port and opens the one that the settings name; the client gets the problems. Drops everything on
    // its way: after the purge, the tail of a message would look like the start of the next one, and an answer would
    // come without its question. No hold outlives it.
    void OpenPort(const DownloadSettings& settings, const KelText& applicationTitle);
    // See PortLink. True if the port is open now.
    bool Reopen(const DownloadSettings& settings, const KelText& applicationTitle);
    void ClosePort();
    bool IsOpen() const { return link.IsOpen(); }
    bool IsLinked() const { return link.IsLinked(); }
    // Whether the port is configured and every step on it succeeds.
    bool IsWorking() const { return link.IsLinked() && !link.IsFailing(); }
    const KelText& Title() const { return link.Title(); }

    void SendText(std::string_view text) override;
    void SendChar(std::uint8_t byte, bool continuation) override;
    void SendBlock(int askedCount, std::span<const std::uint8_t> bytes, Clock::Duration delay) override;
    bool IsEmpty() const override { return transmit.IsEmpty(); }
    bool IsHeldUp() const override;
    void DropUnsent() override { transmit.DropUnsent(); }
    void EndOldHold() override;
    void Note(std::string_view text) override { recorder.Note(text); }
    // Forgets a received XOFF, whatever its age. Does nothing where the driver obeys XOFF.
    void ForgetXoff();

    // One look at the line: reads, tells the client, writes. True if the next look is due at once.
    bool Look();
    // Whether nothing is queued and the driver held no bytes at the last look.
    bool IsDrained() const { return transmit.IsEmpty() && status.outputCount == 0; }

    // Returns when bytes have arrived, when Wake is called, when a queued write is due, or after `longest`.
    // With `isWatched` the wait ends after 10 ms at the latest: a log, a trace or a transfer needs the exact time of a
    // hold, and of the end of the output.
    void Wait(std::chrono::nanoseconds longest, bool isWatched);
    // Ends the present Wait, or the next one. Any thread.
    void Wake() { link.Port().Wake(); }
    // Ends a write that blocks. Any thread.
    void CancelWrite() { link.Port().CancelWrite(); }

    // What holds the line. XOFF counts as the driver tells it, or else as the received bytes tell it.
    const LineHolds& Holds() const { return holds; }
    // Since when output waits because the line is held. None while it flows.
    const std::optional<Clock::TimePoint>& HeldUpSince() const { return heldUpSince; }
    // When the line last carried a byte, as far as the driver tells.
    Clock::TimePoint QuietSince() const { return quietSince; }
    // Traffic since the last call, for the lamps.
    struct Activity {
        bool received = false;
        bool transmitted = false;
        bool operator==(const Activity&) const = default;
    };
    const Activity& RecentActivity() const { return activity; }
    void ClearActivity() { activity = {}; }

private:
    void TellOpening(const std::vector<PortProblem>& problems);
    void NoteStatus(const LineStatus& present);
    void SetHolds(const LineHolds& present);
    void SetXoffHold(bool isHeld);
    void ReadData(std::size_t mostBytes);
    void NoteReceived(std::span<const std::uint8_t> bytes);
    bool IsHeld() const { return holds.cts || holds.dsr || holds.xoff; }
    bool IsWriteDue() const;
    void WriteQueued();
    void DropEverything();
    void WriteData();
    void NoteFailure(LineStep step, const Error& error);
    std::chrono::nanoseconds TimeToNextLook() const;

    const Clock& clock;
    LineRecorder& recorder;
    LineClient& client;
    const ThreadOwner& thread;
    PortLink link;
    ReceiveBuffer receive;
    TransmitQueue transmit;
    LineStatus status;                  // of the last look
    std::vector<std::uint8_t> inDriver; // the bytes of the last writes, of which the driver still holds some
    LineHolds holds;
    Clock::TimePoint xoffSince; // while holds.xoff
    std::optional<Clock::TimePoint> heldUpSince;
    Clock::TimePoint quietSince;
    Activity activity;
    int bitsPerSecond = 1;
    bool isOverrun = false;
};

}
