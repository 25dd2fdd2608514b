#include "messages/SuppressedMessages.h"

#include "files/NativeFile.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <system_error>

namespace tarvin {

namespace {

constexpr std::size_t maximumFileSize = 1024 * 1024;

// None if the line is not exactly one number. An editor may have put a CR before the line end.
std::optional<std::int32_t> ParseLine(std::string_view line) {
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    std::int32_t id = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), id);
    const bool isNumber = error == std::errc() && end == line.data() + line.size();
    return isNumber ? std::optional(id) : std::nullopt;
}

SuppressedMessages::Content Parse(std::string_view content, std::set<std::int32_t>& ids) {
    auto result = SuppressedMessages::Content::Sound;
    if (content.size() > maximumFileSize) {
        // The last line may be cut, and the rest of a number is another number.
        content = content.substr(0, content.rfind('\n') + 1);
        result = SuppressedMessages::Content::Damaged;
    }
    // Some editors begin a text with a byte order mark.
    if (content.starts_with("\xEF\xBB\xBF"))
        content.remove_prefix(3);
    while (!content.empty()) {
        const std::string_view line = content.substr(0, content.find('\n'));
        content.remove_prefix(std::min(line.size() + 1, content.size()));
        if (const auto id = ParseLine(line))
            ids.insert(*id);
        else
            result = SuppressedMessages::Content::Damaged;
    }
    return result;
}

}

SuppressedMessages::Content SuppressedMessages::Read() {
    const auto content = ReadStartOfFile(file, maximumFileSize + 1);
    if (!content) {
        std::error_code error;
        const bool isMissing = std::filesystem::status(file, error).type() == std::filesystem::file_type::not_found;
        return isMissing ? Content::Sound : Content::Unreadable;
    }
    std::set<std::int32_t> read;
    const Content result = Parse(*content, read);
    const MutexLock lock(mutex);
    ids.merge(read);
    return result;
}

bool SuppressedMessages::Contains(std::int32_t id) const {
    const MutexLock lock(mutex);
    return ids.contains(id);
}

bool SuppressedMessages::Add(std::int32_t id) {
    // Another program may have added numbers since the last Read.
    const bool isReadable = Read() != Content::Unreadable;
    std::string content;
    {
        const MutexLock lock(mutex);
        ids.insert(id);
        for (const std::int32_t each : ids)
            content += std::to_string(each) + "\r\n";
    }
    if (!isReadable)
        return false;
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    return static_cast<bool>(ReplaceWholeFile(file, content));
}

bool SuppressedMessages::Clear() {
    {
        const MutexLock lock(mutex);
        ids.clear();
    }
    // A folder of this name is none of ours, and an empty one could be removed.
    std::error_code error;
    if (std::filesystem::is_directory(file, error))
        return false;
    std::filesystem::remove(file, error);
    return !error;
}

}
