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
    : parts(parts), download(parts, [transfer = &parts.transfer] { transfer->CallUser(); }) {}

void RawProtocol::OnReceived(ReceiveBuffer& received) {
    if (parts.transfer.IsTesting()) {
        testedCount = received.Count();
        return;
    }
    const auto bytes = received.Bytes().subspan(std::min(std::exchange(testedCount, 0), received.Count()));
    if (parts.transfer.State() == TransferState::Uploading)
        parts.transfer.Store(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    parts.transfer.CountDriverErrors(received.TakeErrorCount());
    received.Clear();
}

void RawProtocol::Abandon() {
    download.Drop();
    isAtLineStart = isEndSent = false;
}

void RawProtocol::OnLineFree() {
    if (parts.transfer.State() != TransferState::Downloading)
        return;
    // A full driver has left a rest of the last block.
    if (!parts.sender.IsEmpty())
        return;
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

// The end character goes out behind the last block, and the download ends once the driver has taken it.
void RawProtocol::EndDownload() {
    isAtLineStart = false;
    if (parts.settings.sendEndCode != 0 && !std::exchange(isEndSent, true)) {
        parts.sender.SendChar(parts.settings.endCharacter, false);
        return;
    }
    isEndSent = false;
    parts.transfer.End(TransferState::DownloadCompleted);
}

}
