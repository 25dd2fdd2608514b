#include "ui/BoardPainter.h"

#include "ui/BoardColours.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include <wx/graphics.h>

namespace tarvin {

namespace {

// Heights in parts of the pane. Two metres from the screen a character needs 8 mm, so the number takes what it can get.
constexpr double numberHeight = 0.26;
constexpr double textHeight = 0.058;
constexpr double textOfWidth = 0.036;
constexpr int leastText = 11; // DIP

// The text broken anywhere into lines of at most `width`. A number has no blanks to break at.
std::vector<wxString> BrokenAnywhere(const wxDC& dc, const wxString& text, int width) {
    wxArrayInt widths;
    std::vector<wxString> lines;
    dc.GetPartialTextExtents(text, widths);
    std::size_t start = 0;
    for (std::size_t index = 0; index < text.length(); ++index) {
        const int before = start == 0 ? 0 : widths[start - 1];
        if (index > start && widths[index] - before > width) {
            lines.push_back(text.Mid(start, index - start));
            start = index;
        }
    }
    lines.push_back(text.Mid(start));
    return lines;
}

class Painter {
public:
    Painter(wxDC& dc, const wxWindow& window, BoardFonts& fonts, const BoardContent& content, const BoardRoom& room)
        : dc(dc),
          window(window),
          fonts(fonts),
          content(content),
          colours(ColoursOf(content.state, room.isDark)),
          isDark(room.isDark),
          exposed(room.exposed),
          textPixels(std::max<double>(window.FromDIP(leastText), std::min(textHeight * room.size.GetHeight(),
                                                                          textOfWidth * room.size.GetWidth()))),
          height(room.size.GetHeight()),
          buttonsTop(room.size.GetHeight() - room.buttons),
          edge(std::max(window.FromDIP(8), static_cast<int>(textPixels * 0.6))),
          left(edge + static_cast<int>(textPixels * 0.8)),
          right(room.size.GetWidth() - static_cast<int>(textPixels * 0.8)),
          y(static_cast<int>(textPixels * 0.4)) {}

    BoardPlaces Paint() {
        dc.SetBackground(ToColour(colours.ground));
        dc.Clear();
        Fill(wxRect(0, 0, edge, height), colours.edge);
        PaintNumber();
        PaintTitle();
        if (content.bar)
            PaintBar();
        PaintFacts();
        PaintRecents();
        return std::move(places);
    }

private:
    // The row of this height at `y`, from edge to edge.
    wxRect Row(int rowHeight) const { return {0, y, right, rowHeight}; }

    bool IsExposed(const wxRect& place) const { return exposed.Contains(place) != wxOutRegion; }

    void Use(double pixels, bool isBold, Rgb colour) {
        dc.SetFont(fonts.Font(window, std::max(static_cast<int>(pixels), 1), isBold));
        dc.SetTextForeground(ToColour(colour));
    }

    void Fill(const wxRect& place, Rgb colour) {
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.SetBrush(ToColour(colour));
        dc.DrawRectangle(place);
    }

    // As large as the room allows, and whole: a number that is cut off is another number.
    void PaintNumber() {
        if (content.number.empty() && content.share.empty())
            return;
        const int room = static_cast<int>(numberHeight * height);
        if (!IsExposed(Row(room))) {
            y += room;
            return;
        }
        const wxString share = ToWx(content.share);
        int shareWidth = 0;
        if (!share.empty()) {
            Use(room * 0.75, true, colours.edge);
            const wxSize extent = dc.GetTextExtent(share);
            shareWidth = extent.GetWidth() + static_cast<int>(textPixels);
            DrawText(share, right - extent.GetWidth(), y + (room - extent.GetHeight()) / 2);
        }
        const wxString number = ToWx(content.number);
        const int width = std::max(right - left - shareWidth, 1);
        std::vector<wxString> lines;
        int lineHeight = 0;
        constexpr double smaller = 0.9;
        for (double pixels = room; pixels > 1; pixels *= smaller) {
            Use(pixels, true, colours.text);
            lineHeight = dc.GetTextExtent("0").GetHeight();
            const int lineCount = std::max(room / lineHeight, 1);
            lines = BrokenAnywhere(dc, number, width);
            // A short number stays on one line while that costs little of its size.
            const bool isReadable = pixels > room * 0.4 || lines.size() == 1;
            if (static_cast<int>(lines.size()) <= (isReadable ? 1 : lineCount))
                break;
        }
        int top = y + std::max((room - lineHeight * static_cast<int>(lines.size())) / 2, 0);
        for (const wxString& line : lines) {
            DrawText(line, left, top);
            top += lineHeight;
        }
        y += room;
    }

    void PaintTitle() {
        places.title = Row(static_cast<int>(textPixels * 1.75));
        if (IsExposed(places.title)) {
            // The largest of some sizes at which the title fits, from its width at one of them. Only a title that fits
            // at none is measured again.
            constexpr double scales[] = {1.35, 1.2, 1.05, 0.9};
            const wxString title = ToWx(content.title);
            Use(textPixels * scales[0], true, colours.edge);
            const int widthAtLargest = WidthOf(title);
            const auto* const scale = std::ranges::find_if(
                scales, [&](double each) { return widthAtLargest * each <= (right - left) * scales[0]; });
            const bool fits = scale != std::end(scales);
            if (scale != std::begin(scales))
                Use(textPixels * (fits ? *scale : *std::rbegin(scales)), true, colours.edge);
            DrawText(fits ? title : Fitting(title, right - left).text, left, y);
        }
        y += places.title.height;
        if (content.comment.empty())
            return;
        const wxRect row = Row(static_cast<int>(textPixels * 1.5));
        if (IsExposed(row)) {
            Use(textPixels, false, colours.text);
            DrawText(Fitting(ToWx(content.comment), right - left).text, left, y);
        }
        y += row.height;
    }

    void PaintBar() {
        const wxRect all(left, y, right - left, static_cast<int>(textPixels * 0.95));
        dc.SetPen(wxPen(ToColour(colours.edge), std::max(window.FromDIP(1), 1)));
        dc.SetBrush(ToColour(colours.track));
        dc.DrawRectangle(all);
        wxRect filled = all;
        constexpr double blockShare = 0.2;
        if (content.isBarMoving) {
            filled.x += static_cast<int>(*content.bar * (1 - blockShare) * all.width);
            filled.width = static_cast<int>(blockShare * all.width);
        } else {
            filled.width = static_cast<int>(*content.bar * all.width);
        }
        Fill(filled, colours.edge);
        y += all.height + static_cast<int>(textPixels * 0.5);
    }

    void PaintFacts() {
        const int rowHeight = static_cast<int>(textPixels * 1.45);
        for (const BoardContent::Fact& fact : content.facts) {
            if (y + rowHeight > buttonsTop)
                return;
            places.facts.push_back(Row(rowHeight));
            if (IsExposed(places.facts.back()))
                PaintFact(fact);
            y += rowHeight;
        }
    }

    void PaintFact(const BoardContent::Fact& fact) {
        Use(textPixels * 0.9, false, colours.faint);
        const wxString caption = ToWx(fact.caption);
        DrawText(caption, left, y + static_cast<int>(textPixels * 0.1));
        const int captionWidth = WidthOf(caption) + static_cast<int>(textPixels * 0.7);
        Use(textPixels, false, colours.text);
        const Text value = Fitting(ToWx(fact.value), right - left - captionWidth);
        DrawText(value.text, right - value.width, y);
    }

    void PaintRecents() {
        y += static_cast<int>(textPixels * 0.35);
        Fill(wxRect(left, y, right - left, std::max(window.FromDIP(1), 1)), colours.faint);
        y += static_cast<int>(textPixels * 0.35);
        const double rowText = textPixels * 0.88;
        const int rowHeight = static_cast<int>(rowText * 1.4);
        const int sign = static_cast<int>(rowText * 0.6);
        const auto paintRow = [&](const wxString& text, Rgb signColour, Rgb textColour) {
            if (IsExposed(Row(rowHeight))) {
                dc.SetPen(*wxTRANSPARENT_PEN);
                dc.SetBrush(ToColour(signColour));
                dc.DrawEllipse(left, y + (rowHeight - sign) / 2, sign, sign);
                Use(rowText, false, textColour);
                const int textLeft = left + static_cast<int>(rowText);
                DrawText(Fitting(text, right - textLeft).text, textLeft, y);
            }
            y += rowHeight;
        };
        if (!content.unseenNote.empty() && y + rowHeight <= buttonsTop)
            paintRow(ToWx(content.unseenNote), SignColour(TransferOutcome::Failed, isDark), colours.text);
        for (const BoardContent::Recent& recent : content.recents) {
            if (y + rowHeight > buttonsTop)
                return;
            paintRow(ToWx(recent.text), SignColour(recent.outcome, isDark), colours.faint);
        }
    }

    // wxDC::DrawText measures the text again for its bounding box, which the board does not use.
    void DrawText(const wxString& text, int x, int top) {
        if (wxGraphicsContext* const graphics = dc.GetGraphicsContext())
            graphics->DrawText(text, x, top);
        else
            dc.DrawText(text, x, top);
    }

    int WidthOf(const wxString& text) const { return dc.GetTextExtent(text).GetWidth(); }

    struct Text {
        wxString text;
        int width; // in the font that is in use
    };

    // Measures once what fits, as nearly all texts do: to measure costs as much as to draw.
    Text Fitting(const wxString& text, int most) const {
        if (const int width = WidthOf(text); width <= most)
            return {text, width};
        const wxString shortened = wxControl::Ellipsize(text, dc, wxELLIPSIZE_END, most, wxELLIPSIZE_FLAGS_NONE);
        return {shortened, WidthOf(shortened)};
    }

    wxDC& dc;
    const wxWindow& window;
    BoardFonts& fonts;
    const BoardContent& content;
    const BoardColours& colours;
    const bool isDark;
    const wxRegion exposed;
    const double textPixels; // the usual height of a text
    const int height;
    const int buttonsTop;
    const int edge;
    const int left;
    const int right;
    int y; // of what comes next
    BoardPlaces places;
};

}

const wxFont& BoardFonts::Font(const wxWindow& window, int pixels, bool isBold) {
    if (const auto known = fonts.find({pixels, isBold}); known != fonts.end())
        return known->second;
    if (fonts.size() >= capacity)
        fonts.clear();
    wxFont font = window.GetFont();
    font.SetPixelSize(wxSize(0, pixels));
    font.SetWeight(isBold ? wxFONTWEIGHT_BOLD : wxFONTWEIGHT_NORMAL);
    return fonts[{pixels, isBold}] = font;
}

BoardPlaces PaintBoard(wxDC& dc, const wxWindow& window, BoardFonts& fonts, const BoardContent& content,
                       const BoardRoom& room) {
    return Painter(dc, window, fonts, content, room).Paint();
}

}
