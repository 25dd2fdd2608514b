#include "ui/ProgressBar.h"

#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/Contrast.h"

#include <algorithm>

#include <wx/dcbuffer.h>
#include <wx/settings.h>

namespace tarvin {

ProgressBar::ProgressBar(wxWindow* parent, const wxSize& size)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, size, wxFULL_REPAINT_ON_RESIZE | wxBORDER_NONE, "progress bar") {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    SetMinSize(size);
    SetCanFocus(false);
    Bind(wxEVT_PAINT, &ProgressBar::OnPaint, this);
}

int ProgressBar::FilledWidth() const {
    const int room = std::max(GetClientSize().GetWidth() - 2 * FromDIP(1), 0);
    return static_cast<int>(filled * room);
}

void ProgressBar::SetProgress(std::int64_t position, std::int64_t range) {
    filled = range > 0 ? std::clamp(static_cast<double>(position) / static_cast<double>(range), 0.0, 1.0) : 0.0;
    // Called with each snapshot: most of them move the bar by less than a pixel.
    if (FilledWidth() != paintedWidth)
        Refresh(false);
    const int percent = static_cast<int>(filled * 100);
    if (percent != tipPercent) {
        tipPercent = percent;
        SetToolTip(ToWx(Filled(text::tip::progress, {ToText(percent)})));
        SetAccessibleProgress(*this, ToWx(text::label::progress), percent);
    }
}

void ProgressBar::OnPaint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    paintedWidth = FilledWidth();
    const wxRect all = GetClientRect();
    const int frame = FromDIP(1);
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
    dc.DrawRectangle(all);
    wxRect inside = all;
    inside.Deflate(frame);
    dc.SetBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
    dc.DrawRectangle(inside);
    inside.SetWidth(paintedWidth);
    dc.SetBrush(Readable(wxColour(0x1D, 0x6F, 0xD1), wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW), signContrast));
    dc.DrawRectangle(inside);
}

}
