#include "app/Desktop.h"

#include "base/NumberedText.h"
#include "dictionary/TextHolder.h"
#include "messages/MessageAdvice.h"
#include "ui/MainWindow.h"
#include "ui/WindowPlacement.h"

#include <utility>

namespace tarvin {

void SpeakDictionary() {
    SetTranslator([](std::int32_t id) noexcept { return Dictionary().TextOrNull(id); });
}

Desktop::Desktop(const Program& program, std::vector<std::filesystem::path> helpFiles, const KelText& systemLanguage)
    : messages({program.MachineFolder()}),
      toolkitLog(messages),
      help(std::move(helpFiles)),
      publisher({program.MachineName(), program.Place().Folder(), MachineHolder::Kind::Window}, events,
                program.EngineClock()),
      engine(program.MakeEngine(publisher)) {
    // First of all: boxes are written in the language of the dictionary.
    const auto loaded = program.LoadDictionary(systemLanguage);
    SpeakDictionary();
    messages.ReadSuppressedMessages();
    window = new MainWindow({*engine, events, help, program.EngineClock(), program.Place().PathsFile()}, messages);
    if (!loaded)
        events.ShowMessage(WithAdvice(MessageKind::DictionaryNotRead, messages.ReportFailure(loaded.Reason().text)));
}

Desktop::~Desktop() {
    engine->Stop();
    publisher.Finish();
    // What went wrong while the window closed, such as settings that could not be saved.
    for (const MessageBoxText& box : events.TakeUnseenBoxes())
        messages.Report({static_cast<std::int32_t>(ReportLevel::Warning), box.caption, box.text, {}, 0});
}

void Desktop::Start() {
    window->Show();
    publisher.TellProblems([this](const KelText& problem) { engine->Announce(problem); });
    engine->Start();
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
