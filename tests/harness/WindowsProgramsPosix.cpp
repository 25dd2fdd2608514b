#include "harness/WindowsProgramsPosix.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

namespace tarvin::test {

namespace {

const char* Folder() {
    return std::getenv("TARVIN_WINDOWS_PROGRAMS");
}

}

bool AreWindowsProgramsMeant() {
    return Folder() != nullptr;
}

std::vector<std::string> WindowsProgramWords(const std::string& program) {
    assert(AreWindowsProgramsMeant());
    return {TARVIN_SOURCE_FOLDER "/tools/wine", std::string(Folder()) + "/" + program + ".exe"};
}

void LeadWindowsPortTo(const std::filesystem::path& device, int number) {
    // tools/wine maps each port name to such a path.
    const std::filesystem::path link = TARVIN_SOURCE_FOLDER "/build/wine/line" + std::to_string(number);
    std::filesystem::remove(link);
    std::filesystem::create_symlink(device, link);
}

std::string NameForProgram(const std::filesystem::path& path) {
    if (!AreWindowsProgramsMeant())
        return path.string();
    std::string name = "Z:" + path.string();
    std::replace(name.begin(), name.end(), '/', '\\');
    return name;
}

}
