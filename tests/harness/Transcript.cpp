#include "harness/Transcript.h"

#include <algorithm>

#include <doctest/doctest.h>

namespace tarvin::test {

std::string Message(std::string_view text) {
    int sum = 0;
    for (const char byte : text)
        sum += static_cast<unsigned char>(byte);
    const int rest = (128 - sum % 128) % 128;
    return std::string(text) + static_cast<char>((rest > 32 ? rest : rest + 64) - 1) + '\r';
}

std::string SettingsProfile(const Transcript& transcript) {
    // The first of several equal keys counts, so the transcript's own lines come first.
    return "[Port Settings]\n" + transcript.portSettings + "transmit delay=0\nflow control=None\n[Files]\n" +
           transcript.fileSettings + "file extension=nc\n";
}

void MakeFilesBefore(const Transcript& transcript, const TemporaryFolder& folder) {
    for (const auto& [name, content] : transcript.before) {
        if (name.ends_with('/'))
            std::filesystem::create_directory(folder / ("NC/" + name));
        else
            folder.WriteFile("NC/" + name, content);
    }
}

void CheckFilesAfter(const Transcript& transcript, const TemporaryFolder& folder) {
    for (const auto& [name, content] : transcript.after)
        CHECK(folder.ReadFile("NC/" + name) == content);
}

std::string WithFolder(std::string text, const std::string& ncFolder) {
    constexpr std::string_view mark = "{NC}";
    const char separator = ncFolder.find('\\') == std::string::npos ? '/' : '\\';
    for (auto found = text.find(mark); found != std::string::npos; found = text.find(mark)) {
        std::replace(text.begin() + static_cast<std::ptrdiff_t>(found), text.end(), '/', separator);
        text.replace(found, mark.size(), ncFolder);
    }
    return text;
}

}
