#include "publish/KnownMachines.h"

#include "base/PublishMessages.h"
#include "files/FileNames.h"
#include "publish/RuntimeFolders.h"
#include "publish/StatusFile.h"
#include "settings/SettingsStore.h"

#include <algorithm>
#include <map>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

// A folder with more files than any shop has machines is looked through no further.
constexpr int mostEntries = 10'000;

template <class Use>
void ForEachFile(const fs::path& folder, KelTextView ending, Use use) {
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    for (int count = 0; !error && entries != fs::directory_iterator() && count < mostEntries; ++count) {
        const KelText name = FromPath(entries->path().filename());
        if (name.size() > ending.size() &&
            EqualIgnoringCase(KelTextView(name).substr(name.size() - ending.size()), ending))
            use(name.substr(0, name.size() - ending.size()));
        entries.increment(error);
    }
}

SettingsStore StoreOf(const fs::path& installation, const KelText& name) {
    return {installation, name, {}};
}

KelText PlainName(const KelText& fileStem) {
    return fileStem.substr(0, fileStem.rfind(u'-'));
}

// None if there is no such file.
std::optional<KnownMachine> ReadPublished(const fs::path& file, const Present& present) {
    const auto document = ReadStatusFile(file);
    if (!document && document.Reason().isGone)
        return std::nullopt;
    KnownMachine machine;
    machine.run = KnownMachine::Run::Unknown;
    const auto status = document ? FromJson(*document, present) : Result<PublishedStatus>(document.Reason());
    if (!status) {
        machine.name = PlainName(FromPath(file.stem()));
        machine.problem = Filled(text::publish::unreadable, {FromPath(file), status.Reason().text});
        return machine;
    }
    machine.name = status->machine;
    machine.installation = ToPath(status->installation);
    machine.status = *status;
    switch (StateOfProgram(*status)) {
    case ProgramState::Running:
        machine.run = KnownMachine::Run::Running;
        break;
    case ProgramState::Ended:
        machine.run = KnownMachine::Run::Died;
        break;
    case ProgramState::Unknown:
        machine.problem = Filled(text::publish::otherComputer, {status->program.computer});
        break;
    }
    return machine;
}

// A program that runs tells more than one that has died in another folder, and both more than a file that cannot be
// read.
bool TellsMore(const KnownMachine& left, const KnownMachine& right) {
    const auto rank = [](const KnownMachine& machine) {
        return machine.run == KnownMachine::Run::Running ? 0 : machine.status ? 1 : 2;
    };
    return rank(left) < rank(right);
}

// What the lock beside the settings tells of a machine that is not published where this user can read it.
KnownMachine Unpublished(const fs::path& installation, const KelText& name) {
    KnownMachine machine;
    machine.name = name;
    machine.installation = installation;
    const auto holder = MachineLock(StoreOf(installation, name).FilePath()).HolderNow();
    if (!holder)
        return machine;
    machine.run = KnownMachine::Run::Unknown;
    machine.problem = Filled(holder->kind == MachineHolder::Kind::Service ? text::publish::hiddenService
                                                                          : text::publish::hiddenWindow,
                             {ToText(static_cast<std::int64_t>(holder->process)), holder->user, holder->computer});
    return machine;
}

// Published machines by the names of their files.
using Published = std::map<KelText, KnownMachine>;

void Add(Published& published, const KelText& fileName, KnownMachine machine) {
    const auto [place, isNew] = published.try_emplace(fileName, machine);
    if (!isNew && TellsMore(machine, place->second))
        place->second = std::move(machine);
}

}

std::vector<KnownMachine> FindMachines(const std::optional<fs::path>& installation, const Present& present) {
    const KelText ending = FromUtf8(statusFileEnding);
    Published published;
    for (const fs::path& folder : RuntimeFoldersToRead()) {
        ForEachFile(folder, ending, [&](const KelText& stem) {
            if (auto machine = ReadPublished(folder / ToPath(stem + ending), present))
                Add(published, stem + ending, std::move(*machine));
        });
    }
    std::vector<KnownMachine> machines;
    if (installation) {
        ForEachFile(*installation, u".INI", [&](const KelText& name) {
            const KelText fileName = FromPath(StatusFileName(name, *installation));
            std::error_code ignored;
            // KEL.INI is no machine's, and only a file that the settings of this name would have is one.
            const bool isMachine =
                !EqualIgnoringCase(name, u"KEL") && fs::exists(StoreOf(*installation, name).FilePath(), ignored);
            if (isMachine && !published.contains(fileName))
                machines.push_back(Unpublished(*installation, name));
        });
    }
    for (auto& entry : published)
        machines.push_back(std::move(entry.second));
    std::sort(machines.begin(), machines.end(), [](const KnownMachine& left, const KnownMachine& right) {
        return std::tie(left.name, left.installation) < std::tie(right.name, right.installation);
    });
    return machines;
}

KnownMachine FindMachine(const fs::path& installation, const KelText& name, const Present& present) {
    const fs::path fileName = StatusFileName(name, installation);
    Published published;
    for (const fs::path& folder : RuntimeFoldersToRead()) {
        if (auto machine = ReadPublished(folder / fileName, present))
            Add(published, {}, std::move(*machine));
    }
    return published.empty() ? Unpublished(installation, name) : std::move(published.begin()->second);
}

}
