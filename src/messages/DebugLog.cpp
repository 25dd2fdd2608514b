#include "messages/DebugLog.h"

#include "files/KelFile.h"

#include <system_error>
#include <utility>

namespace tarvin {

// Names the writing thread. A folder supplier may log, which would lock the mutex a second time: Log and LogTogether
// find their own thread here and return before that.
class DebugLog::WriterMark {
public:
    explicit WriterMark(std::atomic<std::thread::id>& writer) : writer(writer) { writer = std::this_thread::get_id(); }
    ~WriterMark() { writer = std::thread::id(); }
    WriterMark(const WriterMark&) = delete;
    WriterMark& operator=(const WriterMark&) = delete;

private:
    std::atomic<std::thread::id>& writer;
};

DebugLog::DebugLog(FolderSupplier preferredFolder, FolderSupplier secondFolder)
    : preferredFolder(std::move(preferredFolder)), secondFolder(std::move(secondFolder)) {}

int DebugLog::Log(KelTextView formattedText) {
    if (IsWriting())
        return 0;
    const MutexLock lock(mutex);
    const WriterMark mark(writer);
    return Append(formattedText);
}

void DebugLog::LogTogether(std::span<const KelText> formattedTexts) {
    if (IsWriting())
        return;
    const MutexLock lock(mutex);
    const WriterMark mark(writer);
    for (const KelText& text : formattedTexts)
        Append(text);
}

int DebugLog::Append(KelTextView text) {
    if (text.size() >= bufferSize)
        return -1;
    if (folder.empty())
        folder = preferredFolder();
    if (folder.empty())
        folder = secondFolder();
    if (folder.empty())
        return 0;
    // A failure is not reported, here and below: the report would go to this log.
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    KelFile file;
    const auto mode = isStarted ? KelFile::Mode::AppendText : KelFile::Mode::WriteText;
    if (!file.Open(folder / "Debug.Log", mode) || !file.Write(ToUtf8(text)))
        return 0;
    isStarted = true;
    return static_cast<int>(text.size());
}

}
