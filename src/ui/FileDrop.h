#pragma once
// Takes a file that the user drops on a window. User-interface thread.

#include "base/Result.h"
#include "ui/Wx.h"

#include <filesystem>
#include <functional>

#include <wx/dnd.h>

namespace tarvin {

// The one file of a drop. Fails, with a text for the user, for several files and for a folder.
Result<std::filesystem::path> DroppedFile(const wxArrayString& names);

class FileDrop : public wxFileDropTarget {
public:
    // All are called by the window's events, never while the drop is still under way: they may open dialogs.
    struct Handlers {
        std::function<void(const std::filesystem::path&)> take;
        // The drop was refused, and why.
        std::function<void(const KelText&)> refuse;
        // Whether a drop would be taken now; the pointer shows it.
        std::function<bool()> isWanted;
    };

    // For `window->SetDropTarget`, which owns the object.
    FileDrop(wxWindow& window, Handlers handlers) : window(window), handlers(std::move(handlers)) {}

    wxDragResult OnDragOver(wxCoord x, wxCoord y, wxDragResult suggested) override;
    bool OnDropFiles(wxCoord x, wxCoord y, const wxArrayString& names) override;

private:
    wxWindow& window;
    const Handlers handlers;
};

}
