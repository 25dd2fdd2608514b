#pragma once
// A text of the settings in a dialog: label, edit, perhaps a button to browse, and below them a line for a problem.
// User-interface thread.

#include "ui/BoundControls.h"
#include "ui/CheckedField.h"
#include "ui/FieldMessage.h"

#include <functional>

namespace tarvin {

class TextField : public CheckedField {
public:
    struct Description {
        TextSetting setting;
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

    AnySetting Setting() const override { return description.setting; }
    TextSetting Text() const { return description.setting; }
    void Write(DownloadSettings& settings) const override { settings.*description.setting = Value(); }
    bool Say(const wxString& problem) override { return message.Say(problem); }
    void ShowValue() override;
    wxWindow& Control() const override { return *edit; }
    void Show(const KelText& text) { bound.Show(text); }
    void Enable(bool isEnabled);

private:
    KelText Value() const;

    const Description description;
    wxStaticText* label;
    wxTextCtrl* edit;
    wxButton* browse = nullptr;
    BoundEdit bound;
    FieldMessage message;
};

}
