#pragma once
// What an engine is made of. The program puts it together.

#include "engine/EngineEvents.h"
#include "logging/LogFiles.h"
#include "port/SerialPort.h"
#include "protocol/Protocol.h"
#include "settings/DownloadSettings.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace tarvin {

// Clock and events outlive the engine.
struct EngineSetup {
    std::unique_ptr<SerialPort> port;
    const Clock& clock;
    EngineEvents& events;
    ProtocolMaker makeProtocol;
    std::filesystem::path installation;
    KelText ncFilesFolder;               // the upload and download folder unless the settings name others
    DownloadSettings firstSettings = {}; // values for which neither the settings file nor a first run has one
    // Links in the download folder may lead to files below these folders.
    std::vector<std::filesystem::path> linkedFolders = {};
    std::unique_ptr<LogFiles> logFiles = std::make_unique<LogFiles>(); // where the logs are written
};

}
