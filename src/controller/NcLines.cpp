#include "controller/NcLines.h"

#include "files/NativeFile.h"

namespace tarvin::controller {

namespace {

constexpr std::size_t longestFile = std::size_t(1) << 28;

}

std::optional<std::vector<std::string>> SplitNcLines(std::string_view content, std::string& error) {
    std::vector<std::string> lines;
    for (std::size_t number = 1; !content.empty(); ++number) {
        const std::size_t end = content.find('\n');
        std::string_view lineText = content.substr(0, end);
        content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        if (end != std::string_view::npos && lineText.ends_with('\r'))
            lineText.remove_suffix(1);
        if (lineText.find('\r') != std::string_view::npos) {
            error = "line " + std::to_string(number) + " holds a carriage return that does not end it";
            return std::nullopt;
        }
        if (!lineText.empty())
            lines.emplace_back(lineText);
    }
    return lines;
}

std::optional<std::vector<std::string>> ReadNcLines(const std::filesystem::path& path, std::string& error) {
    const auto content = ReadWholeFile(path, longestFile);
    if (!content) {
        error = path.string() + ": " + ToUtf8(content.Reason().text);
        return std::nullopt;
    }
    auto lines = SplitNcLines(*content, error);
    if (!lines)
        error = path.string() + ": " + error;
    return lines;
}

}
