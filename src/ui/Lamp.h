#pragma once
// An indicator lamp: a hollow ring while unlit, a filled shape with a sign while lit, so that it can be read without
// seeing colours. User-interface thread.

#include "ui/Wx.h"

#include <string_view>

#include <wx/statbmp.h>

namespace tarvin {

class Lamp : public wxStaticBitmap {
public:
    // `litPicture` is a file of src/ui/pictures. `name` is the lamp's caption, which screen readers say.
    Lamp(wxWindow* parent, std::string_view litPicture, const wxString& name, const wxSize& size);

    // With `shallTellState` the tip also says whether the lamp is lit. For lamps that do not flicker.
    void SetTip(const wxString& newTip, bool shallTellState);

    // Repaints only after a change.
    void SetLit(bool shallBeLit);
    bool IsLit() const { return isLit; }

private:
    void MakePictures();
    void ShowTip();

    const std::string_view litPicture;
    const wxSize pictureSize;
    wxBitmapBundle lit;
    wxBitmapBundle unlit;
    wxString tip;
    bool tellsState = false;
    bool isLit = false;
};

}
