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
#include "files/KelFile.h"
#include "messages/MessageReport.h"
#include "transfer/LineList.h"
#include "transfer/TransferState.h"

#include <atomic>
#include <span>
#include <string_view>

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
    virtual void ShowMessage(const MessageBoxText& box) = 0;
    // A file is to be sent, and the user is wanted.
    virtual void DrawAttention() = 0;
};

class Transfer {
public:
    // A file that takes long to read is given up as soon as `isClosing` is set, by any thread.
    Transfer(TransferObserver& observer, const std::atomic<bool>& isClosing, const ThreadOwner& thread);

    TransferState State() const { return state; }
    // Whether a file is on its way.
    bool IsUnderWay() const { return IsTransferring(state); }
    const TransferName& Name() const { return name; }
    // Bytes sent or received so far, and the size of a download.
    std::int64_t BytesDone() const { return bytesDone; }
    std::int64_t BytesTotal() const { return bytesTotal; }
    struct Progress {
        std::int64_t position = 0;
        std::int64_t range = 0;
    };
    const Progress& Bar() const { return bar; }
    // None unless a transfer that was begun by hand is under way.
    EndDialog Dialog() const { return IsUnderWay() ? dialog : EndDialog::None; }

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
    // Calls the user: the machine cannot request its file.
    void CallUser() { observer.DrawAttention(); }
    // Reads the file of the present name as lines and enters Downloading. False, with the state that says why, if it
    // cannot be opened, or if it has a line that the controller cannot take.
    bool BeginDownload(std::size_t longestLineAllowed);
    // The next line of a download that is not empty; empty at the end of the file. Valid until the transfer ends.
    std::string_view NextLine() { return lines.NextNonEmpty(); }
    void CountSent(std::int64_t byteCount);
    // Reads the whole file as bytes, for a download by hand. Requires that no file is on its way. False, with the state
    // that says why, if it cannot be read; the caption then stays.
    bool BeginDownloadByHand(const TransferName& newName);
    // The next bytes of it, at most `byteCount`; none at its end.
    std::span<const std::uint8_t> NextBlock(std::size_t byteCount);

    // Opens the file of the present name and enters Uploading. An upload that was begun by hand goes on in the file
    // that is open. False, with the state that says why, if it cannot be opened.
    bool BeginUpload();
    // Opens the file for an upload by hand, which is written byte for byte. Requires the same. False as above.
    bool BeginUploadByHand(const TransferName& newName);
    // Whether a file is open for writing.
    bool IsStoring() const { return file.IsWriting(); }
    // Adds to the upload's file. False, with the transfer ended, if not everything could be written.
    bool Store(std::string_view bytes);
    // Completes the upload once its file is on the disk. False, with the state that says why, if it cannot get there.
    bool CompleteUpload();

    // For the end of the program: writes the received part of an upload to the disk. The state stays.
    void KeepFile();

    // Ends a transfer that is under way, or a download that waits, with errors: something other than the transfer has
    // ended it. Returns whether there was one.
    bool EndWithErrors();

    // Ends the transfer, or refuses one, in a state that ends it.
    void End(TransferState newState, KelText newReason = {});
    // Why the transfer ended as it did or was refused, for the user. Empty if the state says it all.
    const KelText& Reason() const { return reason; }

private:
    void Enter(TransferState newState, Urgency urgency, KelText newReason = {});
    void Release();
    void ReleaseFor(TransferState newState);
    void Begin(TransferState newState, EndDialog newDialog, std::int64_t range, Urgency urgency);
    LineList::LoadResult LoadLines();

    TransferObserver& observer;
    const std::atomic<bool>& isClosing;
    const ThreadOwner& thread;
    TransferState state = TransferState::NoLink;
    TransferName name;
    KelText reason;
    std::int64_t bytesDone = 0;
    std::int64_t bytesTotal = 0;
    Progress bar;
    EndDialog dialog = EndDialog::None;
    bool isTesting = false;
    KelFile file;    // of an upload
    LineList lines;  // of a download for a controller that takes lines
    FileImage image; // of a download by hand
};

}
