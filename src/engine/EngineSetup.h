#pragma once
// Where an engine lives: what it is given by the program that makes it.

#include "base/Clock.h"
#include "engine/DownloadWindow.h"
#include "port/SerialPort.h"

#include <filesystem>
#include <memory>

namespace tarvin {

// Clock and window must outlive the engine.
struct EngineSetup {
    std::unique_ptr<SerialPort> port;
    const Clock& clock;
    DownloadWindow& window;
    std::filesystem::path installation;
    KelText ncFilesFolder; // what the upload and download folder are unless the settings name others
};

}
