#include "setup/MachineCheck.h"

#include "base/SetupMessages.h"
#include "files/MachineLock.h"
#include "port/PortReport.h"
#include "protocol/TarvinApp.h"
#include "settings/SettingsNames.h"
#include "setup/FolderAccess.h"
#include "setup/SettingsChange.h"

#include <algorithm>
#include <chrono>

namespace tarvin {

namespace {

class MachineInspection {
public:
    MachineInspection(const Installation& installation, const KelText& machineName)
        : installation(installation), machineName(machineName), store(StoreOf(installation, machineName)) {}

    std::vector<Finding> Run() {
        Note(Filled(text::check::installation, {FromPath(installation.Folder())}));
        LookAtSettings();
        const auto holder = MachineLock(store.FilePath()).Holder(std::chrono::milliseconds(0));
        LookAtPort(holder.has_value());
        LookAtFolder(settings.uploadPath, FolderUse::Write, text::check::uploads);
        LookAtFolder(settings.downloadPath, FolderUse::Read, text::check::downloads);
        LookAtValues();
        if (holder)
            Note(Filled(text::check::served, {machineName, ToText(static_cast<std::int64_t>(holder->process))}));
        else if (!HasProblem(findings))
            Note(Filled(text::check::wouldServe, {machineName, settings.port}));
        return std::move(findings);
    }

private:
    void Note(KelText text) { findings.push_back({std::move(text)}); }
    void Complain(KelText text, KelText command = {}) {
        findings.push_back({std::move(text), true, std::move(command)});
    }

    void LookAtSettings() {
        const KelText file = FromPath(store.FilePath());
        const auto loaded = store.Load(TarvinApp::FirstSettings());
        settings = loaded.settings;
        if (loaded.isRefused)
            Complain(Filled(text::check::settingsRefused, {loaded.warning->text}));
        else if (const auto damage = DamageOfSettings(loaded, store.FilePath()))
            Complain(*damage);
        else
            Note(Filled(loaded.content ? text::check::settingsRead : text::check::settingsNone, {file}));
    }

    void LookAtPort(bool isServed) {
        const PortReport report = InspectPort(installation.PathsFile(), settings.port);
        if (report.device.empty()) {
            Complain(Filled(text::check::noDevice, {settings.port, machineName}));
            return;
        }
        const KelText line = settings.baudRate + u"," + settings.parity.substr(0, 1) + u"," + settings.dataBits + u"," +
                             settings.stopBits + u"," + settings.flowControl;
        const KelText found = Filled(text::check::port, {settings.port, report.device, line, DescribeState(report)});
        const bool isWell = report.state == PortState::Free || (report.state == PortState::Busy && isServed);
        findings.push_back({found, !isWell});
        if (report.state == PortState::Busy && isServed)
            return;
        for (const PortAdvice& advice : report.advice)
            findings.push_back({advice.text, !isWell, advice.command});
    }

    void LookAtFolder(const KelText& folder, FolderUse use, KelTextView form) {
        if (const auto problem = TryFolder(ToPath(folder), use))
            Complain(problem->text, problem->command);
        else
            Note(Filled(form, {folder}));
    }

    // Folders have been tried already, which says more.
    void LookAtValues() {
        for (const NamedSetting& each : NamedSettings()) {
            DownloadSettings taken = settings;
            const auto set = each.form == SettingForm::Choice
                                 ? SetNamedSetting(each, SettingValue(each, settings), taken)
                                 : Result<>();
            if (!set)
                Complain(set.Reason().text);
        }
        for (const SettingsProblem& each : CheckSettings(settings, settings)) {
            const auto* const text = std::get_if<TextSetting>(&each.field);
            const bool isFolder =
                text != nullptr && (*text == &DownloadSettings::uploadPath || *text == &DownloadSettings::downloadPath);
            if (!isFolder)
                Complain(Filled(text::check::setting, {SettingName(each.field), each.message}));
        }
    }

    const Installation& installation;
    const KelText machineName;
    SettingsStore store;
    DownloadSettings settings;
    std::vector<Finding> findings;
};

}

std::vector<Finding> CheckMachine(const Installation& installation, const KelText& machineName) {
    return MachineInspection(installation, machineName).Run();
}

bool HasProblem(const std::vector<Finding>& findings) {
    return std::ranges::any_of(findings, &Finding::isProblem);
}

KelText DescribeFindings(const std::vector<Finding>& findings) {
    KelText lines;
    for (const Finding& each : findings) {
        lines += (each.isProblem ? Filled(text::check::wrong, {each.text}) : each.text) + u"\n";
        if (!each.command.empty())
            lines += Filled(text::check::mend, {each.command}) + u"\n";
    }
    return lines;
}

}
