#include "protocol/TarvinApp.h"

#include "base/Messages.h"
#include "base/TrafficMessages.h"
#include "protocol/Frame.h"
#include "transfer/NcFilePath.h"

#include <utility>

namespace tarvin {

namespace {

constexpr int attemptsAllowed = 3;
constexpr int repeatsOfLastAnswer = 2;
constexpr int repeatsAwaited = 2;
// What the controller counts for each line end of the file.
constexpr std::int64_t lineEndBytes = 2;

}

DownloadSettings TarvinApp::FirstSettings() {
    DownloadSettings settings;
    settings.fileExtension.clear();
    return settings;
}

TarvinApp::TarvinApp(const ProtocolParts& parts)
    : parts(parts), transfer(parts.transfer), download(parts, [this] { BeginDownload(); }) {}

void TarvinApp::Abandon() {
    download.Drop();
    lastAnswer = {};
}

void TarvinApp::OnTransferLost() {
    hasLostTransfer = true;
    lastAnswer = {};
}

void TarvinApp::Send(std::string_view text) {
    BuildFrame(text, frame);
    parts.sender.SendText(frame);
}

void TarvinApp::OnReceived(ReceiveBuffer& received) {
    while (auto next = received.TakeMessage(frameEnd, false)) {
        // The line feed of a line end stands alone before the next message.
        if (!next->text.empty() && !IsLeftAloneWhileHeld(*next))
            HandleMessage();
    }
}

// While the line is held, the controller does not get its answer and repeats its message. Answering twice would put it
// one acknowledgement ahead for the rest of the transfer. So a repeat is left alone, and any other message drops the
// answer that waits. A damaged one whose repeat is awaited may itself be such a repeat, and is left alone as well.
bool TarvinApp::IsLeftAloneWhileHeld(const ReceivedMessage& next) {
    const bool isRight = IncomingCheck::IsRight(next);
    const bool isHeldUp = parts.sender.IsHeldUp();
    const bool isRepeat = isHeldUp && next.text == message;
    bool isLeftAlone = isRepeat;
    if (isRepeat && (transfer.IsUnderWay() || transfer.IsPending()))
        transfer.CountRepeat();
    if (!isRepeat) {
        Judge(next, isRight);
        std::string held = std::exchange(message, next.text);
        isLeftAlone = isHeldUp && IsRepeatAwaited();
        if (isLeftAlone) {
            OnDamagedPartOfUpload();
            message = std::move(held);
        } else if (isHeldUp) {
            parts.sender.DropUnsent();
        }
    }
    // A controller that speaks this language takes answers, so an old XOFF is none of its own.
    if (HoldsKnownCode(next.text) && (isRight || parts.settings.sendsChecksums == 0))
        parts.sender.EndOldHold();
    return isLeftAlone;
}

void TarvinApp::Judge(const ReceivedMessage& next, bool isRight) {
    const bool wasTaken = parts.settings.sendsChecksums != 0;
    bool isTaken = wasTaken;
    if (HoldsAnyCode(next.text, {code::uploadData, code::uploadRequest, code::downloadRequest}))
        isTaken = incoming.Learn(next.text, isRight, wasTaken);
    if (isTaken != wasTaken)
        parts.onChecksumsLearned(isTaken);
    isDamaged = next.hasErrors || (isTaken && !isRight);
    driverErrorCount = next.errorCount;
    if (next.hasErrors)
        NoteDamage(text::trafficNote::driverErrors);
    else if (isDamaged)
        NoteDamage(text::trafficNote::wrongChecksum);
}

// The note stands below the message in the trace.
void TarvinApp::NoteDamage(KelTextView note) {
    parts.sender.Note(ToUtf8(note));
}

void TarvinApp::CountQuality() {
    transfer.CountDriverErrors(driverErrorCount);
    if (isDamaged)
        transfer.CountDamaged();
}

// A line of a running upload is data, whatever it holds: "(SICHERHEITSABSTAND 5)" is a comment and no request. In any
// other message a code counts wherever it stands, and there may be more than one. Each test sees the state that the one
// before left.
void TarvinApp::HandleMessage() {
    if (RepeatLastAnswer() || RefuseLostTransfer())
        return;
    if (IsDamagedPartOfUpload()) {
        OnDamagedPartOfUpload();
        return;
    }
    damagedInARow = 0;
    const bool isData = IsDataOfUpload();
    // A request counts for the transfer that it begins.
    if ((transfer.IsUnderWay() || transfer.IsPending()) &&
        (isData || !HoldsAnyCode(message, {code::uploadRequest, code::downloadRequest})))
        CountQuality();
    if (isData) {
        OnDataLine();
        return;
    }
    bool isHandled = HandleUploadEnd();
    isHandled = HandleRequest() || isHandled;
    if (transfer.State() != TransferState::Downloading)
        return;
    isHandled = HandleAcknowledgement() || isHandled;
    if (!isHandled) {
        // The two sides are out of step. The controller is told at once instead of being left to wait.
        EndDownload(text::transferReason::damagedMessage);
    }
}

bool TarvinApp::IsDataOfUpload() const {
    return transfer.State() == TransferState::Uploading && HoldsCode(message, code::uploadData);
}

// A message without a code is the rest of a damaged one. A code of a request counts at the start only: elsewhere it
// rather stands in a data line whose own code is damaged. Link tests and acknowledgements change no file, so they act
// although they are damaged.
bool TarvinApp::IsDamagedPartOfUpload() const {
    if (transfer.State() != TransferState::Uploading || parts.settings.incomingCheck == incomingCheckOff)
        return false;
    if (IsDataOfUpload())
        return isDamaged;
    if (!HoldsKnownCode(message))
        return true;
    const bool isRequest = message.starts_with(code::uploadRequest) || message.starts_with(code::downloadRequest);
    return isDamaged && !isRequest && !HoldsAnyCode(message, {code::linkTest, code::dataGood, code::dataBad});
}

// Without an answer the controller sends a damaged message again.
bool TarvinApp::IsRepeatAwaited() const {
    return IsDamagedPartOfUpload() && parts.settings.incomingCheck == incomingCheckRepeat &&
           damagedInARow < repeatsAwaited;
}

void TarvinApp::OnDamagedPartOfUpload() {
    const bool isRepeatAwaited = IsRepeatAwaited();
    if (!std::exchange(isDamaged, true))
        NoteDamage(text::trafficNote::noKnownCode);
    CountQuality();
    ++damagedInARow;
    if (isRepeatAwaited)
        return;
    transfer.End(TransferState::UploadErrors, text::transferReason::damagedMessage);
    if (HoldsCode(message, code::uploadEnd))
        SendLast(code::cannotGoOn, code::uploadEnd);
    else
        Send(code::cannotGoOn);
}

// The last answer of a transfer may be lost. The controller then repeats what it sent, and nothing but the same answer
// can tell it that all is well.
void TarvinApp::SendLast(std::string_view answer, std::string_view repeatedBy) {
    Send(answer);
    lastAnswer = {answer, repeatedBy, repeatsOfLastAnswer};
}

// Any other message says that the controller has gone on.
bool TarvinApp::RepeatLastAnswer() {
    const std::string_view text = std::string_view(message).substr(0, message.size() - 1);
    if (lastAnswer.repeatsLeft == 0 || !text.ends_with(lastAnswer.repeatedBy) || HoldsCode(text, code::uploadData)) {
        lastAnswer = {};
        return false;
    }
    --lastAnswer.repeatsLeft;
    Send(lastAnswer.text);
    return true;
}

// The first message about a transfer that the link has taken along. A request begins anew instead.
bool TarvinApp::RefuseLostTransfer() {
    if (!hasLostTransfer)
        return false;
    const bool isRequest = HoldsAnyCode(message, {code::uploadRequest, code::downloadRequest});
    const bool isRefused =
        !isRequest && HoldsAnyCode(message, {code::uploadData, code::uploadEnd, code::dataGood, code::dataBad});
    hasLostTransfer = !isRequest && !isRefused;
    if (isRefused)
        Send(code::cannotGoOn);
    return isRefused;
}

bool TarvinApp::HandleUploadEnd() {
    if (transfer.State() != TransferState::Uploading || !HoldsCode(message, code::uploadEnd))
        return false;
    transfer.CompleteUpload(
        [this](bool isCompleted) { SendLast(isCompleted ? code::acknowledge : code::cannotGoOn, code::uploadEnd); });
    return true;
}

bool TarvinApp::HandleRequest() {
    bool isHandled = false;
    if (HoldsCode(message, code::linkTest)) {
        DropAbandoned();
        (void)transfer.EndWithErrors(text::transferReason::linkTested);
        transfer.ShowLinkTest();
        Send(code::linkTestAnswer);
        isHandled = true;
    }
    if (HoldsCode(message, code::uploadRequest)) {
        OnUploadRequest();
        isHandled = true;
    }
    if (HoldsCode(message, code::downloadRequest)) {
        OnDownloadRequest();
        isHandled = true;
    }
    return isHandled;
}

bool TarvinApp::HandleAcknowledgement() {
    if (HoldsCode(message, code::dataGood)) {
        SendNextDataLine();
        failedAttempts = 0;
        return true;
    }
    if (HoldsCode(message, code::dataBad)) {
        transfer.CountRepeat();
        OnResend();
        return true;
    }
    return false;
}

// Names the transfer after the number in the message. False if that number may not name a file.
bool TarvinApp::NameTransfer(const KelText& folder) {
    const std::string number(FileNumber(message));
    const KelText fileName = FromBytes(number);
    const KelText path = NcFilePath(folder, fileName, parts.settings.fileExtension);
    transfer.SetName({path, fileName, u"  " + fileName});
    return IsUsableFileNumber(number);
}

// A message that begins something else gives up a transfer that is under way, waits or is queued: its answers would
// come where the controller does not expect them.
void TarvinApp::DropAbandoned() {
    download.Drop();
    if (transfer.IsUnderWay())
        parts.sender.DropUnsent();
}

// A transfer that the controller leaves for another request has failed. A download that waits for its delay stays until
// another request is accepted.
TarvinApp::WaitingDownload TarvinApp::BeginRequest() {
    WaitingDownload waiting;
    if (download.IsWaiting()) {
        waiting = transfer.PresentRequest();
    } else if (transfer.IsUnderWay() || transfer.IsPending()) {
        DropAbandoned();
        (void)transfer.EndWithErrors(text::transferReason::newRequest);
    }
    transfer.NoteRequest();
    CountQuality();
    return waiting;
}

void TarvinApp::Refuse(TransferState newState, KelTextView why, std::string_view answer,
                       const WaitingDownload& waiting) {
    transfer.Refuse(newState, KelText(why));
    Send(answer);
    Resume(waiting);
}

// Its delay has gone on meanwhile.
void TarvinApp::Resume(const WaitingDownload& waiting) {
    if (!waiting)
        return;
    transfer.RestoreRequest(*waiting);
    transfer.AwaitDownload();
}

// The request takes the place of a download that waits.
void TarvinApp::DropWaiting(const Transfer::Request& waiting) {
    download.Drop();
    Transfer::Request next = transfer.PresentRequest();
    transfer.RestoreRequest(waiting);
    (void)transfer.EndWithErrors(text::transferReason::newRequest);
    transfer.RestoreRequest(std::move(next));
}

void TarvinApp::OnUploadRequest() {
    std::string number(FileNumber(message));
    const bool isUnbegun = transfer.State() == TransferState::Uploading && !hasLine && !transfer.IsCompleting();
    if (isUnbegun && !isDamaged && number == uploadNumber) {
        Send(code::acknowledge);
        return;
    }
    const WaitingDownload waiting = BeginRequest();
    // The number of a damaged request is not used, not even for the status: it names the wrong file.
    if (isDamaged) {
        transfer.SetName({});
        Refuse(TransferState::UploadErrors, text::transferReason::damagedRequest, code::cannotGoOn, waiting);
        return;
    }
    if (!NameTransfer(parts.settings.uploadPath)) {
        Refuse(TransferState::UploadCouldNotOpen, text::transferReason::unusableNumber, code::cannotGoOn, waiting);
        return;
    }
    if (!transfer.BeginUpload(waiting)) {
        Send(code::cannotGoOn);
        Resume(waiting);
        return;
    }
    download.Drop();
    uploadNumber = std::move(number);
    hasLine = false;
    damagedInARow = 0;
    Send(code::acknowledge);
}

void TarvinApp::OnDataLine() {
    const std::string_view line = DataPayload(message);
    hasLine = true;
    // An empty line is acknowledged but not stored. Behind the end of the file, Store ends the upload: the answer would
    // be taken for that to the end.
    const bool isSkipped = line.empty() && !transfer.IsCompleting();
    const bool isStored = isSkipped || transfer.Store(std::string(line) + '\n');
    Send(isStored ? code::acknowledge : code::cannotGoOn);
}

void TarvinApp::OnDownloadRequest() {
    const WaitingDownload waiting = BeginRequest();
    if (isDamaged) {
        transfer.SetName({});
        Refuse(TransferState::DownloadErrors, text::transferReason::damagedRequest, code::cannotRead, waiting);
        return;
    }
    // The number counts that came with the request, whatever arrives during the delay.
    isRequestUsable = NameTransfer(parts.settings.downloadPath);
    // The same request again is no end: its delay begins anew.
    if (waiting && waiting->name.path != transfer.Name().path)
        DropWaiting(*waiting);
    download.Start();
}

void TarvinApp::BeginDownload() {
    if (!isRequestUsable) {
        transfer.End(TransferState::DownloadCouldNotOpen, text::transferReason::unusableNumber);
        Send(code::cannotRead);
        return;
    }
    transfer.BeginDownload(longestDataLine, [this](bool hasBegun) {
        if (!hasBegun) {
            Send(code::cannotRead);
            return;
        }
        failedAttempts = 0;
        Send(code::acknowledge);
        SendNextDataLine();
    });
}

void TarvinApp::SendNextDataLine() {
    const std::string_view dataLine = transfer.NextLine();
    if (dataLine.empty()) {
        transfer.End(TransferState::DownloadCompleted);
        SendLast(code::downloadEnd, code::dataBad);
        return;
    }
    dataMessage.assign(code::downloadData);
    dataMessage.append(dataLine);
    Send(dataMessage);
    transfer.CountSent(static_cast<std::int64_t>(dataLine.size()) + lineEndBytes);
}

void TarvinApp::OnResend() {
    ++failedAttempts;
    if (failedAttempts < attemptsAllowed) {
        Send(dataMessage);
        return;
    }
    EndDownload(text::transferReason::lineRefused);
}

void TarvinApp::EndDownload(KelTextView reason) {
    transfer.EndUnexplained(TransferState::DownloadErrors, KelText(reason));
    Send(code::cannotGoOn);
}

}
