#include "ui/WindowPlacement.h"

#include "files/FileNames.h"
#include "files/NativeFile.h"
#include "files/Profile.h"

#include <algorithm>
#include <filesystem>
#include <string>

#include <wx/display.h>
#include <wx/stdpaths.h>

namespace tarvin {

namespace {

// In pixels. A user can drag a window of which this much of the title bar is on a screen.
constexpr int leastVisible = 40;

std::filesystem::path PlacementFile(KelTextView machineName) {
    wxStandardPaths& paths = wxStandardPaths::Get();
    paths.SetFileLayout(wxStandardPaths::FileLayout_XDG);
    return ToPath(FromWx(paths.GetUserConfigDir())) / "TarvinDL" / ToPath(FileNameFor(machineName) + u" window.ini");
}

bool IsReachable(const wxRect& place) {
    for (unsigned number = 0; number < wxDisplay::GetCount(); ++number) {
        const wxRect seen = wxDisplay(number).GetClientArea().Intersect(place);
        const bool isTopSeen = seen.GetTop() <= place.GetTop() + leastVisible;
        if (seen.GetWidth() >= leastVisible && seen.GetHeight() >= leastVisible && isTopSeen)
            return true;
    }
    return false;
}

}

bool RestorePlacement(wxTopLevelWindow& window, KelTextView machineName) {
    const auto profile = Profile::Read(PlacementFile(machineName));
    if (!profile || !profile->HasSection(u"Window"))
        return false;
    const auto number = [&profile](KelTextView key) {
        constexpr std::int32_t furthest = 100000;
        return std::clamp(profile->Integer(u"Window", key, 0), -furthest, furthest);
    };
    const wxSize least = window.GetMinClientSize();
    const wxRect place(number(u"x"), number(u"y"), std::max(number(u"width"), least.GetWidth()),
                       std::max(number(u"height"), least.GetHeight()));
    const bool isReachable = IsReachable(place);
    if (isReachable) {
        // The client size: the size of the frame around the window is not known before it is shown.
        window.SetClientSize(place.GetSize());
        window.Move(place.GetPosition());
    }
    if (number(u"maximised") != 0)
        window.Maximize();
    return isReachable;
}

void SavePlacement(const wxTopLevelWindow& window, KelTextView machineName) {
    const std::filesystem::path file = PlacementFile(machineName);
    const wxRect place(window.GetPosition(), window.GetClientSize());
    // The toolkit does not tell the normal place of a maximised window: the saved one stays.
    const auto stored = Profile::Read(file);
    const Profile* const known = window.IsMaximized() && stored ? &*stored : nullptr;
    std::string text = "[Window]\r\n";
    const auto add = [&](const char* key, int value) {
        const KelText name = FromUtf8(key);
        text +=
            std::string(key) + "=" + std::to_string(known ? known->Integer(u"Window", name, value) : value) + "\r\n";
    };
    if (window.IsIconized())
        return;
    add("x", place.GetX());
    add("y", place.GetY());
    add("width", place.GetWidth());
    add("height", place.GetHeight());
    text += std::string("maximised=") + (window.IsMaximized() ? "1" : "0") + "\r\n";
    std::error_code ignored;
    std::filesystem::create_directories(file.parent_path(), ignored);
    (void)ReplaceWholeFile(file, text);
}

void BringToFront(wxTopLevelWindow& window) {
    if (window.IsIconized())
        window.Iconize(false);
    window.Show();
    window.Raise();
    // The system answers later whether the window has the keyboard now. The call ends by itself when it has.
    if (!window.IsActive())
        window.RequestUserAttention();
}

}
