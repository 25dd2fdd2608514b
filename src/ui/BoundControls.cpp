#include "ui/BoundControls.h"

#include <algorithm>

namespace tarvin {

BoundChoice::BoundChoice(wxChoice* list, std::vector<KelText> texts, const KelText& given)
    : choice(list), entries(std::move(texts)), original(given) {
    auto selected = std::find(entries.begin(), entries.end(), given);
    // An empty text selects no entry.
    if (selected == entries.end() && !given.empty())
        selected = entries.insert(selected, given);
    for (const KelText& entry : entries)
        choice->Append(ToWx(entry));
    choice->SetSelection(selected == entries.end() ? wxNOT_FOUND : static_cast<int>(selected - entries.begin()));
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
