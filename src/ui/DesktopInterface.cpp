#include "ui/DesktopInterface.h"

#include "ui/MainWindow.h"

namespace tarvin {

int DesktopInterface::Show(const MessageBoxText& box) {
    if (window != nullptr)
        return window->ShowBox(box);
    AppendToMessageLog(box.caption + u": " + box.text);
    return AutomaticAnswerTo(box.style).answer;
}

void DesktopInterface::AppendToMessageLog(KelTextView text) {
    Report({static_cast<std::int32_t>(ReportLevel::Normal), {}, KelText(text), {}, 0});
}

}
