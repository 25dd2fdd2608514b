#include "harness/DiskFaultsPosix.h"
#include "harness/HeldSender.h"
#include "harness/ProtocolHarness.h"
#include "harness/SystemCallPosix.h"
#include "model/Subject.h"
#include "protocol/TarvinApp.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <map>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

namespace fs = std::filesystem;

constexpr auto tick = 50ms;

std::string ReadFile(const fs::path& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    RequireCall(descriptor >= 0, path.string());
    std::string content(4096, '\0');
    const ssize_t count = ::read(descriptor, content.data(), content.size());
    ::close(descriptor);
    RequireCall(count >= 0, path.string());
    content.resize(static_cast<std::size_t>(count));
    return content;
}

// Tells whether a file is still the same one with the same content.
struct Identity {
    explicit Identity(const fs::path& path) {
        struct stat found = {};
        RequireCall(::stat(path.c_str(), &found) == 0, path.string());
        number = found.st_ino;
        changed = std::chrono::seconds(found.st_ctim.tv_sec) + std::chrono::nanoseconds(found.st_ctim.tv_nsec);
    }
    bool operator==(const Identity&) const = default;

    ino_t number = 0;
    std::chrono::nanoseconds changed = {};
};

}

// The folder in memory, if the system has one.
struct Subject::Folder {
    Folder() : path(fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path()) {
        path /= "tarvindl-model-" + std::to_string(::getpid());
        fs::create_directories(path);
    }
    ~Folder() {
        CloseLocks();
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }

    // Files of the situation that the last conversation has left alone stay: this is done for every sequence.
    void Fill(const Situation& situation) {
        CloseLocks();
        for (const fs::directory_entry& each : fs::directory_iterator(path))
            if (!IsUntouched(each.path()))
                fs::remove_all(each.path());
        for (const auto& [name, content] : situation.files) {
            if (fs::exists(path / name))
                continue;
            std::ofstream(path / name, std::ios::binary) << content;
            fs::last_write_time(path / name, fs::file_time_type::clock::now() - 1h);
            untouched.insert_or_assign(name, Identity(path / name));
        }
        for (const std::string& number : situation.writtenElsewhere) {
            const fs::path part = path / (number + ".nc.part");
            locks.push_back(::open(part.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
            RequireCall(locks.back() >= 0 && ::flock(locks.back(), LOCK_EX | LOCK_NB) == 0, part.string());
            writtenElsewhere.push_back(part);
        }
    }

    bool IsUntouched(const fs::path& file) const {
        const auto its = untouched.find(file.filename().string());
        return its != untouched.end() && its->second == Identity(file);
    }

    bool IsWrittenElsewhere(const fs::path& part) const {
        return std::find(writtenElsewhere.begin(), writtenElsewhere.end(), part) != writtenElsewhere.end();
    }

    void RemoveParts() const {
        for (const fs::directory_entry& each : fs::directory_iterator(path))
            if (each.path().extension() == ".part" && !IsWrittenElsewhere(each.path()))
                fs::remove(each.path());
    }

    void CloseLocks() {
        for (const int lock : std::exchange(locks, {}))
            ::close(lock);
        writtenElsewhere.clear();
    }

    fs::path path;
    std::map<std::string, Identity> untouched; // of the situation's files
    std::vector<int> locks;
    std::vector<fs::path> writtenElsewhere;
};

struct Subject::Conversation {
    Conversation(const Situation& situation, const Folder& folder) : situation(situation) {
        settings.uploadPath = settings.downloadPath = FromPath(folder.path);
        settings.fileExtension = u"nc";
        settings.transmitDelaySeconds = situation.delaySeconds;
        settings.sendStartCode = situation.hasStartCharacter ? 1 : 0;
        settings.startCharacter = startCharacter;
        settings.incomingCheck = situation.check == Situation::Check::Off            ? incomingCheckOff
                                 : situation.check == Situation::Check::EndTheUpload ? incomingCheckEnd
                                                                                     : incomingCheckRepeat;
        settings.sendsChecksums = situation.sendsChecksums ? 1 : 0;
        settings.replacedFilesKept = situation.replacedFilesKept;
    }

    void Receive(const Event& event) {
        received.NoteErrors(static_cast<std::uint32_t>(event.driverErrors));
        const std::string bytes = event.message + '\r';
        std::copy(bytes.begin(), bytes.end(), received.Room().begin());
        received.Commit(bytes.size());
        protocol.OnReceived(received);
    }

    void Pass(std::chrono::milliseconds duration) {
        for (auto passed = 0ms; passed < duration; passed += tick) {
            clock.Advance(tick);
            timers.RunDue(clock.Now());
        }
    }

    // As the engine does it.
    void LoseLink() {
        sender.DropUnsent();
        sender.Release();
        protocol.Abandon();
        if (observed.transfer.EndWithErrors(u"the link is lost"))
            protocol.OnTransferLost();
    }

    int Fault(DiskCall call, std::string_view path) const {
        const bool isName = path.ends_with(".nc");
        switch (call) {
        case DiskCall::Write:
            return fault == DiskFault::Write ? ENOSPC : 0;
        case DiskCall::Sync:
            return fault == DiskFault::Sync ? EIO : 0;
        case DiskCall::Rename:
            if (isName && isNameHeld)
                return EBUSY;
            return isName && fault == DiskFault::Name ? EIO : 0;
        case DiskCall::Lease:
            return situation.hidesWriters ? EACCES : 0;
        default:
            return 0;
        }
    }

    const Situation& situation;
    bool isNameHeld = false;
    DiskFault fault = DiskFault::None;
    ManualClock clock;
    TimerQueue timers;
    HeldSender sender{clock};
    DownloadSettings settings;
    RecordedTransfer observed{settings, timers, clock};
    ReceiveBuffer received;
    TarvinApp protocol{ProtocolParts{observed.transfer, sender, settings, timers, clock,
                                     [this](bool sends) { settings.sendsChecksums = sends ? 1 : 0; }}};
};

Subject::Subject() : folder(std::make_unique<Folder>()) {}

Subject::~Subject() {
    SetDiskFaults({});
}

void Subject::Begin(const Situation& situation) {
    conversation.reset();
    folder->Fill(situation);
    conversation = std::make_unique<Conversation>(situation, *folder);
    SetDiskFaults(
        [this](DiskCall call, const char* path) { return conversation ? conversation->Fault(call, path) : 0; });
    for (const Event& each : situation.prelude)
        Handle(each);
}

void Subject::Handle(const Event& event) {
    conversation->sender.sent.clear();
    conversation->observed.ended.clear();
    conversation->fault = event.fault;
    switch (event.kind) {
    case Event::Kind::Message:
        conversation->Receive(event);
        break;
    case Event::Kind::Silence:
        conversation->Pass(event.duration);
        break;
    case Event::Kind::PartRemoved:
        folder->RemoveParts();
        break;
    case Event::Kind::NameHeld:
    case Event::Kind::NameReleased:
        conversation->isNameHeld = event.kind == Event::Kind::NameHeld;
        break;
    case Event::Kind::LinkLost:
        conversation->LoseLink();
        break;
    case Event::Kind::Hold:
        conversation->sender.Hold();
        break;
    case Event::Kind::Release:
        conversation->sender.Release();
        break;
    }
    conversation->fault = DiskFault::None;
}

View Subject::Seen() const {
    const Transfer& transfer = conversation->observed.transfer;
    View view;
    view.sent = conversation->sender.sent;
    constexpr const char* outcomes[] = {"completed", "failed", "cancelled", "refused"};
    for (const TransferRecord& each : conversation->observed.ended) {
        const Quality quality = {each.damaged, each.repeats, each.driverErrors};
        view.records.push_back(RecordText(each.direction == TransferDirection::FromMachine,
                                          outcomes[static_cast<int>(each.outcome)], ToUtf8(each.number), each.byteCount,
                                          each.lineCount, quality));
    }
    view.state = static_cast<int>(transfer.State());
    view.number = ToUtf8(transfer.Name().fileName);
    const std::string path = ToUtf8(transfer.Name().path);
    if (path != (view.number.empty() ? "" : (folder->path / "").string() + view.number + ".nc"))
        view.number += ", path " + path;
    view.hasTransfer = transfer.IsUnderWay() || transfer.IsPending();
    view.bytesDone = transfer.BytesDone();
    view.bytesTotal = transfer.BytesTotal();
    view.barPosition = transfer.Bar().position;
    view.barRange = transfer.Bar().range;
    view.quality = {transfer.Quality().damaged, transfer.Quality().repeats, transfer.Quality().driverErrors};
    view.sendsChecksums = conversation->settings.sendsChecksums != 0;
    view.isHeldUp = conversation->sender.IsHeldUp();

    // "<name>.<time>.whole", and in the folder of replaced files "<name>.<time>": in the order of the times.
    constexpr std::size_t shortestTime = std::string_view(".0000-00-00_000000").size();
    std::map<std::string, std::string> timed;
    for (const fs::directory_entry& each : fs::directory_iterator(folder->path)) {
        const std::string file = each.path().filename().string();
        if (each.is_directory())
            for (const fs::directory_entry& older : fs::directory_iterator(each.path()))
                timed["replaced/" + older.path().filename().string()] = ReadFile(older.path());
        else if (file.ends_with(".whole"))
            timed[file] = ReadFile(each.path());
        else if (!folder->IsWrittenElsewhere(each.path()))
            view.files[file] =
                folder->IsUntouched(each.path()) ? conversation->situation.files.at(file) : ReadFile(each.path());
    }
    for (const auto& [file, content] : timed) {
        const bool isReplaced = file.starts_with("replaced/");
        const std::string bare = isReplaced ? file.substr(std::string_view("replaced/").size()) : file;
        const std::string its = bare.substr(0, bare.find(".nc") + 3);
        if (bare.size() >= its.size() + shortestTime)
            (isReplaced ? view.replaced : view.whole)[its].push_back(content);
        else
            view.files[file] = content;
    }
    return view;
}

}
