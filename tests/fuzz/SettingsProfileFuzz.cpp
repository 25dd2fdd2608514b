// Feeds any bytes to the reader of a text profile and, as the file of a machine's settings, to the store that reads,
// changes and saves it.

#include "files/Profile.h"
#include "fuzz/FuzzedDisk.h"
#include "harness/TemporaryFolder.h"
#include "port/PortNames.h"
#include "settings/SettingsNames.h"
#include "settings/SettingsStore.h"

#include <filesystem>

using namespace tarvin;
using namespace tarvin::test;

namespace {

// The bytes that a change adds stand together, so the rest of the file is a start and an end of the one before.
bool HasAdded(std::string_view before, std::string_view after) {
    std::size_t same = 0;
    while (same < before.size() && same < after.size() && before[same] == after[same])
        ++same;
    return after.size() >= before.size() && after.ends_with(before.substr(same));
}

void CheckProfile(const std::string& bytes) {
    const KelTextView section = u"Fuzzed section";
    const std::string added = WithProfileEntry(bytes, section, u"key", u"value 7");
    Require(HasAdded(bytes, added), "an entry is added, and every other byte stays");
    if (Profile(bytes).Entries(section).empty())
        Require(Profile(added).Text(section, u"KEY", u"") == u"value 7", "an entry that was added is read");
    const std::string changed = WithProfileValue(added, section, u"Key", u"12");
    if (Profile(bytes).Entries(section).empty())
        Require(Profile(changed).Integer(section, u"key", 0) == 12, "a value that was changed is read");
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    CheckProfile(bytes);

    for (const auto& each : std::filesystem::directory_iterator(folder.Path()))
        std::filesystem::remove(each.path());
    folder.WriteFile("FUZZ.INI", bytes);
    SettingsStore store(folder.Path(), u"FUZZ", u"/transfer");
    const DownloadSettings loaded = store.Load(DownloadSettings()).settings;
    DownloadSettings changed;
    const auto done = store.ChangeSettings(DownloadSettings(), [&](DownloadSettings& settings) {
        Require(settings == loaded, "a change begins with the settings of the file");
        settings.silenceSeconds = settings.silenceSeconds == 7 ? 8 : 7;
        changed = settings;
        return Result<>();
    });
    Require(done && *done, "settings can be changed");
    // A record with another port counts as damaged.
    if (!IsPortName(changed.port))
        return 0;
    DownloadSettings again = SettingsStore(folder.Path(), u"FUZZ", u"/transfer").Load(DownloadSettings()).settings;
    Require(again == changed, "a change is in the file");
    SettingsStore last(folder.Path(), u"FUZZ", u"/transfer");
    (void)last.Load(DownloadSettings());
    again.attentionMinutes = 3;
    Require(static_cast<bool>(last.SaveSettings(again)), "settings can be saved");
    Require(last.Load(DownloadSettings()).settings == again, "saved settings are read");
    return 0;
}
