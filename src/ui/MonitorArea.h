#pragma once
// The monitor area of the main window: shows either the traffic of the line or a picture of the connection.
// User-interface thread.

#include "ui/TrafficView.h"
#include "ui/Wx.h"

#include <string>
#include <string_view>

namespace tarvin {

class MonitorArea : public wxPanel {
public:
    MonitorArea(wxWindow* parent, const wxSize& size);

    void ShowTraffic(bool isTraffic);
    bool IsTrafficShown() const { return view->IsShown(); }
    TrafficView& View() { return *view; }
    TextPane& Traffic() { return view->Pane(); }
    wxWindow& PicturePane() { return *picturePane; }

    // The name of a file of src/ui/pictures. An empty name removes the picture.
    void SetPicture(std::string_view name);
    const std::string& PictureName() const { return pictureName; }

private:
    void PaintPicture(wxPaintEvent&);

    TrafficView* view;
    wxWindow* picturePane;
    std::string pictureName;
};

}
