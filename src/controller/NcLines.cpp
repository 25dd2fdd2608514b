#include "controller/NcLines.h"

#include "controller/ControllerFrame.h"
#include "files/NativeFile.h"

namespace tarvin::controller {

namespace {

constexpr std::size_t longestFile = std::size_t(1) << 28;

Error Failure(const std::string& reason) {
    return {FromUtf8(reason)};
}

}

Result<std::vector<std::string>> SplitNcLines(std::string_view content) {
    std::vector<std::string> lines;
    for (std::size_t number = 1; !content.empty(); ++number) {
        const std::size_t end = content.find('\n');
        std::string_view lineText = content.substr(0, end);
        content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        // A last line without LF has no line end at all, so a carriage return at its end is part of the line.
        if (end != std::string_view::npos && lineText.ends_with('\r'))
            lineText.remove_suffix(1);
        if (lineText.find('\r') != std::string_view::npos)
            return Failure("line " + std::to_string(number) + " holds a carriage return that does not end it");
        if (!lineText.empty())
            lines.emplace_back(lineText);
    }
    return lines;
}

Result<std::vector<std::string>> ReadNcLines(const std::filesystem::path& path) {
    const auto content = ReadWholeFile(path, longestFile);
    if (!content) {
        return Failure(path.string() + ": " + ToUtf8(content.Reason().text));
    }
    auto lines = SplitNcLines(*content);
    if (!lines)
        return Failure(path.string() + ": " + ToUtf8(lines.Reason().text));
    return lines;
}

Outcome LineCollector::Take(std::string_view lineText) {
    content += lineText;
    content += "\r\n";
    return Outcome::Right();
}

Outcome LineComparer::Take(std::string_view lineText) {
    if (taken == expected.size())
        return Outcome::Failed(Quoted(lineText) + " came, but the file has no more lines");
    if (lineText != expected[taken])
        return Outcome::Failed(Quoted(lineText) + " came, but the file has " + Quoted(expected[taken]));
    ++taken;
    return Outcome::Right();
}

Outcome LineComparer::TakeEnd() {
    if (taken == expected.size())
        return Outcome::Right();
    return Outcome::Failed("line " + std::to_string(taken + 1) + ": the end came, but the file has " +
                           Quoted(expected[taken]));
}

}
