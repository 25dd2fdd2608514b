#pragma once
// A field of the settings dialog that may hold a wrong value and has a line for a message about it. User-interface
// thread.

#include "settings/SettingsCheck.h"
#include "ui/Wx.h"

namespace tarvin {

class CheckedField {
public:
    virtual ~CheckedField() = default;

    virtual AnySetting Setting() const = 0;
    // Takes the value over.
    virtual void Write(DownloadSettings& settings) const = 0;
    // Shows what is wrong with the value; without words nothing is. True if the window has to be laid out again.
    virtual bool Say(const wxString& problem) = 0;
    // Replaces a typed value by the form that the settings keep.
    virtual void ShowValue() {}
    // The control that takes the keyboard.
    virtual wxWindow& Control() const = 0;
};

}
