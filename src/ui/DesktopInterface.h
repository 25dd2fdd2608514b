#pragma once
// The desktop program to the framework: shows message boxes in the main window. Made before the window, which joins
// later. User-interface thread, but for reports.

#include "messages/AppInterface.h"

namespace tarvin {

class MainWindow;

class DesktopInterface : public AppInterface {
public:
    explicit DesktopInterface(const AppFolders& folders) : AppInterface(folders, Attendance::Attended) {}

    // None before the window is there and after it has gone: a box is then a line of the debug log.
    void UseWindow(MainWindow* newWindow) { window = newWindow; }

protected:
    int Show(const MessageBoxText& box) override;
    void AppendToMessageLog(KelTextView text) override;

private:
    MainWindow* window = nullptr;
};

}
