#include "engine/Monitor.h"

#include "base/Messages.h"
#include "base/TrafficMessages.h"
#include "messages/MessageAdvice.h"
#include "settings/PortSettings.h"

#include <algorithm>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto reopenPeriod = 1000ms;
constexpr auto longestIdle = 1h;
// A user who picks a file to receive goes to the machine then.
constexpr auto longestAwaited = 10min;
// The answer to the end of a transfer needs a moment to leave the port.
constexpr auto reloadRetryPeriod = 250ms;
constexpr int idleLooksBeforeReload = 2;

}

Monitor::Monitor(EngineSetup setup, KelText machineName)
    : machineName(std::move(machineName)),
      clock(setup.clock),
      events(setup.events),
      store(std::move(setup.installation), this->machineName, std::move(setup.ncFilesFolder)),
      settings(std::move(setup.firstSettings)),
      trace(traffic, clock),
      logs(clock, trace, events, std::move(setup.logFiles)),
      display({transfer, line, settings, this->machineName}, events, logs, timers, clock),
      transfer({display, settings, timers, clock, isClosing, thread, std::move(setup.linkedFolders)}),
      line(std::move(setup.port), clock, logs.Recorder(), *this, thread),
      tests(transfer, line, logs.Recorder(), timers, clock),
      network(transfer, line, display, settings, timers, clock),
      outage(events, timers, clock),
      makeProtocol(std::move(setup.makeProtocol)),
      reopenPort(timers, clock, "DownloadApp::ReopenPort", reopenPeriod, Timer::Kind::Repeating,
                 [this] { ReopenPort(); }),
      endOfAwaited(timers, clock, "DownloadApp::EndOfAwaitedUpload", longestAwaited, Timer::Kind::OneShot,
                   [this] { EndAwaitedUpload(text::transferReason::nothingReceived); }),
      retryReload(timers, clock, "DownloadApp::RetryReload", reloadRetryPeriod, Timer::Kind::Repeating,
                  [this] { RetryReload(); }) {
    ChooseProtocol();
}

// The settings must be in place: the new protocol reads them.
void Monitor::ChooseProtocol() {
    protocol = makeProtocol(
        {transfer, line, settings, timers, clock, [this](bool sendsChecksums) { NoteChecksums(sendsChecksums); }});
    display.ShowConversation(protocol->IsConversation());
}

void Monitor::Post(Command command) {
    {
        const MutexLock lock(commandMutex);
        commands.push_back(std::move(command));
    }
    Wake();
}

void Monitor::RunCommands() {
    std::vector<Command> due;
    {
        const MutexLock lock(commandMutex);
        due.swap(commands);
    }
    for (const Command& command : due)
        command(*this);
}

void Monitor::PrepareClose() {
    isClosing = true;
    line.CancelWrite();
}

void Monitor::Load() {
    auto loaded = store.Load(settings);
    settings = std::move(loaded.settings);
    ChooseProtocol();
    events.SettingsChanged(settings);
    if (loaded.warning)
        events.ShowMessage(*loaded.warning);
    if (loaded.isForeign)
        startNotice = Filled(text::notice::settingsForeign, {FromPath(store.FilePath())});
}

void Monitor::Open() {
    thread.AssertOwned();
    logs.OpenHistory(machineName, settings);
    OpenPort();
    transfer.Wait(Urgency::NextTick);
    display.Start();
    if (!startNotice.empty())
        display.Announce(std::exchange(startNotice, {}));
}

// The line comes before logs and display, so an answer leaves in the pass that read the question.
bool Monitor::RunPass() {
    thread.AssertOwned();
    RunCommands();
    const bool isMoreDue = line.Look();
    transfer.FollowChecksum();
    trace.ShowOpenLine();
    outage.Follow(line.IsWorking());
    // A timer may queue an answer, such as the first line after a transmit delay. It goes out with the next look, at
    // once.
    const bool hasFired = timers.RunDue(clock.Now());
    if (trace.TakeWakeUp())
        events.TrafficArrived();
    logs.Flush();
    if (auto past = logs.TakePastTransfers())
        display.ShowPastTransfers(std::move(*past));
    display.ShowCommsLog(logs.IsCommsLogOn());
    display.FollowPass();
    return isMoreDue || (hasFired && !line.IsEmpty());
}

void Monitor::WaitForWork() {
    thread.AssertOwned();
    const auto due = timers.NextDue();
    const bool isWatched = logs.IsCommsLogOn() || trace.IsWanted() || transfer.IsUnderWay();
    line.Wait(due ? *due - clock.Now() : longestIdle, isWatched);
}

void Monitor::Close() {
    thread.AssertOwned();
    isClosing = true;
    // Runs commands that were posted while the line was slow.
    RunCommands();
    display.Stop();
    reopenPort.Stop();
    endOfAwaited.Stop();
    heartbeat.reset();
    retryReload.Stop();
    line.ClosePort();
    SaveSettings();
    AbandonTransfer(text::transferReason::programEnd);
    logs.Close();
}

void Monitor::StartHeartbeat(std::optional<Clock::Duration> period, std::function<void()> beat) {
    beat();
    if (!period || heartbeat)
        return;
    heartbeat.emplace(timers, clock, "DownloadApp::Heartbeat", *period, Timer::Kind::Repeating, std::move(beat));
    heartbeat->Start();
}

void Monitor::SaveSettings() {
    const auto saved = store.SaveSettings(settings);
    if (saved)
        return;
    const KelText problem = Filled(text::box::settingsNotSaved, {FromPath(store.FilePath()), saved.Reason().text});
    events.ShowMessage(
        WithAdvice(MessageKind::SettingsNotSaved, {problem, text::box::problemCaption, okOnly | iconExclamation}));
}

void Monitor::OnReceived(ReceiveBuffer& received) {
    tests.OnReceived(received);
    protocol->OnReceived(received);
}

void Monitor::OnPortProblem(const PortProblem& problem) {
    if (!outage.Note(problem) || !trace.IsWanted())
        return;
    // A note is one line, and the port's name and the reason are two.
    KelText onOneLine = problem.text;
    std::replace(onOneLine.begin(), onOneLine.end(), u'\n', u' ');
    trace.Note(ToUtf8(Filled(text::trafficNote::portProblem, {problem.stepName, onOneLine})));
}

bool Monitor::AbandonTransfer(KelTextView reason) {
    protocol->Abandon();
    return transfer.EndWithErrors(KelText(reason));
}

void Monitor::OnOverrun() {
    AbandonTransfer(text::transferReason::charactersLost);
    transfer.ShowOverrun();
}

void Monitor::NoteChecksums(bool sendsChecksums) {
    settings.sendsChecksums = sendsChecksums ? 1 : 0;
    events.SettingsChanged(settings);
    // The loss of a check is news for a user. Its begin is none.
    if (sendsChecksums)
        line.Note(ToUtf8(text::notice::sendsChecksums));
    else
        display.Announce(text::notice::sendsNoChecksums);
}

void Monitor::OnLinkLost() {
    if (AbandonTransfer(text::transferReason::linkLost))
        protocol->OnTransferLost();
    display.ShowLink();
    trace.Note(ToUtf8(line.Title()));
    reopenPort.Start();
}

// A port that is opened again has lost what was on its way, and a transfer with it.
void Monitor::OpenPort() {
    if (AbandonTransfer(text::transferReason::portReopened))
        protocol->OnTransferLost();
    line.OpenPort(settings, machineName);
    display.ShowLink();
    if (line.IsOpen())
        reopenPort.Stop();
    else
        reopenPort.Start();
}

void Monitor::ReopenPort() {
    if (!line.Reopen(settings, machineName))
        return;
    reopenPort.Stop();
    display.ShowLink();
    logs.LogLine(ToUtf8(line.Title()), true);
}

void Monitor::ApplySettings(DownloadSettings newSettings) {
    const bool isOtherKind = IsByHand(settings) != IsByHand(newSettings);
    // A port that could be configured in part only would stay so: each application is one more attempt.
    const bool reopens = ReopensPort(settings, newSettings) || (!line.IsLinked() && !transfer.IsUnderWay());
    KeepSettings(std::move(newSettings));
    if (isClosing || !reopens)
        return;
    // The protocol that has begun a transfer ends it, before the other one takes its place.
    if (isOtherKind) {
        EndAwaitedUpload(text::transferReason::portReopened);
        AbandonTransfer(text::transferReason::portReopened);
        ChooseProtocol();
    }
    OpenPort();
}

void Monitor::KeepSettings(DownloadSettings newSettings) {
    // The program finds this out by itself, perhaps while the user changes the others.
    newSettings.sendsChecksums = settings.sendsChecksums;
    settings = std::move(newSettings);
    events.SettingsChanged(settings);
}

void Monitor::ReloadSettings(std::function<void(RequestAnswer)> answer) {
    const MutexLock lock(reloadMutex);
    Post([loaded = store.ReadAgain(), answer = std::move(answer)](Monitor& owner) {
        // At its end the program reads the file once more, to save its settings.
        if (!owner.isClosing)
            answer(owner.TakeReloaded(loaded));
    });
}

RequestAnswer Monitor::TakeReloaded(SettingsStore::LoadResult loaded) {
    if (loaded.warning || loaded.isForeign) {
        display.Announce(text::notice::settingsNotReloaded);
        return RequestAnswer::Refused;
    }
    waitingSettings = std::move(loaded);
    if (ApplyReloaded())
        return RequestAnswer::Done;
    display.Announce(text::notice::settingsWait);
    idleLooks = 0;
    retryReload.Start();
    return RequestAnswer::Later;
}

// False if the settings wait on. They are merged only now: the user may have changed others while they waited.
bool Monitor::ApplyReloaded() {
    DownloadSettings changed = store.WithChangesOf(*waitingSettings, settings);
    const bool isBusy = transfer.IsUnderWay() || transfer.IsPending();
    if (isBusy && ReopensPort(settings, changed))
        return false;
    store.NoteLoaded(*waitingSettings);
    waitingSettings.reset();
    ApplySettings(std::move(changed));
    display.Announce(text::notice::settingsReloaded);
    return true;
}

void Monitor::RetryReload() {
    const bool isIdle = !transfer.IsUnderWay() && !transfer.IsPending() && line.IsEmpty();
    idleLooks = isIdle ? idleLooks + 1 : 0;
    if (!waitingSettings || (idleLooks >= idleLooksBeforeReload && ApplyReloaded()))
        retryReload.Stop();
}

void Monitor::SetHandshakes(bool heedsCts, bool heedsDsr) {
    DownloadSettings changed = settings;
    changed.ctsFlow = heedsCts ? 1 : 0;
    changed.dsrFlow = heedsDsr ? 1 : 0;
    ApplySettings(std::move(changed));
}

void Monitor::StartCommsLog(const std::filesystem::path& path) {
    settings.commsLogFileName = FromPath(path);
    events.SettingsChanged(settings);
    logs.StartCommsLog(path, settings, 0);
    logs.Flush();
    display.ShowCommsLog(logs.IsCommsLogOn());
    display.ShowAgain();
}

void Monitor::StartRollingCommsLog(const std::filesystem::path& path, std::uint64_t sizeLimit) {
    logs.StartCommsLog(path, settings, sizeLimit);
}

void Monitor::StopCommsLog() {
    logs.EndCommsLog(text::trace::endOfLogging);
}

void Monitor::SendFile(const std::filesystem::path& path) {
    // The controller may have begun a transfer while the user chose the file.
    if (transfer.IsUnderWay() || isClosing || protocol->IsConversation())
        return;
    const TransferName name = {FromPath(path), FromPath(path.filename()), u" " + FromPath(path)};
    if (RefuseWithoutLink(name, TransferState::DownloadErrors))
        return;
    // A held line may still have the end of a download that was cancelled.
    line.DropUnsent();
    protocol->OnBeginByHand();
    transfer.BeginDownloadByHand(name);
}

// A transfer that waits for a port would begin by itself when the port opens: perhaps much later, while the machine is
// unattended.
bool Monitor::RefuseWithoutLink(const TransferName& name, TransferState refused) {
    if (line.IsOpen())
        return false;
    transfer.NoteRequest();
    transfer.SetName({name.path, name.fileName, {}});
    transfer.End(refused, text::transferReason::noLink);
    return true;
}

void Monitor::ReceiveFile(const std::filesystem::path& path) {
    if (transfer.IsUnderWay() || isClosing)
        return;
    const KelText fileName = FromPath(path.filename());
    const TransferName name = {FromPath(path), fileName, u" " + fileName};
    if (protocol->IsConversation()) {
        AwaitUpload(name);
    } else if (!RefuseWithoutLink(name, TransferState::UploadErrors)) {
        protocol->OnBeginByHand();
        transfer.BeginUploadByHand(name);
    }
}

void Monitor::AwaitUpload(const TransferName& name) {
    transfer.AwaitUpload(name);
    endOfAwaited.Start();
    display.ShowNow();
}

void Monitor::EndAwaitedUpload(KelTextView reason) {
    endOfAwaited.Stop();
    if (transfer.IsUploadAwaited())
        transfer.CancelAwaitedUpload(KelText(reason));
}

// The transfer may have ended by itself while the user reached for the button.
void Monitor::CompleteUpload() {
    EndAwaitedUpload({});
    if (transfer.State() == TransferState::Uploading)
        transfer.CompleteUpload();
}

void Monitor::CancelUpload() {
    EndAwaitedUpload({});
    // The received part is kept: it may be all there is of the file.
    if (transfer.State() == TransferState::Uploading)
        transfer.End(TransferState::UploadCancelled);
}

void Monitor::CancelDownload() {
    if (transfer.State() != TransferState::Downloading)
        return;
    protocol->Abandon();
    transfer.End(TransferState::DownloadCancelled);
}

void Monitor::ResetLink() {
    AbandonTransfer(text::transferReason::linkReset);
    line.DropUnsent();
    line.ForgetXoff();
    network.ResetLink();
}

void Monitor::StartLoopbackTest() {
    AbandonTransfer(text::transferReason::lineTested);
    tests.StartLoopback(BitsPerSecond(settings));
}

}
