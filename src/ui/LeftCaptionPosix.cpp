#include "ui/LeftCaption.h"

namespace tarvin {

long LeftCaptionStyle() {
    return 0;
}

// The style for it would make the caption a label beside the box, which does not hear a click.
void PutCaptionLeft(wxCheckBox& box) {
    box.SetLayoutDirection(wxLayout_RightToLeft);
}

}
