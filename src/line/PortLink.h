#pragma once
// The engine's one port: opening and configuring it step by step, reporting each failed step, and getting it back after
// an outage. Knows nothing of transfers. Monitor thread only, apart from start-up and shut-down, when no other runs.

#include "messages/MessageReport.h"
#include "port/SerialPort.h"
#include "settings/DownloadSettings.h"

#include <functional>
#include <memory>
#include <optional>

namespace tarvin {

// What is done with an open port. An outage ends when the step that failed goes well, or one behind it; not when a
// device can be opened that fails at once.
enum class LineStep { Status, Read, Write };

class PortLink {
public:
    using ShowMessage = std::function<void(const MessageBoxText&)>;

    PortLink(std::unique_ptr<SerialPort> serialPort, ShowMessage showMessage);

    // Closes any open port and opens and configures the one that the settings name. A step that fails after the opening
    // leaves the port open, half-configured, under the "No Link" title. `noSoftwareFlow` keeps XON and XOFF out of the
    // driver's hands.
    void OpenPort(const DownloadSettings& settings, const KelText& applicationTitle, bool noSoftwareFlow);
    // The same without a word; a port that cannot be configured is closed again. True if there is one now.
    bool Reopen(const DownloadSettings& settings, const KelText& applicationTitle);
    void ClosePort();

    SerialPort& Port() { return *port; }
    bool IsOpen() const { return port->IsOpen(); }
    // Open and set up as the settings ask for.
    bool IsLinked() const { return isLinked && port->IsOpen(); }
    // The application's title with the port and its settings, or with "No Link".
    const KelText& Title() const { return title; }
    // False where the received XON and XOFF bytes alone tell whether the line is held.
    bool DriverTellsXoffHold() const { return driverTellsXoffHold; }

    // A failed step. The first of an outage is reported; if the device is gone the port is closed.
    void ReportOutage(LineStep step, const Error& error);
    // A step that went well.
    void EndOutage(LineStep step);
    // An open port fails: to be asked again at leisure.
    bool IsFailing() const { return IsOpen() && isFailing; }

private:
    void ReportPortError(const char16_t* stepName, const Error& error);
    bool Configure(const DownloadSettings& settings, bool noSoftwareFlow);
    bool OpenAndConfigure(const DownloadSettings& settings, bool noSoftwareFlow);
    bool Failed(const char16_t* stepName, const Result<>& result);

    std::unique_ptr<SerialPort> port;
    ShowMessage show;
    KelText portName;
    KelText titleName;
    KelText title;
    bool isLinked = false;
    bool driverTellsXoffHold = false;
    std::optional<LineStep> failingStep;
    bool isFailing = false;
    bool isQuiet = false;
};

}
