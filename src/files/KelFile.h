#pragma once
// The program's file object: bytes or text, written through at once. Knows nothing of what is in the file.
// One thread at a time. No operation throws.

#include "files/NativeFile.h"

namespace tarvin {

class KelFile {
public:
    enum class Mode { ReadBytes, ReadText, WriteBytes, WriteText, AppendBytes, AppendText };

    // True when the file is open afterwards. One that is open already stays as it is, position and mode included, and
    // that counts as success: an upload request repeated by the controller goes on in the file it has begun.
    bool Open(const std::filesystem::path& path, Mode mode);
    bool IsOpen() const { return file.IsOpen(); }
    bool IsWriting() const { return IsOpen() && mode != Mode::ReadBytes && mode != Mode::ReadText; }
    void Close() { file.Close(); }

    // Hands the bytes to the operating system before it returns. In the text modes each LF that no CR precedes goes out
    // as CR LF. False if not all could be written.
    bool Write(std::string_view bytes);
    // Blocks until what was written is on the disk.
    bool Sync() { return file.Sync(); }
    // Bytes written since the file was opened, line ends as they stand in the file.
    std::uint64_t BytesWritten() const { return bytesWritten; }

    // See NativeFile.
    bool Lock() { return file.Lock(); }
    bool IsAt(const std::filesystem::path& path) { return file.IsAt(path); }

    std::optional<std::size_t> Read(void* bytes, std::size_t byteCount) { return file.Read(bytes, byteCount); }
    std::optional<std::uint64_t> Size() { return file.Size(); }

    // The system's words for the last failure.
    const KelText& LastError() const { return file.LastError(); }

private:
    NativeFile file;
    Mode mode = Mode::ReadBytes;
    bool lastWasCarriageReturn = false;
    std::uint64_t bytesWritten = 0;
};

}
