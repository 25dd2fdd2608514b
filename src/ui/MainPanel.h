#pragma once
// The controls of the main window and their arrangement. User-interface thread.

#include "ui/Lamp.h"
#include "ui/MonitorArea.h"
#include "ui/ProgressBar.h"
#include "ui/StatusLine.h"
#include "ui/Wx.h"

namespace tarvin {

class MainPanel : public wxPanel {
public:
    // `clock` is the engine's, and outlives the panel.
    MainPanel(wxWindow* parent, const Clock& clock);

    StatusLine* statusLine;
    ProgressBar* progressBar;
    Lamp* received;
    Lamp* transmitted;
    Lamp* ctsHold;
    Lamp* dsrHold;
    Lamp* rlsHold;
    Lamp* xoffHold;
    Lamp* xoffSent;
    wxCheckBox* ctsSwitch;
    wxCheckBox* dsrSwitch;
    wxCheckBox* logSwitch;
    wxCheckBox* viewSwitch;
    wxButton* help;
    wxButton* changeSettings;
    wxButton* sendFile;
    wxButton* test;
    wxButton* receiveFile;
    wxButton* close;
    wxButton* more;
    MonitorArea* monitor;
    wxStaticText* version;

private:
    // Pixels for a size in dialog units.
    wxSize Units(int width, int height) const { return ConvertDialogToPixels(wxSize(width, height)); }
    // At least `width` dialog units wide, and as wide as its label needs.
    wxButton* AddButton(wxWindowID id, KelTextView label, KelTextView tip, int width);
    wxCheckBox* AddSwitch(KelTextView label, KelTextView tip);
    wxCheckBox* AddHandshake(KelTextView name, KelTextView tip);
    wxSizer* StatusRow();
    wxSizer* LampRow();
    wxSizer* ButtonRow();
    wxSizer* HoldColumn();
    wxWindow* VersionFrame();
    wxSizer* TrafficLamp(Lamp*& lamp, const char* picture, KelTextView caption, KelTextView tip);
    Lamp* AddHold(wxFlexGridSizer& grid, wxWindow* handshake, KelTextView caption, KelTextView tip);
};

// A check box with its caption on the left, where a click works too. Systems differ in the way that does both.
wxCheckBox* MakeLeftCaptionBox(wxWindow* parent, const wxString& caption);

}
