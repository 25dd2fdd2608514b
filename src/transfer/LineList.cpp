#include "transfer/LineList.h"

#include <algorithm>
#include <cstring>

namespace tarvin {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr char endOfText = 0x1A;
// Small enough for the lines to be looked at while they are still in the processor's cache.
constexpr std::size_t pieceSize = 256 * 1024;
// A line is looked at anew with each piece until it ends. One that is longer than this is judged without its end.
constexpr std::size_t longestUnfinishedLine = 64 * 1024;

// Counts in blocks whose result fits a byte: the compiler then counts sixteen bytes at a time.
std::size_t CountReturns(std::string_view text) {
    constexpr std::size_t blockSize = 240;
    std::size_t total = 0;
    for (std::size_t start = 0; start < text.size(); start += blockSize) {
        std::uint8_t count = 0;
        for (const char byte : text.substr(start, blockSize))
            count = static_cast<std::uint8_t>(count + (byte == '\r' ? 1 : 0));
        total += count;
    }
    return total;
}

// By its mark, or by the zero byte of each ASCII character.
bool IsUtf16(std::string_view start) {
    if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF"))
        return true;
    constexpr std::size_t looked = 64;
    const std::size_t byteCount = std::min(looked, start.size() & ~std::size_t{1});
    if (byteCount < 4)
        return false;
    std::size_t zeroes[2] = {0, 0};
    for (std::size_t index = 0; index < byteCount; ++index)
        zeroes[index % 2] += start[index] == '\0' ? 1 : 0;
    return zeroes[0] + zeroes[1] == byteCount / 2 && (zeroes[0] == 0 || zeroes[1] == 0);
}

// The line without the CRs of its own line end, and without those of the end before it.
std::string_view WithoutReturns(std::string_view line, bool followsLineEnd) {
    while (followsLineEnd && line.starts_with('\r'))
        line.remove_prefix(1);
    while (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

// Looks for the first fault of a text that comes piece by piece.
class FaultSearch {
public:
    explicit FaultSearch(std::size_t longestLineAllowed) : longestLineAllowed(longestLineAllowed) {}

    // Looks at the lines of `text` that have an end, and removes them from it.
    std::optional<LineList::Fault> LookAtWholeLines(std::string_view& text) {
        const std::string_view before = text;
        const std::int64_t numberBefore = lineNumber;
        std::size_t lineEndReturns = 0;
        bool hasLongLine = false;
        const char* start = text.data();
        const char* const end = text.data() + text.size();
        // The controller waits for its answer meanwhile, and a file may have millions of lines.
        while (const void* const found = std::memchr(start, '\n', static_cast<std::size_t>(end - start))) {
            const char* const lineEnd = static_cast<const char*>(found);
            const std::size_t rawLength = static_cast<std::size_t>(lineEnd - start);
            const std::string_view line = WithoutReturns({start, rawLength}, lineNumber > 1);
            hasLongLine = line.size() > longestLineAllowed;
            if (hasLongLine)
                break;
            lineEndReturns += rawLength - line.size();
            ++lineNumber;
            start = lineEnd + 1;
        }
        text.remove_prefix(static_cast<std::size_t>(start - text.data()));
        if (CountReturns(before.substr(0, before.size() - text.size())) != lineEndReturns)
            return FirstStrayReturn(before, numberBefore);
        return hasLongLine ? LookAtLine(text.substr(0, text.find('\n'))) : std::nullopt;
    }

    // The lines that have ended so far.
    std::int64_t WholeLines() const { return lineNumber - 1; }

    // Looks at a single line.
    std::optional<LineList::Fault> LookAtLine(std::string_view text) const {
        const std::string_view line = WithoutReturns(text, lineNumber > 1);
        const bool isLongerThanText = line.size() > LineList::longestLineOfText;
        if (line.find('\r') != std::string_view::npos)
            return LineList::Fault{LineList::Fault::Kind::StrayReturn, lineNumber, isLongerThanText};
        if (line.size() > longestLineAllowed)
            return LineList::Fault{LineList::Fault::Kind::LongLine, lineNumber, isLongerThanText};
        return std::nullopt;
    }

    // Looks at the last line, or at the start of a line whose end has not come yet.
    std::optional<LineList::Fault> LookAtRest(std::string_view text, bool isEnd) const {
        const bool isTooLong = text.size() > longestUnfinishedLine;
        if (!isEnd && !isTooLong)
            return std::nullopt;
        const auto fault = LookAtLine(text);
        // Only CRs at its start and its end can make such a line short enough.
        return fault || !isTooLong ? fault : LineList::Fault{LineList::Fault::Kind::StrayReturn, lineNumber};
    }

private:
    // Requires that one of the lines has a stray CR.
    std::optional<LineList::Fault> FirstStrayReturn(std::string_view text, std::int64_t firstNumber) {
        for (lineNumber = firstNumber;; ++lineNumber) {
            const std::size_t end = text.find('\n');
            if (auto fault = LookAtLine(text.substr(0, end)); fault || end == std::string_view::npos)
                return fault;
            text.remove_prefix(end + 1);
        }
    }

    const std::size_t longestLineAllowed;
    std::int64_t lineNumber = 1;
};

}

Result<std::optional<LineList::Fault>> LineList::Load(NativeFile& file, const std::atomic<bool>& stop,
                                                      std::size_t longestLineAllowed) {
    Clear();
    if (const auto begun = image.Begin(file); !begun)
        return begun.Reason();
    FaultSearch search(longestLineAllowed);
    std::size_t textStart = 0;
    std::size_t lookedAt = 0;
    std::optional<Fault> fault;
    for (;;) {
        const auto count = image.ReadPiece(file, pieceSize);
        if (!count || stop) {
            Clear();
            return count ? Error{} : count.Reason();
        }
        std::string_view content = image.Content();
        if (lookedAt == 0 && IsUtf16(content))
            fault = Fault{Fault::Kind::Utf16};
        if (lookedAt == 0 && content.starts_with(utf8Mark))
            textStart = lookedAt = utf8Mark.size();
        std::string_view text = content.substr(lookedAt);
        if (!fault)
            fault = search.LookAtWholeLines(text);
        lookedAt = content.size() - text.size();
        const bool isEnd = *count == 0;
        if (isEnd) {
            while (text.ends_with(endOfText))
                text.remove_suffix(1);
        }
        if (!fault)
            fault = search.LookAtRest(text, isEnd);
        if (isEnd) {
            rest = content.substr(textStart, lookedAt + text.size() - textStart);
            linesTotal = search.WholeLines() + (text.empty() ? 0 : 1);
        }
        if (isEnd || fault)
            break;
    }
    if (fault)
        Clear();
    return fault;
}

void LineList::Clear() {
    image.Clear();
    rest = {};
    linesTotal = linesTaken = 0;
    bytesTaken = 0;
}

std::string_view LineList::NextNonEmpty() {
    while (!rest.empty()) {
        const std::size_t found = rest.find('\n');
        // CRs at the start of the first line would be stray, so those that are here belong to the line end before.
        const std::string_view line = WithoutReturns(rest.substr(0, found), true);
        rest.remove_prefix(found == std::string_view::npos ? rest.size() : found + 1);
        ++linesTaken;
        bytesTaken = static_cast<std::size_t>(rest.data() - image.Content().data());
        if (!line.empty())
            return line;
    }
    return {};
}

}
