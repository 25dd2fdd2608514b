#include "app/ServiceApp.h"

namespace tarvin {

void ServiceApp::AppendToMessageLog(KelTextView text) {
    // The output begins a line by itself, and a box with several lines is one line of it.
    if (text.starts_with(u'\n'))
        text.remove_prefix(1);
    KelText line;
    for (const char16_t unit : text) {
        if (unit == u'\n')
            line += u" - ";
        else if (unit != u'\r')
            line += unit;
    }
    output.Add(line);
}

}
