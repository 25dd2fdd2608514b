#include "ui/BoundControls.h"

#include <algorithm>

namespace tarvin {

BoundChoice::BoundChoice(wxChoice* choice, std::vector<KelText> entries, const KelText& original)
    : choice(choice), entries(std::move(entries)), original(original) {
    std::vector<KelText>& shown = this->entries;
    auto selected = std::find(shown.begin(), shown.end(), original);
    // An empty text selects no entry.
    if (selected == shown.end() && !original.empty())
        selected = shown.insert(selected, original);
    for (const KelText& entry : shown)
        choice->Append(ToWx(entry));
    choice->SetSelection(selected == shown.end() ? wxNOT_FOUND : static_cast<int>(selected - shown.begin()));
}

KelText BoundChoice::Value() const {
    const int selected = choice->GetSelection();
    return selected == wxNOT_FOUND ? original : entries[static_cast<std::size_t>(selected)];
}

void BoundEdit::Show(const KelText& text) {
    original = text;
    edit->ChangeValue(ToWx(text));
    shown = edit->GetValue();
}

BoundEdit::Content BoundEdit::Value() const {
    const wxString text = edit->GetValue();
    return text == shown ? Content{original, false} : Content{FromWx(text), true};
}

}
