#include "ui/HelpPages.h"

#include "ui/Wx.h"

#include <wx/filesys.h>
#include <wx/html/htmlfilt.h>
#include <wx/html/htmlwin.h>
#include <wx/sstream.h>

namespace tarvin {

namespace {

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

}

void ReadHelpPagesAsHtml() {
    // wxWidgets owns it from now on.
    wxHtmlWindow::AddFilter(new PageFilter);
}

}
