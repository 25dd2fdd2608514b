#pragma once
// The desktop program's window as its user finds it on the display, and what can be done to it there. Needs xdotool and
// a window manager. All failures are thrown.

#include "ChildProcess.h"

#include <string>

namespace tarvin::bench {

// Throws if there is no display.
void RequireDisplay();

// The window of the process, as the display names it; empty while it is not mapped.
std::string ShownWindow(const ChildProcess& program);

// The same, waited for.
std::string AwaitWindow(const ChildProcess& program);

// What the whole display shows, and in how many pixels that has changed.
std::string DisplayPixels();
std::size_t ChangedPixels(const std::string& before, const std::string& after);

// Presses a key, "alt+v" say, in the window, which comes to the front.
void PressKey(const std::string& window, const std::string& key);

}
