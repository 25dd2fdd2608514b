#pragma once
// Acts as the user of the windows of this process. For the thread of the tests, unless a comment says otherwise.

#include "ui/Wx.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <doctest/doctest.h>

namespace tarvin::test {

inline constexpr std::chrono::seconds patience{20};

// Runs `call` on the user-interface thread and returns its result. Fails the test if that thread does not answer.
template <typename Call>
auto OnUi(Call call) {
    using Result = std::invoke_result_t<Call>;
    auto task = std::make_shared<std::packaged_task<Result()>>(std::move(call));
    auto result = task->get_future();
    wxTheApp->CallAfter([task] { (*task)(); });
    REQUIRE_MESSAGE(result.wait_for(patience) == std::future_status::ready, "the window does not answer");
    return result.get();
}

// Waits until the condition holds, which is evaluated on the user-interface thread. False after the time limit.
bool Becomes(const std::function<bool()>& condition, std::chrono::milliseconds longest = patience);

// Clicks the middle of the window with the mouse. Fails the test if the window is hidden or disabled.
void Click(wxWindow* window);
void PressKey(int key, int modifiers = wxMOD_NONE);
void Type(const std::string& text);

// `find` returns the open dialog of the system, or null.
void FindSystemDialogBy(std::function<wxWindow*()> find);
// Waits until the dialog of the system has the keyboard. False after the time limit.
bool SystemDialogBecomesActive();
// Types the path into the dialog of the system with this title and confirms it.
void PickFile(const std::string& title, const std::filesystem::path& path);
// The visible top-level window with this title. Waits for it; null after the time limit.
wxTopLevelWindow* WindowTitled(const std::string& title);
wxTopLevelWindow* WindowTitledOneOf(const std::vector<std::string>& titles);
bool BecomesHidden(const std::string& title, std::chrono::milliseconds longest = patience);
// Presses the key until the window is hidden: a dialog of the system may use the first key otherwise, for example to
// close a list of completions.
void PressUntilHidden(int key, const std::string& title);
// The visible button of the window with this caption, or null.
wxWindow* ButtonIn(wxWindow* window, const std::string& caption);
// The labels of all controls in the window.
std::string TextIn(wxWindow* window);

// The window and all windows in it. User-interface thread.
std::vector<wxWindow*> WindowsIn(wxWindow* window);

}
