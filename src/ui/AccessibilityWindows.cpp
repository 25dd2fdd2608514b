#include "base/WindowsApi.h"
#include "ui/Accessibility.h"

#include <initguid.h>
#include <oleacc.h>

namespace tarvin {

namespace {

// Gives the window another name than its text, which some controls show.
void Annotate(const wxWindow& control, const wxString& name) {
    IAccPropServices* services = nullptr;
    if (FAILED(CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                                reinterpret_cast<void**>(&services))))
        return;
    // A screen reader that is not told reads the control without its name, as before.
    static_cast<void>(services->SetHwndPropStr(control.GetHandle(), static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF,
                                               PROPID_ACC_NAME, name.wc_str()));
    services->Release();
}

}

void NameControl(wxWindow& control, const wxString& name) {
    // The status line names its label anew with each text.
    if (control.GetName() == name)
        return;
    control.SetName(name);
    Annotate(control, name);
}

// Windows derives the role from the kind of control, and reads the text of a window as its name.
void SetAccessible(wxWindow& window, AccessibleRole, const wxString& name, const wxString& value) {
    const wxString text = value.empty() ? name : name + ": " + value;
    if (window.GetLabel() != text)
        window.SetLabel(text);
}

void SetAccessibleProgress(wxWindow& window, const wxString& name, int percent) {
    const wxString text = wxString::Format("%s: %d %%", name, percent);
    if (window.GetLabel() != text)
        window.SetLabel(text);
}

}
