// tarvindl-start, which the menu entry runs: the desktop program, or the page of a first start where there is no
// installation.

#include "app/CommandLine.h"
#include "app/Desktop.h"
#include "base/Process.h"
#include "base/ProgramOutput.h"
#include "base/StartMessages.h"
#include "base/System.h"
#include "base/Version.h"
#include "dictionary/TextHolder.h"
#include "files/Installation.h"
#include "protocol/TarvinApp.h"
#include "setup/InstallationSetup.h"
#include "ui/StartDialog.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <vector>

#include <wx/choicdlg.h>

namespace {

using tarvin::KelText;

constexpr char usage[] = "Usage: tarvindl-start [MACHINE NAME]\n"
                         "\n"
                         "Starts tarvindl with this name. Without an installation it first asks for what\n"
                         "is needed and makes one. Without a name it takes TARVIN, or the machine that\n"
                         "the installation has; of several it lets the user choose one.\n"
                         "\n"
                         "  /l=LANGUAGE  the language of the window, such as /l=German\n"
                         "  --help       this text\n"
                         "  --version    the version\n";

// Does not return where the program can take the place of this one.
int RunDesktop(const std::vector<KelText>& words) {
    const auto program = tarvin::ProgramFolder().value_or(".") / "tarvindl";
    const auto started = tarvin::BecomeProgram(program, words);
    if (started)
        return 0;
    const KelText problem =
        tarvin::Filled(tarvin::text::startWindow::cannotStart, {tarvin::FromPath(program), started.Reason().text});
    std::fprintf(stderr, "tarvindl-start: %s\n", tarvin::ToUtf8(problem).c_str());
    return 1;
}

// The installation's dictionary, or before there is one that of the package.
void LoadDictionary(const std::filesystem::path& folder, const KelText& commandLine) {
    std::error_code ignored;
    const auto own = folder / "diction.ary";
    const bool isOwn = std::filesystem::exists(own, ignored);
    (void)tarvin::Dictionary().Load({.fileName = isOwn ? own : tarvin::SharedFile("diction.ary"),
                                     .commandLine = commandLine,
                                     .defaultLanguage = tarvin::SystemLanguage()});
    tarvin::SpeakDictionary();
}

// What the user is asked, and the answer: the words for the desktop program, or none after Cancel.
struct Question {
    std::filesystem::path folder;
    // To choose from. Empty for the first start.
    std::vector<KelText> machines;
    std::vector<KelText> words;
    bool isAnswered = false;
};

class StartApp : public wxApp {
public:
    explicit StartApp(Question& question) : question(question) { SetAppName("TarvinDL"); }

    // The command line holds no options of the toolkit.
    bool OnInit() override { return true; }

    int OnRun() override {
        LoadDictionary(question.folder, tarvin::JoinWords(question.words));
        const auto name = question.machines.empty() ? MakeFirstMachine() : ChooseMachine();
        question.isAnswered = name.has_value();
        if (name)
            question.words.push_back(*name);
        return 0;
    }

private:
    std::optional<KelText> MakeFirstMachine() const {
        std::vector<KelText> languages = {u"English"};
        for (const auto& language : tarvin::Dictionary().Languages())
            languages.push_back(language.name);
        tarvin::StartDialog dialog(question.folder, languages);
        return dialog.ShowModal() == wxID_OK ? std::optional(dialog.MachineName()) : std::nullopt;
    }

    std::optional<KelText> ChooseMachine() const {
        wxArrayString names;
        for (const KelText& name : question.machines)
            names.Add(tarvin::ToWx(name));
        wxSingleChoiceDialog dialog(nullptr, tarvin::ToWx(tarvin::text::startWindow::whichMachine), "TarvinDL", names);
        if (dialog.ShowModal() != wxID_OK)
            return std::nullopt;
        return tarvin::FromWx(dialog.GetStringSelection());
    }

    Question& question;
};

// The exit code.
int Ask(Question question, char** arguments) {
    // The toolkit reports a missing display before it can show a window.
    delete wxLog::SetActiveTarget(new wxLogStderr);
    wxDisableAsserts();
    wxApp::SetInstance(new StartApp(question));
    int toolkitArgumentCount = 1;
    const int result = wxEntry(toolkitArgumentCount, arguments);
    if (result < 0)
        return 1;
    return question.isAnswered ? RunDesktop(question.words) : 0;
}

// Whether the words leave it open which of the machines is meant.
bool IsOpen(const std::vector<KelText>& machines, const std::vector<KelText>& words) {
    const auto isDefault = [](const KelText& name) {
        return tarvin::EqualIgnoringCase(name, tarvin::TarvinApp::defaultMachineName);
    };
    const bool isNamed = !tarvin::MachineNameIn(tarvin::JoinWords(words)).empty();
    return !isNamed && !machines.empty() && std::ranges::none_of(machines, isDefault);
}

}

int main(int argumentCount, char** arguments) {
    tarvin::SecureStandardStreams();
    auto words = tarvin::ProgramArguments(argumentCount, arguments);
    if (words == std::vector<KelText>{u"--help"}) {
        std::fputs(usage, stdout);
        return tarvin::EndOutput("tarvindl-start", 0);
    }
    if (words == std::vector<KelText>{u"--version"}) {
        std::printf("tarvindl-start %s\n", tarvin::programVersion);
        return tarvin::EndOutput("tarvindl-start", 0);
    }
    const auto present = tarvin::FindInstallation();
    if (!present) {
        const auto folder = tarvin::FolderFor({});
        // Without a place for an installation, the desktop program says what it misses.
        return folder ? Ask({*folder, {}, words}, arguments) : RunDesktop(words);
    }
    const auto machines = tarvin::MachinesOf(*present);
    if (!IsOpen(machines, words))
        return RunDesktop(words);
    if (machines.size() > 1)
        return Ask({*present, machines, words}, arguments);
    words.push_back(machines.front());
    return RunDesktop(words);
}
