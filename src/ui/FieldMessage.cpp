#include "ui/FieldMessage.h"

#include <wx/artprov.h>
#include <wx/settings.h>

namespace tarvin {

namespace {

constexpr int widestLine = 160; // in dialog units

}

FieldMessage::FieldMessage(wxWindow* parent, Kind kind)
    : kind(kind),
      line(new wxBoxSizer(wxHORIZONTAL)),
      text(new wxStaticText(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, 0, "message")) {
    const wxArtID sign = kind == Kind::Problem ? wxART_ERROR : wxART_INFORMATION;
    auto* image = new wxStaticBitmap(parent, wxID_ANY, wxArtProvider::GetBitmapBundle(sign, wxART_OTHER, {16, 16}));
    line->Add(image, wxSizerFlags().Top().Border(wxRIGHT, parent->FromDIP(4)));
    line->Add(text, wxSizerFlags(1).CenterVertical());
    line->ShowItems(false);
    ChooseColour();
    text->Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        event.Skip();
        ChooseColour();
    });
}

// Systems have no colour for problems. Each of these two stands out from its background.
void FieldMessage::ChooseColour() {
    if (kind != Kind::Problem)
        return;
    const bool isDark = wxSystemSettings::GetAppearance().IsUsingDarkBackground();
    text->SetForegroundColour(isDark ? wxColour(0xFF, 0x9A, 0x9A) : wxColour(0xB0, 0x00, 0x00));
}

bool FieldMessage::Say(const wxString& words) {
    const bool isShown = text->IsShown();
    const bool shallShow = !words.empty();
    if (!isShown && !shallShow)
        return false;
    text->SetLabel(wxControl::EscapeMnemonics(words));
    text->Wrap(text->ConvertDialogToPixels(wxSize(widestLine, 0)).GetWidth());
    // Hidden items take no room in a sizer.
    line->ShowItems(shallShow);
    return true;
}

}
