#include "transfer/SourceFile.h"

#include "base/Messages.h"
#include "files/Links.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace tarvin {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// A program that saves a file is done within this time. One that keeps the file open for longer, such as an editor,
// writes again only when its user saves.
constexpr auto longestSaving = 60s;
// Without word from the system, a change within this time is reason for a second look.
constexpr auto recentChange = 10s;

fs::path FolderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : ".";
}

// Asks for the exact name first: a folder may hold many files, and be on a network drive.
Result<fs::path> Find(const fs::path& path) {
    std::error_code ignored;
    if (fs::symlink_status(path, ignored).type() != fs::file_type::not_found)
        return path;
    const KelText name = FromPath(path.filename());
    std::vector<fs::path> matches;
    std::error_code error;
    fs::directory_iterator entries(FolderOf(path), error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (EqualIgnoringCase(FromPath(entries->path().filename()), name) && !entries->is_directory(ignored))
            matches.push_back(entries->path().filename());
    }
    if (matches.empty())
        return Error{};
    if (matches.size() == 1)
        return path.parent_path() / matches.front();
    std::sort(matches.begin(), matches.end());
    KelText names;
    for (const fs::path& each : matches)
        names += (names.empty() ? u"" : u", ") + FromPath(each);
    return Error{Filled(text::transferReason::ambiguousName, {names})};
}

// Both are paths without links.
bool IsBelow(const fs::path& file, const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first == folder.end();
}

Result<fs::path> FollowLink(const fs::path& path, std::span<const fs::path> linkedFolders) {
    if (!IsLink(path))
        return path;
    auto target = RealPath(path);
    if (!target)
        return target;
    std::vector<fs::path> folders(linkedFolders.begin(), linkedFolders.end());
    folders.push_back(FolderOf(path));
    for (const fs::path& each : folders) {
        const auto folder = RealPath(each);
        if (folder && IsBelow(*target, *folder))
            return target;
    }
    return Error{Filled(text::transferReason::linkElsewhere, {FromPath(*target)})};
}

}

Result<> SourceFile::Open(const fs::path& path, std::span<const fs::path> linkedFolders) {
    auto named = Find(path);
    if (!named)
        return named.Reason();
    auto target = FollowLink(*named, linkedFolders);
    if (!target)
        return target.Reason();
    found = std::move(*target);
    return OpenFound();
}

Result<> SourceFile::OpenPicked(const fs::path& path) {
    std::error_code ignored;
    if (fs::status(path, ignored).type() == fs::file_type::not_found)
        return Error{};
    found = RealPath(path).ValueOr(path);
    return OpenFound();
}

Result<> SourceFile::OpenFound() {
    std::error_code ignored;
    const fs::file_status status = fs::status(found, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return Error{text::fileReason::noRegularFile};
    // A link that has come in place of the file since it was looked at is not followed.
    if (const auto opened = file.Open(found, NativeFile::Access::ReadNoLink); !opened)
        return opened;
    const auto first = file.Stamped();
    if (!first)
        return first.Reason();
    stamp = *first;
    const auto age = std::chrono::system_clock::now() - stamp.written;
    const auto writers = file.OtherWriters();
    needsSecondLook = writers == NativeFile::Writers::Unknown && age < recentChange;
    if (writers == NativeFile::Writers::Some && age < longestSaving) {
        file.Close();
        return Error{text::transferReason::beingWritten};
    }
    return {};
}

// By the name: on a network drive, opening a file anew fetches its present size and time.
Result<> SourceFile::CheckUnchanged() const {
    NativeFile again;
    if (!again.Open(found, NativeFile::Access::ReadNoLink))
        return Error{text::transferReason::changed};
    const auto present = again.Stamped();
    return present && *present == stamp ? Result<>() : Error{text::transferReason::changed};
}

}
