#include "protocol/DelayedDownload.h"

#include "base/Messages.h"

#include <utility>

namespace tarvin {

DelayedDownload::DelayedDownload(const ProtocolParts& parts, std::function<void()> begin)
    : parts(parts),
      begin(std::move(begin)),
      delay(parts.timers, parts.clock, "DownloadApp::DownloadNow", Clock::Duration::zero(), Timer::Kind::OneShot,
            [this] { Begin(); }) {}

void DelayedDownload::Start() {
    delay.Stop();
    // Before the delay: it tells the machine that something is coming.
    if (parts.settings.sendStartCode != 0)
        parts.sender.SendChar(parts.settings.startCharacter, false);
    if (parts.settings.transmitDelaySeconds <= 0) {
        Begin();
        return;
    }
    parts.sender.Note(ToUtf8(Filled(text::trace::downloadDelayed, {ToText(parts.settings.transmitDelaySeconds)})));
    delay.SetPeriod(std::chrono::seconds(parts.settings.transmitDelaySeconds));
    delay.Start();
    parts.transfer.AwaitDownload();
}

void DelayedDownload::Begin() {
    parts.transfer.PrepareDownload();
    begin();
}

}
