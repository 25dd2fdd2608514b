#pragma once
// The monitor area: two panes that fill it, of which one is visible, the traffic of the line or a picture of the
// connection. Knows nothing of the engine. User-interface thread.

#include "ui/TextPane.h"
#include "ui/Wx.h"

#include <string>
#include <string_view>

namespace tarvin {

class Monitor : public wxPanel {
public:
    Monitor(wxWindow* parent, const wxSize& size);

    void ShowTraffic(bool isTraffic);
    bool IsTrafficShown() const { return traffic->IsShown(); }
    TextPane& Traffic() { return *traffic; }
    wxWindow& PicturePane() { return *picturePane; }

    // A file of src/ui/pictures; none removes the picture.
    void SetPicture(std::string_view name);
    const std::string& PictureName() const { return pictureName; }

private:
    void PaintPicture(wxPaintEvent&);

    TextPane* traffic;
    wxWindow* picturePane;
    std::string pictureName;
};

}
