#include "app/Program.h"

#include "app/CommandLine.h"
#include "base/Messages.h"
#include "base/ProgramOutput.h"
#include "base/System.h"
#include "base/Version.h"
#include "dictionary/TextHolder.h"
#include "engine/EngineSetup.h"
#include "files/FileNames.h"
#include "history/HistoryDatabase.h"
#include "messages/MessageAdvice.h"
#include "protocol/ProtocolChoice.h"
#include "protocol/TarvinApp.h"
#include "settings/SettingsStore.h"

#include <cstdio>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

// A missing dictionary is no failure.
Result<> LoadDictionary(const std::filesystem::path& installation, const KelText& commandLine,
                        const KelText& defaultLanguage) {
    DictionaryRequest request;
    request.programFolder = installation;
    request.commandLine = commandLine;
    request.defaultLanguage = defaultLanguage;
    auto loaded = Dictionary().Load(request);
    std::error_code ignored;
    const bool isThere = std::filesystem::exists(installation / request.fileName, ignored);
    return isThere ? loaded : Result<>();
}

}

KelText MachineNameOf(KelTextView commandLine) {
    KelText name = MachineNameIn(commandLine);
    return name.empty() ? KelText(TarvinApp::defaultMachineName) : name;
}

Result<Installation> FindProgramInstallation() {
    const auto folder = FindInstallation();
    if (!folder)
        return folder.Reason();
    return Installation::Read(*folder);
}

ProgramStart Program::Begin(int argumentCount, const char* const* arguments, const char* programName,
                            const char* usage) {
    SecureStandardStreams();
    KelText commandLine = CommandLineOf(argumentCount, arguments);
    if (commandLine == u"--help") {
        std::fputs(usage, stdout);
        return {std::nullopt, EndOutput(programName, 0), {}};
    }
    if (commandLine == u"--version") {
        std::printf("%s %s\n", programName, programVersion);
        return {std::nullopt, EndOutput(programName, 0), {}};
    }
    const auto say = [programName](const Error& reason) {
        std::fprintf(stderr, "%s: %s.\n", programName, ToUtf8(reason.text).c_str());
    };
    const auto folder = FindInstallation();
    if (!folder) {
        say(folder.Reason());
        return {};
    }
    auto installation = Installation::Read(*folder);
    if (!installation) {
        say(installation.Reason());
        // The box speaks the user's language as far as it can. Without a dictionary it is English.
        (void)tarvin::LoadDictionary(*folder, commandLine, {});
        const MessageBoxText problem =
            WithAdvice(MessageKind::CorruptInstallation,
                       {installation.Reason().text, text::start::corruptCaption, okOnly | iconError});
        return {std::nullopt, 1, problem};
    }
    ProgramStart start;
    start.program.emplace(std::move(*installation), std::move(commandLine));
    return start;
}

Program::Program(Installation installation, KelText commandLine)
    : installation(std::move(installation)),
      commandLine(std::move(commandLine)),
      machineName(MachineNameOf(this->commandLine)),
      portNames(this->installation.PathsFile()) {}

std::filesystem::path Program::MachineFolder() const {
    return installation.Folder() / ToPath(FileNameFor(machineName));
}

Result<> Program::LoadDictionary(const KelText& systemLanguage) const {
    // The engine reads the settings anew, and says what is wrong with them.
    DownloadSettings settings;
    (void)SettingsStore(installation.Folder(), machineName, {}).LoadSettings(settings);
    return tarvin::LoadDictionary(installation.Folder(), commandLine,
                                  settings.language.empty() ? systemLanguage : settings.language);
}

std::unique_ptr<DownloadApp> Program::MakeEngine(EngineEvents& events) const {
    auto history = std::make_unique<HistoryDatabase>(HistoryFile(installation.Folder()));
    return std::make_unique<DownloadApp>(EngineSetup{MakeSerialPort(portNames), clock, events, MakeProtocol,
                                                     installation.Folder(), FromPath(installation.NcFilesFolder()),
                                                     TarvinApp::FirstSettings(), installation.LinkedFolders(),
                                                     std::make_unique<LogFiles>(std::move(history))},
                                         machineName);
}

}
