#include "transfer/UploadFile.h"

#include "base/Messages.h"
#include "files/FileReplacement.h"
#include "files/Links.h"
#include "transfer/ReplacedFiles.h"

#include <cassert>
#include <string>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr int mostAttempts = 8;
// The file systems of all our systems take names of 255 bytes or code units.
constexpr std::size_t longestName = 255 - longestTimeEnding;

fs::path PartOf(fs::path path) {
    path += ".part";
    return path;
}

bool IsThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// A folder that this program may not look into counts as there. The system then says what is wrong.
bool IsFolderMissing(const fs::path& folder) {
    std::error_code ignored;
    const fs::file_status status = fs::status(folder, ignored);
    return status.type() == fs::file_type::not_found || (fs::exists(status) && !fs::is_directory(status));
}

// Makes the file anew. Between two of these steps another program may remove or make a file of this name.
Result<> CreateAnew(NativeFile& file, const fs::path& part) {
    const Error otherSends = {text::transferReason::otherSends};
    Result<> created = otherSends;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        if (const auto removed = RemoveUnused(part); !removed)
            return removed.Reason().isBusy ? Result<>(otherSends) : removed;
        created = file.Open(part, NativeFile::Access::CreateForOne);
        if (created && file.IsAt(part))
            return {};
        file.Close();
    }
    return created ? Result<>(otherSends) : created;
}

}

bool UploadFile::IsNewName(const fs::path& path) {
    return !IsThere(path) && !IsThere(PartOf(path));
}

Result<> UploadFile::Begin(const fs::path& newPath, Content newContent) {
    assert(!IsOpen());
    path = newPath;
    part = PartOf(path);
    kept.clear();
    content = newContent;
    lineEnds = {};
    bytesStored = 0;
    checksum = {};
    isWhole = hasName = false;
    if (path.filename().native().size() > longestName)
        return Error{text::transferReason::nameTooLong};
    if (path.has_parent_path() && IsFolderMissing(path.parent_path()))
        return Error{text::fileReason::noFolder};
    if (const auto replaceable = CheckReplaceable(path); !replaceable)
        return replaceable;
    if (const auto created = CreateAnew(file, part); !created)
        return created;
    file.TakeFolderRights(part.parent_path());
    return {};
}

Result<> UploadFile::Store(std::string_view bytes) {
    assert(IsOpen());
    std::string withReturns;
    if (content == Content::Text) {
        withReturns = lineEnds.WithCarriageReturns(bytes);
        bytes = withReturns;
    }
    const auto written = file.Write(bytes);
    if (written) {
        checksum.Add(bytes);
        bytesStored = file.BytesWritten();
        return {};
    }
    // The sender gets no acknowledgement for this piece, so no part of it stays.
    (void)file.Truncate(bytesStored);
    return written;
}

bool UploadFile::IsInPlace() {
    return !IsLink(part) && file.IsAt(part);
}

Result<UploadFile::Ending> UploadFile::Complete(int replacedFilesKept) {
    assert(IsOpen());
    if (const auto synced = file.Sync(); !synced)
        return synced.Reason();
    if (!IsInPlace())
        return Error{Filled(text::transferReason::moved, {FromPath(part)})};
    if (bytesStored == 0 && IsThere(path)) {
        file.Delete(part);
        return Ending::OlderStays;
    }
    isWhole = true;
    // The name may have been taken or protected since the upload began.
    if (const auto replaceable = CheckReplaceable(path); !replaceable)
        return replaceable.Reason();
    if (const auto keeping = KeepOlder(replacedFilesKept); !keeping)
        return keeping.Reason();
    if (const auto moved = file.MoveTo(part, path); !moved) {
        // The name may be taken, and only its way to the disk have failed.
        hasName = !IsThere(part) && file.IsAt(path);
        return moved.Reason();
    }
    file.Close();
    if (!kept.empty() || replacedFilesKept <= 0)
        PruneReplaced(path, replacedFilesKept);
    return Ending::TookName;
}

// The older file gets its second name before it loses the first one, so at every moment it has one. A link with this
// name is no file of ours: what it leads to stays where it is.
Result<> UploadFile::KeepOlder(int replacedFilesKept) {
    std::error_code ignored;
    if (IsLink(path) || !fs::is_regular_file(path, ignored))
        return {};
    file.CopyRights(path);
    if (replacedFilesKept <= 0 || !kept.empty())
        return {};
    NativeFile older;
    const bool isSame = older.Open(path, NativeFile::Access::Read) && HaveSameBytes(older, file);
    // Windows replaces no file that is open.
    older.Close();
    if (isSame)
        return {};
    auto keeping = KeepReplaced(path);
    if (!keeping)
        return keeping.Reason();
    kept = std::move(*keeping);
    return {};
}

fs::path UploadFile::GiveUp() {
    if (!IsOpen())
        return {};
    (void)file.Sync();
    if (hasName) {
        file.Close();
        return path;
    }
    fs::path whole;
    if (isWhole && IsInPlace()) {
        whole = WholeNameFor(path);
        if (!file.MoveTo(part, whole))
            whole.clear();
    }
    file.Close();
    // The older file still has its name.
    std::error_code ignored;
    if (!kept.empty())
        fs::remove(kept, ignored);
    return whole;
}

}
