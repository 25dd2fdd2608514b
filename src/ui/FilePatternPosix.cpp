#include "ui/FilePattern.h"

namespace tarvin {

// The dialog minds case, so each letter becomes a set of two: "*.[nN][cC]".
wxString PatternFor(const wxString& extension) {
    wxString pattern = "*.";
    for (const wxUniChar character : extension) {
        const wxUniChar lower(wxTolower(character));
        const wxUniChar upper(wxToupper(character));
        if (lower != upper)
            pattern << '[' << lower << upper << ']';
        else if (character == '[')
            pattern << "[[]"; // a bracket begins a set
        else
            pattern << character;
    }
    return pattern;
}

}
