#include "transfer/NcFilePath.h"

#include "files/FileNames.h"
#include "files/FileReplacement.h"
#include "files/NativeFile.h"

#include <algorithm>
#include <system_error>

namespace tarvin {

bool IsUsableFileNumber(std::string_view number) {
    const bool isDotsOnly = number.find_first_not_of('.') == std::string_view::npos;
    const bool isForbidden = std::any_of(number.begin(), number.end(), [](char byte) {
        return byte == '/' || byte == '\\' || byte == ':' || static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
    });
    return !isDotsOnly && !isForbidden && !IsDeviceName(FromBytes(number));
}

KelText NcFilePath(const KelText& folder, KelTextView number, const KelText& extension) {
    KelText path = WithOwnSeparators(folder);
    if (!path.empty() && !path.ends_with(pathSeparator))
        path += pathSeparator;
    return path + KelText(number) + u"." + extension;
}

Result<> CopyNcFile(const std::filesystem::path& source, const std::filesystem::path& target) {
    NativeFile from;
    if (const auto opened = from.Open(source, NativeFile::Access::Read); !opened)
        return opened;
    if (from.IsAt(target))
        return {};
    NativeFile to;
    const std::filesystem::path fresh = FreshNameFor(target);
    Result<> done = to.Open(fresh, NativeFile::Access::Create);
    if (!done)
        return done;
    to.TakeFolderRights(target.parent_path());
    done = CopyContent(from, to);
    if (done)
        done = to.Sync();
    to.Close();
    if (done)
        done = TakeName(fresh, target);
    std::error_code ignored;
    if (!done)
        std::filesystem::remove(fresh, ignored);
    return done;
}

}
