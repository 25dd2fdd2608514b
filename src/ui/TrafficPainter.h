#pragma once
// Draws lines of the traffic. User-interface thread.

#include "ui/TextSearch.h"
#include "ui/Wx.h"

#include <string>

namespace tarvin {

// All of them can be read on their ground, whatever colours the system has.
struct TrafficColours {
    wxColour ground;
    wxColour received;
    wxColour transmitted;
    wxColour note;
    wxColour noteGround; // a band that tells notes from traffic without a colour of the text
    wxColour gutter;
    wxColour selectionGround;
    wxColour selection;
    wxColour foundGround; // of the places that a search has found
    wxColour found;
    wxColour focus;
};

// For the ground of the system's text fields.
TrafficColours PresentTrafficColours();
TrafficColours TrafficColoursOn(const wxColour& ground);

class TrafficPainter {
public:
    // In pixels, columns apart.
    struct Place {
        int textLeft = 0; // of the first visible column
        int width = 0;    // of the pane
        int lineHeight = 1;
        double columnWidth = 1;
        std::size_t leftColumn = 0; // the first visible one
    };

    // `dc` has the font of the text.
    TrafficPainter(wxDC& dc, const TrafficColours& colours, const Place& place)
        : dc(dc), colours(colours), place(place) {}

    // Draws the visible columns of the line: it may be far longer than the pane.
    void DrawLine(const TextLines::Line& line, TextLines::Columns selected, const TextSearch& search, int y);
    // Draws over what the text has left there.
    void DrawGutter(const std::string& text, int x, int y);
    void DrawCaret(std::size_t column, int y);

private:
    void DrawFound(const TextLines::Line& line, const TextSearch& search, int y);
    void DrawColumns(const TextLines::Line& line, TextLines::Columns columns, const wxColour& colour, int y);
    void Fill(TextLines::Columns columns, const wxColour& colour, int y);
    int X(std::size_t column) const;
    TextLines::Columns Visible(TextLines::Columns columns, const TextLines::Line& line) const;
    wxColour ColourOf(TextLines::Kind kind) const;

    wxDC& dc;
    const TrafficColours& colours;
    const Place place;
};

}
