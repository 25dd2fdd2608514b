#pragma once
// The states of link and transfer, and the status texts that show them. Transfer.h tells which may follow which. Some
// are entered by no part of this program: they belong to machines and networks that it does not serve yet (3, 4, 6, 7,
// 11, 20, 23, 25, 27 to 29 and 31 to 38).

#include "base/KelText.h"

#include <cstdint>
#include <optional>

namespace tarvin {

enum class TransferState : std::int32_t {
    NoLink = 0,
    Waiting = 1,
    LinkTest = 2,
    DirectoryListing = 3,
    ControllerOption = 4,
    DownloadWaiting = 5,
    DownloadRequested = 6,
    UploadRequested = 7,
    DownloadPreparation = 8,
    DownloadCouldNotOpen = 9,
    UploadCouldNotOpen = 10,
    UploadPreparation = 11,
    Downloading = 12,
    Uploading = 13,
    DownloadErrors = 14,
    UploadErrors = 15,
    DownloadCancelled = 16,
    UploadCancelled = 17,
    DownloadCompleted = 18,
    UploadCompleted = 19,
    AutoloadCutting = 20,
    LoopbackFailure = 21,
    LoopbackSuccess = 22,
    DirectoryError = 23,
    Overrun = 24,
    UnexpectedError = 25,
    FileFormatError = 26,
    ItemNotFound = 27,
    ReportOnly = 28,
    ServerCannotFindClient = 29,
    ClientCannotFindServer = 30,
    ServerFoundClient = 31,
    ClientFoundServer = 32,
    SecondClient = 33,
    SecondServer = 34,
    FileListRequest = 35,
    FileListCompare = 36,
    FileRequest = 37,
    SynchronisationCompleted = 38,
};

// Whether a file is on its way.
constexpr bool IsTransferring(TransferState state) {
    return state == TransferState::Downloading || state == TransferState::Uploading;
}

// The dialog by which a user ends a transfer that was begun by hand.
enum class EndDialog { None, Download, Upload };

// The values in the status texts.
struct StatusArguments {
    KelText fileName; // the path of the transfer
    std::int64_t byteCount = 0;
    std::int64_t total = 0;
    KelText stationName;
    KelText peerName;
    bool serverMode = false;
};

struct StatusDescription {
    std::optional<KelText> line; // none: the status line stays
    bool isReported = false;     // the line goes to the activity log too
    // A line for the activity log before `line`. It is never shown.
    std::optional<KelText> reportedBefore;
};

// Takes any number as a state; a number without a text leaves the line unchanged.
StatusDescription DescribeState(TransferState state, const StatusArguments& arguments);

}
