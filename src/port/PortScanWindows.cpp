#include "base/WindowsApi.h"
#include "port/PortList.h"
#include "port/PortNames.h"
#include "port/PortScan.h"

#include <array>

namespace tarvin {

namespace {

KelText DeviceObjectOf(const KelText& portName) {
    const std::wstring name(portName.begin(), portName.end());
    std::array<wchar_t, 512> target = {};
    // The last place stays a zero, whatever the call leaves.
    const DWORD length = ::QueryDosDeviceW(name.c_str(), target.data(), static_cast<DWORD>(target.size() - 1));
    if (name.empty() || length == 0)
        return {};
    const std::wstring first(target.data());
    return KelText(first.begin(), first.end());
}

bool IsFree(const std::optional<std::filesystem::path>& device) {
    if (!device)
        return false;
    HANDLE opened = ::CreateFileW(device->c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return false;
    ::CloseHandle(opened);
    return true;
}

}

std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort) {
    const PortNames names(pathsFile);
    return ListPorts(
        currentPort, [&](const KelText& name) { return IsFree(names.DeviceOf(name)); }, DeviceObjectOf);
}

}
