#pragma once
// The program's pictures: sharp at each scale, in colours that fit light and dark themes. User-interface thread.

#include "ui/Wx.h"

#include <span>
#include <string>
#include <string_view>

#include <wx/bmpbndl.h>
#include <wx/iconbndl.h>

namespace tarvin {

// A file of src/ui/pictures, compiled in.
struct PictureFile {
    std::string_view name;
    std::string_view svg;
};
extern const std::span<const PictureFile> pictureFiles;

// The text of the file `name` in the colours for a light or a dark ground. Empty if there is no such file. Any thread.
std::string PictureText(std::string_view name, bool isDark);

// The picture of the file `name`; an empty bundle if there is no such file. `size` in DIP is its size unless the caller
// asks the bundle for another one.
wxBitmapBundle Picture(std::string_view name, const wxSize& size);

// The program's icon in the sizes that systems ask for.
wxIconBundle ProgramIcons();

}
