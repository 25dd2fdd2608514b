#pragma once
// The NC files of a campaign: the folder of the installation, the whole programs that lie there before each transfer,
// and what a transfer has changed. Failures throw. One thread.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarvin::campaign {

class NcFiles {
public:
    // Numbers lie close together, so that a damaged number often names another file that exists.
    static constexpr std::uint32_t fileCount = 100;

    struct Changes {
        std::vector<std::string> overwritten;
        std::vector<std::string> created;
    };

    // Fills the folder with one older program for each number.
    NcFiles(std::filesystem::path folder, std::uint32_t seed);

    // The number of the transfer's file as the controller sends it, and the name of that file in the folder.
    static std::string NumberOf(std::uint32_t transfer);
    static std::string NameOf(std::uint32_t transfer);

    // The lines of a program that the controller sends in this transfer.
    std::vector<std::string> NewLines(std::uint32_t transfer) const;
    // The lines of the program that lies in the folder under the transfer's number.
    std::vector<std::string> OlderLines(std::uint32_t transfer) const;

    // The bytes of a file with these lines.
    static std::string Content(const std::vector<std::string>& lines);
    // The lines of these bytes, without their line ends.
    static std::vector<std::string> Lines(const std::string& content);

    // The bytes under the name now, or none without such a file.
    std::optional<std::string> Read(const std::string& name) const;
    void Write(const std::string& name, const std::string& content) const;

    // Programs other than `name` whose bytes differ from the older ones. Files that a program keeps beside its
    // transfers do not count: an upload on its way (".part"), kept ones (".whole"), and folders.
    Changes ChangesBeside(const std::string& name) const;
    // Puts the folder back as it was at first.
    void Restore() const;

private:
    std::map<std::string, std::string> Found() const;
    void WriteOlder(const std::string& name, const std::string& content) const;

    const std::filesystem::path folder;
    const std::uint32_t seed;
    std::map<std::string, std::string> older;
};

}
