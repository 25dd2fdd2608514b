#include "ui/StatusLine.h"

#include "ui/Pictures.h"

#include <algorithm>
#include <string_view>

namespace tarvin {

namespace {

constexpr std::string_view signs[] = {"outlook-idle.svg", "outlook-busy.svg", "outlook-good.svg", "outlook-bad.svg"};

// The largest first; relative to the window's font.
constexpr double fontScales[] = {1.7, 1.5, 1.3, 1.15, 1.0};

}

StatusLine::StatusLine(wxWindow* parent, const wxSize& size)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, size, wxBORDER_SUNKEN | wxTAB_TRAVERSAL, "status line") {
    SetMinSize(size);
    const int edge = size.GetHeight() * 7 / 10;
    sign = new wxStaticBitmap(this, wxID_ANY, Picture(signs[0], ToDIP(wxSize(edge, edge))), wxDefaultPosition,
                              wxSize(edge, edge));
    label = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                             wxST_ELLIPSIZE_MIDDLE | wxST_NO_AUTORESIZE);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(sign, wxSizerFlags().CenterVertical().Border(wxLEFT | wxRIGHT, FromDIP(4)));
    row->Add(label, wxSizerFlags(1).CenterVertical().Border(wxRIGHT, FromDIP(3)));
    SetSizer(row);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        Layout();
        FitText();
    });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        ShowSign();
        event.Skip();
    });
}

void StatusLine::ShowStatus(const wxString& text, Outlook newOutlook) {
    if (newOutlook != outlook) {
        outlook = newOutlook;
        ShowSign();
    }
    if (text == shownText)
        return;
    shownText = text;
    label->SetLabel(wxControl::EscapeMnemonics(text));
    FitText();
}

void StatusLine::ShowSign() {
    sign->SetBitmap(Picture(signs[static_cast<std::size_t>(outlook)], ToDIP(sign->GetMinSize())));
}

void StatusLine::FitText() {
    const int width = label->GetSize().GetWidth();
    if (width == fittedWidth && shownText == fittedText)
        return;
    fittedWidth = width;
    fittedText = shownText;
    const wxFont usual = GetFont();
    wxFont chosen = usual;
    for (const double scale : fontScales) {
        chosen = usual.Scaled(static_cast<float>(scale));
        int textWidth = 0;
        GetTextExtent(shownText, &textWidth, nullptr, nullptr, nullptr, &chosen);
        if (textWidth <= width)
            break;
    }
    if (chosen != label->GetFont()) {
        label->SetFont(chosen);
        // A label that keeps its width keeps its height too, unless it is told.
        int height = 0;
        GetTextExtent("Ag", nullptr, &height, nullptr, nullptr, &chosen);
        label->SetMinSize(wxSize(-1, height));
        Layout();
    }
    SetToolTip(shownText);
    label->SetToolTip(shownText);
}

}
