#include "ui/NcFileDialogs.h"

#include "base/WindowMessages.h"
#include "ui/FilePattern.h"

#include <algorithm>

#include <wx/filedlg.h>

namespace tarvin {

namespace {

// The label says "*.*" as users know it. The pattern is the system's own, which also takes names without a dot.
wxString AllFiles() {
    return ToWx(text::dialog::allFiles) + "|" + wxFileSelectorDefaultWildcardStr;
}

wxString Filters(KelTextView name, KelTextView extension) {
    const KelText label = Filled(text::dialog::filesWithExtension, {name, extension});
    return ToWx(label) + "|" + PatternFor(ToWx(extension)) + "|" + AllFiles();
}

std::optional<std::filesystem::path> Ask(wxWindow* parent, ModalLoop& loop, KelTextView title,
                                         const std::filesystem::path& initial, const wxString& filters, long style) {
    wxFileDialog dialog(parent, ToWx(title), ToWx(FromPath(initial.parent_path())), ToWx(FromPath(initial.filename())),
                        filters, style);
    // Some systems confirm an empty name.
    if (loop.RunNative(dialog) != wxID_OK || dialog.GetPath().empty())
        return std::nullopt;
    return ToPath(FromWx(dialog.GetPath()));
}

std::filesystem::path Initial(const KelText& folder, const KelText& currentFile) {
    return ToPath(folder) / ToPath(currentFile).filename();
}

}

wxString NcFileFilters(const KelText& extension) {
    // Filters are divided by "|" and patterns by ";": an extension with one of them gets no filter.
    const bool canBeFilter = std::none_of(extension.begin(), extension.end(),
                                          [](char16_t unit) { return unit < 0x20 || unit == u'|' || unit == u';'; });
    if (!canBeFilter)
        return AllFiles();
    return Filters(text::dialog::ncFiles, extension);
}

std::optional<std::filesystem::path> AskForNcFileToSend(wxWindow* parent, ModalLoop& loop,
                                                        const DownloadSettings& settings, const KelText& currentFile) {
    return Ask(parent, loop, text::caption::openNcFile, Initial(settings.downloadPath, currentFile),
               NcFileFilters(settings.fileExtension), wxFD_OPEN | wxFD_FILE_MUST_EXIST);
}

std::optional<std::filesystem::path>
AskForNcFileToReceive(wxWindow* parent, ModalLoop& loop, const DownloadSettings& settings, const KelText& currentFile) {
    return Ask(parent, loop, text::caption::saveNcFile, Initial(settings.uploadPath, currentFile),
               NcFileFilters(settings.fileExtension), wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
}

std::optional<std::filesystem::path> AskForCommsLog(wxWindow* parent, ModalLoop& loop,
                                                    const DownloadSettings& settings) {
    return Ask(parent, loop, text::caption::saveLogFile, ToPath(settings.commsLogFileName),
               Filters(text::dialog::logFiles, u"log"), wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
}

}
