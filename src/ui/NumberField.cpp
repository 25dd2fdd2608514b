#include "ui/NumberField.h"

#include "ui/Accessibility.h"
#include "ui/CalmControls.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <wx/spinctrl.h>

namespace tarvin {

namespace {

constexpr int widestMessage = 210; // in dialog units: the longest one needs one line
constexpr int lowestEver = std::numeric_limits<std::int32_t>::min();
constexpr int highestEver = std::numeric_limits<std::int32_t>::max();

}

NumberField::NumberField(wxWindow* parent, wxSizer& column, const Description& description,
                         const DownloadSettings& given, const std::function<void()>& changed)
    : description(description),
      label(new wxStaticText(parent, wxID_ANY, ToWx(description.label))),
      spin(new wxSpinCtrl(parent, wxID_ANY)),
      message(parent, FieldMessage::Kind::Problem, {.reservedLines = 1, .widestLine = widestMessage}) {
    const int value = given.*description.setting;
    const wxString tip = ToWx(description.tip);
    NameControl(*spin, wxControl::RemoveMnemonics(ToWx(description.label)));
    spin->SetToolTip(tip);
    // A stored value that is out of range is shown, told and kept, so it is inside the range of the control.
    spin->SetRange(std::min(value, 0), std::max(value, HighestNumber(description.setting)));
    spin->SetIncrement(1);
    spin->SetValue(value);
    spin->SetInitialSize(spin->GetSizeFromTextSize(spin->GetTextExtent("00000").GetWidth()));
    IgnoreWheel(*spin);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(label, wxSizerFlags(1).CenterVertical().Border(wxRIGHT, parent->FromDIP(8)));
    row->Add(spin, wxSizerFlags().CenterVertical());
    column.Add(row, wxSizerFlags().Expand());
    column.Add(message.Sizer(), wxSizerFlags().Expand().Border(wxBOTTOM, parent->FromDIP(2)));
    shownText = spin->GetTextValue();
    spin->Bind(wxEVT_TEXT, [this, changed](wxCommandEvent&) {
        // The control also writes its text anew when it is asked for its value.
        const wxString text = spin->GetTextValue();
        if (text == std::exchange(shownText, text))
            return;
        changed();
        CheckTyped();
    });
    spin->Bind(wxEVT_SPINCTRL, [this](wxSpinEvent&) { CheckTaken(); });
}

// While the user types. The control would take its highest value in place of a higher one, in silence. So it gets room
// for every number, until the user has entered one in range again.
void NumberField::CheckTyped() {
    const wxString typed = spin->GetTextValue();
    wxLongLong_t number = highestEver;
    const bool isNumber = typed.ToLongLong(&number);
    const KelText wrong = NumberProblem(description.setting, isNumber ? number : highestEver);
    if (!wrong.empty() && isNumber)
        spin->SetRange(lowestEver, highestEver);
    Say(ToWx(wrong));
}

// The arrows stop at the ends of the range again. Not earlier: a narrower range would replace the control's value while
// the user still types another one.
void NumberField::CheckTaken() {
    const KelText wrong = NumberProblem(description.setting, spin->GetValue());
    if (wrong.empty() && spin->GetMax() == highestEver)
        spin->SetRange(0, HighestNumber(description.setting));
    Say(ToWx(wrong));
}

void NumberField::Write(DownloadSettings& settings) const {
    settings.*description.setting = spin->GetValue();
}

bool NumberField::Say(const wxString& words) {
    problem = words;
    return ShowMessage();
}

bool NumberField::Note(const wxString& words) {
    note = words;
    return ShowMessage();
}

bool NumberField::ShowMessage() {
    const bool mustLayOut = problem.empty() ? message.Say(note, FieldMessage::Kind::Note)
                                            : message.Say(problem, FieldMessage::Kind::Problem);
    // The room of the line is there already, so only the line itself is laid out.
    if (mustLayOut)
        message.Sizer()->Layout();
    return mustLayOut;
}

wxWindow& NumberField::Control() const {
    return *spin;
}

}
