#include "DesktopFixture.h"

#include <algorithm>

#include <wx/stdpaths.h>

namespace tarvin::test {

DesktopFixture::DesktopFixture(const std::string& profile) : folder({.settings = profile}) {}

DesktopFixture::~DesktopFixture() {
    if (window != nullptr)
        CHECK(Close());
}

void DesktopFixture::Connect() {
    terminal = std::make_unique<PseudoTerminal>();
    std::filesystem::create_symlink(terminal->Device(), folder / "line");
}

void DesktopFixture::Disconnect() {
    std::filesystem::remove(folder / "line");
    terminal->Close();
}

ChildProcess& DesktopFixture::RunController(std::vector<std::string> commands) {
    std::vector<std::string> arguments = {"--pty", (folder / "line").string()};
    arguments.insert(arguments.end(), commands.begin(), commands.end());
    controller = std::make_unique<ChildProcess>("tarvin-controller", ChildProcess::Options{std::move(arguments)});
    return *controller;
}

void DesktopFixture::Start(Desktop::Role role) {
    startedRole = role;
    ::setenv("TARVINDL_HOME", folder.Path().c_str(), 1);
    ::setenv("TARVINDL_RUNTIME", folder.Path().c_str(), 1);
    OnUi([this, role] {
        program.emplace(*FindProgramInstallation(), u"LASER");
        desktop = std::make_unique<Desktop>(
            *program, std::vector{std::filesystem::path(TARVIN_PROGRAM_FOLDER) / "../share/comshelp.htb"}, u"", role);
        window = &desktop->Window();
        FindSystemDialogBy([this] { return window->Dialogs().Top(); });
        desktop->Start();
        window->Raise();
    });
    if (!Becomes([this] { return window->IsActive(); }, std::chrono::seconds(2)))
        OnUi([this] { window->Raise(); });
    REQUIRE(Becomes([this] { return window->IsActive(); }));
}

bool DesktopFixture::Close(std::chrono::milliseconds longest) {
    const bool isOnItsWay = startedRole == Desktop::Role::Serve && IsTransferring(Engine().Snapshot().transferState);
    OnUi([this] {
        FindSystemDialogBy({});
        window->Close();
    });
    // The user is asked first, and wants it broken off.
    if (isOnItsWay)
        Click(ButtonIn(WindowTitled("A File Is on Its Way"), "Yes"));
    const bool isGone = Becomes(
        [this] {
            return std::none_of(wxTopLevelWindows.begin(), wxTopLevelWindows.end(),
                                [this](wxWindow* top) { return top == window; });
        },
        longest);
    window = nullptr;
    OnUi([this] { desktop.reset(); });
    return isGone;
}

std::string DesktopFixture::Status() {
    return OnUi([this] { return Panel().statusLine->Text().utf8_string(); });
}

std::string DesktopFixture::Caption() {
    return OnUi([this] { return window->GetTitle().utf8_string(); });
}

bool DesktopFixture::StatusBecomes(const std::string& text) {
    return Becomes([&] { return Panel().statusLine->Text().utf8_string() == text; });
}

bool DesktopFixture::CaptionBecomes(const std::string& text) {
    return Becomes([&] { return window->GetTitle().utf8_string() == text; });
}

}
