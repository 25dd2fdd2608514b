#include "ui/TextPane.h"

#include "base/WindowMessages.h"
#include "ui/Accessibility.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <wx/dcbuffer.h>
#include <wx/settings.h>

namespace tarvin {

namespace {

constexpr int wheelLines = 3;
constexpr std::size_t gutterGap = 2; // columns between gutter and text

}

TextPane::TextPane(wxWindow* parent)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
               wxVSCROLL | wxHSCROLL | wxBORDER_NONE | wxFULL_REPAINT_ON_RESIZE, "traffic") {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    NameControl(*this, ToWx(text::label::traffic));
    SetCursor(wxCursor(wxCURSOR_IBEAM));
    time.Synchronise();
    MakeFont();
    BindEvents();
}

void TextPane::BindEvents() {
    Bind(wxEVT_PAINT, &TextPane::OnPaint, this);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        FitHeight();
        ShowScrollbars();
        Refresh(false);
    });
    for (const auto& type :
         {wxEVT_SCROLLWIN_TOP, wxEVT_SCROLLWIN_BOTTOM, wxEVT_SCROLLWIN_LINEUP, wxEVT_SCROLLWIN_LINEDOWN,
          wxEVT_SCROLLWIN_PAGEUP, wxEVT_SCROLLWIN_PAGEDOWN, wxEVT_SCROLLWIN_THUMBTRACK, wxEVT_SCROLLWIN_THUMBRELEASE})
        Bind(type, &TextPane::OnScroll, this);
    Bind(wxEVT_MOUSEWHEEL, &TextPane::OnWheel, this);
    Bind(wxEVT_LEFT_DOWN, &TextPane::OnLeftDown, this);
    Bind(wxEVT_LEFT_DCLICK, &TextPane::OnLeftDoubleClick, this);
    Bind(wxEVT_MOTION, &TextPane::OnMotion, this);
    Bind(wxEVT_LEFT_UP, [this](wxMouseEvent&) {
        isSelecting = false;
        if (HasCapture())
            ReleaseMouse();
    });
    // Without this handler the toolkit asserts when Windows takes the mouse away.
    Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) { isSelecting = false; });
    Bind(wxEVT_KEY_DOWN, &TextPane::OnKey, this);
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        Refresh(false);
        event.Skip();
    });
    for (const auto& type : {wxEVT_SET_FOCUS, wxEVT_KILL_FOCUS})
        Bind(type, [this](wxFocusEvent& event) {
            Refresh(false);
            event.Skip();
        });
    // The window was moved to a screen of another density.
    Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        MakeFont();
        event.Skip();
    });
}

void TextPane::MakeFont() {
    SetFont(wxFont(wxFontInfo(GetParent()->GetFont().GetFractionalPointSize()).Family(wxFONTFAMILY_TELETYPE)));
    lineHeight = std::max(GetCharHeight(), 1);
    // Measured over many characters: the toolkit rounds the width of a text to pixels.
    constexpr std::size_t sample = 100;
    columnWidth = std::max(GetTextExtent(wxString('0', sample)).GetWidth() / static_cast<double>(sample), 1.0);
    margin = FromDIP(3);
}

// The strips above and below the pane come and go. A following pane shows its last line at each height. Otherwise what
// was found or selected stays in sight: the strip that says so must not hide it.
void TextPane::FitHeight() {
    const std::uint64_t linesBefore = std::exchange(fittedLines, static_cast<std::uint64_t>(VisibleLines()));
    if (isFollowing) {
        topLine = LastTop();
        return;
    }
    const std::uint64_t caret = lines.Caret().line;
    const bool wasVisible = caret >= topLine && caret < topLine + linesBefore;
    if (HasSelection() && wasVisible && caret >= topLine + fittedLines)
        topLine = caret - fittedLines + 1;
}

void TextPane::Append(const std::vector<TrafficLine>& newLines) {
    for (const TrafficLine& line : newLines)
        lines.Append(line);
    // The line at the top may have been dropped.
    topLine = isFollowing ? LastTop() : std::max(topLine, lines.First());
    ShowScrollbars();
    Refresh(false);
}

void TextPane::Clear() {
    if (lines.Count() == 0 && isFollowing)
        return;
    lines.Clear();
    topLine = lines.First();
    leftColumn = 0;
    // The system clock may have been set. No line on the screen has an old time now.
    time.Synchronise();
    SetFollowing(true);
    ShowScrollbars();
    Refresh(false);
}

void TextPane::SelectAll() {
    lines.Select({lines.First(), 0}, lines.Last());
    Refresh(false);
}

void TextPane::Copy() {
    if (HasSelection())
        CopyToClipboard(
            wxString::FromUTF8(lines.SelectedText([this](std::uint64_t number) { return GutterHead(number); })));
}

std::string TextPane::AllText() const {
    return lines.AllText([this](std::uint64_t number) { return GutterHead(number); });
}

void TextPane::SetGutter(Gutter newGutter) {
    gutter = newGutter;
    ScrollToColumn(static_cast<std::int64_t>(leftColumn));
}

int TextPane::GutterWidth() const {
    return gutter == Gutter::Off ? 0 : static_cast<int>(std::lround((TrafficTime::columns + gutterGap) * columnWidth));
}

// The gutter of a line as it is copied and saved.
std::string TextPane::GutterHead(std::uint64_t number) const {
    return gutter == Gutter::Off ? std::string() : time.Text(gutter, lines, number) + std::string(gutterGap, ' ');
}

void TextPane::Highlight(TextSearch newSearch) {
    search = std::move(newSearch);
    Refresh(false);
}

TextLines::Position TextPane::SelectionStart() const {
    return HasSelection() ? std::min(lines.Anchor(), lines.Caret()) : TextLines::Position{topLine, 0};
}

TextLines::Position TextPane::SelectionEnd() const {
    return HasSelection() ? std::max(lines.Anchor(), lines.Caret()) : TextLines::Position{topLine, 0};
}

void TextPane::ShowPlace(const TextSearch::Place& place) {
    lines.Select(place.begin, place.end);
    wantedColumn = lines.Caret().column;
    // In the middle, so that the user sees what stands around it.
    if (!IsVisible({place.begin.line, leftColumn}))
        ScrollTo(static_cast<std::int64_t>(place.begin.line) - VisibleLines() / 2);
    ShowPosition(place.end);
    ShowPosition(place.begin);
    SetFollowing(false);
    Refresh(false);
}

void TextPane::SetFollowing(bool isOn) {
    if (isFollowing == isOn)
        return;
    isFollowing = isOn;
    if (onFollowingChanged)
        onFollowingChanged();
}

void TextPane::Follow() {
    ScrollTo(static_cast<std::int64_t>(LastTop()));
}

std::int64_t TextPane::VisibleLines() const {
    return std::max((GetClientSize().GetHeight() - 2 * margin) / lineHeight, 1);
}

std::int64_t TextPane::VisibleColumns() const {
    const int width = GetClientSize().GetWidth() - 2 * margin - GutterWidth();
    return std::max(static_cast<std::int64_t>(width / columnWidth), std::int64_t{1});
}

std::uint64_t TextPane::LastTop() const {
    const auto visible = static_cast<std::uint64_t>(VisibleLines());
    return lines.Count() > visible ? lines.End() - visible : lines.First();
}

void TextPane::ScrollTo(std::int64_t line) {
    topLine = static_cast<std::uint64_t>(
        std::clamp(line, static_cast<std::int64_t>(lines.First()), static_cast<std::int64_t>(LastTop())));
    // A user who scrolls back to the end wants to follow it again.
    SetFollowing(topLine == LastTop());
    ShowScrollbars();
    Refresh(false);
}

void TextPane::ScrollToColumn(std::int64_t column) {
    const auto longest = static_cast<std::int64_t>(lines.LongestLine());
    leftColumn = static_cast<std::size_t>(
        std::clamp(column, std::int64_t{0}, std::max(longest - VisibleColumns() + 1, std::int64_t{0})));
    ShowScrollbars();
    Refresh(false);
}

void TextPane::ShowScrollbars() {
    const auto show = [this](int orientation, std::uint64_t position, std::int64_t page, std::uint64_t range) {
        const int newPosition = static_cast<int>(position);
        const int newPage = static_cast<int>(page);
        const int newRange = static_cast<int>(range);
        // Setting a scroll bar repaints it, and most new lines change nothing here.
        if (GetScrollPos(orientation) != newPosition || GetScrollThumb(orientation) != newPage ||
            GetScrollRange(orientation) != newRange)
            SetScrollbar(orientation, newPosition, newPage, newRange);
    };
    show(wxVERTICAL, topLine - lines.First(), VisibleLines(), lines.Count());
    show(wxHORIZONTAL, leftColumn, VisibleColumns(), lines.LongestLine() + 1);
}

void TextPane::OnScroll(wxScrollWinEvent& event) {
    const bool isVertical = event.GetOrientation() == wxVERTICAL;
    const wxEventType type = event.GetEventType();
    std::int64_t at = isVertical ? static_cast<std::int64_t>(topLine) : static_cast<std::int64_t>(leftColumn);
    const std::int64_t first = isVertical ? static_cast<std::int64_t>(lines.First()) : 0;
    const std::int64_t page = isVertical ? VisibleLines() : VisibleColumns();
    if (type == wxEVT_SCROLLWIN_TOP)
        at = first;
    else if (type == wxEVT_SCROLLWIN_BOTTOM)
        at = static_cast<std::int64_t>(isVertical ? lines.End() : lines.LongestLine());
    else if (type == wxEVT_SCROLLWIN_LINEUP)
        --at;
    else if (type == wxEVT_SCROLLWIN_LINEDOWN)
        ++at;
    else if (type == wxEVT_SCROLLWIN_PAGEUP)
        at -= page;
    else if (type == wxEVT_SCROLLWIN_PAGEDOWN)
        at += page;
    else
        at = first + event.GetPosition();
    if (isVertical)
        ScrollTo(at);
    else
        ScrollToColumn(at);
}

void TextPane::OnWheel(wxMouseEvent& event) {
    // A touchpad sends parts of a step, which add up.
    wheelRest += event.GetWheelRotation();
    const int delta = std::max(event.GetWheelDelta(), 1);
    const int steps = wheelRest / delta * wheelLines;
    wheelRest %= delta;
    if (event.GetWheelAxis() == wxMOUSE_WHEEL_HORIZONTAL || event.ShiftDown())
        ScrollToColumn(static_cast<std::int64_t>(leftColumn) - steps);
    else
        ScrollTo(static_cast<std::int64_t>(topLine) - steps);
}

TextLines::Position TextPane::PositionAt(const wxPoint& point) const {
    // The point may be outside the pane while the user drags the mouse.
    const double row = std::floor((point.y - margin) / static_cast<double>(lineHeight));
    const double column =
        std::round((point.x - margin - GutterWidth()) / columnWidth) + static_cast<double>(leftColumn);
    const std::int64_t line = static_cast<std::int64_t>(topLine) + static_cast<std::int64_t>(row);
    if (line < static_cast<std::int64_t>(lines.First()))
        return {lines.First(), 0};
    return lines.Clamped({static_cast<std::uint64_t>(line), static_cast<std::size_t>(std::max(column, 0.0))});
}

void TextPane::OnLeftDown(wxMouseEvent& event) {
    SetFocus();
    const TextLines::Position position = PositionAt(event.GetPosition());
    wantedColumn = position.column;
    // With Shift the selection is extended from where it began.
    lines.Select(event.ShiftDown() ? lines.Anchor() : position, position);
    isSelecting = true;
    if (!HasCapture())
        CaptureMouse();
    Refresh(false);
}

void TextPane::OnLeftDoubleClick(wxMouseEvent& event) {
    const TextLines::Position position = PositionAt(event.GetPosition());
    lines.Select({position.line, 0}, {position.line, static_cast<std::size_t>(-1)});
    Refresh(false);
}

void TextPane::OnMotion(wxMouseEvent& event) {
    if (isSelecting)
        Extend(PositionAt(event.GetPosition()));
}

// Text that moves on cannot be selected: following ends with the first selected character.
void TextPane::Extend(TextLines::Position caret) {
    lines.Select(lines.Anchor(), caret);
    ShowPosition(lines.Caret());
    if (HasSelection())
        SetFollowing(false);
    Refresh(false);
}

bool TextPane::IsVisible(TextLines::Position position) const {
    return position.line >= topLine && position.line < topLine + static_cast<std::uint64_t>(VisibleLines());
}

void TextPane::ShowPosition(TextLines::Position position) {
    const auto line = static_cast<std::int64_t>(position.line);
    const auto top = static_cast<std::int64_t>(topLine);
    if (line < top)
        ScrollTo(line);
    else if (line >= top + VisibleLines())
        ScrollTo(line - VisibleLines() + 1);
    const auto column = static_cast<std::int64_t>(position.column);
    const auto left = static_cast<std::int64_t>(leftColumn);
    if (column < left)
        ScrollToColumn(column);
    else if (column > left + VisibleColumns())
        ScrollToColumn(column - VisibleColumns());
}

void TextPane::OnKey(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    const auto move = CaretMoveOf(key, event.ControlDown());
    if (event.ControlDown() && key == 'A')
        SelectAll();
    else if (event.ControlDown() && (key == 'C' || key == WXK_INSERT))
        Copy();
    else if (event.AltDown() || !move)
        event.Skip();
    else if (event.ShiftDown())
        SelectByKey(*move);
    else
        ScrollByKey(*move);
}

void TextPane::ScrollByKey(CaretMove move) {
    const auto top = static_cast<std::int64_t>(topLine);
    const auto left = static_cast<std::int64_t>(leftColumn);
    switch (move) {
    case CaretMove::Up:
        return ScrollTo(top - 1);
    case CaretMove::Down:
        return ScrollTo(top + 1);
    case CaretMove::PageUp:
        return ScrollTo(top - VisibleLines());
    case CaretMove::PageDown:
        return ScrollTo(top + VisibleLines());
    case CaretMove::Left:
        return ScrollToColumn(left - 1);
    case CaretMove::Right:
        return ScrollToColumn(left + 1);
    case CaretMove::LineStart:
    case CaretMove::TextStart:
        return ScrollTo(static_cast<std::int64_t>(lines.First()));
    case CaretMove::LineEnd:
    case CaretMove::TextEnd:
        return Follow();
    }
}

void TextPane::SelectByKey(CaretMove move) {
    // The user has scrolled away from an old selection, or has none: the new one begins at the last visible line.
    if (!HasSelection() && !IsVisible(lines.Caret())) {
        const std::uint64_t last = topLine + static_cast<std::uint64_t>(VisibleLines()) - 1;
        const TextLines::Position start = lines.Clamped({last, static_cast<std::size_t>(-1)});
        lines.Select(start, start);
        wantedColumn = start.column;
    }
    Extend(Moved(lines, lines.Caret(), move, wantedColumn, static_cast<std::uint64_t>(VisibleLines())));
    if (IsWithinLine(move))
        wantedColumn = lines.Caret().column;
}

void TextPane::OnPaint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    const TrafficColours colours = PresentTrafficColours();
    dc.SetBackground(colours.ground);
    dc.Clear();
    // A scroll bar that fades in or out asks for a paint of its own strip at each refresh of the screen.
    if (!GetUpdateRegion().GetBox().Intersects(GetClientRect()))
        return;
    ++paintCount;
    dc.SetFont(GetFont());
    TrafficPainter painter(dc, colours,
                           {margin + GutterWidth(), GetClientSize().GetWidth(), lineHeight, columnWidth, leftColumn});
    const std::uint64_t end = std::min(lines.End(), topLine + static_cast<std::uint64_t>(VisibleLines()) + 1);
    int y = margin;
    for (std::uint64_t number = topLine; number < end; ++number, y += lineHeight) {
        painter.DrawLine(lines.At(number), lines.SelectedIn(number), search, y);
        if (gutter != Gutter::Off)
            painter.DrawGutter(time.Text(gutter, lines, number), margin, y);
    }
    if (!HasFocus())
        return;
    if (IsVisible(lines.Caret()))
        painter.DrawCaret(lines.Caret().column, margin + static_cast<int>(lines.Caret().line - topLine) * lineHeight);
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.SetPen(wxPen(colours.focus));
    dc.DrawRectangle(GetClientRect());
}

}
