#include "setup/SetupQuestions.h"

#include "base/SetupMessages.h"
#include "port/PortReport.h"
#include "protocol/TarvinApp.h"
#include "settings/SettingsNames.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <system_error>

namespace tarvin {

namespace {

KelText PortLine(const PortReport& report) {
    KelText line = report.name;
    for (const KelText& part : {report.device, report.maker, report.product, report.serialNumber}) {
        if (!part.empty() && part != report.name)
            line += u"  " + part;
    }
    return line + u"  (" + DescribeState(report) + u")";
}

// The answer, or `usual` for an empty line.
KelText Ask(KelTextView question, const KelText& usual, std::istream& input, std::ostream& output) {
    output << ToUtf8(Filled(question, {usual})) << std::flush;
    std::string line;
    std::getline(input, line);
    const KelText answer(Trimmed(FromUtf8(line)));
    return answer.empty() ? usual : answer;
}

KelText AskForPort(const std::filesystem::path& pathsFile, std::istream& input, std::ostream& output) {
    const auto reports = InspectPorts(pathsFile, {}, {});
    for (std::size_t number = 0; number < reports.size(); ++number)
        output << number + 1 << ": " << ToUtf8(PortLine(reports[number])) << '\n';
    const auto free =
        std::ranges::find_if(reports, [](const PortReport& report) { return report.state == PortState::Free; });
    const KelText usual = free == reports.end() ? KelText(u"COM1") : free->name;
    const KelText answer = Ask(text::setupQuestion::port, usual, input, output);
    const bool isNumber = answer.find_first_not_of(u"0123456789") == KelText::npos;
    const auto number = static_cast<std::size_t>(isNumber ? LeadingNumber(answer).value_or(0) : 0);
    return number >= 1 && number <= reports.size() ? reports[number - 1].name : answer;
}

bool HasChoice(const SetupRequest& request, KelTextView setting) {
    return std::ranges::any_of(request.choices, [&](const NamedValue& each) { return each.name == setting; });
}

}

KelText AskForName(std::istream& input, std::ostream& output) {
    return Ask(text::setupQuestion::machine, KelText(TarvinApp::defaultMachineName), input, output);
}

void AskForMachine(SetupRequest& request, const std::filesystem::path& pathsFile, const KelText& folder,
                   std::istream& input, std::ostream& output) {
    if (!request.port)
        request.port = AskForPort(pathsFile, input, output);
    const struct {
        KelTextView setting;
        KelTextView question;
        KelText usual;
    } questions[] = {{u"baudrate", text::setupQuestion::speed, u"2400"},
                     {u"upload path", text::setupQuestion::upload, folder},
                     {u"download path", text::setupQuestion::download, folder},
                     {u"file extension", text::setupQuestion::extension, {}},
                     {u"controller", text::setupQuestion::controller, u"by number"},
                     {u"language", text::setupQuestion::language, {}}};
    for (const auto& each : questions) {
        const NamedSetting* const setting = FindNamedSetting(each.setting);
        // A wrong answer is asked for again, as long as a person is there.
        while (!HasChoice(request, each.setting)) {
            KelText answer = Ask(each.question, each.usual, input, output);
            std::error_code ignored;
            // A program that runs elsewhere finds the folder by its full path alone.
            if (setting->form == SettingForm::Folder)
                answer = FromPath(std::filesystem::absolute(ToPath(answer), ignored));
            DownloadSettings trial;
            if (const auto set = SetNamedSetting(*setting, answer, trial); !set && input) {
                output << ToUtf8(set.Reason().text) << '\n';
                continue;
            }
            request.choices.push_back({KelText(each.setting), answer});
            if (setting->form == SettingForm::Folder)
                request.folders.push_back(ToPath(answer));
        }
    }
}

KelText ListOfPorts(const std::filesystem::path& pathsFile) {
    KelText lines;
    for (const PortReport& report : InspectPorts(pathsFile, {}, {})) {
        lines += PortLine(report) + u"\n";
        for (const PortAdvice& advice : report.advice) {
            lines += u"    " + advice.text + u"\n";
            if (!advice.command.empty())
                lines += Filled(text::check::mend, {advice.command}) + u"\n";
        }
    }
    return lines.empty() ? text::setup::noPorts + KelText(u"\n") : lines;
}

}
