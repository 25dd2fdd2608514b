#pragma once
// One indicator lamp: unlit a hollow ring, lit a filled shape with a sign in it, so that nobody needs to see colours.
// Knows nothing of what it shows. User-interface thread.

#include "ui/Wx.h"

#include <string_view>

#include <wx/statbmp.h>

namespace tarvin {

class Lamp : public wxStaticBitmap {
public:
    // `litPicture` is what stands for the lit lamp; `name` is its caption, for who cannot see it.
    Lamp(wxWindow* parent, std::string_view litPicture, const wxString& name, const wxSize& size);

    // With `tellsState` the tip says whether the lamp is lit, too: for lamps that do not flicker.
    void SetTip(const wxString& newTip, bool tellsState);

    // Repaints only if that changes anything.
    void SetLit(bool shallBeLit);
    bool IsLit() const { return isLit; }

private:
    void MakePictures();
    void ShowTip();

    const std::string_view litName;
    const wxSize pictureSize;
    wxBitmapBundle lit;
    wxBitmapBundle unlit;
    wxString tip;
    bool isStateTold = false;
    bool isLit = false;
};

}
