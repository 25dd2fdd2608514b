#include "transfer/TransferState.h"

namespace tarvin {

namespace {

const char16_t* FixedText(TransferState state) {
    switch (state) {
    case TransferState::NoLink:
        return u"No Link";
    case TransferState::Waiting:
        return u"Waiting...";
    case TransferState::LinkTest:
        return u"Loop Back Test";
    case TransferState::DirectoryListing:
        return u"Directory Listing";
    case TransferState::ControllerOption:
        return u"NC Controller Option";
    case TransferState::DownloadWaiting:
        return u"Download Waiting For Controller";
    case TransferState::DownloadRequested:
        return u"Download Request Received";
    case TransferState::UploadRequested:
        return u"Upload Request Received";
    case TransferState::DownloadPreparation:
        return u"Download Preparation";
    case TransferState::UploadPreparation:
        return u"Upload Preparation";
    case TransferState::LoopbackFailure:
        return u"Local Loopback Test Failure";
    case TransferState::LoopbackSuccess:
        return u"Local Loopback Test Success";
    case TransferState::SecondServer:
        return u"Configuration Error! Server has found 2nd DNC Server!";
    default:
        return nullptr;
    }
}

// The text that stands before the name of the file, for the states that say no more than that.
const char16_t* TextBeforeFileName(TransferState state) {
    switch (state) {
    case TransferState::DownloadCouldNotOpen:
        return u"Download could not open/read from";
    case TransferState::UploadCouldNotOpen:
        return u"Upload could not open/write to";
    case TransferState::DownloadErrors:
        return u"Download Error(s)";
    case TransferState::UploadErrors:
        return u"Upload Error(s)";
    case TransferState::DownloadCancelled:
        return u"Download Cancelled";
    case TransferState::UploadCancelled:
        return u"Upload Cancelled";
    case TransferState::AutoloadCutting:
        return u"Autoload Cutting";
    case TransferState::UnexpectedError:
    case TransferState::FileFormatError:
        return u"File format error";
    case TransferState::ItemNotFound:
        return u"Item not found error";
    default:
        return nullptr;
    }
}

std::optional<KelText> StationText(TransferState state, const StatusArguments& arguments) {
    const KelText client = u"Client: " + arguments.stationName;
    const KelText server = u"Server: " + arguments.stationName;
    switch (state) {
    case TransferState::ServerCannotFindClient:
        return server + u" cannot find DNC Client";
    case TransferState::ClientCannotFindServer:
        return client + u" cannot find DNC Server";
    case TransferState::ServerFoundClient:
        return server + u" has found DNC Client: " + arguments.peerName;
    case TransferState::ClientFoundServer:
        return client + u" has found DNC Server: " + arguments.peerName;
    case TransferState::SecondClient:
        return u"Configuration Error! " + client + u" has found 2nd DNC Client: " + arguments.peerName + u"!";
    case TransferState::FileListRequest:
        return arguments.serverMode ? server + u" Checking NC File List"
                                    : client + u" Requesting File List from Server: " + arguments.peerName;
    case TransferState::FileListCompare:
        return client + u" Comparing NC File Lists";
    case TransferState::FileRequest:
        return client + u" Requesting NC File";
    case TransferState::SynchronisationCompleted:
        return client + u" NC File Synchronisation Completed";
    default:
        return std::nullopt;
    }
}

}

StatusDescription DescribeState(TransferState state, const StatusArguments& arguments) {
    const KelText& file = arguments.fileName;
    const KelText bytes = ToText(arguments.byteCount);
    if (const char16_t* text = FixedText(state))
        return {text, false, std::nullopt};
    switch (state) {
    case TransferState::Downloading:
        return {
            u"Downloading " + file + u" - " + bytes + u" of " + ToText(arguments.total) + u" bytes sent.", false, {}};
    case TransferState::Uploading:
        return {u"Uploading " + file + u" - " + bytes + u" bytes received.", false, {}};
    case TransferState::DownloadCompleted:
        return {u"Download Completed " + file + u" - " + bytes + u" bytes", true, {}};
    case TransferState::UploadCompleted:
        return {u"Upload Completed " + file + u" - " + bytes + u" bytes in file.", true, {}};
    case TransferState::DirectoryError:
        return {u"Directory Listing: Error", true, {}};
    case TransferState::Overrun:
        return {u"Over Run Error! Data loss has occurred!", true, {}};
    case TransferState::ReportOnly:
        return {std::nullopt, true, {}};
    default:
        break;
    }
    if (const char16_t* text = TextBeforeFileName(state)) {
        // An unexpected error is shown as a file that cannot be right, and both are put on record.
        std::optional<KelText> before;
        if (state == TransferState::UnexpectedError)
            before = u"Unexpected error " + file;
        return {text + (u" " + file), true, before};
    }
    return {StationText(state, arguments), false, std::nullopt};
}

}
