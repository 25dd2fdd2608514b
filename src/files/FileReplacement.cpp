#include "files/FileReplacement.h"

#include "files/Links.h"
#include "files/NativeFile.h"

#include <random>
#include <string>
#include <system_error>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t randomDigitCount = 16;
constexpr std::string_view freshEnding = ".new";
constexpr int mostAttempts = 8;

// Removes the new files that killed programs have left behind. A program that is still writing one holds its lock.
void RemoveLeftOvers(const fs::path& path) {
    std::error_code error;
    fs::directory_iterator entries(path.has_parent_path() ? path.parent_path() : fs::path("."), error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        const fs::path& fresh = entries->path();
        std::error_code ignored;
        if (!IsFreshNameFor(fresh, path) || !fs::is_regular_file(fs::symlink_status(fresh, ignored)))
            continue;
        NativeFile leftOver;
        if (leftOver.Open(fresh, NativeFile::Access::Read) && leftOver.Lock())
            fs::remove(fresh, ignored);
    }
}

// Opens a new file beside `path` and locks it. Another program may take it for a left-over before it is locked, and
// remove it: then the next name is tried. Some network drives have no locks, so the last attempt does without.
Result<> OpenFresh(NativeFile& file, const fs::path& path, fs::path& fresh) {
    Result<> opened;
    for (int attempt = 1; attempt <= mostAttempts; ++attempt) {
        fresh = FreshNameFor(path);
        opened = file.Open(fresh, NativeFile::Access::Create);
        if (!opened)
            continue;
        const bool isLocked = static_cast<bool>(file.Lock());
        if ((isLocked || attempt == mostAttempts) && file.IsAt(fresh))
            return {};
        std::error_code ignored;
        fs::remove(fresh, ignored);
    }
    if (opened)
        return Error{FromPath(fresh) + u" was removed"};
    return opened;
}

}

fs::path WithoutLinks(const fs::path& path) {
    return IsLink(path) ? RealPath(path).ValueOr(path) : path;
}

Result<> LinkOrCopy(const fs::path& path, const fs::path& other) {
    if (AddName(path, other))
        return {};
    NativeFile source;
    NativeFile copy;
    if (const auto opened = source.Open(path, NativeFile::Access::Read); !opened)
        return opened;
    if (const auto created = copy.Open(other, NativeFile::Access::Create); !created)
        return created;
    copy.CopyRights(path);
    Result<> result = CopyContent(source, copy);
    if (result)
        result = copy.Sync();
    copy.Close();
    std::error_code ignored;
    if (!result)
        fs::remove(other, ignored);
    else if (const auto time = fs::last_write_time(path, ignored); !ignored)
        fs::last_write_time(other, time, ignored);
    return result;
}

fs::path FreshNameFor(const fs::path& path) {
    std::random_device random;
    std::string ending = ".";
    while (ending.size() <= randomDigitCount)
        ending.push_back("0123456789abcdef"[random() % 16]);
    fs::path fresh = path;
    fresh += ending;
    fresh += freshEnding;
    return fresh;
}

bool IsFreshNameFor(const fs::path& fresh, const fs::path& path) {
    const KelText name = FromPath(path.filename()) + u'.';
    KelText rest = FromPath(fresh.filename());
    if (rest.size() != name.size() + randomDigitCount + freshEnding.size() || !rest.starts_with(name) ||
        !rest.ends_with(u".new"))
        return false;
    rest = rest.substr(name.size(), randomDigitCount);
    return rest.find_first_not_of(u"0123456789abcdef") == KelText::npos;
}

Result<> ReplaceWholeFile(const fs::path& named, std::string_view content) {
    if (const auto checked = CheckLink(named); !checked)
        return checked;
    // A link that takes the place of the file after the check is replaced itself where links are not followed.
    const fs::path path = AreLinksFollowedIn(named.parent_path()) ? WithoutLinks(named) : named;
    std::error_code ignored;
    const fs::file_status present = fs::status(path, ignored);
    if (fs::exists(present) && !fs::is_regular_file(present))
        return Error{FromPath(path) + u" is no regular file"};
    RemoveLeftOvers(path);
    NativeFile file;
    fs::path fresh;
    if (const auto opened = OpenFresh(file, path, fresh); !opened)
        return opened;
    // Before the content: no one may read it who could not read the old one.
    if (fs::exists(present))
        file.CopyRights(path);
    // The content is on the disk before the file takes its name. After a crash the name never leads to an empty file.
    Result<> result = file.Write(content);
    if (result)
        result = file.Sync();
    // The file stays open, and locked, until it has its name.
    if (result)
        result = TakeName(fresh, path);
    if (!result)
        fs::remove(fresh, ignored);
    return result;
}

}
