#pragma once
// A scrolling view of the lines of the trace in a fixed-width font. It follows its end unless the user has scrolled up,
// and the user can select and copy lines. Draws only the visible lines. User-interface thread.

#include "ui/TextLines.h"
#include "ui/Wx.h"

#include <vector>

namespace tarvin {

class TextPane : public wxWindow {
public:
    explicit TextPane(wxWindow* parent);

    // Repaints once for all of the lines.
    void Append(const std::vector<TrafficLine>& newLines);
    void Clear();

    const TextLines& Lines() const { return lines; }
    bool HasSelection() const { return lines.HasSelection(); }
    void SelectAll();
    // Copies the selection to the clipboard. Does nothing without one.
    void Copy();

    // Whether the pane stays at its end while lines are appended.
    bool IsFollowing() const { return isFollowing; }
    void Follow();
    // The number of the first visible line.
    std::uint64_t TopLine() const { return topLine; }
    // How often the text has been painted, for measurements.
    std::size_t PaintCount() const { return paintCount; }

private:
    void BindEvents();
    void MakeFont();
    void OnPaint(wxPaintEvent&);
    void DrawLine(wxDC& dc, std::uint64_t number, int y);
    wxColour ColourOf(TextLines::Kind kind) const;

    void OnScroll(wxScrollWinEvent& event);
    void OnWheel(wxMouseEvent& event);
    void OnLeftDown(wxMouseEvent& event);
    void OnLeftDoubleClick(wxMouseEvent& event);
    void OnMotion(wxMouseEvent& event);
    void OnKey(wxKeyEvent& event);
    bool MoveCaret(const wxKeyEvent& event);

    std::int64_t VisibleLines() const;
    std::int64_t VisibleColumns() const;
    std::uint64_t LastTop() const;
    void ScrollTo(std::int64_t line);
    void ScrollToColumn(std::int64_t column);
    void ShowPosition(TextLines::Position position);
    void ShowScrollbars();
    TextLines::Position PositionAt(const wxPoint& point) const;

    TextLines lines;
    std::uint64_t topLine = 0;
    std::size_t leftColumn = 0;
    bool isFollowing = true;
    bool isSelecting = false;
    int lineHeight = 1;
    double columnWidth = 1;
    int margin = 0;
    int wheelRest = 0; // rotation of the mouse wheel that is less than a step
    std::size_t paintCount = 0;
};

}
