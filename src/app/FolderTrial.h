#pragma once
// Tries the folders of a machine while the engine serves it already, and has the engine tell what this account may not
// do there. A network drive that is away may take minutes to answer, and must delay neither start nor stop.

#include "base/KelText.h"

#include <memory>

namespace tarvin {

class DownloadApp;

class FolderTrial {
public:
    // Begins on a thread of its own.
    FolderTrial(DownloadApp& engine, KelText uploadPath, KelText downloadPath);
    // Returns at once. The engine is told nothing more; a folder that does not answer leaves the thread behind.
    ~FolderTrial();
    FolderTrial(const FolderTrial&) = delete;
    FolderTrial& operator=(const FolderTrial&) = delete;

private:
    struct Listener;

    const std::shared_ptr<Listener> listener;
};

}
