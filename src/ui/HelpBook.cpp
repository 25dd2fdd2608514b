#include "ui/HelpBook.h"

#include "ui/HelpPages.h"
#include "ui/UiText.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <wx/filename.h>
#include <wx/fs_arc.h>
#include <wx/html/helpctrl.h>
#include <wx/html/helpfrm.h>

namespace tarvin {

namespace {

// Once in the life of the process.
void PrepareToolkit() {
    static bool isPrepared = false;
    if (std::exchange(isPrepared, true))
        return;
    wxFileSystem::AddHandler(new wxArchiveFSHandler);
    ReadHelpPagesAsHtml();
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

}
