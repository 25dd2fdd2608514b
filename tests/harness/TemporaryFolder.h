#pragma once
// A fresh folder that is gone, with all that is in it, when the test ends.

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

    // Writes and reads whole files below the folder, byte for byte. Reading a missing file fails the test.
    void WriteFile(std::string_view name, std::string_view content) const;
    std::string ReadFile(std::string_view name) const;

private:
    std::filesystem::path path;
};

}
