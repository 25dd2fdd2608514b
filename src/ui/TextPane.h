#pragma once
// A scrolling list of text lines in a fixed-width font, which follows its end unless the user has scrolled up, and from
// which can be selected and copied. Draws only what is visible. User-interface thread.

#include "ui/TextLines.h"
#include "ui/Wx.h"

#include <vector>

namespace tarvin {

class TextPane : public wxWindow {
public:
    explicit TextPane(wxWindow* parent);

    struct NewLine {
        TextLines::Kind kind;
        std::string text; // UTF-8
        bool extendsLast = false;
    };

    // One repaint for all of them.
    void Append(const std::vector<NewLine>& newLines);
    void Clear();

    const TextLines& Lines() const { return lines; }
    bool HasSelection() const { return lines.HasSelection(); }
    void SelectAll();
    // Onto the clipboard; nothing if nothing is selected.
    void Copy();

    bool IsFollowing() const { return isFollowing; }
    void Follow();
    // The first line shown.
    std::uint64_t TopLine() const { return topLine; }
    // How often the text has been painted, for whoever measures it.
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
    int wheelRest = 0;
    std::size_t paintCount = 0;
};

}
