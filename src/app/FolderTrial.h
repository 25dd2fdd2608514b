#pragma once
// Tries the folders of a machine while the engine serves it, and has the engine tell what this account may not do
// there. A network drive that is away may take minutes to answer, and must delay neither start nor stop.

#include <cstdint>
#include <memory>
#include <optional>

namespace tarvin {

class DownloadApp;
struct DownloadSettings;

class FolderTrial {
public:
    // `engine` outlives the object.
    explicit FolderTrial(DownloadApp& engine);
    // Returns at once. The engine is told nothing more; a folder that does not answer leaves its thread behind.
    ~FolderTrial();
    FolderTrial(const FolderTrial&) = delete;
    FolderTrial& operator=(const FolderTrial&) = delete;

    // Takes the settings that the engine works with from now on, and tries their folders on a thread of its own. The
    // result of an earlier trial that still goes on is dropped. Does nothing if only the engine itself has changed
    // them, by what it has learned of the controller. One thread at a time.
    void SettingsChanged(const DownloadSettings& settings);

private:
    struct Listener;

    const std::shared_ptr<Listener> listener;
    // Of the settings at the last call; none before.
    std::optional<std::int32_t> knownChecksums;
};

}
