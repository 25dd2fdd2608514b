#include "base/WindowsApi.h"
#include "port/PortNames.h"

#include <array>

namespace tarvin {

namespace {

// Such as "\Device\Serial0".
KelText DeviceObjectOf(const KelText& portName) {
    const std::wstring name(portName.begin(), portName.end());
    std::array<wchar_t, 512> target = {};
    // One place less than there is: the last one always stays a zero.
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

std::optional<std::filesystem::path> PortNames::DeviceOf(const KelText& portName) const {
    // A separator would lead to a file.
    if (portName.empty() || portName.find_first_of(u"\\/") != KelText::npos)
        return std::nullopt;
    // Without the prefix Windows finds COM1 to COM9 only.
    return std::filesystem::path(L"\\\\.\\" + std::wstring(portName.begin(), portName.end()));
}

std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort) {
    const PortNames names(pathsFile);
    return ListPorts(
        currentPort, [&](const KelText& name) { return IsFree(names.DeviceOf(name)); }, DeviceObjectOf);
}

}
