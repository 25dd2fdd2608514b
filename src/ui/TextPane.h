#pragma once
// A scrolling view of the lines of the trace in a fixed-width font. It follows its end until the user scrolls away or
// selects text. The user can select and copy with mouse and keyboard. Draws only the visible lines. User-interface
// thread.

#include "ui/CaretMoves.h"
#include "ui/TextSearch.h"
#include "ui/TrafficPainter.h"
#include "ui/TrafficTime.h"
#include "ui/Wx.h"

#include <functional>
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
    // Copies the selection to the clipboard, with the gutter if that is shown. Does nothing without a selection.
    void Copy();
    // All lines in UTF-8 with CR LF, with the gutter if that is shown.
    std::string AllText() const;

    // What stands in front of the lines.
    void SetGutter(Gutter newGutter);
    Gutter ShownGutter() const { return gutter; }

    // Marks all places of the text from now on.
    void Highlight(TextSearch newSearch);
    // Where a search begins: the selection, or the first visible line without one.
    TextLines::Position SelectionStart() const;
    TextLines::Position SelectionEnd() const;
    // Selects the place and scrolls to it.
    void ShowPlace(const TextSearch::Place& place);

    // Whether the pane stays at its end while lines are appended.
    bool IsFollowing() const { return isFollowing; }
    void Follow();
    // `onChanged` is called after each change of IsFollowing.
    void WhenFollowingChanges(std::function<void()> onChanged) { onFollowingChanged = std::move(onChanged); }
    // The number of the first visible line.
    std::uint64_t TopLine() const { return topLine; }
    // How often the text has been painted, for measurements.
    std::size_t PaintCount() const { return paintCount; }

private:
    void BindEvents();
    void MakeFont();
    void OnPaint(wxPaintEvent&);
    void OnScroll(wxScrollWinEvent& event);
    void OnWheel(wxMouseEvent& event);
    void OnLeftDown(wxMouseEvent& event);
    void OnLeftDoubleClick(wxMouseEvent& event);
    void OnMotion(wxMouseEvent& event);
    void OnKey(wxKeyEvent& event);
    void ScrollByKey(CaretMove move);
    void SelectByKey(CaretMove move);
    void Extend(TextLines::Position caret);

    void FitHeight();
    int GutterWidth() const;
    std::string GutterHead(std::uint64_t number) const;
    bool IsVisible(TextLines::Position position) const;
    void SetFollowing(bool isOn);
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
    std::uint64_t fittedLines = 0; // that the pane had room for at its last size
    bool isFollowing = true;
    bool isSelecting = false;
    int lineHeight = 1;
    double columnWidth = 1;
    int margin = 0;
    int wheelRest = 0;            // rotation of the mouse wheel that is less than a step
    std::size_t wantedColumn = 0; // of a caret that moves up and down
    Gutter gutter = Gutter::Off;
    TrafficTime time;
    TextSearch search;
    std::function<void()> onFollowingChanged;
    std::size_t paintCount = 0;
};

}
