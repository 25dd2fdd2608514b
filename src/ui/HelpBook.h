#pragma once
// The help book in a window of its own, and the key that opens it. User-interface thread.

#include "ui/Wx.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

class wxHtmlHelpController;

namespace tarvin {

class HelpBook {
public:
    // Takes the first of `files` that exists.
    explicit HelpBook(const std::vector<std::filesystem::path>& files);
    ~HelpBook();

    // Opens the book at a page such as "main-window.htm", or at its first page. False if there is no book, or a damaged
    // one.
    bool Show(wxWindow* parent, const wxString& page = {});
    void Close();
    bool IsShown() const;

private:
    std::filesystem::path book; // empty without a book
    std::unique_ptr<wxHtmlHelpController> controller;
};

// Calls `showHelp` for F1, whichever control of the window has the keyboard.
void BindHelpKey(wxTopLevelWindow& window, std::function<void()> showHelp);

}
