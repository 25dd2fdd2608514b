#include "AccessibleTree.h"

#include <algorithm>
#include <string_view>

namespace tarvin::test {

namespace {

// A long list is read in part.
constexpr int mostChildren = 100;

std::shared_ptr<AtspiAccessible> Owned(AtspiAccessible* object) {
    return {object, [](AtspiAccessible* each) {
                if (each != nullptr)
                    g_object_unref(each);
            }};
}

std::string Taken(char* text) {
    std::string result = text == nullptr ? "" : text;
    g_free(text);
    return result;
}

// Objects come and go while they are read. One that has gone answers with an error, and reads as an empty one.
Accessible Read(std::shared_ptr<AtspiAccessible> object) {
    Accessible read;
    AtspiAccessible* const source = object.get();
    read.role = Taken(atspi_accessible_get_role_name(source, nullptr));
    read.name = Taken(atspi_accessible_get_name(source, nullptr));
    read.description = Taken(atspi_accessible_get_description(source, nullptr));
    if (AtspiStateSet* const states = atspi_accessible_get_state_set(source)) {
        read.isFocusable = atspi_state_set_contains(states, ATSPI_STATE_FOCUSABLE) != 0;
        read.isFocused = atspi_state_set_contains(states, ATSPI_STATE_FOCUSED) != 0;
        read.isShowing = atspi_state_set_contains(states, ATSPI_STATE_SHOWING) != 0;
        read.isEnabled = atspi_state_set_contains(states, ATSPI_STATE_ENABLED) != 0;
        read.isChecked = atspi_state_set_contains(states, ATSPI_STATE_CHECKED) != 0;
        g_object_unref(states);
    }
    if (AtspiValue* const value = atspi_accessible_get_value_iface(source)) {
        read.value = atspi_value_get_current_value(value, nullptr);
        g_object_unref(value);
    }
    if (AtspiComponent* const component = atspi_accessible_get_component_iface(source)) {
        if (AtspiRect* const place = atspi_component_get_extents(component, ATSPI_COORD_TYPE_WINDOW, nullptr)) {
            read.width = place->width;
            read.height = place->height;
            g_free(place);
        }
        g_object_unref(component);
    }
    const int count = std::min(atspi_accessible_get_child_count(source, nullptr), mostChildren);
    for (int index = 0; index < count; ++index) {
        auto child = Owned(atspi_accessible_get_child_at_index(source, index, nullptr));
        if (!child)
            continue;
        Accessible below = Read(std::move(child));
        if (below.role != "scroll bar")
            read.children.push_back(std::move(below));
    }
    read.object = std::move(object);
    return read;
}

}

const Accessible* Accessible::Find(const std::string& wantedRole, const std::string& wantedName) const {
    for (const Accessible& child : children) {
        if (child.isShowing && child.role == wantedRole && child.name == wantedName)
            return &child;
        if (const Accessible* const found = child.Find(wantedRole, wantedName))
            return found;
    }
    return nullptr;
}

std::string Accessible::Text(int depth) const {
    std::string text = std::string(static_cast<std::size_t>(2 * depth), ' ') + role + " \"" + name + "\" (" +
                       description + ")" + (isFocusable ? " focusable" : "") + (isShowing ? "" : " hidden") + "\n";
    for (const Accessible& child : children)
        text += child.Text(depth + 1);
    return text;
}

bool Accessible::Press() const {
    AtspiAction* const action = atspi_accessible_get_action_iface(object.get());
    if (action == nullptr)
        return false;
    const bool isDone = atspi_action_do_action(action, 0, nullptr) != 0;
    g_object_unref(action);
    return isDone;
}

bool Accessible::SelectChild(int index) const {
    AtspiSelection* const selection = atspi_accessible_get_selection_iface(object.get());
    if (selection == nullptr)
        return false;
    const bool isDone = atspi_selection_select_child(selection, index, nullptr) != 0;
    g_object_unref(selection);
    return isDone;
}

std::optional<Accessible> ReadWindow(const std::string& program, const std::string& title) {
    const auto desktop = Owned(atspi_get_desktop(0));
    const int programs = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int index = 0; index < programs; ++index) {
        const auto each = Owned(atspi_accessible_get_child_at_index(desktop.get(), index, nullptr));
        if (!each || Taken(atspi_accessible_get_name(each.get(), nullptr)) != program)
            continue;
        const int windows = atspi_accessible_get_child_count(each.get(), nullptr);
        for (int number = 0; number < windows; ++number) {
            auto window = Owned(atspi_accessible_get_child_at_index(each.get(), number, nullptr));
            if (!window)
                continue;
            const std::string name = Taken(atspi_accessible_get_name(window.get(), nullptr));
            // The state of the link may follow the machine's name.
            if (title.empty() ? !name.empty() : !name.starts_with(title))
                continue;
            Accessible read = Read(std::move(window));
            if (read.isShowing)
                return read;
        }
    }
    return std::nullopt;
}

std::vector<std::string> Complaints(const Accessible& window) {
    // A cell of a table is named after its content, which may be empty.
    constexpr std::string_view telling[] = {
        "push button",   "toggle button", "check box",           "combo box",           "text",  "spin button",
        "page tab list", "page tab",      "table column header", "table column header", "table", "tree table",
        "list",          "label",         "menu item",           "progress bar",        "icon",  "image",
        "panel",         "scroll pane",   "radio button"};
    std::vector<std::string> complaints;
    for (const Accessible& child : window.children) {
        // A closed list tells for its inner parts.
        if (!child.isShowing)
            continue;
        const bool isPicture = child.role == "icon" || child.role == "image";
        const bool isBar = child.role == "progress bar";
        if ((child.isFocusable || isPicture || isBar) && child.role != "table cell") {
            if (std::find(std::begin(telling), std::end(telling), child.role) == std::end(telling))
                complaints.push_back("a role that says nothing: " + child.Text());
            if (child.name.empty())
                complaints.push_back("no name: " + child.Text());
        }
        if (child.role == "combo box")
            continue;
        const std::vector<std::string> below = Complaints(child);
        complaints.insert(complaints.end(), below.begin(), below.end());
    }
    return complaints;
}

}
