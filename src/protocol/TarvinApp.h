#pragma once
// The conversation with the machine's controller. The controller begins every exchange and the program only answers:
// link test, upload (the controller sends a file) and download (it asks for one by number). Monitor thread.

#include "protocol/DelayedDownload.h"
#include "protocol/IncomingCheck.h"

#include <optional>
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
    void Abandon() override;
    // The controller does not know that its transfer has ended: it is told at its next message about it.
    void OnTransferLost() override;
    bool IsConversation() const override { return true; }

private:
    bool IsLeftAloneWhileHeld(const ReceivedMessage& next);
    void Judge(const ReceivedMessage& next, bool isRight);
    void HandleMessage();
    bool IsDataOfUpload() const;
    bool IsDamagedPartOfUpload() const;
    bool IsRepeatAwaited() const;
    void OnDamagedPartOfUpload();
    void NoteDamage(KelTextView note);
    bool RepeatLastAnswer();
    bool RefuseLostTransfer();
    bool HandleUploadEnd();
    bool HandleRequest();
    bool HandleAcknowledgement();

    void DropAbandoned();
    void CountQuality();
    // The request of a download that waits for its delay.
    using WaitingDownload = std::optional<Transfer::Request>;
    WaitingDownload BeginRequest();
    void Refuse(TransferState newState, KelTextView why, std::string_view answer, const WaitingDownload& waiting);
    void Resume(const WaitingDownload& waiting);
    void DropWaiting(const Transfer::Request& waiting);
    void OnUploadRequest();
    void OnDataLine();
    void OnDownloadRequest();
    void BeginDownload();
    void SendNextDataLine();
    void OnResend();
    void EndDownload(KelTextView reason);

    bool NameTransfer(const KelText& folder);
    void Send(std::string_view text);
    void SendLast(std::string_view answer, std::string_view repeatedBy);

    // The last answer of a transfer, for a controller that did not get it.
    struct LastAnswer {
        std::string_view text;       // a code
        std::string_view repeatedBy; // the code of the message that asks for it again
        int repeatsLeft = 0;
    };

    const ProtocolParts parts;
    Transfer& transfer;
    IncomingCheck incoming;
    std::string message;    // the last one received, with its checksum character
    bool isDamaged = false; // of that message, as its driver errors below
    std::uint32_t driverErrorCount = 0;
    int damagedInARow = 0;    // messages of the upload that is under way
    std::string uploadNumber; // of the last upload that was accepted
    bool hasLine = false;     // of that upload, empty ones included
    std::string dataMessage;  // the last one sent, for a repeat
    LastAnswer lastAnswer;
    std::string frame;
    bool isRequestUsable = false; // the number of the download that waits or has begun may name a file
    bool hasLostTransfer = false;
    int failedAttempts = 0; // of the data line last sent
    DelayedDownload download;
};

}
