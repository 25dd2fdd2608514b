#pragma once
// The windows of a program as a screen reader sees them, through the accessibility bus. For one thread.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <atspi/atspi.h>

namespace tarvin::test {

// One object of the tree as it was when it was read.
struct Accessible {
    std::string role;
    std::string name;
    std::string description;
    bool isFocusable = false;
    bool isFocused = false;
    bool isShowing = false;
    bool isEnabled = false;
    bool isChecked = false;
    std::optional<double> value;
    int width = 0; // pixels
    int height = 0;
    std::vector<Accessible> children;
    std::shared_ptr<AtspiAccessible> object;

    // The first object below this one that is shown, in the order of the tree; null without one.
    const Accessible* Find(const std::string& wantedRole, const std::string& wantedName) const;
    // One object a line, for messages.
    std::string Text(int depth = 0) const;
    // Does what a click does. False if the object has no such action.
    bool Press() const;
    // Chooses a page or an entry. False if the object has none to choose.
    bool SelectChild(int index) const;
};

// The tree of the window whose title begins so, or nothing if the program has none.
// Leaves scroll bars out.
std::optional<Accessible> ReadWindow(const std::string& program, const std::string& title);

// What a screen reader could not tell its user: each object that takes the keyboard or is a picture and has no name,
// or a role that says nothing.
std::vector<std::string> Complaints(const Accessible& window);

}
