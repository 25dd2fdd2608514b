#include "framework/NativeFile.h"
#include "framework/SystemName.h"

#include <string>

#include <sys/utsname.h>

namespace tarvin {

KelText SystemName() {
    const std::string release = ReadWholeFile("/etc/os-release", 64 * 1024).value_or("");
    constexpr std::string_view key = "PRETTY_NAME=\"";
    const std::size_t start = release.find(key);
    if (start != std::string::npos) {
        const std::size_t name = start + key.size();
        return FromUtf8(std::string_view(release).substr(name, release.find('"', name) - name));
    }
    utsname system = {};
    ::uname(&system);
    return FromUtf8(std::string(system.sysname) + " " + system.release);
}

}
