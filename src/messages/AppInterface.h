#pragma once
// The messages of a program: its debug log, the boxes that the user has suppressed, and the answers of boxes that no
// user sees. Each program has one. It shows nothing itself: the caller shows a box that has no answer here.

#include "dictionary/TextHolder.h"
#include "messages/DebugLog.h"
#include "messages/MessageReport.h"
#include "messages/SuppressedMessages.h"

#include <functional>

namespace tarvin {

// The folders for a program's debug log and its list of suppressed messages: its own one, or the second one if that
// path is empty. A missing folder is created by the first write.
struct AppFolders {
    std::filesystem::path own;
    std::filesystem::path second = {};

    const std::filesystem::path& Chosen() const { return own.empty() ? second : own; }
};

class AppInterface {
public:
    // Takes a note about a box that was answered without a user. A note brings its own line ends. Called by the thread
    // that asks for the answer.
    using NoteSink = std::function<void(KelTextView note)>;

    // With a `noteSink` the program is unattended. The notes name buttons in the language of `dictionary`, which
    // outlives the object.
    explicit AppInterface(const AppFolders& folders, NoteSink noteSink = nullptr,
                          const TextHolder& dictionary = Dictionary());
    AppInterface(const AppInterface&) = delete;
    AppInterface& operator=(const AppInterface&) = delete;

    bool IsUnattended() const { return noteSink != nullptr; }

    // Writes the report to the debug log and returns its answer. Any thread.
    std::int32_t Report(const MessageReport& report);

    // Writes a failure of the program itself to the debug log, and gives the box that tells it to the user. Any thread.
    MessageBoxText ReportFailure(KelTextView message);

    // The answer of a message box that needs no user, as the Windows message box numbers it: the user has suppressed
    // it, or the program is unattended, which leaves a note. None if the box has to be shown. Any thread.
    std::optional<int> AnswerWithoutUser(const MessageBoxText& box);

    // The thread of SuppressMessage and ShowAllMessages. Reads the list of suppressed messages, and reports a damaged
    // one.
    void ReadSuppressedMessages();
    // Suppresses boxes of this number, in later runs too. Reports a list that cannot be written.
    void SuppressMessage(std::int32_t id);
    // Shows all boxes again that the user has suppressed. False, and a report, if a later run will suppress them again.
    bool ShowAllMessages();

private:
    void ReportListProblem(KelTextView message);

    const NoteSink noteSink;
    const std::filesystem::path suppressedFile;
    const TextHolder& dictionary;
    DebugLog debugLog;
    SuppressedMessages suppressed;
};

}
