#include "ui/Lamp.h"

#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/Pictures.h"

namespace tarvin {

Lamp::Lamp(wxWindow* parent, std::string_view litPicture, const wxString& name, const wxSize& size)
    : litPicture(litPicture), pictureSize(parent->ToDIP(size)) {
    MakePictures();
    Create(parent, wxID_ANY, unlit, wxDefaultPosition, size);
    SetMinSize(size);
    SetName(name);
    // The user may change the theme while the program runs.
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        MakePictures();
        SetBitmap(isLit ? lit : unlit);
        event.Skip();
    });
}

void Lamp::MakePictures() {
    lit = Picture(litPicture, pictureSize);
    unlit = Picture("lamp-unlit.svg", pictureSize);
}

void Lamp::SetLit(bool shallBeLit) {
    if (shallBeLit == isLit)
        return;
    isLit = shallBeLit;
    SetBitmap(isLit ? lit : unlit);
    ShowTip();
}

void Lamp::SetTip(const wxString& newTip, bool shallTellState) {
    tip = newTip;
    tellsState = shallTellState;
    SetToolTip(tip);
    ShowTip();
}

void Lamp::ShowTip() {
    const KelText state = Filled(isLit ? text::tip::lampOn : text::tip::lampOff, {FromWx(GetName()), FromWx(tip)});
    tarvin::SetAccessible(*this, AccessibleRole::Picture, GetName(), ToWx(state));
    if (tellsState)
        SetToolTip(ToWx(state));
}

}
