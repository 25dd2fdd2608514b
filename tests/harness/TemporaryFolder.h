#pragma once
// A new folder in the system's temporary folder. The destructor removes it with all that is in it. Failures throw.

#include <filesystem>
#include <string>
#include <string_view>

namespace tarvin::test {

class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path; }
    std::filesystem::path operator/(std::string_view name) const { return path / name; }

    // Write and read a whole file below the folder, byte for byte.
    void WriteFile(std::string_view name, std::string_view content) const;
    std::string ReadFile(std::string_view name) const;

private:
    std::filesystem::path path;
};

}
