#include "settings/PortSettings.h"

#include <functional>

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("ReopensPort: it is true for each setting of the port, and for a handshake switch that has an effect") {
    struct Case {
        const char* name;
        KelText flowControl;
        std::function<void(DownloadSettings&)> change;
        bool reopens;
    };
    const Case cases[] = {
        {"nothing", u"None", [](DownloadSettings&) {}, false},
        {"port", u"None", [](DownloadSettings& settings) { settings.port = u"COM2"; }, true},
        {"baud rate", u"None", [](DownloadSettings& settings) { settings.baudRate = u"110"; }, true},
        {"parity", u"None", [](DownloadSettings& settings) { settings.parity = u"Odd"; }, true},
        {"data bits", u"None", [](DownloadSettings& settings) { settings.dataBits = u"7"; }, true},
        {"stop bits", u"None", [](DownloadSettings& settings) { settings.stopBits = u"2"; }, true},
        {"flow control", u"None", [](DownloadSettings& settings) { settings.flowControl = u"Hardware"; }, true},
        {"CTS without effect", u"Xon/Xoff", [](DownloadSettings& settings) { settings.ctsFlow = 0; }, false},
        {"CTS", u"Hardware", [](DownloadSettings& settings) { settings.ctsFlow = 0; }, true},
        {"DSR", u"Combined", [](DownloadSettings& settings) { settings.dsrFlow = 0; }, true},
        {"the same CTS", u"Combined", [](DownloadSettings& settings) { settings.ctsFlow = -1; }, false},
        {"kind", u"None", [](DownloadSettings& settings) { settings.controllerKind = controllerByHand; }, true},
        {"unknown kind", u"None", [](DownloadSettings& settings) { settings.controllerKind = 7; }, false},
        {"folder", u"None", [](DownloadSettings& settings) { settings.uploadPath = u"x"; }, false},
        {"code", u"None", [](DownloadSettings& settings) { settings.sendEndCode = 1; }, false},
        {"what the program learns", u"None", [](DownloadSettings& settings) { settings.sendsChecksums = 1; }, false},
    };
    for (const Case& each : cases) {
        CAPTURE(each.name);
        DownloadSettings before;
        before.flowControl = each.flowControl;
        DownloadSettings after = before;
        each.change(after);
        CHECK(ReopensPort(before, after) == each.reopens);
        CHECK(ReopensPort(after, before) == each.reopens);
    }
}
