#pragma once
// The one file on its way, and the state of link and transfer. This is the only place where the state changes. Monitor
// thread.
//
// What may follow what (numbers as in TransferState):
//
//   download  any -> 5 waiting for its delay -> 8 preparation -> 12 downloading -> 18 completed, 14 errors, 16
//   cancelled
//             any -> 8 -> 9 cannot open, 26 file format error        any -> 9 while an upload is under way
//   upload    any -> 13 uploading -> 19 completed, 15 errors, 17 cancelled      any -> 10 cannot open
//   link      any -> 1 waiting, 2 link test, 24 overrun -> 1         1 while the loop-back test runs -> 21, 22
//
// Every state except 12 and 13 ends the running transfer: it closes the file, drops the lines and resets the bar. So a
// controller that tests the link or asks for another file gives up the transfer before it.

#include "base/ThreadOwner.h"
#include "base/Timer.h"
#include "logging/TransferRecord.h"
#include "messages/MessageReport.h"
#include "settings/DownloadSettings.h"
#include "transfer/LineList.h"
#include "transfer/LineQuality.h"
#include "transfer/NewNameCount.h"
#include "transfer/SourceFile.h"
#include "transfer/TransferState.h"
#include "transfer/UploadFile.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvin {

// How a file on its way is named to the user.
struct TransferName {
    KelText path;     // as status texts show it
    KelText fileName; // its number, or its bare name
    KelText title;    // follows the machine's name in the caption; empty: the caption stays
};

// When a new state has to be seen. A controller may test the link all day long: that must not make the display flicker,
// so it is shown with the next tick of the display.
enum class Urgency { AtOnce, NextTick };

class TransferObserver {
public:
    virtual ~TransferObserver() = default;
    // The state is new. Shows and logs it before it returns, if that is urgent.
    virtual void OnStateChanged(Urgency urgency) = 0;
    virtual void OnNamed(const TransferName& name) = 0;
    // A transfer has ended, or a request was refused, and the state that says so is shown. The record lacks the
    // machine.
    virtual void OnEnded(TransferRecord record) = 0;
    virtual void ShowMessage(const MessageBoxText& box) = 0;
};

// What a transfer works with. All of it outlives the transfer.
struct TransferParts {
    TransferObserver& observer;
    const DownloadSettings& settings;
    TimerQueue& timers;
    const Clock& clock;
    // A file that takes long to read is given up as soon as this is set, by any thread.
    const std::atomic<bool>& isClosing;
    const ThreadOwner& thread;
    // Links in a download folder may lead to files below these folders.
    std::vector<std::filesystem::path> linkedFolders = {};
};

class Transfer {
public:
    // Called once with the result of an operation that may have to wait: within the call of the operation, or later by
    // a timer. Never called if the transfer is ended or replaced before.
    using Completion = std::function<void(bool isDone)>;

    explicit Transfer(TransferParts parts);

    TransferState State() const { return state; }
    // Whether a file is on its way.
    bool IsUnderWay() const { return IsTransferring(state); }
    // Whether a download waits for its delay, or its file is being looked at.
    bool IsPending() const {
        return state == TransferState::DownloadWaiting || state == TransferState::DownloadPreparation;
    }
    const TransferName& Name() const { return name; }
    // Bytes sent or received so far, as the status counts them, and the size of a download.
    std::int64_t BytesDone() const { return bytesDone; }
    // The same in bytes of the file: with empty lines, and with line ends as the file has them.
    std::int64_t FileBytesDone() const;
    std::int64_t BytesTotal() const { return bytesTotal; }
    struct Progress {
        std::int64_t position = 0;
        std::int64_t range = 0;
    };
    const Progress& Bar() const { return bar; }
    // Lines sent or received so far, empty ones included, and those of the file of a download. While a file is on its
    // way.
    std::int64_t LinesDone() const;
    std::int64_t LinesTotal() const { return linesTotal; }
    // The first comment of the file on its way, as far as it is known.
    const KelText& Comment() const { return comment; }
    // When the transfer that is under way or pending was requested, or was begun by hand.
    Clock::TimePoint RequestedAt() const { return requestedAt; }
    // None unless a transfer that was begun by hand is under way or awaited.
    EndDialog Dialog() const;

    // What was not clean on the line since the transfer's request, or its begin by hand.
    const LineQuality& Quality() const { return quality; }
    // What belongs to a request: its file, its time, and the line's quality since then.
    struct Request {
        TransferName name;
        Clock::TimePoint at;
        LineQuality quality;
    };
    // A download that waits goes on after another request was refused, or ends although another one has come. Its
    // request is kept and restored for that.
    Request PresentRequest() const { return {name, requestedAt, quality}; }
    void RestoreRequest(Request request);
    // A request has come, or a user begins by hand: the line's quality and the transfer's time are counted from here.
    void NoteRequest();
    void CountDamaged() { ++quality.damaged; }
    void CountRepeat() { ++quality.repeats; }
    void CountDriverErrors(std::uint32_t errorCount) { quality.driverErrors += errorCount; }

    // States of the link. Each ends a transfer that is under way.
    void Wait(Urgency urgency);
    void ShowLinkTest();
    void ShowOverrun();
    // Back to waiting, unless something else has happened since.
    void EndOverrun();
    // The loop-back test runs, until its verdict is shown or another state is entered. The status says that the link
    // waits.
    void BeginLoopback();
    bool IsTesting() const { return isTesting; }
    // Does nothing unless the test runs.
    void EndLoopback(bool hasReturned);
    void ShowMissingServer();

    // Names the file that the next operations are about.
    void SetName(TransferName newName);

    // A download whose start is delayed, and one that is about to begin.
    void AwaitDownload();
    void PrepareDownload();
    // Reads the file of the present name as lines and enters Downloading. False, with the state that says why, if it
    // cannot be opened, if another program is changing it, or if it has a line that the controller cannot take. Waits a
    // quarter of a second where the system cannot tell whether a fresh file is complete.
    void BeginDownload(std::size_t longestLineAllowed, Completion completion);
    // The next line of a download that is not empty; empty at the end of the file. Valid until the transfer ends.
    std::string_view NextLine() { return lines.NextNonEmpty(); }
    void CountSent(std::int64_t byteCount);
    // Adds to the checksum of a download what has been taken since the last call. To be called when the answers of a
    // pass have left: no answer waits for it.
    void FollowChecksum();
    // Reads the whole file as bytes, for a download by hand. Requires that no file is on its way. False, with the state
    // that says why, if it cannot be read; the caption then stays.
    bool BeginDownloadByHand(const TransferName& newName);
    // The next bytes of it, at most `byteCount` and with `upToLineEnd` none behind the next line feed; none at its end.
    std::span<const std::uint8_t> NextBlock(std::size_t byteCount, bool upToLineEnd);

    // The next upload of the controller goes to this file instead of its own. The link does not change.
    void AwaitUpload(TransferName newName) { awaited = std::move(newName); }
    bool IsUploadAwaited() const { return awaited.has_value(); }
    // Ends the wait. Unless another transfer is under way, enters UploadCancelled for the awaited file.
    void CancelAwaitedUpload(KelText newReason);
    // Makes the file for an upload under the present name or the awaited one, as UploadFile does, and enters Uploading.
    // A download that waits, requested by `waiting`, ends with errors before. Requires that no file is open for
    // writing. False, with the state that says why, if the file cannot be made, or if the file of that name could not
    // be replaced.
    bool BeginUpload(const std::optional<Request>& waiting = std::nullopt);
    // Makes the file for an upload by hand, which is written byte for byte. Requires that no file is on its way. False
    // as above.
    bool BeginUploadByHand(const TransferName& newName);
    // Whether the upload is complete and waits for its name. Store would end it with errors.
    bool IsCompleting() const { return state == TransferState::Uploading && pause.IsRunning(); }
    // Whether a file is open for writing.
    bool IsStoring() const { return upload.IsOpen(); }
    // Adds to the upload's file. False, with the transfer ended, if not everything could be written: the file then ends
    // with the piece before.
    bool Store(std::string_view bytes);
    // Gives the upload's file its name, once it is on the disk, and ends the upload. False, with the state that says
    // why, if that fails. Waits for up to two seconds while another program holds the older file, and does nothing
    // while it waits.
    void CompleteUpload(Completion completion = {});

    // Ends a transfer that is under way, or a download that waits, with errors: something other than the transfer has
    // ended it. Returns whether there was one.
    bool EndWithErrors(KelText newReason);

    // Ends the transfer, or refuses one that was being prepared, in a state that ends it.
    void End(TransferState newState, KelText newReason = {});
    // Like End. The reason goes into the record alone: the status keeps its usual text.
    void EndUnexplained(TransferState newState, KelText recordedReason);
    // Refuses a request, whatever waits at this moment.
    void Refuse(TransferState newState, KelText newReason);
    // Why the transfer ended as it did or was refused, for the user. Empty if the state says it all.
    const KelText& Reason() const { return reason; }

private:
    // What becomes a row of the history.
    enum class Row {
        OfEnd,     // the transfer that the state ends, if there is one
        OfRefusal, // a request, whatever the state ends
        None
    };
    void Enter(TransferState newState, Urgency urgency, KelText newReason = {}, Row row = Row::OfEnd);
    bool IsFlooded();
    void RefuseFlood();
    void Show(TransferState newState, Urgency urgency, KelText newReason, std::optional<TransferRecord> ended);
    void EndReplaced(const Request& waiting);
    std::optional<TransferOutcome> OutcomeOf(TransferState newState) const;
    TransferRecord RecordOf(TransferOutcome outcome, TransferState newState);
    std::string ChecksumOf(std::int64_t byteCount);
    bool Sum(std::int64_t byteCount, std::size_t most);
    // The path of a whole upload that could not take its name, or empty.
    KelText Release();
    // The same, and what depends on the state that follows.
    KelText ReleaseFor(TransferState newState);
    void Begin(TransferState newState, EndDialog newDialog, std::int64_t range, Urgency urgency);
    bool LoadLines(std::size_t longestLineAllowed);
    bool IsSourceUnchanged();
    void StartDownload();
    void TryToComplete(Clock::TimePoint deadline, const Completion& completion);
    void ContinueAfter(Clock::Duration pause, std::function<void()> next);

    const TransferParts parts;
    TransferState state = TransferState::NoLink;
    TransferName name;
    KelText reason;
    KelText unsaidReason; // for the record of the transfer that ends
    std::int64_t bytesDone = 0;
    std::int64_t bytesTotal = 0;
    Progress bar;
    std::int64_t linesStored = 0; // of an upload
    std::int64_t linesTotal = 0;
    KelText comment;
    Clock::TimePoint requestedAt;
    EndDialog dialog = EndDialog::None;
    bool isTesting = false;
    LineQuality quality;
    std::optional<TransferName> awaited;
    NewNameCount newNames; // of the controller's uploads
    bool isFloodTold = false;
    UploadFile upload;
    SourceFile source; // of a download that is being prepared
    LineList lines;    // of a download for a controller that takes lines
    FileImage image;   // of a download by hand
    std::function<void()> afterPause;
    Timer pause; // runs while BeginDownload or CompleteUpload waits
};

}
