#include "setup/SetupQuestions.h"

#include "base/SetupMessages.h"
#include "port/PortReport.h"
#include "protocol/TarvinApp.h"
#include "settings/SettingsNames.h"
#include "setup/MachineSetup.h"

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
Result<KelText> Ask(KelTextView question, const KelText& usual, std::istream& input, std::ostream& output) {
    output << ToUtf8(Filled(question, {usual})) << std::flush;
    std::string line;
    if (!std::getline(input, line)) {
        // The cursor stands behind the question.
        output << '\n';
        return Error{text::setup::inputEnded};
    }
    const KelText answer(Trimmed(FromUtf8(line)));
    return answer.empty() ? usual : answer;
}

void Complain(const Result<>& refused, std::ostream& output) {
    output << ToUtf8(refused.Reason().text) << '\n';
}

class MachineQuestions {
public:
    MachineQuestions(SetupRequest& request, const Installation& installation, std::istream& input, std::ostream& output)
        : request(request), installation(installation), input(input), output(output) {}

    Result<> AskForPort() {
        const auto reports = InspectPorts(installation.PathsFile(), {}, {});
        for (std::size_t number = 0; number < reports.size(); ++number)
            output << number + 1 << ": " << ToUtf8(PortLine(reports[number])) << '\n';
        const auto free =
            std::ranges::find_if(reports, [](const PortReport& report) { return report.state == PortState::Free; });
        const KelText usual = free == reports.end() ? KelText(u"COM1") : free->name;
        for (;;) {
            const auto answer = Ask(text::setupQuestion::port, usual, input, output);
            if (!answer)
                return answer.Reason();
            const bool isNumber = answer->find_first_not_of(u"0123456789") == KelText::npos;
            const auto number = static_cast<std::size_t>(isNumber ? LeadingNumber(*answer).value_or(0) : 0);
            MachineWish wish;
            wish.name = request.machine;
            wish.port = number >= 1 && number <= reports.size() ? reports[number - 1].name : *answer;
            if (const auto tried = TryMachine(installation, wish); !tried) {
                Complain(tried, output);
                continue;
            }
            request.port = wish.port;
            return {};
        }
    }

    Result<> AskForSetting(KelTextView name, KelTextView question, const KelText& usual) {
        const NamedSetting* const setting = FindNamedSetting(name);
        for (;;) {
            auto answer = Ask(question, usual, input, output);
            if (!answer)
                return answer.Reason();
            MachineWish wish;
            wish.name = request.machine;
            if (setting->form == SettingForm::Folder) {
                // A program that runs elsewhere finds the folder by its full path alone.
                std::error_code ignored;
                wish.folders = {std::filesystem::absolute(ToPath(*answer), ignored)};
                *answer = FromPath(wish.folders.front());
            }
            wish.settings.push_back({KelText(name), *answer});
            if (const auto tried = TryMachine(installation, wish); !tried) {
                Complain(tried, output);
                continue;
            }
            request.choices.push_back(wish.settings.front());
            request.folders.insert(request.folders.end(), wish.folders.begin(), wish.folders.end());
            return {};
        }
    }

private:
    SetupRequest& request;
    const Installation& installation;
    std::istream& input;
    std::ostream& output;
};

bool HasChoice(const SetupRequest& request, KelTextView setting) {
    return std::ranges::any_of(request.choices, [&](const NamedValue& each) { return each.name == setting; });
}

}

Result<KelText> AskForName(std::istream& input, std::ostream& output) {
    for (;;) {
        auto name = Ask(text::setupQuestion::machine, KelText(TarvinApp::defaultMachineName), input, output);
        const auto checked = name ? CheckMachineName(*name) : Result<>();
        if (checked)
            return name;
        Complain(checked, output);
    }
}

Result<> AskForMachine(SetupRequest& request, const Installation& installation, std::istream& input,
                       std::ostream& output) {
    const KelText folder = FromPath(installation.NcFilesFolder());
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
    MachineQuestions asking(request, installation, input, output);
    Result<> done;
    if (!request.port)
        done = asking.AskForPort();
    for (const auto& each : questions) {
        if (done && !HasChoice(request, each.setting))
            done = asking.AskForSetting(each.setting, each.question, each.usual);
    }
    return done;
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
