#include "engine/Network.h"

#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto pingPeriod = 1000ms;
constexpr auto endOfServePeriod = 5000ms;

}

Network::Network(Transfer& transfer, Sender& sender, Display& display, const DownloadSettings& settings,
                 TimerQueue& timers, const Clock& clock)
    : transfer(transfer),
      sender(sender),
      display(display),
      settings(settings),
      ping(timers, clock, "DownloadApp::PingNow", pingPeriod, Timer::Kind::Repeating,
           [this] {
               if (!pingText.empty())
                   this->sender.SendText(pingText);
           }),
      endOfServe(timers, clock, "DownloadApp::EndOfServe", endOfServePeriod, Timer::Kind::Repeating,
                 [this] { EndOfServe(); }) {}

void Network::SetPingText(std::string text, std::chrono::milliseconds period) {
    pingText = std::move(text);
    ping.SetPeriod(period);
    ping.Start();
}

void Network::EndOfServe() {
    transfer.Wait(Urgency::NextTick);
    if (IsClient())
        RequestFileList();
}

void Network::ResetLink() {
    // The user did not cancel a transfer, so no cancelled status appears.
    transfer.Wait(Urgency::NextTick);
    display.ShowButtons(settings.networkMode == 0);
    if (!IsClient()) {
        ping.Stop();
        return;
    }
    transfer.ShowMissingServer();
    RequestFileList();
}

}
