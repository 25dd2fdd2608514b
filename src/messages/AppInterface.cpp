#include "messages/AppInterface.h"

#include <utility>

namespace tarvin {

AppInterface::AppInterface(const AppFolders& folders, NoteSink noteSink, const TextHolder& dictionary)
    : noteSink(std::move(noteSink)),
      suppressedFile(folders.Chosen() / "Suppressed.txt"),
      dictionary(dictionary),
      debugLog([folder = folders.own] { return folder; }, [folder = folders.second] { return folder; }),
      suppressed(suppressedFile) {}

std::int32_t AppInterface::Report(const MessageReport& report) {
    debugLog.LogTogether(ReportTexts(report));
    return report.answer;
}

MessageBoxText AppInterface::ReportFailure(KelTextView message) {
    Report({static_cast<std::int32_t>(ReportLevel::Warning), {}, KelText(message), {}, 0});
    return {KelText(message), dictionary.Text(text::dictionary::problem.id), okOnly | iconExclamation};
}

std::optional<int> AppInterface::AnswerWithoutUser(const MessageBoxText& box) {
    const MessageButton& button = AutomaticAnswerTo(box.style);
    if (box.dontShowAgainId && suppressed.Contains(*box.dontShowAgainId))
        return button.answer;
    if (!IsUnattended())
        return std::nullopt;
    // One call for the whole note, so that the notes of two threads do not mix.
    noteSink(u"\n" + box.caption + u": " + box.text + u" (" + dictionary.Text(button.caption.id) + u")");
    return button.answer;
}

void AppInterface::ReadSuppressedMessages() {
    switch (suppressed.Read()) {
    case SuppressedMessages::Content::Sound:
        break;
    case SuppressedMessages::Content::Damaged:
        ReportListProblem(text::report::suppressedListDamaged);
        break;
    case SuppressedMessages::Content::Unreadable:
        ReportListProblem(text::report::suppressedListUnreadable);
        break;
    }
}

void AppInterface::SuppressMessage(std::int32_t id) {
    if (!suppressed.Add(id))
        ReportListProblem(text::report::suppressedListUnwritten);
}

bool AppInterface::ShowAllMessages() {
    const bool isCleared = suppressed.Clear();
    if (!isCleared)
        ReportListProblem(text::report::suppressedListUnwritten);
    return isCleared;
}

void AppInterface::ReportListProblem(KelTextView message) {
    Report({static_cast<std::int32_t>(ReportLevel::Warning), FromPath(suppressedFile), KelText(message), {}, 0});
}

}
