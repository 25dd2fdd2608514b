#pragma once
// The desktop program's window on the display: finds it, sees its pixels and presses its keys. Needs xdotool and a
// window manager. Failures throw.

#include "MeasuredProcess.h"

#include <string>

namespace tarvin::bench {

// Throws if there is no display.
void RequireDisplay();

// The display's number of the process' main window. Empty while the window is not visible.
std::string ShownWindow(const MeasuredProcess& program);

// Waits until the window is visible or a Deadline has passed.
std::string AwaitWindow(const MeasuredProcess& program);

// The pixels of the whole display, and the number of pixels that differ between two of these.
std::string DisplayPixels();
std::size_t ChangedPixels(const std::string& before, const std::string& after);

// Brings the window to the front and presses a key in it, for example "alt+v".
void PressKey(const std::string& window, const std::string& key);

}
