#include "harness/TemporaryFolder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace tarvin::test {

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    do {
        path = std::filesystem::temp_directory_path() / ("tarvindl-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path));
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    // A test may have removed the right to write.
    std::filesystem::permissions(path, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ignored);
    std::filesystem::remove_all(path, ignored);
}

void TemporaryFolder::WriteFile(std::string_view name, std::string_view content) const {
    std::ofstream file(path / name, std::ios::binary);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.flush())
        throw std::runtime_error((path / name).string() + " cannot be written");
}

std::string TemporaryFolder::ReadFile(std::string_view name) const {
    std::ifstream file(path / name, std::ios::binary);
    if (!file.is_open())
        throw std::runtime_error((path / name).string() + " cannot be read");
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}
