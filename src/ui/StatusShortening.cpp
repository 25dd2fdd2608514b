#include "ui/StatusShortening.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin {

namespace {

constexpr char32_t ellipsis = U'\u2026';

struct Folder {
    std::size_t begin = 0;
    std::size_t end = 0; // behind the last separator
};

bool IsSeparator(char32_t character) {
    return character == U'/' || character == U'\\';
}

// "/home", "\\server" or "C:\", at the start of a word.
bool IsPathStart(std::u32string_view text, std::size_t at) {
    if (at > 0 && text[at - 1] != U' ')
        return false;
    const bool isDrive = at + 2 < text.size() && text[at + 1] == U':' && IsSeparator(text[at + 2]);
    return IsSeparator(text[at]) || isDrive;
}

// Names may hold blanks. What follows a path in a status begins with one of these.
std::size_t PathEnd(std::u32string_view text, std::size_t begin) {
    return std::min({text.size(), text.find(U" - ", begin), text.find(U": ", begin)});
}

std::vector<Folder> FoldersIn(std::u32string_view text) {
    std::vector<Folder> folders;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!IsPathStart(text, at))
            continue;
        const std::size_t end = PathEnd(text, at);
        const std::size_t separator = text.substr(0, end).find_last_of(U"/\\");
        folders.push_back({at, separator + 1});
        at = end - 1;
    }
    return folders;
}

// Each folder keeps `kept` characters, half of them at each end, and its last separator.
std::u32string Shortened(std::u32string_view text, const std::vector<Folder>& folders, std::size_t kept) {
    std::u32string result;
    std::size_t copied = 0;
    for (const Folder& folder : folders) {
        const std::u32string_view whole = text.substr(folder.begin, folder.end - folder.begin);
        result += text.substr(copied, folder.begin - copied);
        copied = folder.end;
        // One more for the ellipsis, or the shorter text would be none.
        if (kept + 2 >= whole.size()) {
            result += whole;
            continue;
        }
        result += whole.substr(0, kept / 2);
        result += ellipsis;
        result += whole.substr(whole.size() - 1 - (kept - kept / 2));
    }
    return result + std::u32string(text.substr(copied));
}

wxString FromCharacters32(const std::u32string& text) {
    return ToWx(FromCharacters(text));
}

}

wxString ShortenStatus(const wxString& text, const std::function<bool(const wxString& text)>& fits) {
    if (fits(text))
        return text;
    const std::u32string whole = ToCharacters(FromWx(text));
    const std::vector<Folder> folders = FoldersIn(whole);
    std::size_t longest = 0;
    for (const Folder& folder : folders)
        longest = std::max(longest, folder.end - folder.begin);
    // The most characters of a folder with which the text fits; none may be too many.
    std::size_t least = 0;
    std::size_t tooMany = longest;
    while (least + 1 < tooMany) {
        const std::size_t middle = (least + tooMany) / 2;
        (fits(FromCharacters32(Shortened(whole, folders, middle))) ? least : tooMany) = middle;
    }
    return FromCharacters32(Shortened(whole, folders, least));
}

}
