#include "base/SettingsMessages.h"
#include "settings/SettingsChoices.h"
#include "ui/Accessibility.h"
#include "ui/SettingsPages.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include <wx/statbox.h>

namespace tarvin {

namespace {

constexpr int deviceWidth = 80; // in dialog units

template <std::size_t count>
std::vector<KelText> Texts(const std::array<KelTextView, count>& choices) {
    return {choices.begin(), choices.end()};
}

// Without the folder of the by-id names, which is the same for all devices.
KelText ShortDevice(const KelText& device) {
    constexpr KelTextView byId = u"/dev/serial/by-id/";
    return device.starts_with(byId) ? device.substr(byId.size()) : device;
}

// Shows the device of the port that is chosen.
void ShowDevice(wxChoice& list, wxStaticText& label, const std::vector<FoundPort>& ports, const KelText& name) {
    const auto port =
        std::find_if(ports.begin(), ports.end(), [&](const FoundPort& found) { return found.name == name; });
    const bool isKnown = port != ports.end() && !port->device.empty();
    label.SetLabel(isKnown ? ToLabel(ShortDevice(port->device)) : ToWx(text::setting::noDeviceKnown));
    const wxString tip = isKnown ? ToWx(port->device) : wxString();
    label.SetToolTip(tip);
    list.SetToolTip(tip);
}

void AddPortList(wxWindow* box, wxFlexGridSizer& grid, SettingsForm& form, std::vector<FoundPort> ports) {
    std::vector<KelText> names;
    for (const FoundPort& port : ports)
        names.push_back(port.name);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    grid.Add(new wxStaticText(box, wxID_ANY, ToWx(text::dialog::port)), wxSizerFlags().CenterVertical());
    auto* list = new wxChoice(box, wxID_ANY);
    NameControl(*list, wxControl::RemoveMnemonics(ToWx(text::dialog::port)));
    auto* device = new wxStaticText(box, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                    wxST_ELLIPSIZE_MIDDLE | wxST_NO_AUTORESIZE);
    device->SetMinSize(wxSize(box->ConvertDialogToPixels(wxSize(deviceWidth, 0)).GetWidth(), -1));
    row->Add(list);
    row->Add(device, wxSizerFlags(1).CenterVertical().Border(wxLEFT, box->FromDIP(8)));
    grid.Add(row, wxSizerFlags().Expand());
    const BoundChoice bound(list, std::move(names), form.Given().port);
    form.Adopt(*list, [bound](DownloadSettings& settings) { settings.port = bound.Value(); });
    const auto show = [list, device, bound, kept = std::move(ports)] {
        ShowDevice(*list, *device, kept, bound.Value());
    };
    list->Bind(wxEVT_CHOICE, [show](wxCommandEvent&) { show(); });
    show();
}

// Gives all lists of the group the width of the widest one. The list of controllers has its own: its words are longer.
void MakeAsWide(wxWindow* box, const wxChoice* widest, const wxChoice* controller) {
    const int width = widest->GetBestSize().GetWidth();
    for (wxWindow* control : box->GetChildren()) {
        auto* list = dynamic_cast<wxChoice*>(control);
        if (list != nullptr && list != controller)
            list->SetMinSize(wxSize(std::max(width, list->GetBestSize().GetWidth()), -1));
    }
}

wxSizer* MakeLineGroup(wxWindow* page, SettingsForm& form, std::vector<FoundPort> ports) {
    auto* group = MakeGroup(page, text::dialog::lineGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(page, 2, 6);
    AddPortList(box, *grid, form, std::move(ports));
    const auto add = [&](KelTextView label, std::vector<KelText> entries, TextSetting setting) {
        return form.AddChoice(box, *grid, label, std::move(entries), setting);
    };
    add(text::dialog::baudRate, Texts(baudRateChoices), &DownloadSettings::baudRate);
    add(text::dialog::parity, Texts(parityChoices), &DownloadSettings::parity);
    add(text::dialog::dataBits, Texts(dataBitsChoices), &DownloadSettings::dataBits);
    wxChoice* const stopBits = add(text::dialog::stopBits, Texts(stopBitsChoices), &DownloadSettings::stopBits);
    wxChoice* const flow = add(text::dialog::flowControl, Texts(flowControlChoices), &DownloadSettings::flowControl);
    wxChoice* const controller =
        form.AddNumberedChoice(box, *grid, text::settingsPage::controller, text::settingsTip::controller,
                               {controllerKindChoices.begin(), controllerKindChoices.end()},
                               &DownloadSettings::controllerKind, controllerConversation);
    MakeAsWide(box, flow, controller);
    Fill(group, grid);
    const auto note =
        std::make_shared<FieldMessage>(box, FieldMessage::Kind::Note, FieldMessage::Room{.reservedLines = 2});
    group->Add(note->Sizer(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, page->FromDIP(6)));
    const auto tell = [&form, note] {
        if (note->Say(ToWx(StopBitsNote(form.Settings().stopBits))))
            note->Sizer()->Layout();
    };
    stopBits->Bind(wxEVT_CHOICE, [tell](wxCommandEvent&) { tell(); });
    tell();
    return group;
}

wxSizer* MakeDelayGroup(wxWindow* page, SettingsForm& form) {
    auto* group = MakeGroup(page, text::dialog::delayGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* column = new wxBoxSizer(wxVERTICAL);
    form.AddNumber(box, *column, {&DownloadSettings::characterDelayMilliseconds, text::dialog::characterDelay});
    form.AddNumber(box, *column, {&DownloadSettings::lineDelayMilliseconds, text::dialog::lineDelay});
    form.AddNumber(box, *column, {&DownloadSettings::transmitDelaySeconds, text::dialog::transmitDelay});
    Fill(group, column);
    return group;
}

wxSizer* MakeCharacterGroup(wxWindow* page, SettingsForm& form) {
    auto* group = MakeGroup(page, text::dialog::characterGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(page, 2, 6);
    form.AddCharacter(box, *grid, text::dialog::sendStartCode, text::dialog::startCharacter,
                      &DownloadSettings::sendStartCode, &DownloadSettings::startCharacter);
    form.AddCharacter(box, *grid, text::dialog::sendEndCode, text::dialog::endCharacter, &DownloadSettings::sendEndCode,
                      &DownloadSettings::endCharacter);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(grid, wxSizerFlags().Expand());
    form.AddEffectNote(box, *column, &DownloadSettings::sendEndCode);
    Fill(group, column);
    return group;
}

}

wxWindow* MakeLinePage(wxWindow* parent, SettingsForm& form, std::vector<FoundPort> ports) {
    auto* page = new wxPanel(parent);
    const int gap = page->FromDIP(6);
    auto* right = new wxBoxSizer(wxVERTICAL);
    wxSizer* const line = MakeLineGroup(page, form, std::move(ports));
    right->Add(MakeDelayGroup(page, form), wxSizerFlags().Expand());
    right->Add(MakeCharacterGroup(page, form), wxSizerFlags().Expand().Border(wxTOP, gap));
    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(line, wxSizerFlags().Top().Border(wxALL, gap));
    columns->Add(right, wxSizerFlags(1).Expand().Border(wxTOP | wxRIGHT | wxBOTTOM, gap));
    page->SetSizer(columns);
    return page;
}

}
