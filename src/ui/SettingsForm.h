#pragma once
// The controls of the settings dialog, each bound to a setting: adds them to its pages, reads their values and shows
// problems and notes at them. User-interface thread.

#include "ui/BoundControls.h"
#include "ui/CheckedField.h"
#include "ui/FieldMessage.h"
#include "ui/NumberField.h"
#include "ui/TextField.h"

#include <functional>
#include <memory>
#include <vector>

class wxStaticBoxSizer;

namespace tarvin {

class SettingsForm {
public:
    struct Handlers {
        std::function<void()> confirm;
        // A message has come or gone, and the window may need another layout.
        std::function<void()> layOut;
    };

    // The controls show `given`.
    SettingsForm(DownloadSettings given, Handlers handlers) : given(std::move(given)), handlers(std::move(handlers)) {}

    // The settings as the controls show them. Settings without a control stay as they were given, and so do texts that
    // the user has left alone, to the code unit.
    DownloadSettings Settings() const;
    const DownloadSettings& Given() const { return given; }

    // Each adds a control to a group of a page. A grid has two columns.
    wxChoice* AddChoice(wxWindow* box, wxSizer& grid, KelTextView label, std::vector<KelText> entries,
                        TextSetting setting);
    // The entry of a value has the value as its index. Another value acts as `fallback`, and stays until the user
    // chooses an entry.
    wxChoice* AddNumberedChoice(wxWindow* box, wxSizer& grid, KelTextView label, KelTextView tip,
                                const std::vector<KelTextView>& entries, NumberSetting setting, int fallback);
    // The first entry stands for the empty text, each other one for itself.
    wxChoice* AddOptionalChoice(wxWindow* box, wxSizer& grid, KelTextView label, KelTextView tip,
                                std::vector<KelText> entries, TextSetting setting);
    void AddNumber(wxWindow* box, wxSizer& column, const NumberField::Description& description);
    wxCheckBox* AddCheckBox(wxWindow* box, KelTextView label, NumberSetting setting);
    void AddCharacter(wxWindow* box, wxSizer& grid, KelTextView label, KelTextView listName, NumberSetting isSent,
                      std::uint8_t DownloadSettings::*setting);
    // Calls `browse`, which may be empty, for the button to browse. The grid has three columns.
    TextField& AddText(wxWindow* box, wxFlexGridSizer& grid, const TextField::Description& description,
                       std::function<void(TextField&)> browse);
    // Adds a line that says when the setting has no effect.
    void AddEffectNote(wxWindow* box, wxSizer& column, NumberSetting setting);
    // Makes a list of the dialog calm, and takes its value over with `write`.
    void Adopt(wxChoice& list, std::function<void(DownloadSettings&)> write);

    // The user has browsed for this text: it counts at once.
    void TakeBrowsed(TextField& field, const KelText& text);
    // The user has changed this field: its problem is checked anew with the next confirmation.
    void FieldChanged(CheckedField& field);
    // Shows which settings have no effect with the others.
    void ShowEffects();

    // Whether the settings may be taken over. Otherwise the fields say why, and `first` is the first of them. A problem
    // that may stay is told once, and accepted with the next call.
    struct Verdict {
        bool isAccepted;
        wxWindow* first;
    };
    Verdict Check();

private:
    CheckedField& AddField(std::unique_ptr<CheckedField> field);

    DownloadSettings given;
    const Handlers handlers;
    // Each takes the value of one control over.
    std::vector<std::function<void(DownloadSettings&)>> writers;
    std::vector<std::unique_ptr<CheckedField>> fields;
    // Each shows whether one setting has an effect.
    std::vector<std::function<void(const DownloadSettings&)>> effects;
    std::vector<std::unique_ptr<FieldMessage>> notes;
    // Fields with a problem that the user has seen and may keep.
    std::vector<AnySetting> told;
};

// A grid for a group, and the group itself.
wxFlexGridSizer* MakeGrid(wxWindow* window, int columnCount, int verticalGap);
wxStaticBoxSizer* MakeGroup(wxWindow* window, KelTextView label);
void Fill(wxStaticBoxSizer* group, wxSizer* content);

}
