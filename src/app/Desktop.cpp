#include "app/Desktop.h"

#include "base/NumberedText.h"
#include "dictionary/TextHolder.h"
#include "messages/MessageAdvice.h"
#include "ui/MainWindow.h"
#include "ui/WindowPlacement.h"

#include <cstdio>
#include <utility>

namespace tarvin {

void SpeakDictionary() {
    SetTranslator([](std::int32_t id) noexcept { return Dictionary().TextOrNull(id); });
}

Desktop::Desktop(const Program& program, std::vector<std::filesystem::path> helpFiles, const KelText& systemLanguage,
                 Role role)
    : messages({program.MachineFolder()}), toolkitLog(messages), help(std::move(helpFiles)) {
    if (role == Role::Serve)
        MakeEngine(program);
    else
        watched = std::make_unique<WatchedMachine>(program.Place().Folder(), program.MachineName(), events,
                                                   program.EngineClock());
    // First of all: boxes are written in the language of the dictionary.
    const auto loaded = program.LoadDictionary(systemLanguage);
    SpeakDictionary();
    messages.ReadSuppressedMessages();
    MachineControl& control = engine ? static_cast<MachineControl&>(*engine) : *watched;
    window = new MainWindow({control, events, help, program.EngineClock(), program.Place().PathsFile()}, messages);
    if (!loaded)
        events.ShowMessage(WithAdvice(MessageKind::DictionaryNotRead, messages.ReportFailure(loaded.Reason().text)));
}

void Desktop::MakeEngine(const Program& program) {
    publisher = std::make_unique<StatusPublisher>(
        StatusPublisher::Machine{program.MachineName(), program.Place().Folder(), MachineHolder::Kind::Window}, events,
        program.EngineClock());
    engine = program.MakeEngine(*publisher);
    // Not in the status line: the operator at this window misses nothing.
    publisher->TellProblems(
        [](const KelText& problem) { std::fprintf(stderr, "tarvindl: %s\n", ToUtf8(problem).c_str()); });
}

Desktop::~Desktop() {
    if (engine) {
        engine->Stop();
        publisher->Finish();
    }
    // What went wrong while the window closed, such as settings that could not be saved.
    for (const MessageBoxText& box : events.TakeUnseenBoxes())
        messages.Report({static_cast<std::int32_t>(ReportLevel::Warning), box.caption, box.text, {}, 0});
}

void Desktop::Start() {
    window->Show();
    if (engine)
        engine->Start();
    else
        watched->Look();
}

void Desktop::RequestClose() {
    events.Post([this] { window->Close(true); });
}

void Desktop::RequestRaise(std::function<void()> answer) {
    events.Post([this, kept = std::move(answer)] {
        BringToFront(*window);
        kept();
    });
}

}
