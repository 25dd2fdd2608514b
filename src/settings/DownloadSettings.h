#pragma once
// The settings of one machine as plain values. Port parameters are the texts that the user chooses.

#include "base/KelText.h"

#include <cstdint>
#include <string>

namespace tarvin {

struct DownloadSettings {
    KelText port;
    KelText baudRate;
    KelText parity;
    KelText dataBits;
    KelText stopBits;
    KelText flowControl;
    KelText uploadPath;
    KelText downloadPath;
    KelText fileExtension = u"DNC";
    std::int32_t transmitDelaySeconds = 0;
    KelText logFile;
    std::int32_t writeLog = 0;
    std::int32_t characterDelayMilliseconds = 0;
    std::int32_t lineDelayMilliseconds = 0;
    std::int32_t sendStartCode = 0;
    std::int32_t sendEndCode = 0;
    std::uint8_t startCharacter = 0x12;
    std::uint8_t endCharacter = 0x04;
    KelText commsLogFileName;
    std::int32_t ctsFlow = 1;
    std::int32_t dsrFlow = 1;
    std::int32_t reservedInt = 0;
    std::int32_t networkMode = 0;
    std::int32_t serverMode = 0;
    KelText stationName = u"Machine";

    // The bytes of further fields, which a newer program has added to the settings record.
    std::string extensionFields;

    bool operator==(const DownloadSettings&) const = default;
};

}
