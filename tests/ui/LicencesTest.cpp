#include "User.h"
#include "files/NativeFile.h"
#include "ui/CustomMessage.h"
#include "ui/LicencesDialog.h"

#include <doctest/doctest.h>

namespace tarvin::test {

TEST_CASE("LicencesDialog: a button of a box opens it, and it holds the licence of each part") {
    auto* box = OnUi([] {
        auto* made = new CustomMessage(nullptr, {u"TarvinDL", u"About TarvinDL", okOnly | iconInformation}, [] {});
        made->AddButton(u"Licences...", [made] { (new LicencesDialog(made, [] {}))->Show(); });
        made->Show();
        return made;
    });
    REQUIRE(WindowTitled("About TarvinDL") == box);
    Click(ButtonIn(box, "Licences..."));
    wxTopLevelWindow* dialog = WindowTitled("Licences of the Parts of Others");
    REQUIRE(dialog != nullptr);
    const std::string shown = OnUi([&] {
        for (wxWindow* each : WindowsIn(dialog)) {
            if (auto* words = dynamic_cast<wxTextCtrl*>(each))
                return words->GetValue().utf8_string();
        }
        return std::string();
    });
    CHECK(shown.starts_with("Parts of others in TarvinDL"));
    for (const auto& part : std::filesystem::directory_iterator(TARVIN_SOURCE_FOLDER "/packaging/licences")) {
        if (part.path().extension() != ".txt")
            continue;
        const std::string text = ReadWholeFile(part.path(), 1 << 20).ValueOr("not read");
        CHECK_MESSAGE(shown.find(text) != std::string::npos, part.path());
    }
    PressKey(WXK_ESCAPE);
    CHECK(BecomesHidden("Licences of the Parts of Others"));
    OnUi([&] { return dialog->Destroy(), box->Destroy(); });
}

}
