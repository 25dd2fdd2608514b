#include "User.h"
#include "harness/TemporaryFolder.h"
#include "harness/WaitUntil.h"
#include "history/HistoryDatabase.h"
#include "ui/HistoryDialog.h"

namespace tarvin::test {

namespace {

TransferRecord Row(KelText machine, KelText number, TransferOutcome outcome) {
    TransferRecord row;
    row.machine = std::move(machine);
    row.number = std::move(number);
    row.path = u"/srv/nc/" + row.number;
    row.outcome = outcome;
    row.begin = row.end = std::chrono::system_clock::now();
    if (outcome == TransferOutcome::Failed)
        row.reason = u"a reason that is longer than its column";
    return row;
}

template <class Control>
Control* ControlNamed(wxWindow* window, const std::string& name) {
    for (wxWindow* each : WindowsIn(window)) {
        if (auto* control = dynamic_cast<Control*>(each); control != nullptr && control->GetName() == name)
            return control;
    }
    return nullptr;
}

}

TEST_CASE("HistoryDialog: it begins with its machine, filters, and opens the folder of the selected file") {
    const TemporaryFolder folder;
    const auto path = folder / "history.db";
    HistoryDatabase history(path);
    const HistoryChange changes[] = {Row(u"LASER", u"1", TransferOutcome::Completed),
                                     Row(u"LASER", u"2", TransferOutcome::Failed),
                                     Row(u"MILL", u"3", TransferOutcome::Completed)};
    REQUIRE(history.Apply(changes));
    std::filesystem::path opened;
    auto* dialog = OnUi([&] {
        auto* made = new HistoryDialog(nullptr, path, u"LASER", {[] {}, [&](const auto& shown) { opened = shown; }});
        made->Show();
        return made;
    });
    REQUIRE(WindowTitled("LASER - History") != nullptr);
    const auto shows = [&](const std::string& message) {
        return WaitUntil([&] { return TextIn(dialog).find(message) != std::string::npos; });
    };
    const auto choose = [&](const std::string& list, const std::string& entry) {
        OnUi([&] {
            auto* choice = ControlNamed<wxChoice>(dialog, list);
            REQUIRE(choice->SetStringSelection(entry));
            wxCommandEvent event(wxEVT_CHOICE, choice->GetId());
            choice->ProcessWindowEvent(event);
        });
    };
    // A key goes to the window that the window manager has made the active one, which takes it a moment.
    const auto focusTable = [&] {
        auto* table = OnUi([&] { return ControlNamed<HistoryTable>(dialog, "Transfers"); });
        OnUi([&] { table->SetFocus(); });
        REQUIRE(Becomes([&] { return dialog->IsActive() && table->HasFocus(); }));
    };
    CHECK(shows("Transfers: 2"));
    choose("Outcome", "Failed");
    CHECK(shows("Transfers: 1"));
    focusTable();
    PressKey(WXK_HOME);
    CHECK(shows("/srv/nc/2: a reason that is longer than its column"));
    // A table with the keyboard may select its first line by itself when it gets new ones.
    auto* numberField = OnUi([&] { return ControlNamed<wxTextCtrl>(dialog, "Number"); });
    OnUi([&] { numberField->SetFocus(); });
    REQUIRE(Becomes([&] { return numberField->HasFocus(); }));
    choose("Machine", "All machines");
    choose("Outcome", "All");
    CHECK(shows("Transfers: 3"));
    // What cannot be touched or named is no control for everyone.
    for (wxWindow* each : OnUi([&] { return WindowsIn(dialog); })) {
        if (dynamic_cast<wxButton*>(each) != nullptr || dynamic_cast<wxChoice*>(each) != nullptr)
            // The rows may be there before the first layout.
            CHECK(Becomes([&] { return each->GetSize().GetHeight() >= 32; }));
    }
    wxWindow* openFolder = ButtonIn(dialog, "Open Folder");
    CHECK_FALSE(OnUi([&] { return openFolder->IsEnabled(); }));
    Click(numberField);
    Type("3");
    CHECK(shows("Transfers: 1"));
    // The first line, by keyboard.
    focusTable();
    PressKey(WXK_HOME);
    REQUIRE(Becomes([&] { return openFolder->IsEnabled(); }));
    Click(openFolder);
    CHECK(Becomes([&] { return opened == "/srv/nc"; }));
    Click(ButtonIn(dialog, "Close"));
    CHECK(BecomesHidden("LASER - History"));
    OnUi([&] { dialog->Destroy(); });
}

}
