#pragma once
// The program's file: bytes, or text whose lines end with CR LF. Writes reach the operating system at once. One thread
// at a time. No operation throws. On a closed file reading, writing and locking fail.

#include "files/NativeFile.h"

#include <string>

namespace tarvin {

// Turns text that comes in pieces into lines that end with CR LF.
class LineEnds {
public:
    // The text with a CR before each LF that none precedes.
    std::string WithCarriageReturns(std::string_view text);

private:
    bool lastWasCarriageReturn = false;
};

class KelFile {
public:
    enum class Mode { ReadBytes, ReadText, WriteBytes, WriteText, AppendBytes, AppendText };

    // Opens the file. If one is open already, it stays open with its position and mode, and Open succeeds: a controller
    // that repeats its upload request goes on with the file that it has begun.
    Result<> Open(const std::filesystem::path& path, Mode mode);
    bool IsOpen() const { return file.IsOpen(); }
    bool IsWriting() const { return IsOpen() && mode != Mode::ReadBytes && mode != Mode::ReadText; }
    void Close() { file.Close(); }

    // Hands the bytes to the operating system before it returns. In the text modes it writes CR LF for each LF that no
    // CR precedes. After a failure some of the bytes may be in the file.
    Result<> Write(std::string_view bytes);
    // Blocks until all bytes written are on the disk.
    Result<> Sync() { return file.Sync(); }
    // Bytes written since the file was opened, with the CRs that Write has added. Stays known after Close.
    std::uint64_t BytesWritten() const { return file.BytesWritten(); }

    // As in NativeFile.
    Result<> Lock() { return file.Lock(); }
    bool IsAt(const std::filesystem::path& path) { return file.IsAt(path); }
    Result<std::size_t> Read(void* bytes, std::size_t byteCount) { return file.Read(bytes, byteCount); }
    Result<std::uint64_t> Size() { return file.Size(); }

private:
    NativeFile file;
    Mode mode = Mode::ReadBytes;
    LineEnds lineEnds;
};

}
