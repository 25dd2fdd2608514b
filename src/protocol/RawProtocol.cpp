#include "protocol/RawProtocol.h"

#include "line/PortLink.h"

#include <algorithm>
#include <utility>

namespace tarvin {

namespace {

constexpr int largestBlock = 100;

// Half a second of line time, so that a hold takes effect soon.
int BlockSize(int bitsPerSecond) {
    return std::clamp(bitsPerSecond / 8 / 2, 1, largestBlock);
}

}

RawProtocol::RawProtocol(const ProtocolParts& parts)
    : parts(parts),
      silence(parts.timers, parts.clock, "RawProtocol::Silence", Clock::Duration::zero(), Timer::Kind::OneShot,
              [this] { CompleteUpload(); }) {}

void RawProtocol::OnBeginByHand() {
    Abandon();
}

void RawProtocol::Abandon() {
    hasStartCode = isEndSent = isAtLineStart = false;
    silence.Stop();
}

void RawProtocol::OnReceived(ReceiveBuffer& received) {
    if (parts.transfer.IsTesting()) {
        testedCount = received.Count();
        return;
    }
    const auto bytes = received.Bytes().subspan(std::min(std::exchange(testedCount, 0), received.Count()));
    const std::uint32_t errorCount = received.TakeErrorCount();
    if (parts.transfer.IsUnderWay())
        parts.transfer.CountDriverErrors(errorCount);
    // The machine may go on sending while the file gets its name: blanks of a tape, for example.
    if (parts.transfer.State() == TransferState::Uploading && !parts.transfer.IsCompleting())
        Receive(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    received.Clear();
}

void RawProtocol::Receive(std::string_view bytes) {
    const DownloadSettings& settings = parts.settings;
    if (settings.sendStartCode != 0 && !hasStartCode) {
        const std::size_t start = bytes.find(static_cast<char>(settings.startCharacter));
        if (start == std::string_view::npos)
            return;
        bytes.remove_prefix(start + 1);
    }
    // Later bytes are part of the file, even if the user switches the code on now.
    hasStartCode = true;
    const std::size_t end =
        settings.sendEndCode != 0 ? bytes.find(static_cast<char>(settings.endCharacter)) : std::string_view::npos;
    const std::string_view content = bytes.substr(0, end);
    if (!content.empty() && !parts.transfer.Store(content)) {
        Abandon();
        return;
    }
    if (end != std::string_view::npos) {
        CompleteUpload();
    } else if (settings.silenceSeconds > 0 && parts.transfer.BytesDone() > 0) {
        silence.SetPeriod(std::chrono::seconds(settings.silenceSeconds));
        silence.Start();
    } else {
        silence.Stop();
    }
}

void RawProtocol::CompleteUpload() {
    Abandon();
    // The user may have completed it while the silence ran.
    if (parts.transfer.State() == TransferState::Uploading)
        parts.transfer.CompleteUpload();
}

// The start code goes out alone: the machine sees it before any byte of the file, whatever delay follows.
void RawProtocol::OnLineFree() {
    if (parts.transfer.State() != TransferState::Downloading)
        return;
    // A full driver has left a rest of the last block.
    if (!parts.sender.IsEmpty())
        return;
    if (parts.settings.sendStartCode != 0 && !std::exchange(hasStartCode, true))
        parts.sender.SendChar(parts.settings.startCharacter, false);
    else
        SendNextBlock();
}

void RawProtocol::SendNextBlock() {
    // A rest of the file goes on without a start code, even if the user switches the code on now.
    hasStartCode = true;
    const DownloadSettings& settings = parts.settings;
    const int blockSize = BlockSize(BitsPerSecond(settings));
    const auto block =
        parts.transfer.NextBlock(static_cast<std::size_t>(blockSize), settings.lineDelayMilliseconds > 0);
    if (block.empty()) {
        EndDownload();
        return;
    }
    std::chrono::milliseconds delay(settings.characterDelayMilliseconds);
    if (std::exchange(isAtLineStart, block.back() == '\n'))
        delay += std::chrono::milliseconds(settings.lineDelayMilliseconds);
    parts.sender.SendBlock(blockSize, block, delay);
    parts.transfer.CountSent(static_cast<std::int64_t>(block.size()));
}

// The end code goes out behind the last block. The download ends when the driver has sent it.
void RawProtocol::EndDownload() {
    isAtLineStart = false;
    if (parts.settings.sendEndCode != 0 && !std::exchange(isEndSent, true)) {
        parts.sender.SendChar(parts.settings.endCharacter, false);
        return;
    }
    parts.transfer.End(TransferState::DownloadCompleted);
    Abandon();
}

}
