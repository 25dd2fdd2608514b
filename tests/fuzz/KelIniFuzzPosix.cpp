// Feeds any bytes as KEL.INI to all that read and change it.

#include "app/ServiceSettings.h"
#include "files/Installation.h"
#include "fuzz/FuzzedDisk.h"
#include "harness/TemporaryFolder.h"
#include "port/PortNamesPosix.h"

#include <filesystem>

using namespace tarvin;
using namespace tarvin::test;

namespace {

// Every byte of `before` is there, in its order.
bool HoldsAll(std::string_view before, std::string_view after) {
    for (const char byte : after)
        if (!before.empty() && before.front() == byte)
            before.remove_prefix(1);
    return before.empty();
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::filesystem::path file = folder / "KEL.INI";
    folder.WriteFile("KEL.INI", bytes);

    if (const auto installation = Installation::Read(folder.Path())) {
        Require(!installation->NcFilesFolder().empty(), "the NC files have a folder");
        for (const auto& each : installation->LinkedFolders())
            Require(each.is_absolute(), "a linked folder has a full path");
        const ServiceSettings service = ReadServiceSettings(*installation, u"ANY/MACHINE");
        Require(service.commsLogSizeLimit >= 1 << 20 && service.commsLogSizeLimit <= std::uint64_t{1000} << 20,
                "the log of a service is bounded");
    }
    Require(folder.ReadFile("KEL.INI") == bytes, "a reader changes nothing");

    const std::filesystem::path device = "/dev/null";
    const auto name = AssignPortName(file, device, u"");
    if (name)
        Require(PortNames(file).DeviceOf(*name) == device, "a port that was assigned leads to its device");
    const std::string assigned = folder.ReadFile("KEL.INI");
    Require(HoldsAll(bytes, assigned), "every byte stays when a port is assigned");
    (void)AssignPorts(file, {{device, DeviceId(device)}, {"/dev/zero", DeviceId("/dev/zero")}});
    Require(HoldsAll(assigned, folder.ReadFile("KEL.INI")), "every byte stays when ports are assigned");
    return 0;
}
