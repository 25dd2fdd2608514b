#include "files/MachineLock.h"

#include "base/Process.h"

#include <cassert>
#include <charconv>
#include <map>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t longestRecord = 4096;
constexpr auto pollPeriod = 10ms;

// A reader may come while the record is being written: only with this last line is it whole.
constexpr char firstLine[] = "TarvinDL lock";
constexpr char lastLine[] = "end";
constexpr char serviceKind[] = "service";
constexpr char windowKind[] = "window";

// A line end in a name would begin another entry.
std::string OneLine(KelTextView text) {
    std::string line = ToUtf8(text);
    for (char& character : line) {
        if (static_cast<unsigned char>(character) < ' ')
            character = ' ';
    }
    return line;
}

std::string RecordOf(const MachineHolder& holder) {
    std::ostringstream record;
    record << firstLine << "\nkind=" << (holder.kind == MachineHolder::Kind::Service ? serviceKind : windowKind)
           << "\nprocess=" << holder.process << "\nuser=" << OneLine(holder.user)
           << "\ncomputer=" << OneLine(holder.computer) << "\nraise=" << OneLine(holder.raiseAddress)
           << "\nreload=" << OneLine(holder.reloadAddress) << '\n'
           << lastLine << '\n';
    return record.str();
}

// None if the record is not whole.
std::optional<MachineHolder> FromRecord(const std::string& record) {
    std::istringstream lines(record);
    std::string line;
    if (!std::getline(lines, line) || line != firstLine)
        return std::nullopt;
    std::map<std::string, std::string> entries;
    while (std::getline(lines, line) && line != lastLine) {
        const auto equals = line.find('=');
        if (equals != std::string::npos)
            entries[line.substr(0, equals)] = line.substr(equals + 1);
    }
    if (line != lastLine)
        return std::nullopt;
    MachineHolder holder;
    holder.kind = entries["kind"] == serviceKind ? MachineHolder::Kind::Service : MachineHolder::Kind::Window;
    const std::string& process = entries["process"];
    std::from_chars(process.data(), process.data() + process.size(), holder.process);
    holder.user = FromUtf8(entries["user"]);
    holder.computer = FromUtf8(entries["computer"]);
    holder.raiseAddress = FromUtf8(entries["raise"]);
    holder.reloadAddress = FromUtf8(entries["reload"]);
    return holder;
}

// A killed program leaves its record behind, which stands there until the next one has written its own.
bool MayBeRunning(const MachineHolder& holder) {
    return holder.computer != ComputerName() || IsProcessRunning(holder.process);
}

std::filesystem::path LockFileOf(std::filesystem::path settingsFile) {
    return settingsFile.replace_extension(".lock");
}

// Everyone who may change the folder may serve its machines, and describe himself in the file.
void GiveRightsOfFolder(const std::filesystem::path& path) {
    using std::filesystem::perms;
    std::error_code ignored;
    const auto folder = std::filesystem::status(path.parent_path(), ignored).permissions();
    constexpr perms readAndWrite = static_cast<perms>(0666);
    if (!ignored)
        std::filesystem::permissions(path, folder & readAndWrite, ignored);
}

}

MachineLock::MachineLock(const std::filesystem::path& settingsFile) : path(LockFileOf(settingsFile)) {}

// The record goes first: it must not describe this program once another one may have the lock.
MachineLock::~MachineLock() {
    if (isHeld && isWritable)
        (void)file.Truncate(0);
}

Result<> MachineLock::Take(const MachineHolder& self) {
    assert(!isHeld);
    std::error_code ignored;
    const bool isNew = !std::filesystem::exists(path, ignored);
    const auto opened = file.Open(path, NativeFile::Access::Append);
    isWritable = static_cast<bool>(opened);
    if (isWritable && isNew)
        GiveRightsOfFolder(path);
    // Another user's file that may only be read can be locked all the same.
    if (!isWritable && !file.Open(path, NativeFile::Access::Read))
        return opened.Reason();
    if (const auto locked = file.Lock(); !locked) {
        file.Close();
        return locked.Reason();
    }
    isHeld = true;
    // A name that leads to another file, perhaps by a link, must not cost that file its content.
    const auto before = ReadWholeFile(path, longestRecord);
    isWritable = isWritable && before && (before->empty() || before->starts_with(firstLine));
    // The lock counts without a description too: the others then cannot say which program has it.
    if (isWritable && file.Truncate(0))
        (void)file.Write(RecordOf(self));
    return {};
}

std::optional<MachineHolder> MachineLock::Holder(std::chrono::milliseconds longestWait) const {
    const auto deadline = std::chrono::steady_clock::now() + longestWait;
    for (;;) {
        if (auto holder = HolderNow())
            return holder;
        if (std::chrono::steady_clock::now() > deadline)
            return std::nullopt;
        std::this_thread::sleep_for(pollPeriod);
    }
}

std::optional<MachineHolder> MachineLock::HolderNow() const {
    const auto record = ReadWholeFile(path, longestRecord);
    auto holder = record ? FromRecord(*record) : std::nullopt;
    return holder && MayBeRunning(*holder) ? holder : std::nullopt;
}

}
