#pragma once
// Stations that exchange NC files over a network. So far this class only resets the link and shows that the server is
// missing. Monitor thread.

#include "base/Timer.h"
#include "engine/Display.h"
#include "line/Sender.h"

#include <chrono>
#include <string>

namespace tarvin {

class Network {
public:
    Network(Transfer& transfer, Sender& sender, Display& display, const DownloadSettings& settings, TimerQueue& timers,
            const Clock& clock);

    // Ends a transfer that is under way and puts the link back to waiting. Shows or hides the buttons for transfers by
    // hand, which belong to a station without a network.
    void ResetLink();

    // Sends the text each `period` from now on. Nothing calls this yet: the exchange with other stations does not
    // exist.
    void SetPingText(std::string text, std::chrono::milliseconds period);

private:
    void EndOfServe();
    // Asks the server for its list of files. Empty until the exchange with other stations exists.
    void RequestFileList() {}
    bool IsClient() const { return settings.networkMode != 0 && settings.serverMode == 0; }

    Transfer& transfer;
    Sender& sender;
    Display& display;
    const DownloadSettings& settings;
    std::string pingText;
    Timer ping;
    // Nothing starts this timer yet: it ends a turn of the exchange with other stations.
    Timer endOfServe;
};

}
