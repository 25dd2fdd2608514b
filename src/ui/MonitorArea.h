#pragma once
// The monitor area of the main window: shows either the traffic of the line or the board, a picture of the connection
// while the board has nothing to say, and a page that leads to a working line before the first one.
// User-interface thread.

#include "ui/Board.h"
#include "ui/FirstUsePage.h"
#include "ui/TrafficView.h"
#include "ui/Wx.h"

#include <string>
#include <string_view>

namespace tarvin {

class MonitorArea : public wxPanel {
public:
    // `clock` is the engine's, and outlives the area.
    MonitorArea(wxWindow* parent, const wxSize& size, const Clock& clock);

    void ShowTraffic(bool isTraffic);
    bool IsTrafficShown() const { return isTrafficShown; }
    TrafficView& View() { return *view; }
    TextPane& Traffic() { return view->Pane(); }
    Board& TheBoard() { return *board; }
    FirstUsePage& FirstUse() { return *firstUse; }
    wxWindow& PicturePane() { return *picturePane; }

    void ShowSnapshot(const EngineSnapshot& snapshot);
    // For a window that cannot change the settings.
    void LeaveOutFirstUse() { hasFirstUse = false; }

    // The name of a file of src/ui/pictures. An empty name removes the picture.
    void SetPicture(std::string_view name);
    const std::string& PictureName() const { return pictureName; }

private:
    void ShowPanes();
    void PaintPicture(wxPaintEvent&);

    TrafficView* view;
    Board* board;
    wxWindow* picturePane;
    FirstUsePage* firstUse;
    std::string pictureName;
    // A port that opens at the start gets the time to do so: the page would show for a moment only.
    wxTimer firstUseTimer;
    bool hasFirstUse = true;
    bool isFirstUse = false;
    bool isTrafficShown = false;
};

}
