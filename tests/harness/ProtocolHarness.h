#pragma once
// A protocol with nothing but a sender, a transfer and settings: no engine, no thread, no port.

#include "harness/HeldSender.h"
#include "harness/ManualClock.h"
#include "harness/TemporaryFolder.h"
#include "protocol/Protocol.h"

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace tarvin::test {

// Keeps what is sent.
class RecordedSender : public Sender {
public:
    void SendText(std::string_view text) override { sent += text; }
    void SendChar(std::uint8_t byte, bool) override { sent.push_back(static_cast<char>(byte)); }
    void SendBlock(int, std::span<const std::uint8_t> bytes, Clock::Duration) override {
        sent.append(bytes.begin(), bytes.end());
    }
    bool IsEmpty() const override { return true; }
    bool IsHeldUp() const override { return isHeldUp; }
    void DropUnsent() override { ++dropCount; }
    void EndOldHold() override {}
    void Note(std::string_view) override {}

    std::string sent;
    bool isHeldUp = false;
    int dropCount = 0;
};

class RecordedTransfer : public TransferObserver {
public:
    RecordedTransfer(const DownloadSettings& settings, TimerQueue& timers, const Clock& clock)
        : transfer({*this, settings, timers, clock, isClosing, thread}) {}

    void OnStateChanged(Urgency) override { states.push_back(transfer.State()); }
    void OnNamed(const TransferName&) override {}
    void OnEnded(TransferRecord record) override { ended.push_back(std::move(record)); }
    void ShowMessage(const MessageBoxText& box) override { boxes.push_back(box); }

    std::atomic<bool> isClosing = false;
    ThreadOwner thread;
    Transfer transfer;
    std::vector<TransferState> states;
    std::vector<MessageBoxText> boxes;
    std::vector<TransferRecord> ended;
};

template <typename ProtocolType, typename SenderType = RecordedSender>
struct ProtocolHarness {
    ProtocolHarness() {
        std::filesystem::create_directory(folder / "NC");
        settings.uploadPath = settings.downloadPath = FromPath(folder / "NC");
        settings.fileExtension = u"nc";
    }

    // The bytes arrive in one piece; returns the answer.
    std::string Exchange(std::string_view bytes) {
        std::copy(bytes.begin(), bytes.end(), received.Room().begin());
        received.Commit(bytes.size());
        protocol.OnReceived(received);
        return std::exchange(sender.sent, {});
    }

    // The time passes; returns what was sent meanwhile.
    std::string Wait(Clock::Duration duration) {
        clock.Advance(duration);
        timers.RunDue(clock.Now());
        return std::exchange(sender.sent, {});
    }

    TransferState State() const { return observed.transfer.State(); }

    TemporaryFolder folder;
    ManualClock clock;
    TimerQueue timers;
    SenderType sender = MakeSender();
    DownloadSettings settings;
    RecordedTransfer observed{settings, timers, clock};
    ReceiveBuffer received;
    ProtocolType protocol{ProtocolParts{observed.transfer, sender, settings, timers, clock,
                                        [this](bool sends) { settings.sendsChecksums = sends ? 1 : 0; }}};

private:
    SenderType MakeSender() const {
        if constexpr (std::is_constructible_v<SenderType, const Clock&>)
            return SenderType(clock);
        else
            return SenderType();
    }
};

}
