#pragma once
// The program's pictures, drawn sharp at any scale and fitting light and dark themes. User-interface thread.

#include "ui/Wx.h"

#include <string_view>

#include <wx/bmpbndl.h>
#include <wx/iconbndl.h>

namespace tarvin {

// `name` is a file of src/ui/pictures; a name that is none of them gives an empty bundle. `size` is the picture's size
// in DIP where the caller does not ask for another.
wxBitmapBundle Picture(std::string_view name, const wxSize& size);

// The program's icon in the sizes that systems ask for.
wxIconBundle ProgramIcons();

}
