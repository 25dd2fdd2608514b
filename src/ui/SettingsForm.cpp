#include "ui/SettingsForm.h"

#include "base/SettingsMessages.h"
#include "settings/SettingsChoices.h"
#include "ui/Accessibility.h"
#include "ui/CalmControls.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <wx/statbox.h>

namespace tarvin {

namespace {

// The text of a character that has no name in the list.
KelText ByteText(std::uint8_t value) {
    constexpr KelTextView digits = u"0123456789ABCDEF";
    return {u'0', u'x', digits[value >> 4], digits[value & 15]};
}

wxChoice* AddList(wxWindow* box, wxSizer& grid, KelTextView label) {
    grid.Add(new wxStaticText(box, wxID_ANY, ToWx(label)), wxSizerFlags().CenterVertical());
    auto* list = new wxChoice(box, wxID_ANY);
    NameControl(*list, wxControl::RemoveMnemonics(ToWx(label)));
    grid.Add(list, wxSizerFlags().Left());
    return list;
}

}

wxFlexGridSizer* MakeGrid(wxWindow* window, int columnCount, int verticalGap) {
    auto* grid = new wxFlexGridSizer(columnCount, window->FromDIP(verticalGap), window->FromDIP(8));
    grid->AddGrowableCol(1);
    return grid;
}

wxStaticBoxSizer* MakeGroup(wxWindow* window, KelTextView label) {
    return new wxStaticBoxSizer(wxVERTICAL, window, ToWx(label));
}

void Fill(wxStaticBoxSizer* group, wxSizer* content) {
    group->Add(content, wxSizerFlags().Expand().Border(wxALL, group->GetStaticBox()->FromDIP(6)));
}

DownloadSettings SettingsForm::Settings() const {
    DownloadSettings settings = given;
    for (const auto& write : writers)
        write(settings);
    return settings;
}

void SettingsForm::Adopt(wxChoice& list, std::function<void(DownloadSettings&)> write) {
    IgnoreWheel(list);
    ConfirmWithEnter(list, handlers.confirm);
    writers.push_back(std::move(write));
}

wxChoice* SettingsForm::AddChoice(wxWindow* box, wxSizer& grid, KelTextView label, std::vector<KelText> entries,
                                  TextSetting setting) {
    wxChoice* const list = AddList(box, grid, label);
    const BoundChoice bound(list, std::move(entries), given.*setting);
    Adopt(*list, [bound, setting](DownloadSettings& settings) { settings.*setting = bound.Value(); });
    return list;
}

wxChoice* SettingsForm::AddNumberedChoice(wxWindow* box, wxSizer& grid, KelTextView label, KelTextView tip,
                                          const std::vector<KelTextView>& entries, NumberSetting setting,
                                          int fallback) {
    wxChoice* const list = AddList(box, grid, label);
    list->SetToolTip(ToWx(tip));
    for (const KelTextView entry : entries)
        list->Append(ToWx(entry));
    const bool isKnown = given.*setting >= 0 && given.*setting < std::ssize(entries);
    const int shown = isKnown ? given.*setting : fallback;
    list->SetSelection(shown);
    Adopt(*list, [list, setting, shown](DownloadSettings& settings) {
        if (list->GetSelection() != shown)
            settings.*setting = list->GetSelection();
    });
    list->Bind(wxEVT_CHOICE, [this](wxCommandEvent& event) {
        event.Skip();
        ShowEffects();
    });
    return list;
}

wxChoice* SettingsForm::AddOptionalChoice(wxWindow* box, wxSizer& grid, KelTextView label, KelTextView tip,
                                          std::vector<KelText> entries, TextSetting setting) {
    wxChoice* const list = AddList(box, grid, label);
    list->SetToolTip(ToWx(tip));
    // A value that is no longer offered stays in the list, so that the dialog changes nothing by itself.
    const KelText& value = given.*setting;
    if (!value.empty() && std::find(entries.begin() + 1, entries.end(), value) == entries.end())
        entries.push_back(value);
    for (const KelText& entry : entries)
        list->Append(ToWx(entry));
    const auto shown = value.empty() ? entries.begin() : std::find(entries.begin() + 1, entries.end(), value);
    list->SetSelection(static_cast<int>(shown - entries.begin()));
    Adopt(*list, [list, setting, texts = std::move(entries)](DownloadSettings& settings) {
        const int chosen = list->GetSelection();
        settings.*setting = chosen > 0 ? texts[static_cast<std::size_t>(chosen)] : KelText();
    });
    return list;
}

CheckedField& SettingsForm::AddField(std::unique_ptr<CheckedField> field) {
    fields.push_back(std::move(field));
    CheckedField& added = *fields.back();
    writers.push_back([&added](DownloadSettings& settings) { added.Write(settings); });
    return added;
}

void SettingsForm::AddNumber(wxWindow* box, wxSizer& column, const NumberField::Description& description) {
    // The handler keeps the place in the list: the field itself does not exist yet.
    const std::size_t place = fields.size();
    auto made =
        std::make_unique<NumberField>(box, column, description, given, [this, place] { FieldChanged(*fields[place]); });
    NumberField& field = *made;
    AddField(std::move(made));
    const NumberSetting setting = description.setting;
    effects.push_back([&field, setting](const DownloadSettings& settings) {
        field.Note(HasEffect(setting, settings) ? wxString() : ToWx(text::settingsNote::noEffect));
    });
}

TextField& SettingsForm::AddText(wxWindow* box, wxFlexGridSizer& grid, const TextField::Description& description,
                                 std::function<void(TextField&)> browse) {
    const std::size_t place = fields.size();
    TextField::Handlers fieldHandlers;
    fieldHandlers.changed = [this, place] { FieldChanged(*fields[place]); };
    if (browse)
        fieldHandlers.browse = [this, place, kept = std::move(browse)] {
            kept(static_cast<TextField&>(*fields[place]));
        };
    return static_cast<TextField&>(AddField(std::make_unique<TextField>(box, grid, description, given, fieldHandlers)));
}

wxCheckBox* SettingsForm::AddCheckBox(wxWindow* box, KelTextView label, NumberSetting setting) {
    auto* checkBox = new wxCheckBox(box, wxID_ANY, ToWx(label));
    checkBox->SetName(wxControl::RemoveMnemonics(ToWx(label)));
    checkBox->SetValue(given.*setting != 0);
    writers.push_back([checkBox, setting](DownloadSettings& settings) {
        // Another stored number than 0 or 1 stays unless the user clicks the box.
        if (checkBox->IsChecked() != (settings.*setting != 0))
            settings.*setting = checkBox->IsChecked() ? 1 : 0;
    });
    return checkBox;
}

void SettingsForm::AddCharacter(wxWindow* box, wxSizer& grid, KelTextView label, KelTextView listName,
                                NumberSetting isSent, std::uint8_t DownloadSettings::*setting) {
    wxCheckBox* const checkBox = AddCheckBox(box, label, isSent);
    auto* list = new wxChoice(box, wxID_ANY);
    NameControl(*list, ToWx(listName));
    list->SetToolTip(ToWx(listName));
    for (const ControlCharacter& character : controlCharacters)
        list->Append(ToWx(character.name));
    const auto entry = ControlCharacterEntry(given.*setting);
    if (!entry)
        list->Append(ToWx(ByteText(given.*setting)));
    list->SetSelection(static_cast<int>(entry.value_or(controlCharacters.size())));
    grid.Add(checkBox, wxSizerFlags().CenterVertical());
    grid.Add(list, wxSizerFlags().Right());
    Adopt(*list, [list, setting](DownloadSettings& settings) {
        const auto selected = static_cast<std::size_t>(list->GetSelection());
        // An entry after those of the table stands for the given value.
        if (selected < controlCharacters.size())
            settings.*setting = controlCharacters[selected].value;
    });
    const auto follow = [list, checkBox] { list->Enable(checkBox->IsChecked()); };
    checkBox->Bind(wxEVT_CHECKBOX, [follow](wxCommandEvent&) { follow(); });
    follow();
}

void SettingsForm::AddEffectNote(wxWindow* box, wxSizer& column, NumberSetting setting) {
    notes.push_back(std::make_unique<FieldMessage>(box, FieldMessage::Kind::Note, FieldMessage::Room{1, 160}));
    FieldMessage& note = *notes.back();
    column.Add(note.Sizer(), wxSizerFlags().Expand());
    effects.push_back([&note, setting](const DownloadSettings& settings) {
        if (note.Say(HasEffect(setting, settings) ? wxString() : ToWx(text::settingsNote::noEffect)))
            note.Sizer()->Layout();
    });
}

void SettingsForm::ShowEffects() {
    const DownloadSettings settings = Settings();
    for (const auto& show : effects)
        show(settings);
}

void SettingsForm::TakeBrowsed(TextField& field, const KelText& text) {
    // Counts even if the user cancels the dialog, so it goes into the given settings too.
    given.*field.Text() = text;
    field.Show(text);
    FieldChanged(field);
}

void SettingsForm::FieldChanged(CheckedField& field) {
    std::erase(told, field.Setting());
    if (field.Say({}))
        handlers.layOut();
}

SettingsForm::Verdict SettingsForm::Check() {
    const std::vector<SettingsProblem> problems = CheckSettings(Settings(), given);
    const auto mustBeTold = [this](const SettingsProblem& problem) {
        return !problem.mayStay || std::find(told.begin(), told.end(), problem.field) == told.end();
    };
    if (std::none_of(problems.begin(), problems.end(), mustBeTold))
        return {true, nullptr};
    told.clear();
    wxWindow* first = nullptr;
    for (const auto& field : fields) {
        field->ShowValue();
        const auto problem = std::find_if(problems.begin(), problems.end(),
                                          [&](const SettingsProblem& each) { return each.field == field->Setting(); });
        if (problem == problems.end()) {
            field->Say({});
            continue;
        }
        field->Say(ToWx(problem->mayStay ? Filled(text::setting::mayStay, {problem->message}) : problem->message));
        if (problem->mayStay)
            told.push_back(problem->field);
        if (first == nullptr)
            first = &field->Control();
    }
    handlers.layOut();
    return {false, first};
}

}
