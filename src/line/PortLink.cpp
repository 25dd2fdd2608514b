#include "line/PortLink.h"

#include <utility>

namespace tarvin {

namespace {

constexpr std::size_t inputQueueBytes = 4000;
constexpr std::size_t outputQueueBytes = 1000;
constexpr std::chrono::milliseconds writeTimeout = std::chrono::seconds(10);

KelText ParityLetter(const DownloadSettings& settings) {
    return settings.parity.substr(0, 1);
}

std::string ModeText(const DownloadSettings& settings) {
    return ToUtf8(u"baud=" + settings.baudRate + u" parity=" + ParityLetter(settings) + u" data=" + settings.dataBits +
                  u" stop=" + settings.stopBits);
}

// None for a text that is no flow control at all: the port then keeps the handshake that it was found with.
std::optional<FlowControl> FlowOf(const DownloadSettings& settings, bool noSoftwareFlow) {
    const bool combined = settings.flowControl == u"Combined";
    const bool hardware = settings.flowControl == u"Hardware";
    const bool software = settings.flowControl == u"Xon/Xoff";
    if (!combined && !hardware && !software && settings.flowControl != u"None")
        return std::nullopt;
    FlowControl flow;
    flow.software = (combined || software) && !noSoftwareFlow;
    if (combined || hardware) {
        flow.ctsOutput = flow.rtsHandshake = settings.ctsFlow != 0;
        flow.dsrOutput = flow.dtrHandshake = settings.dsrFlow != 0;
        flow.dsrSensitivity = true;
    }
    return flow;
}

}

PortLink::PortLink(std::unique_ptr<SerialPort> serialPort, ShowMessage showMessage)
    : port(std::move(serialPort)), show(std::move(showMessage)) {}

void PortLink::ReportPortError(const char16_t* stepName, const Error& error) {
    if (!isQuiet)
        show({portName + u"\n" + error.text, stepName, okOnly | iconInformation});
}

bool PortLink::Failed(const char16_t* stepName, const Result<>& result) {
    if (!result)
        ReportPortError(stepName, result.Reason());
    return !result;
}

void PortLink::ReportOutage(LineStep step, const Error& error) {
    constexpr const char16_t* names[] = {u"Comms Status Check", u"Read Data", u"Write Data"};
    if (!failingStep)
        ReportPortError(names[static_cast<std::size_t>(step)], error);
    failingStep = step;
    isFailing = true;
    if (!error.isGone)
        return;
    ClosePort();
    title = titleName + u" - No Link";
}

void PortLink::EndOutage(LineStep step) {
    if (!failingStep || *failingStep > step)
        return;
    failingStep.reset();
    isFailing = false;
}

void PortLink::OpenPort(const DownloadSettings& settings, const KelText& applicationTitle, bool noSoftwareFlow) {
    if (port->IsOpen()) {
        port->Purge();
        Failed(u"Close Previous Connection", port->Close());
    }
    titleName = applicationTitle;
    failingStep.reset();
    OpenAndConfigure(settings, noSoftwareFlow);
}

bool PortLink::Reopen(const DownloadSettings& settings, const KelText& applicationTitle) {
    titleName = applicationTitle;
    isQuiet = true;
    if (!OpenAndConfigure(settings, false))
        ClosePort();
    isQuiet = false;
    return port->IsOpen();
}

bool PortLink::OpenAndConfigure(const DownloadSettings& settings, bool noSoftwareFlow) {
    portName = settings.port;
    title = titleName + u" - No Link";
    isFailing = false;
    isLinked = false;
    if (Failed(u"Open Comm", port->Open(portName)))
        return false;
    isLinked = Configure(settings, noSoftwareFlow);
    if (isLinked) {
        title = titleName + u" " + portName + u":" + settings.baudRate + u"," + ParityLetter(settings) + u"," +
                settings.dataBits + u"," + settings.stopBits + u"," + settings.flowControl;
    }
    port->Purge();
    return isLinked;
}

bool PortLink::Configure(const DownloadSettings& settings, bool noSoftwareFlow) {
    Failed(u"Set Comm Buffer Sizes", port->SetQueueSizes(inputQueueBytes, outputQueueBytes));
    Failed(u"Get Comm State", port->FetchState());
    const std::optional<FlowControl> flow = FlowOf(settings, noSoftwareFlow);
    driverTellsXoffHold = !flow || flow->software;
    return !Failed(u"Update Comm State", port->ApplyMode(ModeText(settings))) &&
           !Failed(u"Set Comm State", port->CommitState(flow)) &&
           !Failed(u"Setup_Timeouts", port->SetTimeouts(writeTimeout));
}

void PortLink::ClosePort() {
    if (!port->IsOpen())
        return;
    port->Purge();
    (void)port->Close();
}

}
