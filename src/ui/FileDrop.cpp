#include "ui/FileDrop.h"

#include "base/SettingsMessages.h"

#include <system_error>

namespace tarvin {

Result<std::filesystem::path> DroppedFile(const wxArrayString& names) {
    if (names.size() != 1)
        return Error{text::drop::severalFiles};
    std::filesystem::path path = ToPath(FromWx(names[0]));
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        return Error{Filled(text::drop::isFolder, {FromPath(path)})};
    return path;
}

wxDragResult FileDrop::OnDragOver(wxCoord, wxCoord, wxDragResult) {
    return handlers.isWanted() ? wxDragCopy : wxDragNone;
}

// Later: until this call returns, the program that the file comes from waits, and a dialog would hang both.
bool FileDrop::OnDropFiles(wxCoord, wxCoord, const wxArrayString& names) {
    if (!handlers.isWanted())
        return false;
    window.CallAfter([file = DroppedFile(names), kept = handlers] {
        if (!file)
            kept.refuse(file.Reason().text);
        else if (kept.isWanted())
            kept.take(*file);
    });
    return true;
}

}
