#pragma once
// A setting that is typed: caption, edit, perhaps a button to browse, and a line below for what is wrong with it.
// User-interface thread.

#include "settings/DownloadSettings.h"
#include "ui/BoundControls.h"
#include "ui/FieldMessage.h"

#include <functional>

namespace tarvin {

class TextField {
public:
    struct Description {
        KelText DownloadSettings::*setting;
        wxString label;
        // What the button to browse is for; without a button if empty.
        wxString browseTip;
        // How a text that the user has typed is kept.
        std::function<KelText(KelText)> asSetting = [](KelText text) { return text; };
    };
    struct Handlers {
        std::function<void()> changed;
        std::function<void()> browse;
    };

    // Fills two rows of the grid, which has three columns.
    TextField(wxWindow* parent, wxFlexGridSizer& grid, Description what, const DownloadSettings& given,
              Handlers handlers);

    KelText DownloadSettings::*Setting() const { return description.setting; }
    KelText Value() const;
    void Show(const KelText& text) { bound.Show(text); }
    // Shows what Value gives, where that differs from what has been typed.
    void ShowValue();
    // See FieldMessage.
    bool Say(const wxString& words) { return message.Say(words); }
    void Focus();
    void Enable(bool isEnabled);

private:
    Description description;
    wxStaticText* label;
    wxTextCtrl* edit;
    wxButton* browse = nullptr;
    BoundEdit bound;
    FieldMessage message;
};

}
