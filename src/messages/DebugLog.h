#pragma once
// The debug log of the program: the file "Debug.Log" of one run, complete on the disk after each write. Knows nothing
// of what the texts say. Any thread; a write blocks the writes of other threads until it is done.

#include "base/KelText.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <span>
#include <thread>

namespace tarvin {

class DebugLog {
public:
    // In UTF-16 code units, with room for a terminator.
    static constexpr std::size_t bufferSize = 24576;

    // An empty path means that there is no such folder.
    using FolderSupplier = std::function<std::filesystem::path()>;

    // The log is in the preferred folder, or in the second one if there is none. They are asked for when the first text
    // is written, and the folder is created then if it is missing.
    DebugLog(FolderSupplier preferredFolder, FolderSupplier secondFolder);

    // Writes the text as it is: it brings its own line ends. The units written; 0 if nothing could be written, or not
    // all, or if writing is what led to this call; -1 if the text is too long, and then the file is left alone.
    // The first text that is written replaces the log of an earlier run.
    int Log(KelTextView formattedText);

    // The same for several texts that no other thread's come between.
    void LogTogether(std::span<const KelText> formattedTexts);

private:
    class Writing;

    bool IsWriting() const { return writer == std::this_thread::get_id(); }
    int Append(KelTextView text);

    FolderSupplier preferred;
    FolderSupplier second;
    std::mutex mutex;
    std::atomic<std::thread::id> writer;
    // Guarded by the mutex.
    std::filesystem::path folder;
    bool isStarted = false;
};

}
