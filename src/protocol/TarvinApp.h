#pragma once
// The conversation with the machine's controller. The controller begins every exchange and the program only answers:
// link test, upload (the controller sends a file) and download (it asks for one by number). Monitor thread.

#include "protocol/DelayedDownload.h"

#include <string>
#include <string_view>

namespace tarvin {

class TarvinApp : public Protocol {
public:
    static constexpr const char16_t* defaultMachineName = u"TARVIN";

    // The settings of a machine without a settings file. The extension is empty.
    static DownloadSettings FirstSettings();

    explicit TarvinApp(const ProtocolParts& parts);

    // Answers each message in the bytes.
    void OnReceived(ReceiveBuffer& received) override;
    void Abandon() override { download.Drop(); }
    // The controller does not know that its transfer has ended: it is told at its next message about it.
    void OnTransferLost() override { hasLostTransfer = true; }

private:
    bool IsRepeatOfHeldMessage(const std::string& next);
    void HandleMessage();
    bool RefuseLostTransfer();
    bool HandleUploadMessage();
    bool HandleRequest();
    bool HandleAcknowledgement();

    void DropAbandoned();
    void OnUploadRequest();
    void OnDataLine();
    void OnDownloadRequest();
    void BeginDownload();
    void SendNextDataLine();
    void OnResend();

    bool NameTransfer(const KelText& folder);
    void Send(std::string_view text);

    const ProtocolParts parts;
    Transfer& transfer;
    std::string message;       // the last one received, with its checksum character
    std::string_view codeText; // where codes count: the message, or the payload once it has been stored
    std::string dataMessage;   // the last one sent, for a repeat
    std::string frame;
    bool isRequestUsable = false; // the number of the download that waits or has begun may name a file
    bool hasLostTransfer = false;
    int failedAttempts = 0; // of the data line last sent; only "ABAK" ends the count
    DelayedDownload download;
};

}
