#pragma once
// The controls of the main window and their arrangement. Knows nothing of what they are for. User-interface thread.

#include "ui/Lamp.h"
#include "ui/Monitor.h"
#include "ui/ProgressBar.h"
#include "ui/StatusLine.h"
#include "ui/Wx.h"

namespace tarvin {

class MainPanel : public wxPanel {
public:
    explicit MainPanel(wxWindow* parent);

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
    Monitor* monitor;
    wxStaticText* version;

private:
    // Sizes are in dialog units, at which the window first appears; nothing is smaller than its text needs.
    wxSize Units(int width, int height) const { return ConvertDialogToPixels(wxSize(width, height)); }
    wxButton* AddButton(wxWindowID id, const wxString& label, const wxString& tip, int width);
    wxCheckBox* AddSwitch(const wxString& label, const wxString& name, const wxString& tip);
    wxSizer* StatusRow();
    wxSizer* LampRow();
    wxSizer* ButtonRow();
    wxSizer* HoldColumn();
    wxWindow* VersionFrame();
    wxSizer* TrafficLamp(Lamp*& lamp, const char* picture, const wxString& caption, const wxString& tip);
    Lamp* AddHold(wxFlexGridSizer& grid, wxWindow* handshake, const wxString& caption, const wxString& tip);
};

}
