// The signs beside the status and the lamps, as pixels.
#include "ui/Pictures.h"

#include "ui/Contrast.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <doctest/doctest.h>
#include <wx/image.h>

namespace tarvin::test {

namespace {

constexpr int side = 96;

// The colours that cover at least this share of the picture's square: neither the edges' mixed ones nor small details.
constexpr double leastShare = 0.02;

std::map<unsigned, double> SharesOfColours(const std::string& svg) {
    const wxImage image =
        wxBitmapBundle::FromSVG(svg.c_str(), wxSize(side, side)).GetBitmap(wxSize(side, side)).ConvertToImage();
    std::map<unsigned, double> shares;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            if (!image.HasAlpha() || image.GetAlpha(x, y) == wxALPHA_OPAQUE)
                shares[wxColour(image.GetRed(x, y), image.GetGreen(x, y), image.GetBlue(x, y)).GetRGB()] +=
                    1.0 / (side * side);
    std::erase_if(shares, [](const auto& entry) { return entry.second < leastShare; });
    return shares;
}

}

TEST_CASE("Pictures: each sign stands out from its ground, and its mark from the sign, in light and dark") {
    // Grounds of windows: GTK's and Windows' usual themes.
    const std::map<bool, std::vector<wxColour>> grounds = {{false, {wxColour("#f6f5f4"), wxColour("#f0f0f0")}},
                                                           {true, {wxColour("#353535"), wxColour("#202020")}}};
    const char* const signs[] = {"outlook-idle.svg", "outlook-busy.svg",  "outlook-good.svg",     "outlook-bad.svg",
                                 "lamp-hold.svg",    "lamp-received.svg", "lamp-transmitted.svg", "lamp-unlit.svg"};
    for (const char* const sign : signs) {
        for (const auto& theme : grounds) {
            const bool isDark = theme.first;
            CAPTURE(sign);
            CAPTURE(isDark);
            const auto colours = SharesOfColours(PictureText(sign, isDark));
            REQUIRE_FALSE(colours.empty());
            for (const wxColour& ground : theme.second) {
                double share = 0;
                for (const auto& [colour, itsShare] : colours)
                    if (Contrast(wxColour(colour), ground) >= signContrast)
                        share += itsShare;
                CHECK(share >= 0.12);
            }
            // The largest colour is the sign's own. A sign of more than one colour has a mark in it.
            const auto own = std::max_element(colours.begin(), colours.end(), [](const auto& one, const auto& other) {
                return one.second < other.second;
            });
            const bool hasMark = std::any_of(colours.begin(), colours.end(), [&](const auto& entry) {
                return Contrast(wxColour(entry.first), wxColour(own->first)) >= signContrast;
            });
            CHECK((colours.size() == 1 || hasMark));
        }
    }
}

}
