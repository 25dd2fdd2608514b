#include "ui/TrafficPainter.h"

#include "ui/Contrast.h"

#include <algorithm>
#include <cmath>

#include <wx/settings.h>

namespace tarvin {

TrafficColours TrafficColoursOn(const wxColour& ground) {
    const bool isDark = IsDark(ground);
    const auto chosen = [&](unsigned long light, unsigned long dark) {
        const unsigned long rgb = isDark ? dark : light;
        return wxColour(static_cast<unsigned char>(rgb >> 16), static_cast<unsigned char>((rgb >> 8) & 0xFF),
                        static_cast<unsigned char>(rgb & 0xFF));
    };
    TrafficColours colours;
    colours.ground = ground;
    colours.received = Readable(chosen(0x0B4F9E, 0x7FC1FF), ground);
    colours.transmitted = Readable(chosen(0x0F6B2F, 0x86DB9B), ground);
    constexpr double noteShare = 0.16;
    colours.noteGround = Mixed(chosen(0xC77700, 0xFFB347), ground, noteShare);
    colours.note = Readable(chosen(0x7A4100, 0xFFCB80), colours.noteGround);
    // On both grounds: the band of a note reaches below the gutter.
    colours.gutter = Readable(Readable(chosen(0x606060, 0xA8A8A8), ground), colours.noteGround);
    colours.foundGround = chosen(0xFFE36E, 0x6E5800);
    colours.found = Readable(chosen(0x000000, 0xFFFFFF), colours.foundGround);
    return colours;
}

TrafficColours PresentTrafficColours() {
    TrafficColours colours = TrafficColoursOn(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
    colours.selectionGround = wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT);
    colours.selection = wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHTTEXT);
    colours.focus = Readable(colours.selectionGround, colours.ground, signContrast);
    return colours;
}

wxColour TrafficPainter::ColourOf(TextLines::Kind kind) const {
    switch (kind) {
    case TextLines::Kind::Received:
        return colours.received;
    case TextLines::Kind::Transmitted:
        return colours.transmitted;
    case TextLines::Kind::Note:
        break;
    }
    return colours.note;
}

int TrafficPainter::X(std::size_t column) const {
    const double columns = static_cast<double>(column) - static_cast<double>(place.leftColumn);
    return place.textLeft + static_cast<int>(std::lround(columns * place.columnWidth));
}

TextLines::Columns TrafficPainter::Visible(TextLines::Columns columns, const TextLines::Line& line) const {
    const auto room = static_cast<std::size_t>(std::max(place.width - place.textLeft, 0) / place.columnWidth) + 2;
    const std::size_t begin = std::max(columns.begin, place.leftColumn);
    return {begin, std::max(begin, std::min({columns.end, place.leftColumn + room, line.text.size()}))};
}

void TrafficPainter::Fill(TextLines::Columns columns, const wxColour& colour, int y) {
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(colour);
    dc.DrawRectangle(X(columns.begin), y, X(columns.end) - X(columns.begin), place.lineHeight);
}

void TrafficPainter::DrawColumns(const TextLines::Line& line, TextLines::Columns columns, const wxColour& colour,
                                 int y) {
    columns = Visible(columns, line);
    if (columns.begin == columns.end)
        return;
    wxString text;
    for (std::size_t column = columns.begin; column < columns.end; ++column)
        text += wxUniChar(static_cast<wxUint32>(line.text[column]));
    dc.SetTextForeground(colour);
    dc.DrawText(text, X(columns.begin), y);
}

void TrafficPainter::DrawLine(const TextLines::Line& line, TextLines::Columns selected, const TextSearch& search,
                              int y) {
    if (line.kind == TextLines::Kind::Note) {
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.SetBrush(colours.noteGround);
        dc.DrawRectangle(0, y, place.width, place.lineHeight);
    }
    const wxColour colour = ColourOf(line.kind);
    // Three parts, each of which may be empty: before the selection, the selection, and after it.
    DrawColumns(line, {0, selected.begin}, colour, y);
    DrawColumns(line, {selected.end, line.text.size()}, colour, y);
    DrawFound(line, search, y);
    const TextLines::Columns shown = Visible(selected, line);
    if (shown.begin < shown.end) {
        Fill(shown, colours.selectionGround, y);
        DrawColumns(line, shown, colours.selection, y);
    }
}

void TrafficPainter::DrawFound(const TextLines::Line& line, const TextSearch& search, int y) {
    if (search.IsEmpty())
        return;
    const TextLines::Columns shown = Visible({0, line.text.size()}, line);
    // A place may begin in front of the visible columns and end in them.
    std::size_t from = shown.begin - std::min(shown.begin, search.Length());
    while (true) {
        const std::size_t begin = search.FindIn(line.text, from);
        if (begin == TextSearch::notFound || begin >= shown.end)
            return;
        const TextLines::Columns columns = Visible({begin, begin + search.Length()}, line);
        if (columns.begin < columns.end) {
            Fill(columns, colours.foundGround, y);
            DrawColumns(line, columns, colours.found, y);
        }
        from = begin + search.Length();
    }
}

void TrafficPainter::DrawGutter(const std::string& text, int x, int y) {
    dc.SetTextForeground(colours.gutter);
    dc.DrawText(text, x, y);
}

void TrafficPainter::DrawCaret(std::size_t column, int y) {
    if (column < place.leftColumn)
        return;
    dc.SetPen(wxPen(Readable(colours.gutter, colours.ground, 2 * textContrast)));
    dc.DrawLine(X(column), y, X(column), y + place.lineHeight);
}

}
