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
    lineEnds = {};
    return file.Open(path, AccessFor(mode));
}

Result<> KelFile::Write(std::string_view bytes) {
    const bool isText = mode != Mode::WriteBytes && mode != Mode::AppendBytes;
    return isText ? file.Write(lineEnds.WithCarriageReturns(bytes)) : file.Write(bytes);
}

std::string LineEnds::WithCarriageReturns(std::string_view text) {
    std::string converted;
    converted.reserve(text.size() + 2);
    for (const char byte : text) {
        // A CR may have come at the end of the piece before.
        if (byte == '\n' && !lastWasCarriageReturn)
            converted.push_back('\r');
        converted.push_back(byte);
        lastWasCarriageReturn = byte == '\r';
    }
    return converted;
}

}
