// The uploads and downloads of the model.

#include "model/ConversationModel.h"
#include "model/ModelStates.h"

#include <algorithm>
#include <utility>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

constexpr std::size_t longestLine = 993;
constexpr std::int64_t rangeOfUpload = 10000;
constexpr auto secondLookAfter = 250ms;
constexpr auto longestNaming = 2000ms;
constexpr auto pauseOfNaming = 100ms;

bool IsUsable(const std::string& number) {
    const bool isDotsOnly = number.find_first_not_of('.') == std::string::npos;
    return !isDotsOnly && number.find_first_of("/\\:") == std::string::npos && number != "NUL";
}

std::string FileOf(const std::string& number) {
    return number + ".nc";
}

std::string WithoutEnd(const std::string& line) {
    const std::size_t last = line.find_last_not_of("\r\n");
    return line.substr(0, last == std::string::npos ? 0 : last + 1);
}

std::vector<std::string> LinesOf(const std::string& content) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < content.size();) {
        const std::size_t end = std::min(content.find('\n', begin), content.size() - 1) + 1;
        lines.push_back(content.substr(begin, end - begin));
        begin = end;
    }
    return lines;
}

bool HasFault(const std::vector<std::string>& lines) {
    return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return WithoutEnd(line).size() > longestLine || WithoutEnd(line).find('\r') != std::string::npos;
    });
}

std::int64_t Length(const std::vector<std::string>& lines, std::size_t count) {
    std::size_t length = 0;
    for (std::size_t index = 0; index < count; ++index)
        length += lines[index].size();
    return static_cast<std::int64_t>(length);
}

}

bool ConversationModel::IsDamagedPartOfUpload(const Message& message) const {
    if ((phase != Phase::Uploading && phase != Phase::Naming) || situation->check == Situation::Check::Off)
        return false;
    if (message.Holds("ABAD"))
        return message.isDamaged;
    if (!message.HoldsKnownCode())
        return true;
    const bool isRequest = message.text.starts_with("ABST") || message.text.starts_with("ABSE");
    const bool actsDamaged = message.Holds("ABTS") || message.Holds("ABAK") || message.Holds("ABNK");
    return message.isDamaged && !isRequest && !actsDamaged;
}

bool ConversationModel::AwaitsRepeat(const Message& message) const {
    return IsDamagedPartOfUpload(message) && situation->check == Situation::Check::WaitForTheRepeat &&
           damagedInARow < 2;
}

void ConversationModel::OnDamagedPart(const Message& message) {
    const bool awaitsRepeat = AwaitsRepeat(message);
    Message damaged = message;
    damaged.isDamaged = true;
    Count(damaged, quality);
    ++damagedInARow;
    if (awaitsRepeat)
        return;
    Fail();
    if (message.Holds("ABEF"))
        SendLast("AAAK03", "ABEF");
    else
        Send("AAAK03");
}

void ConversationModel::OnData(const Message& message) {
    const std::string payload = message.Payload();
    hasLine = true;
    if (phase == Phase::Naming || (fault == DiskFault::Write && !payload.empty())) {
        Fail();
        Send("AAAK03");
        return;
    }
    if (!payload.empty()) {
        stored += payload + "\r\n";
        ++storedLines;
        if (isPartThere)
            files[FileOf(number) + ".part"] = stored;
    }
    bytesDone = static_cast<std::int64_t>(stored.size());
    if (bytesDone > bytesTotal)
        bytesTotal += bytesTotal;
    Send("AAAK");
}

void ConversationModel::OnUploadEnd() {
    if (phase == Phase::Naming)
        return;
    if (fault == DiskFault::Sync) {
        RefuseEnd();
        return;
    }
    remaining = longestNaming;
    TryName();
}

void ConversationModel::TryName() {
    const std::string name = FileOf(number);
    const auto older = files.find(name);
    const bool leavesOlder = stored.empty() && older != files.end();
    if (!isPartThere) {
        RefuseEnd();
        return;
    }
    if (!leavesOlder && !isOlderKept && older != files.end() && older->second != stored &&
        situation->replacedFilesKept > 0) {
        replaced[name].push_back(older->second);
        isOlderKept = true;
    }
    if (!leavesOlder && (isNameHeld || fault == DiskFault::Name)) {
        phase = Phase::Naming;
        if (remaining <= 0ms || fault == DiskFault::Name)
            RefuseEnd();
        return;
    }
    files.erase(name + ".part");
    if (!leavesOlder) {
        files[name] = stored;
        fresh.push_back(name);
        if (isOlderKept && replaced[name].size() > static_cast<std::size_t>(situation->replacedFilesKept))
            replaced[name].erase(replaced[name].begin());
    }
    Record(true, "completed", bytesDone, storedLines, quality);
    phase = Phase::Idle;
    state = uploadCompleted;
    SendLast("AAAK", "ABEF");
}

void ConversationModel::RefuseEnd() {
    Fail();
    SendLast("AAAK03", "ABEF");
}

// An upload whose end has come is whole, and stays under a name of its own.
void ConversationModel::KeepWhole() {
    const std::string name = FileOf(number);
    if (isOlderKept)
        replaced[name].pop_back();
    if (!isPartThere)
        return;
    files.erase(name + ".part");
    whole[name].push_back(stored);
}

void ConversationModel::OnUploadRequest(const Message& message) {
    const std::string newNumber = message.Number();
    if (phase == Phase::Uploading && !hasLine && !message.isDamaged && newNumber == uploadNumber) {
        Send("AAAK");
        return;
    }
    if (phase != Phase::Delay)
        Fail();
    Quality its;
    Count(message, its);
    const auto& elsewhere = situation->writtenElsewhere;
    const bool isWritten = std::find(elsewhere.begin(), elsewhere.end(), newNumber) != elsewhere.end();
    if (message.isDamaged || !IsUsable(newNumber) || isWritten) {
        Refuse(message.isDamaged ? uploadErrors : uploadCouldNotOpen, true, message.isDamaged ? "" : newNumber, its);
        Send("AAAK03");
        return;
    }
    Fail();
    phase = Phase::Uploading;
    state = uploading;
    number = uploadNumber = newNumber;
    quality = its;
    stored.clear();
    storedLines = 0;
    hasLine = isOlderKept = false;
    isPartThere = true;
    damagedInARow = 0;
    bytesDone = 0;
    bytesTotal = rangeOfUpload;
    files[FileOf(number) + ".part"] = "";
    Send("AAAK");
}

void ConversationModel::OnDownloadRequest(const Message& message) {
    const std::string newNumber = message.isDamaged ? "" : message.Number();
    const bool isWaiting = phase == Phase::Delay;
    if (!isWaiting)
        Fail();
    Quality its;
    Count(message, its);
    if (message.isDamaged) {
        Refuse(downloadErrors, false, "", its);
        Send("AAAK01");
        return;
    }
    // The same request again is no end: its delay begins anew.
    if (isWaiting && newNumber != askedNumber)
        Fail();
    number = askedNumber = newNumber;
    quality = its;
    if (situation->hasStartCharacter)
        Put(std::string(1, startCharacter));
    phase = Phase::Delay;
    state = downloadWaiting;
    remaining = std::chrono::seconds(situation->delaySeconds);
    if (remaining == 0ms)
        BeginDownload();
}

void ConversationModel::BeginDownload() {
    const auto file = files.find(FileOf(number));
    const bool isThere = IsUsable(number) && file != files.end();
    lines = isThere ? LinesOf(file->second) : std::vector<std::string>();
    if (!isThere || HasFault(lines)) {
        phase = Phase::Idle;
        Refuse(isThere ? fileFormatError : downloadCouldNotOpen, false, number, quality);
        Send("AAAK01");
        return;
    }
    phase = Phase::Look;
    state = downloadPreparation;
    remaining = secondLookAfter;
    if (!situation->hidesWriters || std::find(fresh.begin(), fresh.end(), FileOf(number)) == fresh.end())
        StartDownload();
}

void ConversationModel::StartDownload() {
    phase = Phase::Downloading;
    state = downloading;
    linesTaken = 0;
    failedAttempts = 0;
    bytesDone = 0;
    bytesTotal = Length(lines, lines.size());
    Send("AAAK");
    SendNextLine();
}

void ConversationModel::SendNextLine() {
    while (linesTaken < lines.size() && WithoutEnd(lines[linesTaken]).empty())
        ++linesTaken;
    if (linesTaken == lines.size()) {
        Record(false, "completed", bytesTotal, lines.size(), quality);
        phase = Phase::Idle;
        state = downloadCompleted;
        SendLast("AAEF", "ABNK");
        return;
    }
    const std::string line = WithoutEnd(lines[linesTaken++]);
    lastDataMessage = "AADA" + line;
    Send(lastDataMessage);
    bytesDone += static_cast<std::int64_t>(line.size()) + 2;
}

void ConversationModel::EndDownload(int newState, const char* answer) {
    Fail();
    state = newState;
    Send(answer);
}

// The transfer, if there is one, ends with errors.
void ConversationModel::Fail() {
    const bool isUpload = phase == Phase::Uploading || phase == Phase::Naming;
    if (!HasTransfer())
        return;
    if (isUpload)
        Record(true, "failed", bytesDone, storedLines, quality);
    else if (phase == Phase::Downloading)
        Record(false, "failed", Length(lines, linesTaken), linesTaken, quality);
    else
        Record(false, "failed", 0, 0, quality);
    if (phase == Phase::Naming)
        KeepWhole();
    phase = Phase::Idle;
    state = isUpload ? uploadErrors : downloadErrors;
}

// A refused request leaves a download alone that waits for its delay.
void ConversationModel::Refuse(int newState, bool isUpload, std::string newNumber, const Quality& its) {
    const std::string before = std::exchange(number, std::move(newNumber));
    state = newState;
    Record(isUpload, "refused", 0, 0, its);
    if (phase == Phase::Delay) {
        number = before;
        state = downloadWaiting;
    }
}

void ConversationModel::Record(bool isUpload, const char* outcome, std::int64_t bytes, std::size_t lineCount,
                               const Quality& its) {
    records.push_back(RecordText(isUpload, outcome, number, bytes, static_cast<std::int64_t>(lineCount), its));
}

void ConversationModel::Pass(std::chrono::milliseconds duration) {
    heldFor += isHeld ? duration : 0ms;
    if (phase != Phase::Delay && phase != Phase::Look && phase != Phase::Naming)
        return;
    remaining -= duration;
    if (phase == Phase::Naming) {
        if (remaining % pauseOfNaming == 0ms)
            TryName();
    } else if (remaining <= 0ms) {
        phase == Phase::Delay ? BeginDownload() : StartDownload();
    }
}

}
