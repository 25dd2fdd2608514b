#include "ui/FilePattern.h"

namespace tarvin {

// File names on this system ignore case.
wxString PatternFor(const wxString& extension) {
    return "*." + extension;
}

}
