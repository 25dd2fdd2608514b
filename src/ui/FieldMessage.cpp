#include "ui/FieldMessage.h"

#include "base/WindowMessages.h"
#include "ui/Accessibility.h"

#include <algorithm>

#include <wx/artprov.h>
#include <wx/settings.h>

namespace tarvin {

FieldMessage::FieldMessage(wxWindow* parent, Kind kind, const Room& room)
    : kind(kind),
      room(room),
      line(new wxBoxSizer(wxHORIZONTAL)),
      sign(new wxStaticBitmap(parent, wxID_ANY, wxBitmapBundle())),
      text(new wxStaticText(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, 0, "message")) {
    line->Add(sign, wxSizerFlags().Top().Border(wxRIGHT, parent->FromDIP(4)));
    line->Add(text, wxSizerFlags(1).Top());
    line->ShowItems(false);
    // A spacer keeps its room while the other items are hidden.
    if (room.reservedLines > 0)
        line->Add(0, std::max(room.reservedLines * parent->GetCharHeight(), parent->FromDIP(16)));
    ShowKind();
    text->Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        event.Skip();
        ShowKind();
    });
}

// Systems have no colour for problems. Each of these two stands out from its background.
void FieldMessage::ShowKind() {
    const wxArtID art = kind == Kind::Problem ? wxART_ERROR : wxART_INFORMATION;
    // The words beside it say what matters.
    NameControl(*sign, ToWx(kind == Kind::Problem ? tarvin::text::outlook::bad : tarvin::text::outlook::note));
    sign->SetBitmap(wxArtProvider::GetBitmapBundle(art, wxART_OTHER, {16, 16}));
    const bool isDark = wxSystemSettings::GetAppearance().IsUsingDarkBackground();
    const wxColour problem = isDark ? wxColour(0xFF, 0x9A, 0x9A) : wxColour(0xB0, 0x00, 0x00);
    text->SetForegroundColour(kind == Kind::Problem ? problem : wxNullColour);
}

bool FieldMessage::Say(const wxString& words) {
    return Say(words, kind);
}

bool FieldMessage::Say(const wxString& words, Kind newKind) {
    const bool isShown = text->IsShown();
    const bool shallShow = !words.empty();
    if (!isShown && !shallShow)
        return false;
    if (kind != newKind) {
        kind = newKind;
        ShowKind();
    }
    text->SetLabel(wxControl::EscapeMnemonics(words));
    text->Wrap(text->ConvertDialogToPixels(wxSize(room.widestLine, 0)).GetWidth());
    // Hidden items take no room in a sizer. The spacer stays.
    sign->Show(shallShow);
    text->Show(shallShow);
    return true;
}

}
