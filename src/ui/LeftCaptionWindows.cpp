#include "ui/LeftCaption.h"

namespace tarvin {

long LeftCaptionStyle() {
    return wxALIGN_RIGHT;
}

void PutCaptionLeft(wxCheckBox&) {}

}
