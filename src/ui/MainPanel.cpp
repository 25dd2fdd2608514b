#include "ui/MainPanel.h"

#include "base/System.h"
#include "base/Version.h"
#include "ui/LeftCaption.h"
#include "ui/UiText.h"

#include <algorithm>

namespace tarvin {

namespace {

constexpr int lampEdge = 10; // dialog units

}

// Controls are made in the order in which the keyboard goes through them.
MainPanel::MainPanel(wxWindow* parent) : wxPanel(parent) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const int gap = Units(0, 3).GetHeight();
    const int edge = Units(3, 0).GetWidth();
    column->AddSpacer(gap);
    column->Add(StatusRow(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, edge));
    column->AddSpacer(gap);
    column->Add(LampRow(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, edge));
    column->AddSpacer(gap);
    column->Add(ButtonRow(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, edge));
    column->AddSpacer(gap);
    auto* body = new wxBoxSizer(wxHORIZONTAL);
    body->Add(HoldColumn(), wxSizerFlags().Expand());
    body->AddSpacer(edge);
    monitor = new Monitor(this, Units(180, 126));
    body->Add(monitor, wxSizerFlags(1).Expand());
    column->Add(body, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, edge));
    column->AddSpacer(gap);
    SetSizer(column);
}

wxButton* MainPanel::AddButton(wxWindowID id, const wxString& label, const wxString& tip, int width) {
    auto* button = new wxButton(this, id, label);
    const wxSize best = button->GetBestSize();
    const wxSize size = Units(width, 14);
    button->SetMinSize(
        wxSize(std::max(best.GetWidth(), size.GetWidth()), std::max(best.GetHeight(), size.GetHeight())));
    button->SetToolTip(tip);
    return button;
}

wxCheckBox* MainPanel::AddSwitch(const wxString& label, const wxString& name, const wxString& tip) {
    const bool hasCaption = !label.empty();
    auto* box = new wxCheckBox(this, wxID_ANY, label, wxDefaultPosition, wxDefaultSize,
                               hasCaption ? LeftCaptionStyle() : 0, wxDefaultValidator, name);
    box->SetToolTip(tip);
    if (hasCaption)
        PutCaptionLeft(*box);
    return box;
}

wxSizer* MainPanel::StatusRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticText(this, wxID_ANY, "Status"), wxSizerFlags().CenterVertical());
    row->AddSpacer(Units(3, 0).GetWidth());
    statusLine = new StatusLine(this, Units(216, 16));
    row->Add(statusLine, wxSizerFlags(1).Expand());
    return row;
}

wxSizer* MainPanel::TrafficLamp(Lamp*& lamp, const char* picture, const wxString& caption, const wxString& tip) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* label = new wxStaticText(this, wxID_ANY, caption);
    lamp = new Lamp(this, picture, caption, Units(lampEdge, lampEdge));
    label->SetToolTip(tip);
    lamp->SetTip(tip, false);
    column->Add(label, wxSizerFlags().CenterHorizontal());
    column->Add(lamp, wxSizerFlags().CenterHorizontal());
    return column;
}

wxSizer* MainPanel::LampRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const int gap = Units(3, 0).GetWidth();
    row->Add(TrafficLamp(received, "lamp-received.svg", "Rx", "Lit while characters arrive"),
             wxSizerFlags().CenterVertical());
    row->AddSpacer(gap);
    row->Add(TrafficLamp(transmitted, "lamp-transmitted.svg", "Tx", "Lit while characters are sent"),
             wxSizerFlags().CenterVertical());
    row->AddSpacer(gap);
    progressBar = new ProgressBar(this, Units(111, 10));
    row->Add(progressBar, wxSizerFlags(1).Bottom());
    row->AddSpacer(3 * gap);
    logSwitch = AddSwitch("&Log", "Log", "Write all that crosses the line to a log file");
    row->Add(logSwitch, wxSizerFlags().Bottom());
    row->AddSpacer(3 * gap);
    viewSwitch = AddSwitch("&View", "View", "Show the traffic on the line in place of the picture");
    row->Add(viewSwitch, wxSizerFlags().Bottom());
    row->AddSpacer(gap);
    help = AddButton(wxID_HELP, "&Help", "Open the help book (F1 opens it at the page that fits)", 31);
    row->Add(help, wxSizerFlags().Bottom());
    return row;
}

wxSizer* MainPanel::ButtonRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const int gap = Units(3, 0).GetWidth();
    changeSettings = AddButton(wxID_ANY, "Change S&ettings", "Port, folders, log and control characters", 63);
    sendFile = AddButton(wxID_ANY, "&Send File", "Send an NC file to the controller", 37);
    test = AddButton(wxID_ANY, "&Test", "Send a message to a plug that joins transmit and receive", 50);
    receiveFile = AddButton(wxID_ANY, "&Receive File", "Receive an NC file from the controller", 50);
    close = AddButton(wxID_CLOSE, "&Close", "Close the program", 31);
    row->Add(changeSettings);
    for (wxButton* button : {sendFile, test, receiveFile}) {
        row->AddSpacer(gap);
        // A button that comes or goes must not move the others under a finger.
        row->Add(button, wxSizerFlags().ReserveSpaceEvenIfHidden());
    }
    row->AddSpacer(gap);
    row->AddStretchSpacer();
    row->Add(close);
    changeSettings->SetDefault();
    sendFile->Hide();
    receiveFile->Hide();
    return row;
}

Lamp* MainPanel::AddHold(wxFlexGridSizer& grid, wxWindow* handshake, const wxString& caption, const wxString& tip) {
    if (handshake != nullptr)
        grid.Add(handshake, wxSizerFlags().Center());
    else
        grid.AddSpacer(0);
    const wxString name = wxControl::RemoveMnemonics(caption);
    auto* lamp = new Lamp(this, "lamp-hold.svg", name, Units(lampEdge, lampEdge));
    auto* label = new wxStaticText(this, wxID_ANY, caption);
    lamp->SetTip(tip, true);
    label->SetToolTip(tip);
    grid.Add(lamp, wxSizerFlags().Center());
    grid.Add(label, wxSizerFlags().CenterVertical());
    return lamp;
}

wxSizer* MainPanel::HoldColumn() {
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* grid = new wxFlexGridSizer(3, Units(0, 1).GetHeight(), Units(2, 0).GetWidth());
    ctsSwitch = AddSwitch("", "CTS handshake", "Heed CTS and steer RTS, with hardware flow control (Alt+O)");
    dsrSwitch = AddSwitch("", "DSR handshake", "Heed DSR and steer DTR, with hardware flow control (Alt+D)");
    ctsHold = AddHold(*grid, ctsSwitch, "CTS H&old", "Red while sending waits for the controller's CTS");
    dsrHold = AddHold(*grid, dsrSwitch, "&DSR Hold", "Red while sending waits for the controller's DSR");
    rlsHold = AddHold(*grid, nullptr, "RLS Hold", "Red while sending waits for the carrier signal");
    xoffHold = AddHold(*grid, nullptr, "XOff Hold", "Red while the controller has stopped the line with XOFF");
    xoffSent = AddHold(*grid, nullptr, "XOff Sent", "Red while the line is stopped because XOFF was sent");
    column->Add(grid);
    column->AddStretchSpacer();
    column->Add(VersionFrame(), wxSizerFlags().Expand());
    return column;
}

wxWindow* MainPanel::VersionFrame() {
    auto* frame = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_RAISED);
    const wxString system = ToWx(SystemName());
    version = new wxStaticText(frame, wxID_ANY, wxString(programVersion) + "\n" + wxControl::EscapeMnemonics(system),
                               wxDefaultPosition, wxDefaultSize, wxALIGN_CENTRE_HORIZONTAL);
    constexpr float small = 0.85f;
    version->SetFont(GetFont().Scaled(small));
    version->Wrap(Units(66, 0).GetWidth());
    version->SetToolTip("TarvinDL " + wxString(programVersion) + "\n" + system);
    auto* fill = new wxBoxSizer(wxVERTICAL);
    fill->AddStretchSpacer();
    fill->Add(version, wxSizerFlags().CenterHorizontal());
    fill->AddStretchSpacer();
    frame->SetSizer(fill);
    frame->SetMinSize(wxSize(Units(66, 0).GetWidth(), std::max(Units(0, 22).GetHeight(), fill->GetMinSize().y)));
    return frame;
}

}
