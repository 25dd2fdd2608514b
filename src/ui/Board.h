#pragma once
// The board: one look from two metres tells what is going on. It scales with its pane. User-interface thread.

#include "base/Clock.h"
#include "ui/BoardColours.h"
#include "ui/BoardContent.h"
#include "ui/BoardPainter.h"
#include "ui/Wx.h"

#include <functional>

#include <wx/timer.h>

namespace tarvin {

class Board : public wxPanel {
public:
    // `clock` is the engine's, and outlives the board.
    Board(wxWindow* parent, const Clock& clock);

    using wxPanel::Show;
    void Show(const EngineSnapshot& newSnapshot);
    const BoardContent& Content() const { return content; }

    // Called when the user presses a button.
    std::function<void(const TransferRecord& failure)> onSeen;
    std::function<void()> onHelp;

    wxButton& SeenButton() { return *seen; }

private:
    void Update();
    // Marks as little as can be for painting again. Each second of a silence paints one row.
    void RefreshChanges(const BoardContent& before);
    void PlaceButtons();
    void OnPaint(wxPaintEvent&);

    const Clock& clock;
    EngineSnapshot snapshot;
    BoardContent content;
    BoardPlaces places; // as last painted
    BoardFonts fonts;
    wxButton* seen;
    wxButton* help;
    wxTimer tick; // runs while the content tells how long something lasts
};

}
