#include "ui/Wx.h"

#include <wx/clipbrd.h>
#include <wx/intl.h>
#include <wx/stdpaths.h>
#include <wx/textbuf.h>

namespace tarvin {

wxString ToWx(KelTextView text) {
    // ToCharacters replaces a lone surrogate, which stands for a byte that is no character and cannot be shown.
    wxString result;
    result.reserve(text.size());
    for (const char32_t character : ToCharacters(text))
        result += wxUniChar(static_cast<wxUint32>(character));
    return result;
}

KelText FromWx(const wxString& text) {
    return FromUtf8(text.utf8_string());
}

KelText SystemLanguage() {
    const wxLanguageInfo* const language = wxLocale::GetLanguageInfo(wxLocale::GetSystemLanguage());
    // A country may follow: "German (Austria)".
    return language == nullptr ? KelText() : FromWx(language->Description.BeforeFirst('(').Trim());
}

wxString ToLabel(KelTextView text) {
    return wxControl::EscapeMnemonics(ToWx(text));
}

std::filesystem::path UserFolder() {
    wxStandardPaths& paths = wxStandardPaths::Get();
    paths.SetFileLayout(wxStandardPaths::FileLayout_XDG);
    return ToPath(FromWx(paths.GetUserConfigDir())) / "TarvinDL";
}

void CopyToClipboard(const wxString& text) {
    if (!wxTheClipboard->Open())
        return;
    wxTheClipboard->SetData(new wxTextDataObject(wxTextBuffer::Translate(text)));
    wxTheClipboard->Close();
}

}
