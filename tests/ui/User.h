#pragma once
// What a user can do to the windows of this process, and see of them. For the thread of the tests.

#include "ui/Wx.h"

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <doctest/doctest.h>

namespace tarvin::test {

inline constexpr std::chrono::seconds patience{20};

// Runs `call` on the user-interface thread and returns what it returns. Fails the test if the windows do not answer.
template <typename Call>
auto OnUi(Call call) {
    using Result = std::invoke_result_t<Call>;
    auto task = std::make_shared<std::packaged_task<Result()>>(std::move(call));
    auto result = task->get_future();
    wxTheApp->CallAfter([task] { (*task)(); });
    REQUIRE_MESSAGE(result.wait_for(patience) == std::future_status::ready, "the window does not answer");
    return result.get();
}

// True once the condition, which is asked on the user-interface thread, holds; false if the time is up.
bool Becomes(const std::function<bool()>& condition, std::chrono::milliseconds longest = patience);

// With the mouse, into the middle of the window. Fails the test if it is not there to be clicked.
void Click(wxWindow* window);
void PressKey(int key, int modifiers = wxMOD_NONE);
void Type(const std::string& text);

// Where a dialog of the system is found, if one is open.
void FindSystemDialogBy(std::function<wxWindow*()> find);
// True once the keyboard belongs to it.
bool SystemDialogBecomesActive();
// The top-level window with this title that is shown; null if there is none within a while.
wxTopLevelWindow* WindowTitled(const std::string& title);
wxTopLevelWindow* WindowTitledOneOf(const std::vector<std::string>& titles);
bool BecomesHidden(const std::string& title, std::chrono::milliseconds longest = patience);
// A dialog of the system may take its first keys for something else: for the end of a list of completions, say.
void PressUntilHidden(int key, const std::string& title);
// A button of the window by its visible caption; null if it has none.
wxWindow* ButtonIn(wxWindow* window, const std::string& caption);
// All that is written in the window.
std::string TextIn(wxWindow* window);

// All windows below `window`, itself included. User-interface thread.
std::vector<wxWindow*> WindowsIn(wxWindow* window);

}
