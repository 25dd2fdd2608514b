#pragma once
// The help book in its own window. User-interface thread.

#include "ui/Wx.h"

#include <filesystem>
#include <memory>
#include <vector>

class wxHtmlHelpController;

namespace tarvin {

class HelpBook {
public:
    // The book is the first of the files that is there.
    explicit HelpBook(const std::vector<std::filesystem::path>& files);
    ~HelpBook();

    // Opens the book at a page, "main-window.htm" say; at its first page without one. False if there is no book.
    bool Show(wxWindow* parent, const wxString& page = {});
    void Close();
    bool IsShown() const;

private:
    std::filesystem::path book;
    std::unique_ptr<wxHtmlHelpController> controller;
};

}
