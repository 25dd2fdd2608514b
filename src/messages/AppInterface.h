#pragma once
// What every program of ours is to the framework: whom it tells that something has happened, and whom it asks. Knows
// how a message is recorded or answered where nobody sees it, and nothing of how it is shown.

#include "dictionary/TextHolder.h"
#include "messages/DebugLog.h"
#include "messages/MessageReport.h"
#include "messages/SuppressedMessages.h"

namespace tarvin {

enum class Attendance { Attended, Unattended };

// Where a program leaves its debug log and its list of suppressed messages: in its own folder, or in the second one if
// that is empty. Neither need exist; the folder is created when something is written.
struct AppFolders {
    std::filesystem::path own;
    std::filesystem::path second = {};

    const std::filesystem::path& Chosen() const { return own.empty() ? second : own; }
};

class AppInterface {
public:
    // Notes are written with the texts of the dictionary, which must outlive the object.
    AppInterface(const AppFolders& folders, Attendance programAttendance, const TextHolder& dictionary = Dictionary());
    virtual ~AppInterface() = default;
    AppInterface(const AppInterface&) = delete;
    AppInterface& operator=(const AppInterface&) = delete;

    // Reads which messages are suppressed, and reports a list that is damaged. The thread of SuppressMessage.
    void ReadSuppressedMessages();

    // Writes the report to the debug log; returns its answer. Any thread.
    virtual std::int32_t Report(const MessageReport& report);

    // The answer to a message box, as AutomaticAnswer numbers it. One that is suppressed is answered at once; one that
    // nobody is there to see too, with a note in the message log. Any thread if unattended, else that of Show.
    int MessageBox(const MessageBoxText& box);

    bool IsUnattended() const { return attendance == Attendance::Unattended; }
    // Boxes with this id are not shown any more, in later runs too. One thread.
    void SuppressMessage(std::int32_t id);

protected:
    // Shows the box to the user and waits for the answer. Never called in an unattended program.
    virtual int Show(const MessageBoxText& box) = 0;
    // Adds the text, which brings its own line ends, to the program's log of messages that nobody has seen. Any thread.
    virtual void AppendToMessageLog(KelTextView text) = 0;

private:
    void ReportSuppressionProblem(KelTextView message);

    const Attendance attendance;
    const std::filesystem::path suppressedFile;
    const TextHolder& texts;
    DebugLog debugLog;
    SuppressedMessages suppressed;
};

}
