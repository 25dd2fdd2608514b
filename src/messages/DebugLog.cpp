#include "messages/DebugLog.h"

#include "files/KelFile.h"

#include <system_error>
#include <utility>

namespace tarvin {

// Holds the other threads back, and lets the writing one know itself.
class DebugLog::Writing {
public:
    explicit Writing(DebugLog& debugLog) : log(debugLog), lock(debugLog.mutex) {
        log.writer = std::this_thread::get_id();
    }
    ~Writing() { log.writer = std::thread::id(); }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

private:
    DebugLog& log;
    std::lock_guard<std::mutex> lock;
};

DebugLog::DebugLog(FolderSupplier preferredFolder, FolderSupplier secondFolder)
    : preferred(std::move(preferredFolder)), second(std::move(secondFolder)) {}

int DebugLog::Log(KelTextView formattedText) {
    if (IsWriting())
        return 0;
    const Writing writing(*this);
    return Append(formattedText);
}

void DebugLog::LogTogether(std::span<const KelText> formattedTexts) {
    if (IsWriting())
        return;
    const Writing writing(*this);
    for (const KelText& text : formattedTexts)
        Append(text);
}

int DebugLog::Append(KelTextView text) {
    if (text.size() >= bufferSize)
        return -1;
    if (folder.empty())
        folder = preferred();
    if (folder.empty())
        folder = second();
    if (folder.empty())
        return 0;
    // Nobody is told of a failure, here or below: a report about the log would end up in the log.
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
