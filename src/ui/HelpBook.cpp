#include "ui/HelpBook.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <wx/filename.h>
#include <wx/filesys.h>
#include <wx/fs_arc.h>
#include <wx/html/helpctrl.h>
#include <wx/html/helpfrm.h>
#include <wx/html/htmlfilt.h>
#include <wx/html/htmlwin.h>
#include <wx/sstream.h>

namespace tarvin {

namespace {

// Reads the pages as HTML. The toolkit asks the system for the type of an extension, and many systems give "htm"
// another type than plain HTML: the toolkit then shows the source of the page.
class PageFilter : public wxHtmlFilter {
public:
    bool CanRead(const wxFSFile& file) const override { return file.GetLocation().EndsWith(".htm"); }

    wxString ReadFile(const wxFSFile& file) const override {
        wxString page;
        wxStringOutputStream text(&page, wxConvUTF8);
        if (file.GetStream() != nullptr)
            file.GetStream()->Read(text);
        return page;
    }
};

// The toolkit keeps handlers and filters until the process ends, so they are added once.
void PrepareToolkit() {
    static bool isPrepared = false;
    if (std::exchange(isPrepared, true))
        return;
    // wxWidgets owns both.
    wxFileSystem::AddHandler(new wxArchiveFSHandler);
    wxHtmlWindow::AddFilter(new PageFilter);
}

}

HelpBook::HelpBook(const std::vector<std::filesystem::path>& files) {
    const auto found = std::find_if(files.begin(), files.end(), [](const std::filesystem::path& file) {
        std::error_code ignored;
        return std::filesystem::is_regular_file(file, ignored);
    });
    if (found != files.end())
        book = *found;
}

HelpBook::~HelpBook() = default;

bool HelpBook::Show(wxWindow* parent, const wxString& page) {
    if (book.empty())
        return false;
    if (!controller) {
        PrepareToolkit();
        controller = std::make_unique<wxHtmlHelpController>(wxHF_DEFAULT_STYLE & ~wxHF_OPEN_FILES, parent);
        controller->SetTitleFormat("%s");
        controller->SetShouldPreventAppExit(false);
        if (!controller->AddBook(wxFileName(ToWx(FromPath(book))))) {
            controller.reset();
            return false;
        }
    }
    controller->Display(page.empty() ? wxString("index.htm") : page);
    return true;
}

void HelpBook::Close() {
    if (IsShown())
        controller->GetFrame()->Close(true);
    controller.reset();
}

bool HelpBook::IsShown() const {
    return controller && controller->GetFrame() != nullptr && controller->GetFrame()->IsShown();
}

void BindHelpKey(wxTopLevelWindow& window, std::function<void()> showHelp) {
    window.Bind(wxEVT_CHAR_HOOK, [show = std::move(showHelp)](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_F1)
            show();
        else
            event.Skip();
    });
}

}
