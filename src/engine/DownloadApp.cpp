#include "engine/DownloadApp.h"

#include "engine/CommsMonitor.h"

#include <cassert>
#include <utility>

namespace tarvin {

DownloadApp::DownloadApp(EngineSetup setup, KelText machineName)
    : monitor(std::make_unique<Monitor>(std::move(setup), std::move(machineName))) {}

DownloadApp::~DownloadApp() {
    DownloadApp::Stop();
}

void DownloadApp::Start() {
    starter.AssertOwned();
    assert(!wasStarted);
    wasStarted = true;
    monitor->Load();
    thread = std::make_unique<CommsMonitor>(*monitor);
}

void DownloadApp::Stop() {
    starter.AssertOwned();
    thread.reset();
}

void DownloadApp::SetHeartbeat(std::optional<std::chrono::microseconds> period, std::function<void()> beat) {
    monitor->Post([period, beat = std::move(beat)](Monitor& owner) { owner.StartHeartbeat(period, beat); });
}

const KelText& DownloadApp::MachineName() const {
    return monitor->MachineName();
}

EngineSnapshot DownloadApp::Snapshot() const {
    return monitor->Snapshot();
}

TrafficQueue& DownloadApp::Traffic() {
    return monitor->Traffic();
}

void DownloadApp::ApplySettings(DownloadSettings settings) {
    monitor->Post([settings = std::move(settings)](Monitor& owner) { owner.ApplySettings(settings); });
}

void DownloadApp::KeepSettings(DownloadSettings settings) {
    monitor->Post([settings = std::move(settings)](Monitor& owner) { owner.KeepSettings(settings); });
}

void DownloadApp::ReloadSettings(std::function<void(RequestAnswer)> answer) {
    assert(wasStarted);
    monitor->ReloadSettings(std::move(answer));
}

void DownloadApp::SetHandshakes(bool heedsCts, bool heedsDsr) {
    monitor->Post([heedsCts, heedsDsr](Monitor& owner) { owner.SetHandshakes(heedsCts, heedsDsr); });
}

void DownloadApp::StartCommsLog(std::filesystem::path path) {
    monitor->Post([path = std::move(path)](Monitor& owner) { owner.StartCommsLog(path); });
}

void DownloadApp::StartRollingCommsLog(std::filesystem::path path, std::uint64_t sizeLimit) {
    monitor->Post([path = std::move(path), sizeLimit](Monitor& owner) { owner.StartRollingCommsLog(path, sizeLimit); });
}

void DownloadApp::StopCommsLog() {
    monitor->Post([](Monitor& owner) { owner.StopCommsLog(); });
}

void DownloadApp::SendFile(std::filesystem::path path) {
    monitor->Post([path = std::move(path)](Monitor& owner) { owner.SendFile(path); });
}

void DownloadApp::ReceiveFile(std::filesystem::path path) {
    monitor->Post([path = std::move(path)](Monitor& owner) { owner.ReceiveFile(path); });
}

void DownloadApp::CompleteUpload() {
    monitor->Post([](Monitor& owner) { owner.CompleteUpload(); });
}

void DownloadApp::CancelUpload() {
    monitor->Post([](Monitor& owner) { owner.CancelUpload(); });
}

void DownloadApp::CancelDownload() {
    monitor->Post([](Monitor& owner) { owner.CancelDownload(); });
}

void DownloadApp::Announce(KelText announcement) {
    monitor->Post([announcement = std::move(announcement)](Monitor& owner) { owner.Shown().Announce(announcement); });
}

void DownloadApp::MarkSeen(KelText number, TransferDirection direction) {
    monitor->Post(
        [number = std::move(number), direction](Monitor& owner) { owner.Shown().MarkSeen(number, direction); });
}

void DownloadApp::ResetLink() {
    monitor->Post([](Monitor& owner) { owner.ResetLink(); });
}

void DownloadApp::SendXoffTest() {
    monitor->Post([](Monitor& owner) { owner.Tests().StartXoff(); });
}

void DownloadApp::StartLoopbackTest() {
    monitor->Post([](Monitor& owner) { owner.StartLoopbackTest(); });
}

}
