#include "files/KelFile.h"

namespace tarvin {

namespace {

NativeFile::Access AccessFor(KelFile::Mode mode) {
    switch (mode) {
    case KelFile::Mode::ReadBytes:
    case KelFile::Mode::ReadText:
        return NativeFile::Access::Read;
    case KelFile::Mode::WriteBytes:
    case KelFile::Mode::WriteText:
        return NativeFile::Access::Replace;
    case KelFile::Mode::AppendBytes:
    case KelFile::Mode::AppendText:
        break;
    }
    return NativeFile::Access::Append;
}

}

Result<> KelFile::Open(const std::filesystem::path& path, Mode newMode) {
    if (IsOpen())
        return {};
    mode = newMode;
    lastWasCarriageReturn = false;
    return file.Open(path, AccessFor(mode));
}

Result<> KelFile::Write(std::string_view bytes) {
    if (mode == Mode::WriteBytes || mode == Mode::AppendBytes)
        return file.Write(bytes);
    std::string text;
    text.reserve(bytes.size() + 2);
    for (const char byte : bytes) {
        // A CR may have come at the end of the piece before.
        if (byte == '\n' && !lastWasCarriageReturn)
            text.push_back('\r');
        text.push_back(byte);
        lastWasCarriageReturn = byte == '\r';
    }
    return file.Write(text);
}

}
