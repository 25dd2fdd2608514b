#include "app/FolderTrial.h"

#include "base/Mutex.h"
#include "engine/DownloadApp.h"
#include "settings/DownloadSettings.h"
#include "setup/FolderAccess.h"

#include <thread>
#include <utility>

namespace tarvin {

struct FolderTrial::Listener {
    Mutex mutex;
    DownloadApp* engine GUARDED_BY(mutex) = nullptr; // null once it stops
    int latestTrial GUARDED_BY(mutex) = 0;
};

FolderTrial::FolderTrial(DownloadApp& engine) : listener(std::make_shared<Listener>()) {
    const MutexLock lock(listener->mutex);
    listener->engine = &engine;
}

FolderTrial::~FolderTrial() {
    const MutexLock lock(listener->mutex);
    listener->engine = nullptr;
}

void FolderTrial::SettingsChanged(const DownloadSettings& settings) {
    const auto before = std::exchange(knownChecksums, settings.sendsChecksums);
    if (before && *before != settings.sendsChecksums)
        return;
    int trial = 0;
    {
        const MutexLock lock(listener->mutex);
        trial = ++listener->latestTrial;
    }
    std::thread([kept = listener, trial, up = settings.uploadPath, down = settings.downloadPath] {
        const KelText problems = DescribeFolderProblems(up, down);
        const MutexLock lock(kept->mutex);
        if (!problems.empty() && kept->engine != nullptr && trial == kept->latestTrial)
            kept->engine->Announce(problems);
    }).detach();
}

}
