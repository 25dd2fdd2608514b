#include "ui/Board.h"

#include "base/BoardMessages.h"
#include "ui/Accessibility.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <wx/dcbuffer.h>
#include <wx/settings.h>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

// The longer something lasts, the less its seconds matter, and each look at the clock costs a paint of the window.
std::chrono::seconds StepAfter(Clock::Duration lasting) {
    return lasting < 5s ? 1s : lasting < 1min ? 2s : 5s;
}

// A screen reader may read every change aloud.
constexpr int ticksBetweenWords = 5;

// The day stands beside the time of what is not of today.
KelText LocalTime(TransferRecord::Time time) {
    const wxDateTime local(std::chrono::system_clock::to_time_t(time));
    return FromWx(local.IsSameDate(wxDateTime::Now()) ? local.Format("%H:%M") : local.Format("%Y-%m-%d %H:%M"));
}

}

Board::Board(wxWindow* parent, const Clock& clock)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE | wxTAB_TRAVERSAL, "board"),
      clock(clock) {
    // Needed for a buffered paint, which does not flicker.
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    const auto makeButton = [this](KelTextView label, KelTextView tip) {
        auto* button = new wxButton(this, wxID_ANY, ToWx(label));
        button->SetToolTip(ToWx(tip));
        MakeTouchable(*button);
        button->SetSize(button->GetEffectiveMinSize());
        button->Hide();
        return button;
    };
    seen = makeButton(text::board::seen, text::board::seenTip);
    help = makeButton(text::board::help, text::board::helpTip);
    seen->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        if (content.unseen && onSeen)
            onSeen(*content.unseen);
    });
    help->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        if (onHelp)
            onHelp();
    });
    Bind(wxEVT_PAINT, &Board::OnPaint, this);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        PlaceButtons();
    });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        fonts.Clear();
        attributes = wxPanel::GetDefaultAttributes();
        Refresh(false);
        event.Skip();
    });
    tick.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTick(); });
    Renew();
    Speak();
}

void Board::Show(const EngineSnapshot& newSnapshot) {
    snapshot = newSnapshot;
    Renew();
    Speak();
    ticks = 0;
    shownAt = clock.Now();
    if (IsTimeShown(snapshot))
        StartTick();
    else
        tick.Stop();
}

void Board::StartTick() {
    const auto step = std::chrono::milliseconds(StepAfter(clock.Now() - shownAt)).count();
    if (!tick.IsRunning() || tick.GetInterval() != step)
        tick.Start(static_cast<int>(step));
}

void Board::OnTick() {
    Renew();
    if (++ticks % ticksBetweenWords == 0)
        Speak();
    StartTick();
}

void Board::Renew() {
    BoardContent described = DescribeBoard(snapshot, clock.Now(), LocalTime);
    if (described == content)
        return;
    const BoardContent before = std::exchange(content, std::move(described));
    const bool isFailure = content.unseen.has_value();
    if (seen->IsShown() != isFailure) {
        seen->Show(isFailure);
        help->Show(isFailure);
    }
    RefreshChanges(before);
}

void Board::Speak() {
    wxString words = ToWx(content.Spoken());
    if (words == spoken)
        return;
    spoken = std::move(words);
    tarvin::SetAccessible(*this, AccessibleRole::Pane, ToWx(text::board::name), spoken);
}

void Board::RefreshChanges(const BoardContent& before) {
    BoardContent sameRows = before;
    sameRows.title = content.title;
    if (before.facts.size() == content.facts.size())
        sameRows.facts = content.facts;
    if (sameRows != content) {
        Refresh(false);
        return;
    }
    if (before.title != content.title)
        RefreshRect(places.title, false);
    for (std::size_t row = 0; row < std::min(places.facts.size(), content.facts.size()); ++row)
        if (before.facts[row] != content.facts[row])
            RefreshRect(places.facts[row], false);
}

void Board::PlaceButtons() {
    const wxSize room = GetClientSize();
    const int gap = FromDIP(6);
    int right = room.GetWidth() - gap;
    for (wxButton* button : {help, seen}) {
        const wxSize size = button->GetSize();
        right -= size.GetWidth();
        button->Move(right, room.GetHeight() - gap - size.GetHeight());
        right -= gap;
    }
}

void Board::OnPaint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    const wxSize room = GetClientSize();
    const int buttons = seen->IsShown() ? room.GetHeight() - seen->GetPosition().y : 0;
    const bool isDark = wxSystemSettings::GetAppearance().IsUsingDarkBackground();
    places = PaintBoard(dc, *this, fonts, content, {room, buttons, isDark, GetUpdateRegion()});
}

}
