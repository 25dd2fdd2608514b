#pragma once
// A text of the settings in a dialog: label, edit, perhaps a button to browse, and below them a line for a problem.
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
        KelTextView label;
        // The tip of the button to browse. Empty: there is no such button.
        KelTextView browseTip;
        // Converts a typed text to the form that the settings keep.
        std::function<KelText(KelText)> asSetting = [](KelText text) { return text; };
    };
    struct Handlers {
        std::function<void()> changed;
        std::function<void()> browse;
    };

    // Fills two rows of the grid, which has three columns.
    TextField(wxWindow* parent, wxFlexGridSizer& grid, const Description& description, const DownloadSettings& given,
              const Handlers& handlers);

    KelText DownloadSettings::*Setting() const { return description.setting; }
    KelText Value() const;
    void Show(const KelText& text) { bound.Show(text); }
    // Replaces a typed text by the form that the settings keep.
    void ShowValue();
    // See FieldMessage.
    bool Say(const wxString& words) { return message.Say(words); }
    void Focus();
    void Enable(bool isEnabled);

private:
    const Description description;
    wxStaticText* label;
    wxTextCtrl* edit;
    wxButton* browse = nullptr;
    BoundEdit bound;
    FieldMessage message;
};

}
