#pragma once
// The debug log of the program: the file "Debug.Log" of one run, complete on the disk after each write. Any thread. A
// write blocks while another thread writes.

#include "base/KelText.h"
#include "base/Mutex.h"

#include <atomic>
#include <functional>
#include <span>
#include <thread>

namespace tarvin {

class DebugLog {
public:
    // In UTF-16 code units, with room for a terminator.
    static constexpr std::size_t bufferSize = 24576;

    // Returns an empty path if there is no such folder.
    using FolderSupplier = std::function<std::filesystem::path()>;

    // The log is in the preferred folder, or in the second one without a preferred one. The first write asks for them
    // and creates a missing folder.
    DebugLog(FolderSupplier preferredFolder, FolderSupplier secondFolder);

    // Writes the text, which brings its own line ends, and returns the number of code units. The first text of a run
    // replaces the log of an earlier one. Returns -1 and writes nothing if the text has bufferSize units or more.
    // Returns 0 if the text was not written whole, or if a write of this thread has led to the call.
    int Log(KelTextView formattedText) EXCLUDES(mutex);

    // Writes the texts like Log. Texts of other threads do not come between them.
    void LogTogether(std::span<const KelText> formattedTexts) EXCLUDES(mutex);

private:
    class WriterMark;

    bool IsWriting() const { return writer == std::this_thread::get_id(); }
    int Append(KelTextView text) REQUIRES(mutex);

    const FolderSupplier preferredFolder;
    const FolderSupplier secondFolder;
    Mutex mutex;
    std::atomic<std::thread::id> writer; // the thread that holds the mutex
    std::filesystem::path folder GUARDED_BY(mutex);
    bool isStarted GUARDED_BY(mutex) = false;
};

}
