#pragma once
// The engine's one port: opening and configuring it step by step, reporting each failed step, and getting it back after
// an outage. Knows nothing of transfers. Monitor thread only, apart from start-up and shut-down, when no other runs.

#include "engine/SerialPort.h"
#include "framework/MessageReport.h"
#include "settings/DownloadSettings.h"

#include <functional>
#include <memory>

namespace tarvin {

class PortLink {
public:
    using ShowMessage = std::function<void(const MessageBoxText&)>;

    PortLink(std::unique_ptr<SerialPort> serialPort, ShowMessage showMessage);

    // Closes any open port and opens and configures the one that the settings name. A step that fails after the opening
    // leaves the port open, half-configured, under the "No Link" title. `noSoftwareFlow` keeps XON and XOFF out of the
    // driver's hands.
    void OpenPort(const DownloadSettings& settings, const KelText& applicationTitle, bool noSoftwareFlow);
    // The same without a word if there is still no port to open. True if there is one now.
    bool Reopen(const DownloadSettings& settings, const KelText& applicationTitle);
    void ClosePort();

    SerialPort& Port() { return *port; }
    bool IsOpen() const { return port->IsOpen(); }
    // The application's title with the port and its settings, or with "No Link".
    const KelText& Title() const { return title; }
    // False where the received XON and XOFF bytes alone tell whether the line is held.
    bool DriverTellsXoffHold() const { return driverTellsXoffHold; }

    // A failed look, read or write; each names itself by one pointer. The first of an outage is reported; if the device
    // is gone the port is closed.
    void ReportOutage(const char16_t* stepName, const PortError& error);
    // The step that failed has gone well.
    void EndOutage(const char16_t* stepName) { failingStep = failingStep == stepName ? nullptr : failingStep; }
    bool IsInOutage() const { return failingStep != nullptr; }

private:
    void ReportPortError(const char16_t* stepName, const PortError& error);
    bool Configure(const DownloadSettings& settings, bool noSoftwareFlow);
    void OpenAndConfigure(const DownloadSettings& settings, bool noSoftwareFlow, bool isQuiet);
    bool Failed(const char16_t* stepName, const PortError& error);

    std::unique_ptr<SerialPort> port;
    ShowMessage show;
    KelText portName;
    KelText titleName;
    KelText title;
    bool driverTellsXoffHold = false;
    const char16_t* failingStep = nullptr;
};

}
