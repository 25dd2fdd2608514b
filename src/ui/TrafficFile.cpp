#include "ui/TrafficFile.h"

#include "base/TrafficMessages.h"
#include "base/WindowMessages.h"
#include "files/NativeFile.h"
#include "messages/MessageAdvice.h"

#include <wx/filedlg.h>

namespace tarvin {

std::optional<MessageBoxText> SaveTraffic(wxWindow* parent, ModalLoop& loop, const std::string& text) {
    const wxString filters = ToWx(text::traffic::textFiles) + "|*.txt|" + ToWx(text::dialog::allFiles) + "|" +
                             wxFileSelectorDefaultWildcardStr;
    wxFileDialog dialog(parent, ToWx(text::traffic::saveAs), wxString(), ToWx(text::traffic::fileName), filters,
                        wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (loop.RunNative(dialog) != wxID_OK || dialog.GetPath().empty())
        return std::nullopt;
    const KelText path = FromWx(dialog.GetPath());
    const auto written = ReplaceWholeFile(ToPath(path), text);
    if (written)
        return std::nullopt;
    return WithAdvice(MessageKind::TrafficNotSaved, {Filled(text::box::trafficNotSaved, {path, written.Reason().text}),
                                                     text::box::problemCaption, okOnly | iconExclamation});
}

}
