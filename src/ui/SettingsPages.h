#pragma once
// The pages of the settings dialog. User-interface thread.

#include "port/PortNames.h"
#include "ui/SettingsForm.h"

#include <functional>
#include <vector>

namespace tarvin {

// Port, line mode, kind of controller, delays and control characters. The user chooses one of `ports`.
wxWindow* MakeLinePage(wxWindow* parent, SettingsForm& form, std::vector<FoundPort> ports);

// Folders, extension and activity log. The two functions ask the user for a folder or a file.
struct Browsing {
    std::function<void(TextField&)> folder;
    std::function<void(TextField&)> logFile;
};
wxWindow* MakeFilesPage(wxWindow* parent, SettingsForm& form, const Browsing& browsing);

// Uploads, calls, history and messages. `showAllMessages` as in
// SettingsDialog::Owner.
wxWindow* MakeCallsPage(wxWindow* parent, SettingsForm& form, std::function<bool()> showAllMessages);

}
