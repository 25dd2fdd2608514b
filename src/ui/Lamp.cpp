#include "ui/Lamp.h"

#include "ui/Pictures.h"

namespace tarvin {

Lamp::Lamp(wxWindow* parent, std::string_view litPicture, const wxString& name, const wxSize& size)
    : litName(litPicture), pictureSize(parent->ToDIP(size)) {
    MakePictures();
    Create(parent, wxID_ANY, unlit, wxDefaultPosition, size);
    SetMinSize(size);
    SetName(name);
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        MakePictures();
        SetBitmap(isLit ? lit : unlit);
        event.Skip();
    });
}

void Lamp::MakePictures() {
    lit = Picture(litName, pictureSize);
    unlit = Picture("lamp-unlit.svg", pictureSize);
}

void Lamp::SetLit(bool shallBeLit) {
    if (shallBeLit == isLit)
        return;
    isLit = shallBeLit;
    SetBitmap(isLit ? lit : unlit);
    if (isStateTold)
        ShowTip();
}

void Lamp::SetTip(const wxString& newTip, bool tellsState) {
    tip = newTip;
    isStateTold = tellsState;
    ShowTip();
}

void Lamp::ShowTip() {
    SetToolTip(isStateTold ? GetName() + (isLit ? ": on. " : ": off. ") + tip : tip);
}

}
