#include "engine/DisplayTicker.h"

#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto displayPeriod = 100ms;
constexpr auto quietPeriod = 500ms;

}

DisplayTicker::DisplayTicker(TimerQueue& timers, const Clock& clock, std::function<bool()> show)
    : showStatus(std::move(show)),
      displayStatus(timers, clock, "DownloadApp::DisplayStatus", displayPeriod, Timer::Kind::Repeating, [this] {
          if (!showStatus())
              SetQuiet(true);
      }) {}

void DisplayTicker::SetQuiet(bool shallBeQuiet) {
    isQuiet = shallBeQuiet;
    displayStatus.SetPeriod(isQuiet ? quietPeriod : displayPeriod);
    displayStatus.Start();
}

}
