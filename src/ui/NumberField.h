#pragma once
// A number of the settings in a dialog: label, spin, and below them a line for a problem or a note. User-interface
// thread.

#include "ui/CheckedField.h"
#include "ui/FieldMessage.h"

#include <functional>

class wxSpinCtrl;

namespace tarvin {

class NumberField : public CheckedField {
public:
    struct Description {
        NumberSetting setting;
        KelTextView label;
        KelTextView tip = {};
    };

    // Adds two rows to the column. `changed` is called when the user has changed the value.
    NumberField(wxWindow* parent, wxSizer& column, const Description& description, const DownloadSettings& given,
                const std::function<void()>& changed);

    AnySetting Setting() const override { return description.setting; }
    void Write(DownloadSettings& settings) const override;
    bool Say(const wxString& problem) override;
    wxWindow& Control() const override;

    // Stands in the line while there is no problem. Empty: no note.
    bool Note(const wxString& note);

private:
    bool ShowMessage();
    void CheckTyped();
    void CheckTaken();

    const Description description;
    wxStaticText* label; // before the control that its key leads to
    wxSpinCtrl* spin;
    FieldMessage message;
    wxString shownText; // of the spin, at the last event
    wxString problem;
    wxString note;
};

}
