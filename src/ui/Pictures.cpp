#include "ui/Pictures.h"

#include <algorithm>
#include <string>
#include <utility>

#include <wx/settings.h>

namespace tarvin {

namespace {

// Colours and their replacements in a dark theme: the light ones around the large pictures glare there, and the dark
// ones of the signs do not stand out.
constexpr std::pair<std::string_view, std::string_view> darkColours[] = {
    {"#eef3f8", "#1d242c"}, {"#dbe4ed", "#2a333d"}, {"#b7c4d1", "#42505e"}, {"#2b3a4a", "#5d7084"},
    {"#3d4f61", "#485c70"}, {"#52667a", "#3c4a58"}, {"#77818d", "#a3adb8"}, {"#c01c1c", "#ef4444"},
    {"#1d6fd1", "#3b8bea"}, {"#15803d", "#1e9c4e"},
};

// Colours stand in the files as # and six digits.
std::string InDarkColours(std::string_view svg) {
    std::string result(svg);
    for (std::size_t at = result.find('#'); at != std::string::npos; at = result.find('#', at + 1)) {
        const std::string_view colour = std::string_view(result).substr(at, 7);
        const auto found = std::find_if(std::begin(darkColours), std::end(darkColours),
                                        [colour](const auto& pair) { return pair.first == colour; });
        if (found != std::end(darkColours))
            result.replace(at, found->second.size(), found->second);
    }
    return result;
}

}

std::string PictureText(std::string_view name, bool isDark) {
    const auto found = std::find_if(pictureFiles.begin(), pictureFiles.end(),
                                    [name](const PictureFile& file) { return file.name == name; });
    if (found == pictureFiles.end())
        return {};
    return isDark ? InDarkColours(found->svg) : std::string(found->svg);
}

wxBitmapBundle Picture(std::string_view name, const wxSize& size) {
    const std::string svg = PictureText(name, wxSystemSettings::GetAppearance().IsUsingDarkBackground());
    return svg.empty() ? wxBitmapBundle() : wxBitmapBundle::FromSVG(svg.c_str(), size);
}

wxIconBundle ProgramIcons() {
    wxIconBundle icons;
    const wxBitmapBundle picture = Picture("tarvindl.svg", wxSize(64, 64));
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icons.AddIcon(picture.GetIcon(wxSize(size, size)));
    return icons;
}

}
