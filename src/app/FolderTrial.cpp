#include "app/FolderTrial.h"

#include "base/Mutex.h"
#include "engine/DownloadApp.h"
#include "setup/FolderAccess.h"

#include <thread>
#include <utility>

namespace tarvin {

struct FolderTrial::Listener {
    Mutex mutex;
    DownloadApp* engine GUARDED_BY(mutex) = nullptr; // null once it stops
};

FolderTrial::FolderTrial(DownloadApp& engine, KelText uploadPath, KelText downloadPath)
    : listener(std::make_shared<Listener>()) {
    {
        const MutexLock lock(listener->mutex);
        listener->engine = &engine;
    }
    std::thread([kept = listener, up = std::move(uploadPath), down = std::move(downloadPath)] {
        const KelText problems = DescribeFolderProblems(up, down);
        const MutexLock lock(kept->mutex);
        if (!problems.empty() && kept->engine != nullptr)
            kept->engine->Announce(problems);
    }).detach();
}

FolderTrial::~FolderTrial() {
    const MutexLock lock(listener->mutex);
    listener->engine = nullptr;
}

}
