#include "ui/NcFileDialogs.h"

#include "ui/UiText.h"

#include <algorithm>

#include <wx/filedlg.h>

namespace tarvin {

namespace {

// What is shown says "*.*" as everywhere; what is meant are all files, those without a dot too.
wxString AllFiles() {
    return wxString("All Files (*.*)|") + wxFileSelectorDefaultWildcardStr;
}

wxString Filters(const wxString& name, const wxString& extension) {
    return wxString::Format("%s (*.%s)|*.%s|", name, extension, extension) + AllFiles();
}

std::optional<std::filesystem::path> Ask(wxWindow* parent, ModalLoop& loop, const wxString& title,
                                         const std::filesystem::path& initial, const wxString& filters, long style) {
    wxFileDialog dialog(parent, title, ToWx(FromPath(initial.parent_path())), ToWx(FromPath(initial.filename())),
                        filters, style);
    if (loop.RunNative(dialog) != wxID_OK || dialog.GetPath().empty())
        return std::nullopt;
    return ToPath(FromWx(dialog.GetPath()));
}

// The folder is kept with its separator.
std::filesystem::path Initial(const KelText& folder, const KelText& currentFile) {
    return ToPath(folder) / ToPath(currentFile).filename();
}

}

wxString NcFileFilters(const KelText& extension) {
    // An extension can hold what parts the filters from one another, and then there is no filter for it.
    const bool canBeFilter = std::none_of(extension.begin(), extension.end(),
                                          [](char16_t unit) { return unit < 0x20 || unit == u'|' || unit == u';'; });
    if (!canBeFilter)
        return AllFiles();
    return Filters("NC files", ToWx(extension));
}

std::optional<std::filesystem::path> AskForNcFileToSend(wxWindow* parent, ModalLoop& loop,
                                                        const DownloadSettings& settings, const KelText& currentFile) {
    return Ask(parent, loop, "Open NC file", Initial(settings.downloadPath, currentFile),
               NcFileFilters(settings.fileExtension), wxFD_OPEN | wxFD_FILE_MUST_EXIST);
}

std::optional<std::filesystem::path>
AskForNcFileToReceive(wxWindow* parent, ModalLoop& loop, const DownloadSettings& settings, const KelText& currentFile) {
    return Ask(parent, loop, "Save NC file as", Initial(settings.uploadPath, currentFile),
               NcFileFilters(settings.fileExtension), wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
}

std::optional<std::filesystem::path> AskForCommsLog(wxWindow* parent, ModalLoop& loop,
                                                    const DownloadSettings& settings) {
    return Ask(parent, loop, "Save Log File As", ToPath(settings.commsLogFileName), Filters("Log files", "log"),
               wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
}

}
