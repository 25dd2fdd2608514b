#pragma once
// A machine controller as real ones behave, on a bad line: it checks each answer of the program, waits a limited time,
// and then does what its habit says. One thread.

#include "campaign/BadLine.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::campaign {

// What the controller does when an answer does not come, or comes damaged.
//   Repeat     no answer in time: sends its message again; takes a damaged answer for none
//   AskAgain   a damaged answer, or a data line that does not come: sends "ABNK"; otherwise like Repeat
//   Restart    either: begins the transfer anew at once
// Repeat asks with "ABNK" for one thing as well: a data line that has come damaged.
enum class Habit { Repeat, AskAgain, Restart };

class CampaignController {
public:
    struct Options {
        Habit habit = Habit::Repeat;
        // Off: the checksum character of each message is the same, as with controllers that do not compute one.
        bool sendsChecksums = true;
        std::chrono::milliseconds answerTime = std::chrono::milliseconds(200);
        int repeatsOfMessage = 3;
        int restartsOfTransfer = 3;
    };

    // What the controller holds to be true at the end of a transfer.
    struct Outcome {
        bool isDone = false;            // the end of the file was acknowledged, or received
        bool wasRefused = false;        // the program has sent an error code
        std::vector<std::string> lines; // of a download, as received
        int repeatCount = 0;            // messages sent again, and "ABNK"s
        int restartCount = 0;
    };

    CampaignController(BadLine& line, const Options& options) : line(line), options(options) {}

    // Sends the lines under this number.
    Outcome Upload(std::string_view number, const std::vector<std::string>& lines);
    // Asks for the file with this number.
    Outcome Download(std::string_view number);
    // True if the program answers a link test in this time. Sends the test again after each answer time.
    bool TestLink(std::chrono::milliseconds longest);

private:
    enum class Answer { None, Damaged, Acknowledged, Refused, Data, DataEnd, Other };
    // What the controller waits for. Start: an acknowledgement, or the first data line if that got lost.
    enum class Awaited { Acknowledgement, Start, Data };

    std::string Framed(std::string_view text) const;
    void Send(std::string_view text) { line.Send(Framed(text)); }
    Answer Understand(const std::string& message);
    Answer Await(Awaited awaited);
    bool Ask(std::string_view text, Awaited awaited, bool isFirstSent = true);
    bool IsAskingAgain(Answer trouble, Awaited awaited) const;
    bool UploadOnce(std::string_view number, const std::vector<std::string>& lines);
    bool DownloadOnce(std::string_view number);
    template <class Attempt>
    Outcome Transfer(Attempt attempt);

    BadLine& line;
    const Options options;
    Outcome outcome;
    Answer lastAnswer = Answer::None;
    std::string dataLine; // of the last answer
};

}
