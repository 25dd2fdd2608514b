#include "files/KelFile.h"

namespace tarvin {

bool KelFile::Open(const std::filesystem::path& path, Mode newMode) {
    if (IsOpen())
        return true;
    const bool reading = newMode == Mode::ReadBytes || newMode == Mode::ReadText;
    const auto access = reading                                                       ? NativeFile::Access::Read
                        : newMode == Mode::AppendText || newMode == Mode::AppendBytes ? NativeFile::Access::Append
                                                                                      : NativeFile::Access::Replace;
    mode = newMode;
    lastWasCarriageReturn = false;
    bytesWritten = 0;
    return file.Open(path, access);
}

bool KelFile::Write(std::string_view bytes) {
    std::string text;
    if (mode != Mode::WriteBytes && mode != Mode::AppendBytes) {
        text.reserve(bytes.size() + 2);
        for (const char byte : bytes) {
            if (byte == '\n' && !lastWasCarriageReturn)
                text.push_back('\r');
            text.push_back(byte);
            lastWasCarriageReturn = byte == '\r';
        }
        bytes = text;
    }
    std::size_t written = 0;
    const bool complete = file.Write(bytes, written);
    bytesWritten += written;
    return complete;
}

}
