#include "port/PortReport.h"

#include "base/FirstUseMessages.h"

namespace tarvin {

KelText DescribeState(const PortReport& report) {
    switch (report.state) {
    case PortState::Free:
        return text::portState::free;
    case PortState::Own:
        return text::portState::own;
    case PortState::Busy:
        return report.holder.empty() ? KelText(text::portState::busy)
                                     : Filled(text::portState::busyWith, {report.holder});
    case PortState::NotAllowed:
        return text::portState::notAllowed;
    case PortState::NotThere:
        return text::portState::notThere;
    case PortState::Failed:
        break;
    }
    return text::portState::failed;
}

void AddStateAdvice(PortReport& report) {
    const KelText& device = report.device.empty() ? report.name : report.device;
    const auto add = [&](KelTextView text, KelTextView detail) {
        report.advice.push_back({Filled(text, {device, detail}), {}});
    };
    if (report.state == PortState::NotThere)
        report.advice.push_back({Filled(text::portAdvice::notThere, {report.name}), {}});
    else if (report.state == PortState::Failed)
        add(text::portAdvice::failed, report.reason);
    else if (report.state == PortState::Busy)
        add(report.holder.empty() ? KelTextView(text::portAdvice::busy) : KelTextView(text::portAdvice::busyWith),
            report.holder);
    else if (report.state == PortState::Free && !report.holder.empty())
        add(text::portAdvice::sharedWith, report.holder);
}

}
