#include "publish/StatusFile.h"

#include "base/Sha256.h"
#include "files/FileNames.h"

#include <system_error>

namespace tarvin {

std::filesystem::path WholePath(const std::filesystem::path& folder) {
    std::error_code error;
    auto whole = std::filesystem::weakly_canonical(folder, error);
    if (error)
        whole = folder.lexically_normal();
    // A separator at the end makes no other folder.
    return whole.has_filename() ? whole : whole.parent_path();
}

std::filesystem::path StatusFileName(KelTextView machineName, const std::filesystem::path& installation) {
    constexpr std::size_t longestName = 60;
    constexpr std::size_t markLength = 12;
    const KelText fileName = FileNameFor(machineName);
    // A pair of surrogates is one character, and must not be cut in two.
    const std::u32string characters = ToCharacters(fileName);
    Sha256 mark;
    mark.Add(ToUtf8(fileName));
    mark.Add(std::string_view("\0", 1));
    mark.Add(ToUtf8(FromPath(WholePath(installation))));
    return ToPath(FileNameFor(FromCharacters(characters.substr(0, longestName))) + u"-" +
                  FromUtf8(mark.Digits().substr(0, markLength)) + FromUtf8(statusFileEnding));
}

}
