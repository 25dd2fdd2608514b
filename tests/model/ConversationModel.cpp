#include "model/ConversationModel.h"

#include "model/ModelStates.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

constexpr auto oldHold = 10s;
constexpr auto tick = 50ms;

}

bool ConversationModel::Message::HoldsKnownCode() const {
    const auto codes = {"ABTS", "ABST", "ABSE", "ABAD", "ABEF", "ABAK", "ABNK"};
    return std::any_of(codes.begin(), codes.end(), [this](const char* code) { return Holds(code); });
}

std::string ConversationModel::Message::Payload() const {
    const std::string behind = text.substr(text.find("ABAD") + 4);
    return behind.substr(0, behind.empty() ? 0 : behind.size() - 1);
}

std::string ConversationModel::Message::Number() const {
    std::string rest = text.substr(std::min<std::size_t>(4, text.size()));
    rest.erase(0, std::min(rest.find_first_not_of('0'), rest.size()));
    return rest.substr(0, rest.empty() ? 0 : rest.size() - 1);
}

ConversationModel::ConversationModel(const Situation& situation)
    : situation(&situation), sendsChecksums(situation.sendsChecksums), files(situation.files) {}

void ConversationModel::Handle(const Event& event) {
    sent.clear();
    records.clear();
    fault = event.fault;
    switch (event.kind) {
    case Event::Kind::Message:
        Receive(event);
        break;
    case Event::Kind::Silence:
        for (auto passed = 0ms; passed < event.duration; passed += tick)
            Pass(tick);
        break;
    case Event::Kind::PartRemoved:
        std::erase_if(files, [](const auto& file) { return file.first.ends_with(".part"); });
        isPartThere = false;
        break;
    case Event::Kind::NameHeld:
    case Event::Kind::NameReleased:
        isNameHeld = event.kind == Event::Kind::NameHeld;
        break;
    case Event::Kind::LinkLost:
        LoseLink();
        break;
    case Event::Kind::Hold:
        heldFor = isHeld ? heldFor : 0ms;
        isHeld = true;
        break;
    case Event::Kind::Release:
        Release();
        break;
    }
}

void ConversationModel::Put(const std::string& frame) {
    if (isHeld)
        waiting.push_back(frame);
    else
        sent += frame;
}

void ConversationModel::Release() {
    isHeld = false;
    for (const std::string& frame : waiting)
        sent += frame;
    waiting.clear();
}

void ConversationModel::Send(const std::string& text) {
    Put(text + ChecksumOf(text) + '\r');
}

void ConversationModel::SendLast(const std::string& text, const std::string& repeatedBy) {
    Send(text);
    lastAnswer = text;
    lastAnswerRepeatedBy = repeatedBy;
    lastAnswerRepeats = 2;
}

void ConversationModel::LoseLink() {
    waiting.clear();
    isHeld = false;
    lastAnswerRepeats = 0;
    hasLostTransfer = hasLostTransfer || HasTransfer();
    Fail();
}

void ConversationModel::Receive(const Event& event) {
    Message message{event.message,
                    event.message.back() == ChecksumOf(event.message.substr(0, event.message.size() - 1)), false,
                    event.driverErrors};
    if (IsHeldUp() && message.text == lastMessage) {
        quality.repeats += HasTransfer() ? 1 : 0;
    } else {
        Learn(message);
        message.isDamaged = message.driverErrors > 0 || (sendsChecksums && !message.isRight);
        if (IsHeldUp() && AwaitsRepeat(message)) {
            OnDamagedPart(message);
        } else {
            waiting.clear();
            lastMessage = message.text;
            Answer(message);
        }
    }
    if (isHeld && heldFor >= oldHold && message.HoldsKnownCode() && (message.isRight || !sendsChecksums))
        Release();
}

void ConversationModel::Learn(const Message& message) {
    if (!message.Holds("ABAD") && !message.Holds("ABST") && !message.Holds("ABSE"))
        return;
    rightTexts.push_back(message.isRight ? message.text : "");
    if (rightTexts.size() > 16)
        rightTexts.pop_front();
    wrongInARow = message.isRight ? 0 : wrongInARow + 1;
    auto different = std::vector<std::string>(rightTexts.begin(), rightTexts.end());
    std::erase(different, "");
    std::sort(different.begin(), different.end());
    const auto count = std::unique(different.begin(), different.end()) - different.begin();
    if (!sendsChecksums)
        sendsChecksums = message.isRight && count >= 8;
    else
        sendsChecksums = wrongInARow < 8;
}

void ConversationModel::Count(const Message& message, Quality& quality) {
    quality.damaged += message.isDamaged ? 1 : 0;
    quality.driverErrors += message.driverErrors;
}

void ConversationModel::Answer(const Message& message) {
    if (RepeatsLastAnswer(message) || RefusesLostTransfer(message))
        return;
    if (IsDamagedPartOfUpload(message)) {
        OnDamagedPart(message);
        return;
    }
    damagedInARow = 0;
    const bool isStoring = phase == Phase::Uploading || phase == Phase::Naming;
    const bool isData = isStoring && message.Holds("ABAD");
    const bool isRequest = !isData && (message.Holds("ABST") || message.Holds("ABSE"));
    if (HasTransfer() && !isRequest)
        Count(message, quality);
    if (isData) {
        OnData(message);
        return;
    }
    bool isAnswered = false;
    if (isStoring && message.Holds("ABEF")) {
        OnUploadEnd();
        isAnswered = true;
    }
    if (message.Holds("ABTS")) {
        Fail();
        state = linkTest;
        Send("AATS");
        isAnswered = true;
    }
    if (message.Holds("ABST"))
        OnUploadRequest(message);
    if (message.Holds("ABSE"))
        OnDownloadRequest(message);
    if (phase != Phase::Downloading)
        return;
    if (message.Holds("ABAK")) {
        failedAttempts = 0;
        SendNextLine();
    } else if (message.Holds("ABNK")) {
        ++quality.repeats;
        if (++failedAttempts < 3)
            Send(lastDataMessage);
        else
            EndDownload(downloadErrors, "AAAK03");
    } else if (!isAnswered && !isRequest) {
        EndDownload(downloadErrors, "AAAK03");
    }
}

bool ConversationModel::RepeatsLastAnswer(const Message& message) {
    const std::string text = message.text.substr(0, message.text.size() - 1);
    if (lastAnswerRepeats > 0 && text.ends_with(lastAnswerRepeatedBy) && !message.Holds("ABAD")) {
        --lastAnswerRepeats;
        Send(lastAnswer);
        return true;
    }
    lastAnswerRepeats = 0;
    return false;
}

bool ConversationModel::RefusesLostTransfer(const Message& message) {
    if (message.Holds("ABST") || message.Holds("ABSE"))
        hasLostTransfer = false;
    const bool isAboutTransfer =
        message.Holds("ABAD") || message.Holds("ABEF") || message.Holds("ABAK") || message.Holds("ABNK");
    if (!hasLostTransfer || !isAboutTransfer)
        return false;
    hasLostTransfer = false;
    Send("AAAK03");
    return true;
}

View ConversationModel::Seen() const {
    View view;
    view.sent = sent;
    view.records = records;
    view.state = state;
    view.number = number;
    view.hasTransfer = HasTransfer();
    view.bytesDone = bytesDone;
    view.bytesTotal = view.barRange = bytesTotal;
    view.barPosition = state == downloading || state == uploading ? bytesDone : 0;
    view.quality = quality;
    view.sendsChecksums = sendsChecksums;
    view.isHeldUp = IsHeldUp();
    view.files = files;
    view.replaced = replaced;
    view.whole = whole;
    return view;
}

std::string ConversationModel::Key() const {
    View view = Seen();
    view.sent.clear();
    view.records.clear();
    std::string key = view.Text();
    const auto add = [&key](const auto&... values) { ((key += std::to_string(values) + ' '), ...); };
    const auto addText = [&key](const auto& texts) {
        for (const std::string& each : texts)
            key += each + '\n';
    };
    const bool isTimed = phase == Phase::Delay || phase == Phase::Look || phase == Phase::Naming;
    add(static_cast<int>(phase), isTimed ? remaining.count() : 0, lastAnswerRepeats, hasLostTransfer ? 1 : 0,
        isHeld ? 1 : 0, isHeld ? heldFor.count() : 0, isNameHeld ? 1 : 0);
    addText(fresh);
    if (lastAnswerRepeats > 0)
        addText(std::vector{lastAnswer, lastAnswerRepeatedBy});
    if (IsHeldUp()) {
        addText(waiting);
        key += lastMessage;
    }
    if (phase == Phase::Downloading) {
        add(linesTaken, failedAttempts);
        addText(lines);
    }
    if (phase == Phase::Uploading || phase == Phase::Naming) {
        add(hasLine ? 1 : 0, isPartThere ? 1 : 0, isOlderKept ? 1 : 0, damagedInARow);
        addText(std::vector{uploadNumber, stored});
    }
    if (situation->learnsChecksums) {
        add(wrongInARow);
        addText(rightTexts);
    }
    return key;
}

}
