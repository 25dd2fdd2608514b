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

    // Each paint asks for them, and GTK works them out from its styles each time.
    wxVisualAttributes GetDefaultAttributes() const override { return attributes; }

private:
    void Renew();
    // Gives the content to screen readers.
    void Speak();
    // Marks as little as can be for painting again. Each step of the clock paints only the rows with a time.
    void RefreshChanges(const BoardContent& before);
    void StartTick();
    void OnTick();
    void PlaceButtons();
    void OnPaint(wxPaintEvent&);

    const Clock& clock;
    EngineSnapshot snapshot;
    BoardContent content;
    BoardPlaces places; // as last painted
    BoardFonts fonts;
    wxVisualAttributes attributes = wxPanel::GetDefaultAttributes();
    wxButton* seen;
    wxButton* help;
    wxString spoken;
    wxTimer tick; // runs while the content tells how long something lasts
    int ticks = 0;
    Clock::TimePoint shownAt; // the last snapshot
};

}
