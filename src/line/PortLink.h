#pragma once
// The engine's one port: opens and configures it step by step, and closes it when its device is gone. Monitor thread.

#include "port/SerialPort.h"
#include "settings/DownloadSettings.h"

#include <memory>
#include <optional>
#include <vector>

namespace tarvin {

// The step of the work on a port that failed, and why. For the user.
struct PortProblem {
    // The device cannot be used; the device refuses what the settings ask for; or the port works all the same.
    enum class Kind { Device, Mode, Warning };

    Kind kind = Kind::Device;
    KelText stepName;
    KelText text; // the port's name and the system's words, one line each
};

// What a look at an open port does, in this order.
enum class LineStep { Status, Read, Write };

// The speed that the settings ask for; 1 if they name none.
int BitsPerSecond(const DownloadSettings& settings);

class PortLink {
public:
    explicit PortLink(std::unique_ptr<SerialPort> port) : port(std::move(port)) {}

    // Closes an open port, then opens and configures the one that the settings name. Returns the steps that failed. A
    // step that fails after the opening leaves the port open, half-configured, under the "No Link" title: the next
    // opening closes it. A port whose device does not grant the mode is closed: nothing may cross the line in another
    // mode. `applicationTitle` begins the title.
    std::vector<PortProblem> Open(const DownloadSettings& settings, const KelText& applicationTitle);
    // Like Open for a closed port, but closes a port again that cannot be configured: it is tried again until it works.
    std::vector<PortProblem> Reopen(const DownloadSettings& settings, const KelText& applicationTitle);
    void Close();

    SerialPort& Port() { return *port; }
    bool IsOpen() const { return port->IsOpen(); }
    // Whether the port is open and configured as the settings ask for.
    bool IsLinked() const { return isLinked && port->IsOpen(); }
    // The application's title with the port and its settings, or with "No Link".
    const KelText& Title() const { return title; }
    // Whether the driver obeys XON and XOFF. Otherwise received XON and XOFF bytes alone hold and release the line.
    bool DriverTellsXoffHold() const { return driverTellsXoffHold; }

    // A step on the open port has failed. Closes the port if the device is gone.
    PortProblem NoteFailure(LineStep step, const Error& error);
    // A step has succeeded. The port stops failing when the step that failed succeeds, or a later one.
    void NoteSuccess(LineStep step);
    // Whether the open port fails: it is looked at again after a pause.
    bool IsFailing() const { return IsOpen() && failingStep; }

private:
    PortProblem Problem(PortProblem::Kind kind, const char16_t* stepName, const Error& error) const;
    bool OpenAndConfigure(const DownloadSettings& settings, std::vector<PortProblem>& problems);
    bool Configure(const DownloadSettings& settings, std::vector<PortProblem>& problems);

    std::unique_ptr<SerialPort> port;
    KelText portName;
    KelText titleName;
    KelText title;
    bool isLinked = false;
    bool isModeRefused = false; // by the device
    bool driverTellsXoffHold = false;
    std::optional<LineStep> failingStep;
};

}
