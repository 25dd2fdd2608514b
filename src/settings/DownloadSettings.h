#pragma once
// The settings of one machine as plain values. Port parameters are the texts that the user chooses.

#include "base/KelText.h"

#include <cstdint>
#include <string>

namespace tarvin {

// The values of DownloadSettings::incomingCheck. A file may hold others; they act as incomingCheckEnd.
inline constexpr std::int32_t incomingCheckOff = 0;
inline constexpr std::int32_t incomingCheckEnd = 1;    // ends the upload
inline constexpr std::int32_t incomingCheckRepeat = 2; // waits for the repeat, up to twice in a row

// The values of DownloadSettings::controllerKind. A file may hold others; they act as controllerConversation.
inline constexpr std::int32_t controllerConversation = 0; // the controller asks and sends by itself
inline constexpr std::int32_t controllerByHand = 1;       // any machine: files are sent and received by hand

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

    // What a damaged message of an upload does.
    std::int32_t incomingCheck = incomingCheckEnd;
    // Replaced files of one name that are kept. 0 keeps none.
    std::int32_t replacedFilesKept = 5;
    // 1 if the controller is taken to send checksums. The program finds out by itself.
    std::int32_t sendsChecksums = 0;
    // How the machine exchanges files.
    std::int32_t controllerKind = controllerConversation;
    // A receive by hand ends after this silence. 0: it does not.
    std::int32_t silenceSeconds = 0;
    // A hold or silence of more than this calls someone while a file is on its way. 0: it does not.
    std::int32_t attentionMinutes = 5;
    std::int32_t callsWithSound = 0;
    // Rows of the history are kept for this long. 0: for ever.
    std::int32_t historyYears = 5;
    // The name of a language of the dictionary. Empty: the language of the system.
    KelText language;
    // Uploads under a new number that are taken within an hour. 0: any number of them.
    std::int32_t newFilesPerHour = 5000;

    // The bytes of further fields, which a newer program has added to the settings record.
    std::string extensionFields;

    bool operator==(const DownloadSettings&) const = default;
};

// Whether files are sent and received by hand: the machine begins no transfer.
inline bool IsByHand(const DownloadSettings& settings) {
    return settings.controllerKind == controllerByHand;
}

}
