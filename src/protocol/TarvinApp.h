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

    // Answers each message in the bytes. Each line of a transfer is acknowledged, so a gap shows, and the controller
    // decides after an outage whether the transfer goes on.
    void OnReceived(ReceiveBuffer& received) override;

private:
    void HandleMessage();
    bool HandleUploadMessage();
    bool HandleRequest();
    bool HandleAcknowledgement();

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
    int failedAttempts = 0; // of the data line last sent; only "ABAK" ends the count
    DelayedDownload download;
};

}
