#include "settings/PortSettings.h"

#include <tuple>

namespace tarvin {

namespace {

auto LineSettings(const DownloadSettings& settings) {
    return std::tie(settings.port, settings.baudRate, settings.parity, settings.dataBits, settings.stopBits,
                    settings.flowControl);
}

// A file may hold other numbers than 0 and 1: all of them but 0 act alike.
auto Handshakes(const DownloadSettings& settings) {
    return std::tuple(settings.ctsFlow != 0, settings.dsrFlow != 0);
}

}

bool HeedsHandshakes(KelTextView flowControl) {
    return flowControl == u"Hardware" || flowControl == u"Combined";
}

bool ReopensPort(const DownloadSettings& before, const DownloadSettings& after) {
    return LineSettings(before) != LineSettings(after) || IsByHand(before) != IsByHand(after) ||
           (HeedsHandshakes(after.flowControl) && Handshakes(before) != Handshakes(after));
}

}
