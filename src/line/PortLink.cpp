#include "line/PortLink.h"

#include "base/Messages.h"
#include "settings/PortSettings.h"

#include <algorithm>
#include <cstdlib>
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

// None for a text that is no flow control: the port then keeps the handshake that it was found with.
std::optional<FlowControl> FlowOf(const DownloadSettings& settings) {
    const bool combined = settings.flowControl == u"Combined";
    const bool hardware = settings.flowControl == u"Hardware";
    const bool software = settings.flowControl == u"Xon/Xoff";
    if (!combined && !hardware && !software && settings.flowControl != u"None")
        return std::nullopt;
    FlowControl flow;
    flow.software = combined || software;
    if (HeedsHandshakes(settings.flowControl)) {
        flow.ctsOutput = flow.rtsHandshake = settings.ctsFlow != 0;
        flow.dsrOutput = flow.dtrHandshake = settings.dsrFlow != 0;
        flow.dsrSensitivity = true;
    }
    return flow;
}

const char16_t* NameOf(LineStep step) {
    constexpr const char16_t* names[] = {text::portStep::checkStatus, text::portStep::read, text::portStep::write};
    return names[static_cast<std::size_t>(step)];
}

}

int BitsPerSecond(const DownloadSettings& settings) {
    return std::max(std::atoi(ToUtf8(settings.baudRate).c_str()), 1);
}

PortProblem PortLink::Problem(PortProblem::Kind kind, const char16_t* stepName, const Error& error) const {
    return {kind, stepName, portName + u"\n" + error.text};
}

PortProblem PortLink::NoteFailure(LineStep step, const Error& error) {
    failingStep = step;
    if (error.isGone) {
        Close();
        title = Filled(text::caption::noLink, {titleName});
    }
    return Problem(PortProblem::Kind::Device, NameOf(step), error);
}

void PortLink::NoteSuccess(LineStep step) {
    if (failingStep && *failingStep <= step)
        failingStep.reset();
}

std::vector<PortProblem> PortLink::Open(const DownloadSettings& settings, const KelText& applicationTitle) {
    std::vector<PortProblem> problems;
    if (port->IsOpen()) {
        port->Purge();
        if (const auto closed = port->Close(); !closed)
            problems.push_back(Problem(PortProblem::Kind::Warning, text::portStep::closePrevious, closed.Reason()));
    }
    titleName = applicationTitle;
    OpenAndConfigure(settings, problems);
    if (isModeRefused)
        Close();
    return problems;
}

std::vector<PortProblem> PortLink::Reopen(const DownloadSettings& settings, const KelText& applicationTitle) {
    titleName = applicationTitle;
    std::vector<PortProblem> problems;
    if (!OpenAndConfigure(settings, problems))
        Close();
    return problems;
}

bool PortLink::OpenAndConfigure(const DownloadSettings& settings, std::vector<PortProblem>& problems) {
    portName = settings.port;
    title = Filled(text::caption::noLink, {titleName});
    failingStep.reset();
    isLinked = false;
    isModeRefused = false;
    if (const auto opened = port->Open(portName); !opened) {
        problems.push_back(Problem(PortProblem::Kind::Device, text::portStep::open, opened.Reason()));
        return false;
    }
    isLinked = Configure(settings, problems);
    if (isLinked) {
        title = titleName + u" " + portName + u":" + settings.baudRate + u"," + ParityLetter(settings) + u"," +
                settings.dataBits + u"," + settings.stopBits + u"," + settings.flowControl;
    }
    port->Purge();
    return isLinked;
}

bool PortLink::Configure(const DownloadSettings& settings, std::vector<PortProblem>& problems) {
    const auto attempt = [&](PortProblem::Kind kind, const char16_t* stepName, const Result<>& result) {
        if (!result)
            problems.push_back(Problem(kind, stepName, result.Reason()));
        return static_cast<bool>(result);
    };
    constexpr auto warning = PortProblem::Kind::Warning;
    constexpr auto mode = PortProblem::Kind::Mode;
    // A port works with queues of another size, and with a state that it did not tell: the two steps are reported only.
    attempt(warning, text::portStep::setQueueSizes, port->SetQueueSizes(inputQueueBytes, outputQueueBytes));
    attempt(warning, text::portStep::fetchState, port->FetchState());
    const std::optional<FlowControl> flow = FlowOf(settings);
    driverTellsXoffHold = !flow || flow->software;
    if (!attempt(mode, text::portStep::applyMode, port->ApplyMode(ModeText(settings))))
        return false;
    isModeRefused = !attempt(mode, text::portStep::commitState, port->CommitState(flow));
    return !isModeRefused && attempt(mode, text::portStep::setTimeouts, port->SetTimeouts(writeTimeout));
}

void PortLink::Close() {
    if (!port->IsOpen())
        return;
    port->Purge();
    // A failure to close changes nothing: the port counts as closed.
    (void)port->Close();
}

}
