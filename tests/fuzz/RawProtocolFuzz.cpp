// Feeds RawProtocol with bytes in any cut, begins and ends transfers by hand, moves the clock, holds the line, and lets
// calls to the disk fail. The input begins with a byte of settings; each command after them is one byte with values
// behind it, as in TakeCommand.

#include "fuzz/FuzzedDisk.h"
#include "harness/ProtocolHarness.h"
#include "protocol/RawProtocol.h"

#include <algorithm>
#include <chrono>
#include <optional>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

constexpr char startCode = '%';
constexpr char endCode = 0x04;
constexpr int mostBlocks = 10'000;

class ByHand {
public:
    explicit ByHand(unsigned choice) {
        harness.folder.WriteFile("NC/send.nc", "%\nN1 X1\r\n\n\x04N2\n" + std::string(150, 'X') + "\nN3");
        harness.folder.WriteFile("NC/older.nc", "O1\n");
        harness.folder.WriteFile("NC/other.nc", "untouched\n");
        harness.settings.baudRate = (choice & 1) != 0 ? u"110" : u"9600";
        harness.settings.sendStartCode = choice >> 1 & 1;
        harness.settings.sendEndCode = choice >> 2 & 1;
        harness.settings.startCharacter = startCode;
        harness.settings.endCharacter = endCode;
        harness.settings.silenceSeconds = (choice & 8) != 0 ? 2 : 0;
        harness.settings.lineDelayMilliseconds = (choice & 16) != 0 ? 5 : 0;
        harness.settings.replacedFilesKept = static_cast<int>(choice >> 5 & 3);
        disk.emplace(harness.folder / "NC");
    }

    void TakeCommand(std::string_view& input) {
        const auto take = [&input](std::size_t count) {
            const std::string_view taken = input.substr(0, count);
            input.remove_prefix(taken.size());
            return taken;
        };
        const char command = take(1).front();
        switch (command) {
        case 'a': {
            const std::string_view count = take(1);
            Arrive(std::string(take(count.empty() ? 0 : static_cast<unsigned char>(count.front()))));
            break;
        }
        case 'w':
        case 'W':
            Wait(command == 'w' ? 100ms : 2000ms);
            break;
        case 'f': {
            const std::string_view values = take(3);
            if (values.size() == 3)
                disk->AddFault(static_cast<std::uint8_t>(values[0]), static_cast<std::uint8_t>(values[1]),
                               static_cast<std::uint8_t>(values[2]));
            break;
        }
        case 'c':
            disk->ClearFaults();
            break;
        case 'r':
        case 'R':
            Receive(command == 'r' ? "new.nc" : "older.nc");
            break;
        case 's':
            Send();
            break;
        case 'l':
            LineFree();
            break;
        case 'h':
            harness.sender.Hold();
            break;
        case 'g':
            harness.sender.Release();
            break;
        case 'C':
            CompleteByHand();
            break;
        case 'x':
            CancelByHand();
            break;
        case 'L':
            LoseTransfer();
            break;
        case 'e':
            harness.received.NoteErrors(1);
            break;
        default:
            Arrive(std::string(1, command));
        }
        Sent();
        CheckSending();
    }

    // Whatever has happened, a user can end it and begin again.
    void End() {
        disk->ClearFaults();
        harness.sender.Release();
        for (int block = 0; block < mostBlocks && Its().State() == TransferState::Downloading; ++block)
            LineFree();
        Require(Its().State() != TransferState::Downloading, "a download ends");
        CheckSending();
        Wait(3000ms);
        CompleteByHand();
        Require(!Its().IsUnderWay(), "an upload ends by hand");
        Receive("new.nc");
        Require(Its().State() == TransferState::Uploading, "a receive by hand begins");
        Arrive(std::string(1, startCode) + "N1\n");
        CompleteByHand();
        Require(Its().State() == TransferState::UploadCompleted, "a receive by hand is completed");
        disk->CheckFiles();
    }

private:
    Transfer& Its() { return harness.observed.transfer; }
    bool IsReceiving() { return Its().State() == TransferState::Uploading; }

    TransferName Named(const std::string& file) const {
        const auto path = harness.folder / "NC" / file;
        return {FromPath(path), FromPath(path.filename()), u" "};
    }

    void Receive(const std::string& file) {
        if (Its().IsUnderWay())
            return;
        harness.protocol.OnBeginByHand();
        disk->Allow(file);
        if (!Its().BeginUploadByHand(Named(file)))
            return;
        name = file;
        content.clear();
        hasStart = harness.settings.sendStartCode == 0;
    }

    void Send() {
        if (Its().IsUnderWay())
            return;
        harness.sender.DropUnsent();
        harness.protocol.OnBeginByHand();
        const std::string file = disk->Read("send.nc");
        sent.clear();
        isSending = Its().BeginDownloadByHand(Named("send.nc"));
        wanted = (harness.settings.sendStartCode != 0 ? std::string(1, startCode) : "") + file +
                 (harness.settings.sendEndCode != 0 ? std::string(1, endCode) : "");
    }

    // What the file gets of the bytes.
    void Arrive(const std::string& bytes) {
        const bool wasReceiving = IsReceiving() && !Its().IsCompleting();
        const std::string before = content;
        if (wasReceiving) {
            const std::size_t start = hasStart ? 0 : bytes.find(startCode);
            if (start != std::string::npos) {
                const std::string rest = bytes.substr(start + (hasStart ? 0 : 1));
                hasStart = true;
                const bool hasEnd = harness.settings.sendEndCode != 0 && rest.find(endCode) != std::string::npos;
                content += hasEnd ? rest.substr(0, rest.find(endCode)) : rest;
            }
            disk->NoteContent(name, content);
        }
        (void)harness.Exchange(bytes);
        if (!wasReceiving)
            return;
        if (IsReceiving())
            CheckPart(content);
        else if (Its().State() == TransferState::UploadCompleted)
            CheckCompleted();
        else
            CheckFailed(before);
    }

    void Wait(std::chrono::milliseconds duration) {
        const bool wasReceiving = IsReceiving();
        for (auto passed = 0ms; passed < duration; passed += 100ms)
            sent += harness.Wait(100ms);
        if (wasReceiving)
            CheckReceiveEnd();
    }

    void CompleteByHand() {
        if (!IsReceiving())
            return;
        disk->NoteContent(name, content);
        Its().CompleteUpload();
        CheckReceiveEnd();
    }

    void CancelByHand() {
        const bool wasReceiving = IsReceiving();
        if (wasReceiving) {
            Its().End(TransferState::UploadCancelled);
        } else if (Its().State() == TransferState::Downloading) {
            harness.protocol.Abandon();
            Its().End(TransferState::DownloadCancelled);
        }
        if (wasReceiving)
            CheckReceiveEnd();
    }

    void LoseTransfer() {
        const bool wasReceiving = IsReceiving();
        harness.sender.DropUnsent();
        harness.protocol.Abandon();
        if (Its().EndWithErrors(u"the fuzzer ends it"))
            harness.protocol.OnTransferLost();
        if (wasReceiving)
            CheckReceiveEnd();
    }

    void LineFree() {
        if (harness.sender.IsHeld())
            return;
        const std::size_t before = sent.size();
        const bool wasSending = Its().State() == TransferState::Downloading;
        harness.protocol.OnLineFree();
        Sent();
        Require(!wasSending || sent.size() > before || Its().State() == TransferState::DownloadCompleted,
                "a free line gets the next block");
    }

    void Sent() { sent += std::exchange(harness.sender.sent, {}); }

    void CheckSending() {
        if (!isSending)
            return;
        if (Its().State() == TransferState::DownloadCompleted)
            Require(sent == wanted, "a completed download has sent the whole file");
        else
            Require(wanted.starts_with(sent), "a download sends the file");
        isSending = Its().State() == TransferState::Downloading;
    }

    void CheckReceiveEnd() {
        if (IsReceiving())
            CheckPart(content);
        else if (Its().State() == TransferState::UploadCompleted)
            CheckCompleted();
        else
            CheckFailed(content);
    }

    void CheckPart(const std::string& stored) {
        Require(disk->Read(name + ".part") == stored, "received bytes are on the disk");
    }

    void CheckCompleted() {
        Require(content.empty() ? disk->Has(name) : disk->Read(name) == content, "a completed upload is on the disk");
        disk->CheckFiles();
    }

    void CheckFailed(const std::string& stored) {
        const auto copies = disk->Copies(name);
        Require(stored.empty() || std::any_of(copies.begin(), copies.end(),
                                              [&](const std::string& copy) { return copy.starts_with(stored); }),
                "a failed upload leaves its received bytes");
        disk->CheckFiles();
    }

    ProtocolHarness<RawProtocol, HeldSender> harness;
    std::optional<FuzzedDisk> disk;
    std::string name; // of the file that is received
    std::string content;
    bool hasStart = false;
    bool isSending = false;
    std::string wanted;
    std::string sent;
};

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    ByHand conversation(input.empty() ? 0 : data[0]);
    input.remove_prefix(std::min<std::size_t>(input.size(), 1));
    while (!input.empty())
        conversation.TakeCommand(input);
    conversation.End();
    return 0;
}
