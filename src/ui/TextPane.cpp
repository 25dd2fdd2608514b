#include "ui/TextPane.h"

#include <algorithm>
#include <cmath>

#include <wx/clipbrd.h>
#include <wx/dcbuffer.h>
#include <wx/settings.h>
#include <wx/textbuf.h>

namespace tarvin {

namespace {

constexpr int wheelLines = 3;

}

TextPane::TextPane(wxWindow* parent)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
               wxVSCROLL | wxHSCROLL | wxBORDER_NONE | wxFULL_REPAINT_ON_RESIZE, "traffic") {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    SetCursor(wxCursor(wxCURSOR_IBEAM));
    MakeFont();
    BindEvents();
}

void TextPane::BindEvents() {
    Bind(wxEVT_PAINT, &TextPane::OnPaint, this);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        // A following pane shows its last line at each height.
        if (isFollowing)
            topLine = LastTop();
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
    isFollowing = true;
    ShowScrollbars();
    Refresh(false);
}

void TextPane::SelectAll() {
    lines.Select({lines.First(), 0}, lines.Last());
    Refresh(false);
}

void TextPane::Copy() {
    if (!HasSelection() || !wxTheClipboard->Open())
        return;
    const wxString text = wxString::FromUTF8(lines.SelectedText());
    wxTheClipboard->SetData(new wxTextDataObject(wxTextBuffer::Translate(text)));
    wxTheClipboard->Close();
}

void TextPane::Follow() {
    ScrollTo(static_cast<std::int64_t>(LastTop()));
}

std::int64_t TextPane::VisibleLines() const {
    return std::max((GetClientSize().GetHeight() - 2 * margin) / lineHeight, 1);
}

std::int64_t TextPane::VisibleColumns() const {
    return std::max(static_cast<std::int64_t>((GetClientSize().GetWidth() - 2 * margin) / columnWidth),
                    std::int64_t{1});
}

std::uint64_t TextPane::LastTop() const {
    const auto visible = static_cast<std::uint64_t>(VisibleLines());
    return lines.Count() > visible ? lines.End() - visible : lines.First();
}

void TextPane::ScrollTo(std::int64_t line) {
    topLine = static_cast<std::uint64_t>(
        std::clamp(line, static_cast<std::int64_t>(lines.First()), static_cast<std::int64_t>(LastTop())));
    // A user who scrolls back to the end wants to follow it again.
    isFollowing = topLine == LastTop();
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
    const double column = std::round((point.x - margin) / columnWidth) + static_cast<double>(leftColumn);
    const std::int64_t line = static_cast<std::int64_t>(topLine) + static_cast<std::int64_t>(row);
    if (line < static_cast<std::int64_t>(lines.First()))
        return {lines.First(), 0};
    return lines.Clamped({static_cast<std::uint64_t>(line), static_cast<std::size_t>(std::max(column, 0.0))});
}

void TextPane::OnLeftDown(wxMouseEvent& event) {
    SetFocus();
    const TextLines::Position position = PositionAt(event.GetPosition());
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
    if (!isSelecting)
        return;
    lines.Select(lines.Anchor(), PositionAt(event.GetPosition()));
    ShowPosition(lines.Caret());
    Refresh(false);
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
    const auto top = static_cast<std::int64_t>(topLine);
    if (event.ControlDown() && key == 'A')
        SelectAll();
    else if (event.ControlDown() && (key == 'C' || key == WXK_INSERT))
        Copy();
    else if (event.ShiftDown() && MoveCaret(event))
        ShowPosition(lines.Caret());
    else if (key == WXK_UP || key == WXK_DOWN)
        ScrollTo(key == WXK_UP ? top - 1 : top + 1);
    else if (key == WXK_PAGEUP || key == WXK_PAGEDOWN)
        ScrollTo(key == WXK_PAGEUP ? top - VisibleLines() : top + VisibleLines());
    else if (key == WXK_LEFT || key == WXK_RIGHT)
        ScrollToColumn(static_cast<std::int64_t>(leftColumn) + (key == WXK_LEFT ? -1 : 1));
    else if (key == WXK_HOME)
        ScrollTo(static_cast<std::int64_t>(lines.First()));
    else if (key == WXK_END)
        Follow();
    else
        event.Skip();
}

// True if the key moves the caret.
bool TextPane::MoveCaret(const wxKeyEvent& event) {
    TextLines::Position caret = lines.Caret();
    switch (event.GetKeyCode()) {
    case WXK_UP:
        caret.line -= caret.line > lines.First() ? 1 : 0;
        break;
    case WXK_DOWN:
        caret.line += 1;
        break;
    case WXK_LEFT:
        caret.column -= caret.column > 0 ? 1 : 0;
        break;
    case WXK_RIGHT:
        caret.column += 1;
        break;
    case WXK_HOME:
        caret.column = 0;
        break;
    case WXK_END:
        caret.column = static_cast<std::size_t>(-1);
        break;
    default:
        return false;
    }
    lines.Select(lines.Anchor(), caret);
    Refresh(false);
    return true;
}

wxColour TextPane::ColourOf(TextLines::Kind kind) const {
    const bool isDark = wxSystemSettings::GetAppearance().IsUsingDarkBackground();
    switch (kind) {
    case TextLines::Kind::Received:
        return isDark ? wxColour(0x7F, 0xC1, 0xFF) : wxColour(0x0B, 0x4F, 0x9E);
    case TextLines::Kind::Transmitted:
        return isDark ? wxColour(0x86, 0xDB, 0x9B) : wxColour(0x0F, 0x6B, 0x2F);
    case TextLines::Kind::Note:
        break;
    }
    return wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
}

void TextPane::OnPaint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    dc.SetBackground(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
    dc.Clear();
    // A scroll bar that fades in or out asks for a paint of its own strip at each refresh of the screen.
    if (!GetUpdateRegion().GetBox().Intersects(GetClientRect()))
        return;
    ++paintCount;
    dc.SetFont(GetFont());
    const std::uint64_t end = std::min(lines.End(), topLine + static_cast<std::uint64_t>(VisibleLines()) + 1);
    int y = margin;
    for (std::uint64_t number = topLine; number < end; ++number, y += lineHeight)
        DrawLine(dc, number, y);
    if (HasFocus()) {
        dc.SetBrush(*wxTRANSPARENT_BRUSH);
        dc.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT)));
        dc.DrawRectangle(GetClientRect());
    }
}

void TextPane::DrawLine(wxDC& dc, std::uint64_t number, int y) {
    const TextLines::Line& line = lines.At(number);
    const auto x = [this](std::size_t column) {
        const double columns = static_cast<double>(column) - static_cast<double>(leftColumn);
        return margin + static_cast<int>(std::lround(columns * columnWidth));
    };
    const std::size_t visibleEnd = leftColumn + static_cast<std::size_t>(VisibleColumns()) + 2;
    const TextLines::Columns selected = lines.SelectedIn(number);
    // A line may be far longer than the pane: only the visible columns are drawn.
    // Three parts, each of which may be empty: before the selection, the selection, and after it.
    const std::size_t borders[] = {leftColumn, selected.begin, selected.end, line.text.size()};
    for (int part = 0; part < 3; ++part) {
        const std::size_t begin = std::max(borders[part], leftColumn);
        const std::size_t end = std::min({borders[part + 1], visibleEnd, line.text.size()});
        if (begin >= end)
            continue;
        const bool isSelected = part == 1;
        if (isSelected) {
            dc.SetPen(*wxTRANSPARENT_PEN);
            dc.SetBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT));
            dc.DrawRectangle(x(begin), y, x(end) - x(begin), lineHeight);
        }
        dc.SetTextForeground(isSelected ? wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHTTEXT)
                                        : ColourOf(line.kind));
        wxString text;
        for (std::size_t column = begin; column < end; ++column)
            text += wxUniChar(static_cast<wxUint32>(line.text[column]));
        dc.DrawText(text, x(begin), y);
    }
}

}
