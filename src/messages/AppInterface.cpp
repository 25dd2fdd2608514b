#include "messages/AppInterface.h"

namespace tarvin {

AppInterface::AppInterface(const AppFolders& folders, Attendance programAttendance, const TextHolder& dictionary)
    : attendance(programAttendance),
      suppressedFile(folders.Chosen() / "Suppressed.txt"),
      texts(dictionary),
      debugLog([folder = folders.own] { return folder; }, [folder = folders.second] { return folder; }),
      suppressed(suppressedFile) {}

void AppInterface::ReadSuppressedMessages() {
    switch (suppressed.Read()) {
    case SuppressedMessages::Content::Sound:
        break;
    case SuppressedMessages::Content::Damaged:
        ReportSuppressionProblem(u"Not every line of the list of suppressed messages is a number");
        break;
    case SuppressedMessages::Content::Unreadable:
        ReportSuppressionProblem(u"The list of suppressed messages cannot be read");
        break;
    }
}

std::int32_t AppInterface::Report(const MessageReport& report) {
    debugLog.LogTogether(ReportTexts(report));
    return report.answer;
}

int AppInterface::MessageBox(const MessageBoxText& box) {
    const AutomaticAnswer automatic = AutomaticAnswerTo(box.style);
    if (box.dontShowAgainId && suppressed.Contains(*box.dontShowAgainId))
        return automatic.answer;
    if (!IsUnattended())
        return Show(box);
    // In one piece, so that the boxes of two threads stay apart.
    AppendToMessageLog(u"\n" + box.caption + u": " + box.text + u" (" + texts.Text(automatic.noteTextId) + u")");
    return automatic.answer;
}

void AppInterface::SuppressMessage(std::int32_t id) {
    if (!suppressed.Add(id))
        ReportSuppressionProblem(u"The list of suppressed messages cannot be written");
}

void AppInterface::ReportSuppressionProblem(KelTextView message) {
    Report({static_cast<std::int32_t>(ReportLevel::Warning), FromPath(suppressedFile), KelText(message), {}, 0});
}

}
