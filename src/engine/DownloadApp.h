#pragma once
// The download engine: transfers raw bytes by itself, tests the line, and keeps the states of link and transfer. A
// subclass that speaks a controller's protocol overrides ProcessReceivedData, SendNextBlock and BeginDownload. Knows
// nothing of any protocol.
//
// Threads are those of LinkEngine.

#include "engine/LinkEngine.h"
#include "transfer/FileImage.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarvin {

class DownloadApp : public LinkEngine {
public:
    DownloadApp(EngineSetup setup, KelText machine);
    ~DownloadApp() override;

    // Operations of the window. A file is sent or received only if none is on its way; its folder and its extension
    // become those of the settings. What ends a transfer does nothing without one.
    void SendFile(const std::filesystem::path& path);
    void ReceiveFile(const std::filesystem::path& path);
    void CompleteUpload();
    void CancelUpload();
    void CancelDownload();
    void EndOfServe();
    void SendXoffTest();
    void StartLoopbackTest();
    // Sends the text each `period` from now on.
    void SetPingText(std::string text, std::chrono::milliseconds period);

protected:
    // Takes what has been received. Called after each read and while bytes are left. Raw: into the upload's file.
    virtual void ProcessReceivedData();
    // Called whenever the driver has sent all it was given and the line is not held. Raw: the next block of the file.
    virtual void SendNextBlock();
    // The transmit delay is over and the state is DownloadPreparation. Raw: calls the user.
    virtual void BeginDownload();
    // The ping timer's tick.
    virtual void Ping();
    // Asks the other station for its list of files, where stations keep their files in step.
    virtual void RequestFileList() {}
    // Raw: ends the transfer, for nothing would notice a gap.
    void EndUnsafeTransfer() override;

    // Sends the start character if there is one and begins the download, at once or after the transmit delay.
    void DownloadNow();
    // Gives up a download whose delay still runs.
    void DropDelayedDownload() { downloadNow.reset(); }
    // Queues the bytes for the line; no formatting, a percent sign is a byte like any other.
    void SendText(std::string_view text) { line.Transmit().AppendText(text); }
    void SendChar(std::uint8_t byte, bool continuation) { line.Transmit().Append(byte, continuation); }

private:
    void StopTimers() override;
    void OnReceived() override;
    void OnLineFree() override;

    void CheckLoopback();
    void StartDownload();
    void SendBytes(int count);
    void EndOfServeTick();
    void ResetLink();
    void NameTransfer(const std::filesystem::path& path);
    // The next files are looked for under it.
    void RememberExtension(const std::filesystem::path& path);
    void BeginTransfer(TransferState state, std::int64_t range, EndDialog endDialog);
    void ReleaseTransfer(std::int64_t range);
    void EndTransfer(TransferState state);

    FileImage fileImage;
    std::string pingText;
    Timer pingNow;
    Timer endOfServe;
    Timer testXon;
    std::unique_ptr<Timer> downloadNow;
};

}
