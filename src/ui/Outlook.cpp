#include "ui/Outlook.h"

namespace tarvin {

Outlook OutlookOf(const EngineSnapshot& snapshot) {
    // Without a link nothing goes well, whatever the last transfer has come to.
    if (!snapshot.hasLink)
        return Outlook::Bad;
    switch (snapshot.transferState) {
    case TransferState::DownloadWaiting:
    case TransferState::DownloadRequested:
    case TransferState::UploadRequested:
    case TransferState::DownloadPreparation:
    case TransferState::UploadPreparation:
    case TransferState::Downloading:
    case TransferState::Uploading:
    case TransferState::AutoloadCutting:
    case TransferState::FileListRequest:
    case TransferState::FileListCompare:
    case TransferState::FileRequest:
        return Outlook::Busy;
    case TransferState::LinkTest:
    case TransferState::DownloadCompleted:
    case TransferState::UploadCompleted:
    case TransferState::LoopbackSuccess:
    case TransferState::ServerFoundClient:
    case TransferState::ClientFoundServer:
    case TransferState::SynchronisationCompleted:
        return Outlook::Good;
    case TransferState::NoLink:
    case TransferState::DownloadCouldNotOpen:
    case TransferState::UploadCouldNotOpen:
    case TransferState::DownloadErrors:
    case TransferState::UploadErrors:
    case TransferState::LoopbackFailure:
    case TransferState::DirectoryError:
    case TransferState::Overrun:
    case TransferState::UnexpectedError:
    case TransferState::FileFormatError:
    case TransferState::ItemNotFound:
    case TransferState::ServerCannotFindClient:
    case TransferState::ClientCannotFindServer:
    case TransferState::SecondClient:
    case TransferState::SecondServer:
        return Outlook::Bad;
    case TransferState::Waiting:
    case TransferState::DirectoryListing:
    case TransferState::ControllerOption:
    case TransferState::DownloadCancelled:
    case TransferState::UploadCancelled:
    case TransferState::ReportOnly:
        return Outlook::Idle;
    }
    return Outlook::Idle;
}

}
