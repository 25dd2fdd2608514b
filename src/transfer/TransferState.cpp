#include "transfer/TransferState.h"

#include "base/Messages.h"

namespace tarvin {

namespace {

// The texts that show no part of the transfer.
const char16_t* FixedText(TransferState state) {
    switch (state) {
    case TransferState::NoLink:
        return text::status::noLink;
    case TransferState::Waiting:
        return text::status::waiting;
    case TransferState::LinkTest:
        return text::status::linkTest;
    case TransferState::DirectoryListing:
        return text::status::directoryListing;
    case TransferState::ControllerOption:
        return text::status::controllerOption;
    case TransferState::DownloadWaiting:
        return text::status::downloadWaiting;
    case TransferState::DownloadRequested:
        return text::status::downloadRequested;
    case TransferState::UploadRequested:
        return text::status::uploadRequested;
    case TransferState::DownloadPreparation:
        return text::status::downloadPreparation;
    case TransferState::UploadPreparation:
        return text::status::uploadPreparation;
    case TransferState::LoopbackFailure:
        return text::status::loopbackFailure;
    case TransferState::LoopbackSuccess:
        return text::status::loopbackSuccess;
    case TransferState::SecondServer:
        return text::status::secondServer;
    default:
        return nullptr;
    }
}

// The texts that name the file and show nothing else of the transfer.
const char16_t* FileText(TransferState state) {
    switch (state) {
    case TransferState::DownloadCouldNotOpen:
        return text::status::downloadCouldNotOpen;
    case TransferState::UploadCouldNotOpen:
        return text::status::uploadCouldNotOpen;
    case TransferState::DownloadErrors:
        return text::status::downloadErrors;
    case TransferState::UploadErrors:
        return text::status::uploadErrors;
    case TransferState::DownloadCancelled:
        return text::status::downloadCancelled;
    case TransferState::UploadCancelled:
        return text::status::uploadCancelled;
    case TransferState::AutoloadCutting:
        return text::status::autoloadCutting;
    case TransferState::UnexpectedError:
    case TransferState::FileFormatError:
        return text::status::fileFormatError;
    case TransferState::ItemNotFound:
        return text::status::itemNotFound;
    default:
        return nullptr;
    }
}

// The texts that name this station, and perhaps the other one.
const char16_t* StationText(TransferState state, bool isServer) {
    switch (state) {
    case TransferState::ServerCannotFindClient:
        return text::status::serverCannotFindClient;
    case TransferState::ClientCannotFindServer:
        return text::status::clientCannotFindServer;
    case TransferState::ServerFoundClient:
        return text::status::serverFoundClient;
    case TransferState::ClientFoundServer:
        return text::status::clientFoundServer;
    case TransferState::SecondClient:
        return text::status::secondClient;
    case TransferState::FileListRequest:
        return isServer ? text::status::serverChecksList : text::status::clientRequestsList;
    case TransferState::FileListCompare:
        return text::status::fileListCompare;
    case TransferState::FileRequest:
        return text::status::fileRequest;
    case TransferState::SynchronisationCompleted:
        return text::status::synchronisationCompleted;
    default:
        return nullptr;
    }
}

}

StatusDescription DescribeState(TransferState state, const StatusArguments& arguments) {
    const KelText& file = arguments.fileName;
    const KelText bytes = ToText(arguments.byteCount);
    if (const char16_t* fixed = FixedText(state))
        return {fixed, false, std::nullopt};
    switch (state) {
    case TransferState::Downloading:
        return {Filled(text::status::downloading, {file, bytes, ToText(arguments.total)}), false, {}};
    case TransferState::Uploading:
        return {Filled(text::status::uploading, {file, bytes}), false, {}};
    case TransferState::DownloadCompleted:
        return {Filled(text::status::downloadCompleted, {file, bytes}), true, {}};
    case TransferState::UploadCompleted:
        return {Filled(text::status::uploadCompleted, {file, bytes}), true, {}};
    case TransferState::DirectoryError:
        return {text::status::directoryError, true, {}};
    case TransferState::Overrun:
        return {text::status::overrun, true, {}};
    case TransferState::ReportOnly:
        return {std::nullopt, true, {}};
    default:
        break;
    }
    if (const char16_t* withFile = FileText(state)) {
        // The line shows an unexpected error as a file format error. The log gets both texts.
        std::optional<KelText> before;
        if (state == TransferState::UnexpectedError)
            before = Filled(text::status::unexpectedError, {file});
        return {Filled(withFile, {file}), true, before};
    }
    if (const char16_t* station = StationText(state, arguments.serverMode))
        return {Filled(station, {arguments.stationName, arguments.peerName}), false, std::nullopt};
    return {std::nullopt, false, std::nullopt};
}

}
