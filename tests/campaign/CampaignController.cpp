#include "campaign/CampaignController.h"

#include "campaign/CampaignFrame.h"

#include <utility>

namespace tarvin::campaign {

using std::chrono::steady_clock;

namespace {

// The same for every message. A printable character that no file number ends with.
constexpr char constantChecksum = '*';
// The program answers within a millisecond, so a line that is quiet for this long has nothing more to say.
constexpr auto quietTime = std::chrono::milliseconds(10);

}

std::string CampaignController::Framed(std::string_view text) const {
    return std::string(text) + (options.sendsChecksums ? ChecksumOf(text) : constantChecksum);
}

CampaignController::Answer CampaignController::Understand(const std::string& message) {
    if (!IsRight(message))
        return Answer::Damaged;
    const std::string_view text = std::string_view(message).substr(0, message.size() - 1);
    if (text == code::acknowledge)
        return Answer::Acknowledged;
    if (text == code::cannotRead || text == code::cannotGoOn)
        return Answer::Refused;
    if (text == code::downloadEnd)
        return Answer::DataEnd;
    if (!text.starts_with(code::downloadData))
        return Answer::Other;
    dataLine = text.substr(code::downloadData.size());
    return Answer::Data;
}

// Waits for an answer that fits, for a damaged one if the habit notices it, or for the end of the answer time.
CampaignController::Answer CampaignController::Await(Awaited awaited) {
    const auto deadline = steady_clock::now() + options.answerTime;
    while (const auto message = line.Receive(deadline)) {
        const Answer answer = Understand(*message);
        const bool isData = answer == Answer::Data || answer == Answer::DataEnd;
        const bool isAwaited = (answer == Answer::Acknowledged && awaited != Awaited::Data) ||
                               (isData && awaited != Awaited::Acknowledgement) || answer == Answer::Refused;
        const bool noticesDamage = options.habit != Habit::Repeat || awaited == Awaited::Data;
        if (isAwaited || (answer == Answer::Damaged && noticesDamage))
            return answer;
    }
    return Answer::None;
}

bool CampaignController::IsAskingAgain(Answer trouble, Awaited awaited) const {
    return options.habit == Habit::AskAgain ? trouble == Answer::Damaged || awaited == Awaited::Data
                                            : trouble == Answer::Damaged;
}

// Sends the message until an answer comes that fits. False if there is none, or if the answer is an error code. Without
// `isFirstSent` it begins by waiting: the program sends the first data line of a download by itself.
bool CampaignController::Ask(std::string_view text, Awaited awaited, bool isFirstSent) {
    if (isFirstSent)
        Send(text);
    bool hasAskedAgain = false;
    for (int repeat = 0;; ++repeat) {
        lastAnswer = Await(awaited);
        if (lastAnswer == Answer::Refused)
            outcome.wasRefused = true;
        if (lastAnswer != Answer::None && lastAnswer != Answer::Damaged)
            return !outcome.wasRefused;
        if (options.habit == Habit::Restart || repeat == options.repeatsOfMessage)
            return false;
        // A rest of the damaged answer would look like the answer to the repeat.
        line.ClearReceived(quietTime);
        // A program that leaves an "ABNK" in an upload without an answer gets the message itself.
        const bool asksAgain = IsAskingAgain(lastAnswer, awaited) && !(hasAskedAgain && awaited != Awaited::Data);
        Send(asksAgain ? code::dataBad : text);
        hasAskedAgain = asksAgain;
        ++outcome.repeatCount;
    }
}

bool CampaignController::UploadOnce(std::string_view number, const std::vector<std::string>& lines) {
    if (!Ask(std::string(code::uploadRequest) + std::string(number), Awaited::Acknowledgement))
        return false;
    for (const std::string& each : lines) {
        if (!Ask(std::string(code::uploadData) + each, Awaited::Acknowledgement))
            return false;
    }
    return Ask(code::uploadEnd, Awaited::Acknowledgement);
}

bool CampaignController::DownloadOnce(std::string_view number) {
    const std::string request = std::string(code::downloadRequest) + std::string(number);
    if (!Ask(request, Awaited::Start))
        return false;
    if (lastAnswer == Answer::Acknowledged && !Ask(request, Awaited::Data, false))
        return false;
    while (lastAnswer == Answer::Data) {
        outcome.lines.push_back(std::exchange(dataLine, {}));
        if (!Ask(code::dataGood, Awaited::Data))
            return false;
    }
    return lastAnswer == Answer::DataEnd;
}

// Begins the transfer anew when it fails, except after an error code, which the controller shows to its operator.
template <class Attempt>
CampaignController::Outcome CampaignController::Transfer(Attempt attempt) {
    outcome = {};
    for (;;) {
        outcome.lines.clear();
        outcome.isDone = attempt();
        if (outcome.isDone || outcome.wasRefused || outcome.restartCount == options.restartsOfTransfer)
            return outcome;
        line.ClearReceived(quietTime);
        ++outcome.restartCount;
    }
}

CampaignController::Outcome CampaignController::Upload(std::string_view number, const std::vector<std::string>& lines) {
    return Transfer([&] { return UploadOnce(number, lines); });
}

CampaignController::Outcome CampaignController::Download(std::string_view number) {
    return Transfer([&] { return DownloadOnce(number); });
}

// A part of a message that a damage has left at the program may swallow the first test.
bool CampaignController::TestLink(std::chrono::milliseconds longest) {
    line.ClearReceived(quietTime);
    const auto end = steady_clock::now() + longest;
    while (steady_clock::now() < end) {
        Send(code::linkTest);
        const auto deadline = steady_clock::now() + options.answerTime;
        while (const auto message = line.Receive(deadline)) {
            if (IsRight(*message) && message->starts_with(code::linkTestAnswer))
                return true;
        }
    }
    return false;
}

}
