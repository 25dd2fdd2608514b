#include "transfer/NcFolder.h"

#include "base/Messages.h"
#include "files/NativeFile.h"
#include "transfer/NcFilePath.h"
#include "transfer/ProgramComment.h"

#include <algorithm>
#include <set>
#include <system_error>

namespace tarvin {

namespace fs = std::filesystem;

namespace {

constexpr KelTextView partEnding = u".part";
constexpr std::size_t lookedForComment = 4096;

bool EndsIgnoringCase(KelTextView text, KelTextView ending) {
    return text.size() >= ending.size() && EqualIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

// The digits at the start of the text without leading zeros, which are taken off the text.
KelTextView TakeDigits(KelTextView& text) {
    while (text.size() > 1 && text[0] == u'0' && IsDigit(text[1]))
        text.remove_prefix(1);
    std::size_t count = 0;
    while (count < text.size() && IsDigit(text[count]))
        ++count;
    const KelTextView digits = text.substr(0, count);
    text.remove_prefix(count);
    return digits;
}

std::chrono::system_clock::time_point ToSystemTime(fs::file_time_type time) {
    return std::chrono::system_clock::now() +
           std::chrono::duration_cast<std::chrono::system_clock::duration>(time - fs::file_time_type::clock::now());
}

KelText CommentOf(const fs::path& path) {
    const auto start = ReadStartOfFile(path, lookedForComment);
    return start ? FirstComment(*start) : KelText();
}

}

bool ComesBefore(KelTextView left, KelTextView right) {
    const KelTextView wholeLeft = left;
    const KelTextView wholeRight = right;
    while (!left.empty() && !right.empty()) {
        if (IsDigit(left[0]) && IsDigit(right[0])) {
            const KelTextView leftDigits = TakeDigits(left);
            const KelTextView rightDigits = TakeDigits(right);
            if (leftDigits.size() != rightDigits.size())
                return leftDigits.size() < rightDigits.size();
            if (leftDigits != rightDigits)
                return leftDigits < rightDigits;
            continue;
        }
        if (left[0] != right[0])
            return left[0] < right[0];
        left.remove_prefix(1);
        right.remove_prefix(1);
    }
    // 7 and 07 are two names of equal worth.
    return left.empty() && right.empty() ? wholeLeft < wholeRight : left.empty();
}

Result<std::vector<NcFolderEntry>> ListNcFolder(const KelText& folder, const KelText& extension,
                                                const std::atomic<bool>& stop) {
    std::error_code error;
    fs::directory_iterator file(ToPath(folder), error);
    if (error)
        return Error{FromUtf8(error.message())};
    const KelText ending = extension.empty() ? KelText() : u"." + extension;
    std::vector<NcFolderEntry> entries;
    for (; file != fs::directory_iterator() && !stop; file.increment(error)) {
        if (error)
            return Error{FromUtf8(error.message())};
        std::error_code ignored;
        if (!file->is_regular_file(ignored))
            continue;
        KelText name = FromPath(file->path().filename());
        NcFolderEntry entry;
        entry.isIncomplete = name.ends_with(partEnding);
        if (entry.isIncomplete)
            name.resize(name.size() - partEnding.size());
        if (!EndsIgnoringCase(name, ending))
            continue;
        entry.number = name.substr(0, name.size() - ending.size());
        if (!IsUsableFileNumber(ToUtf8(entry.number)))
            continue;
        entry.path = file->path();
        entry.size = file->file_size(ignored);
        entry.changed = ToSystemTime(file->last_write_time(ignored));
        entries.push_back(std::move(entry));
    }
    std::set<KelText> whole;
    for (const NcFolderEntry& entry : entries) {
        if (!entry.isIncomplete)
            whole.insert(entry.number);
    }
    std::erase_if(entries,
                  [&](const NcFolderEntry& entry) { return entry.isIncomplete && whole.contains(entry.number); });
    std::sort(entries.begin(), entries.end(), [](const NcFolderEntry& left, const NcFolderEntry& right) {
        return ComesBefore(left.number, right.number);
    });
    for (NcFolderEntry& entry : entries) {
        if (stop)
            break;
        entry.comment = CommentOf(entry.path);
    }
    return entries;
}

}
