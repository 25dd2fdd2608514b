#include "files/NativeFile.h"

namespace tarvin {

Result<std::string> ReadWholeFile(const std::filesystem::path& path, std::size_t maximum) {
    NativeFile file;
    if (const auto opened = file.Open(path, NativeFile::Access::Read); !opened)
        return opened.Reason();
    // The file may grow while it is read, so its size is not asked for. The check comes before the content grows.
    std::string content;
    char chunk[16384];
    for (;;) {
        const auto count = file.Read(chunk, sizeof chunk);
        if (!count)
            return count.Reason();
        if (*count == 0)
            return content;
        if (content.size() + *count > maximum)
            return Error{u"The file is larger than " + ToText(static_cast<std::int64_t>(maximum)) + u" bytes"};
        content.append(chunk, *count);
    }
}

}
