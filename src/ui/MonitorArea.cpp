#include "ui/MonitorArea.h"

#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/PassivePanel.h"
#include "ui/Pictures.h"

#include <algorithm>
#include <utility>

#include <wx/dcbuffer.h>
#include <wx/settings.h>

namespace tarvin {

namespace {

constexpr int firstUseMilliseconds = 1000;
const wxSize pictureSize(598, 393); // of the drawings, for their proportions

}

MonitorArea::MonitorArea(wxWindow* parent, const wxSize& size, const Clock& clock)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, size, wxBORDER_SUNKEN | wxTAB_TRAVERSAL, "monitor") {
    SetMinSize(size);
    // Without it each paint of a child, once a second on the board, asks this window to paint its ground.
    SetBackgroundStyle(wxBG_STYLE_SYSTEM);
    view = new TrafficView(this);
    view->Hide();
    board = new Board(this, clock);
    board->Hide();
    picturePane = new PassivePanel(this, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE, "picture");
    tarvin::SetAccessible(*picturePane, AccessibleRole::Picture, ToWx(text::label::picture), wxString());
    // Needed for a buffered paint, which does not flicker.
    picturePane->SetBackgroundStyle(wxBG_STYLE_PAINT);
    picturePane->Bind(wxEVT_PAINT, &MonitorArea::PaintPicture, this);
    firstUse = new FirstUsePage(this);
    firstUseTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ShowPanes(); });
    auto* fill = new wxBoxSizer(wxVERTICAL);
    fill->Add(view, wxSizerFlags(1).Expand());
    fill->Add(board, wxSizerFlags(1).Expand());
    fill->Add(firstUse, wxSizerFlags(1).Expand());
    fill->Add(picturePane, wxSizerFlags(1).Expand());
    SetSizer(fill);
}

void MonitorArea::ShowTraffic(bool isTraffic) {
    isTrafficShown = isTraffic;
    ShowPanes();
}

void MonitorArea::ShowSnapshot(const EngineSnapshot& snapshot) {
    SetPicture(snapshot.hasLink ? "connection.svg" : "connection-broken.svg");
    board->Show(snapshot);
    firstUse->ShowSnapshot(snapshot);
    if (const bool was = std::exchange(isFirstUse, hasFirstUse && IsFirstUse(snapshot)); isFirstUse && !was)
        firstUseTimer.StartOnce(firstUseMilliseconds);
    ShowPanes();
}

void MonitorArea::ShowPanes() {
    const bool isPageWanted = !isTrafficShown && isFirstUse && !firstUseTimer.IsRunning();
    const bool isBoardWanted = !isTrafficShown && !isPageWanted && !board->Content().isEmpty;
    const bool isPictureWanted = !isTrafficShown && !isPageWanted && !isBoardWanted;
    // Called with each snapshot.
    if (view->IsShown() == isTrafficShown && board->IsShown() == isBoardWanted && firstUse->IsShown() == isPageWanted &&
        picturePane->IsShown() == isPictureWanted)
        return;
    view->Show(isTrafficShown);
    board->Show(isBoardWanted);
    firstUse->Show(isPageWanted);
    picturePane->Show(isPictureWanted);
    Layout();
}

void MonitorArea::SetPicture(std::string_view name) {
    // Called with each snapshot.
    if (name == pictureName)
        return;
    pictureName = name;
    picturePane->Refresh(false);
}

void MonitorArea::PaintPicture(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(picturePane);
    dc.SetBackground(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    dc.Clear();
    if (pictureName.empty())
        return;
    // As large as the pane allows without distortion, in its middle, and rendered in pixels of the screen to be sharp.
    const wxSize room = picturePane->GetClientSize();
    const double scale = std::min(static_cast<double>(room.GetWidth()) / pictureSize.GetWidth(),
                                  static_cast<double>(room.GetHeight()) / pictureSize.GetHeight());
    const wxSize size(static_cast<int>(pictureSize.GetWidth() * scale),
                      static_cast<int>(pictureSize.GetHeight() * scale));
    const double density = picturePane->GetContentScaleFactor();
    if (size.GetWidth() < 1 || size.GetHeight() < 1)
        return;
    wxBitmap bitmap = Picture(pictureName, size).GetBitmap(size * density);
    bitmap.SetScaleFactor(density);
    dc.DrawBitmap(bitmap, (room.GetWidth() - size.GetWidth()) / 2, (room.GetHeight() - size.GetHeight()) / 2, true);
}

}
