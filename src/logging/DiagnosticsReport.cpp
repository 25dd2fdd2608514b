#include "logging/DiagnosticsReport.h"

#include "base/System.h"
#include "base/Version.h"

namespace tarvin {

std::vector<std::string> DiagnosticsReport(const DownloadSettings& settings) {
    // The same banner begins and ends the settings, so that a reader finds both by one text.
    const std::string settingsBanner = "==================== Settings ======================";
    const auto number = [](int value) { return std::to_string(value); };
    return {
        "==================== Version & OS ======================",
        std::string(programVersion) + " - " + ToUtf8(SystemName()),
        settingsBanner,
        "Port=" + ToUtf8(settings.port) + " baud=" + ToUtf8(settings.baudRate) + " parity=" + ToUtf8(settings.parity) +
            " data=" + ToUtf8(settings.dataBits) + " stop=" + ToUtf8(settings.stopBits) +
            " flow=" + ToUtf8(settings.flowControl),
        "Upload path=" + ToUtf8(settings.uploadPath) + " Download path=" + ToUtf8(settings.downloadPath) +
            " Extension=" + ToUtf8(settings.fileExtension),
        "Transmit delay=" + number(settings.transmitDelaySeconds) + " Character Delay=" +
            number(settings.characterDelayMilliseconds) + " Line Delay=" + number(settings.lineDelayMilliseconds),
        "Send SOT=" + number(settings.sendStartCode) + " SOT Character=" + number(settings.startCharacter) +
            " Send EOT=" + number(settings.sendEndCode) + " EOT Character=" + number(settings.endCharacter),
        settingsBanner,
    };
}

}
