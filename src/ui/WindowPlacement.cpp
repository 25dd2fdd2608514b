#include "ui/WindowPlacement.h"

#include "files/FileNames.h"
#include "files/NativeFile.h"
#include "files/Profile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <wx/display.h>

namespace tarvin {

namespace {

// In pixels. A user can drag a window of which this much of the title bar is on a screen.
constexpr int leastVisible = 40;

constexpr char fileNameEnd[] = " window.ini";

std::filesystem::path PlacementFile(KelTextView machineName) {
    return UserFolder() / ToPath(FileNameFor(machineName) + FromUtf8(fileNameEnd));
}

// Where the windows of all machines are, or were last.
std::vector<wxPoint> SavedCorners() {
    std::vector<wxPoint> corners;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(UserFolder(), ignored)) {
        const auto profile = Profile::Read(entry.path());
        if (ToUtf8(FromPath(entry.path().filename())).ends_with(fileNameEnd) && profile)
            corners.emplace_back(profile->Integer(u"Window", u"x", 0), profile->Integer(u"Window", u"y", 0));
    }
    return corners;
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

void PlaceFirst(wxTopLevelWindow& window, KelTextView machineName) {
    window.CentreOnScreen();
    const wxPoint middle = window.GetPosition();
    const int monitor = wxDisplay::GetFromPoint(middle);
    const wxRect screen = wxDisplay(monitor == wxNOT_FOUND ? 0u : static_cast<unsigned>(monitor)).GetClientArea();
    // Each step leaves the title bar of the window before it free.
    const int step = window.FromDIP(36);
    const int columns = std::max((screen.GetRight() - middle.x - window.GetSize().GetWidth()) / step, 1);
    const int rows = std::max((screen.GetBottom() - middle.y - window.GetSize().GetHeight()) / step, 1);
    const std::vector<wxPoint> taken = SavedCorners();
    for (int number = 0; number < columns * rows; ++number) {
        // The diagonal first, then the diagonals beside it.
        const wxPoint place = middle + wxPoint((number % rows + number / rows) % columns, number % rows) * step;
        const bool isFree = std::ranges::none_of(taken, [&](const wxPoint& corner) {
            return std::abs(corner.x - place.x) < step && std::abs(corner.y - place.y) < step;
        });
        if (isFree) {
            window.Move(place);
            break;
        }
    }
    // Now, and not only when the window closes: the next window must find this place taken.
    SavePlacement(window, machineName);
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
