#pragma once
// The conversation with the machine's controller. The controller begins every exchange and the program only answers:
// link test, upload (the controller sends a file) and download (it asks for one by number). Knows nothing of how bytes
// get on the line or a file to the disk.
//
// Monitor thread only, like the engine that it extends.

#include "engine/DownloadApp.h"
#include "transfer/LineList.h"

#include <string>
#include <string_view>

namespace tarvin {

class TarvinApp : public DownloadApp {
public:
    static constexpr const char16_t* defaultMachineName = u"TARVIN";

    // An empty name stands for the default one.
    TarvinApp(EngineSetup setup, KelText machineName);
    ~TarvinApp() override { Terminate(); }

protected:
    void ProcessReceivedData() override;
    // Data goes out only in answer to the controller.
    void SendNextBlock() override {}
    void BeginDownload() override;
    // Each line is acknowledged, so that a gap shows: the controller decides whether the transfer goes on.
    void EndUnsafeTransfer() override {}

private:
    void HandleMessage();
    bool HandleUploadMessage();
    bool HandleRequest();
    bool HandleAcknowledgement();

    void OnLinkTest();
    void OnUploadRequest();
    void OnDataLine();
    void OnEndOfUpload();
    void OnDownloadRequest();
    void SendNextDataLine();
    void OnResend();

    // Sets the path and caption of the transfer from the number in `incomingLine`; false if that number names no file.
    bool MakeTransferPath(const KelText& folder);
    LineList::LoadResult LoadLines();
    bool CanSendLines() const;
    void SendMessage(std::string_view text);
    void Fail(TransferState state, std::string_view answer);
    void FailUpload();

    int retryCount = 0; // failed attempts of the data line last sent; only "ABAK" ends the count
    std::string incomingLine;
    std::string lastDataMessage;
    std::string frame;
    LineList lines;
};

}
