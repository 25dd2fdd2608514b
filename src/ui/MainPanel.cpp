#include "ui/MainPanel.h"

#include "base/MoreMessages.h"
#include "base/System.h"
#include "base/Version.h"
#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/PassivePanel.h"
#include "ui/TouchTarget.h"

#include <algorithm>

namespace tarvin {

namespace {

constexpr int lampEdge = 10; // dialog units
constexpr float smallText = 0.85f;

}

// The Tab key visits the controls in the order in which they are made here.
MainPanel::MainPanel(wxWindow* parent, const Clock& clock) : wxPanel(parent) {
    // Without it each paint of a child, once a second on the board, asks this window to paint its ground.
    SetBackgroundStyle(wxBG_STYLE_SYSTEM);
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
    monitor = new MonitorArea(this, Units(180, 126), clock);
    body->Add(monitor, wxSizerFlags(1).Expand());
    column->Add(body, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, edge));
    column->AddSpacer(gap);
    SetSizer(column);
}

wxButton* MainPanel::AddButton(wxWindowID id, KelTextView label, KelTextView tip, int width) {
    auto* button = new wxButton(this, id, ToWx(label));
    const wxSize best = button->GetBestSize();
    const wxSize size = Units(width, 14);
    button->SetMinSize(
        wxSize(std::max(best.GetWidth(), size.GetWidth()), std::max(best.GetHeight(), size.GetHeight())));
    MakeTouchable(*button);
    button->SetToolTip(ToWx(tip));
    return button;
}

wxCheckBox* MainPanel::AddSwitch(KelTextView label, KelTextView tip) {
    wxCheckBox* box = MakeLeftCaptionBox(this, ToWx(label));
    box->SetName(wxControl::RemoveMnemonics(ToWx(label)));
    MakeTouchable(*box);
    box->SetToolTip(ToWx(tip));
    return box;
}

wxCheckBox* MainPanel::AddHandshake(KelTextView name, KelTextView tip) {
    auto* box = new wxCheckBox(this, wxID_ANY, wxString());
    NameControl(*box, ToWx(name));
    box->SetToolTip(ToWx(tip));
    return box;
}

wxSizer* MainPanel::StatusRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticText(this, wxID_ANY, ToWx(text::label::status)), wxSizerFlags().CenterVertical());
    row->AddSpacer(Units(3, 0).GetWidth());
    statusLine = new StatusLine(this, Units(216, 16));
    row->Add(statusLine, wxSizerFlags(1).Expand());
    return row;
}

wxSizer* MainPanel::TrafficLamp(Lamp*& lamp, const char* picture, KelTextView caption, KelTextView tip) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* label = new wxStaticText(this, wxID_ANY, ToWx(caption));
    lamp = new Lamp(this, picture, ToWx(caption), Units(lampEdge, lampEdge));
    label->SetToolTip(ToWx(tip));
    // The tip of a lamp that flickers cannot tell its state.
    lamp->SetTip(ToWx(tip), false);
    column->Add(label, wxSizerFlags().CenterHorizontal());
    column->Add(lamp, wxSizerFlags().CenterHorizontal());
    return column;
}

wxSizer* MainPanel::LampRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const int gap = Units(3, 0).GetWidth();
    row->Add(TrafficLamp(received, "lamp-received.svg", text::label::received, text::tip::received),
             wxSizerFlags().CenterVertical());
    row->AddSpacer(gap);
    row->Add(TrafficLamp(transmitted, "lamp-transmitted.svg", text::label::transmitted, text::tip::transmitted),
             wxSizerFlags().CenterVertical());
    row->AddSpacer(gap);
    progressBar = new ProgressBar(this, Units(111, 10));
    row->Add(progressBar, wxSizerFlags(1).Bottom());
    row->AddSpacer(3 * gap);
    logSwitch = AddSwitch(text::label::log, text::tip::log);
    row->Add(logSwitch, wxSizerFlags().Bottom());
    row->AddSpacer(3 * gap);
    viewSwitch = AddSwitch(text::label::view, text::tip::view);
    row->Add(viewSwitch, wxSizerFlags().Bottom());
    row->AddSpacer(gap);
    help = AddButton(wxID_HELP, text::label::help, text::tip::help, 31);
    row->Add(help, wxSizerFlags().Bottom());
    return row;
}

wxSizer* MainPanel::ButtonRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const int gap = Units(3, 0).GetWidth();
    changeSettings = AddButton(wxID_ANY, text::label::changeSettings, text::tip::changeSettings, 63);
    sendFile = AddButton(wxID_ANY, text::label::sendFile, text::tip::sendFile, 37);
    test = AddButton(wxID_ANY, text::label::test, text::tip::test, 50);
    receiveFile = AddButton(wxID_ANY, text::label::receiveFile, text::tip::receiveFile, 50);
    close = AddButton(wxID_CLOSE, text::label::close, text::tip::close, 31);
    row->Add(changeSettings);
    for (wxButton* button : {sendFile, test, receiveFile}) {
        row->AddSpacer(gap);
        // A hidden button keeps its room: the others must not move while a user reaches for them.
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

Lamp* MainPanel::AddHold(wxFlexGridSizer& grid, wxWindow* handshake, KelTextView caption, KelTextView tip) {
    if (handshake != nullptr)
        grid.Add(handshake, wxSizerFlags().Center());
    else
        grid.AddSpacer(0);
    const wxString name = wxControl::RemoveMnemonics(ToWx(caption));
    auto* lamp = new Lamp(this, "lamp-hold.svg", name, Units(lampEdge, lampEdge));
    auto* label = new wxStaticText(this, wxID_ANY, ToWx(caption));
    lamp->SetTip(ToWx(tip), true);
    label->SetToolTip(ToWx(tip));
    grid.Add(lamp, wxSizerFlags().Center());
    grid.Add(label, wxSizerFlags().CenterVertical());
    return lamp;
}

wxSizer* MainPanel::HoldColumn() {
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* grid = new wxFlexGridSizer(3, Units(0, 1).GetHeight(), Units(2, 0).GetWidth());
    // Without it a tick beside "CTS Hold" would look like a hold.
    auto* heed = new wxStaticText(this, wxID_ANY, ToWx(text::label::heed));
    heed->SetFont(GetFont().Scaled(smallText));
    grid->Add(heed);
    grid->AddSpacer(0);
    grid->AddSpacer(0);
    ctsSwitch = AddHandshake(text::label::ctsHandshake, text::tip::ctsHandshake);
    dsrSwitch = AddHandshake(text::label::dsrHandshake, text::tip::dsrHandshake);
    ctsHold = AddHold(*grid, ctsSwitch, text::label::ctsHold, text::tip::ctsHold);
    dsrHold = AddHold(*grid, dsrSwitch, text::label::dsrHold, text::tip::dsrHold);
    rlsHold = AddHold(*grid, nullptr, text::label::rlsHold, text::tip::rlsHold);
    xoffHold = AddHold(*grid, nullptr, text::label::xoffHold, text::tip::xoffHold);
    xoffSent = AddHold(*grid, nullptr, text::label::xoffSent, text::tip::xoffSent);
    column->Add(grid);
    column->AddSpacer(Units(0, 4).GetHeight());
    more = AddButton(wxID_ANY, text::more::button, text::more::buttonTip, 60);
    column->Add(more);
    column->AddStretchSpacer();
    column->Add(VersionFrame(), wxSizerFlags().Expand());
    return column;
}

wxWindow* MainPanel::VersionFrame() {
    auto* frame = new PassivePanel(this, wxDefaultSize, wxBORDER_RAISED, "version");
    const wxString system = ToWx(SystemName());
    version = new wxStaticText(frame, wxID_ANY, wxString(programVersion) + "\n" + wxControl::EscapeMnemonics(system),
                               wxDefaultPosition, wxDefaultSize, wxALIGN_CENTRE_HORIZONTAL);
    version->SetFont(GetFont().Scaled(smallText));
    version->Wrap(Units(66, 0).GetWidth());
    version->SetToolTip(ToWx(Filled(text::tip::version, {FromUtf8(programVersion), SystemName()})));
    auto* fill = new wxBoxSizer(wxVERTICAL);
    fill->AddStretchSpacer();
    fill->Add(version, wxSizerFlags().CenterHorizontal());
    fill->AddStretchSpacer();
    frame->SetSizer(fill);
    frame->SetMinSize(wxSize(Units(66, 0).GetWidth(), std::max(Units(0, 22).GetHeight(), fill->GetMinSize().y)));
    return frame;
}

}
