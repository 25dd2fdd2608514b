#include "base/System.h"
#include "base/WindowsApi.h"
#include "port/PortNames.h"
#include "port/PortReport.h"

#include <array>
#include <map>
#include <string>

#include <setupapi.h>

namespace tarvin {

namespace {

// The device class of ports: {4D36E978-E325-11CE-BFC1-08002BE10318}.
const GUID portClass = {0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
constexpr DWORD mostDevices = 1024;

struct Identity {
    KelText maker;
    KelText product;
    KelText serialNumber;
    KelText driver;
};

KelText Property(HDEVINFO devices, SP_DEVINFO_DATA& device, DWORD property) {
    // One place less than there is: the last one always stays a zero.
    std::array<wchar_t, 256> value = {};
    if (!::SetupDiGetDeviceRegistryPropertyW(devices, &device, property, nullptr, reinterpret_cast<BYTE*>(value.data()),
                                             static_cast<DWORD>((value.size() - 1) * sizeof(wchar_t)), nullptr))
        return {};
    const std::wstring text(value.data());
    return KelText(text.begin(), text.end());
}

KelText PortNameOf(HDEVINFO devices, SP_DEVINFO_DATA& device) {
    HKEY key = ::SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
    if (key == INVALID_HANDLE_VALUE)
        return {};
    std::array<wchar_t, 64> name = {};
    DWORD byteCount = static_cast<DWORD>((name.size() - 1) * sizeof(wchar_t));
    const LSTATUS read =
        ::RegQueryValueExW(key, L"PortName", nullptr, nullptr, reinterpret_cast<BYTE*>(name.data()), &byteCount);
    ::RegCloseKey(key);
    const std::wstring text(read == ERROR_SUCCESS ? name.data() : L"");
    return KelText(text.begin(), text.end());
}

// The last part of the instance, such as "FTDIBUS\VID_0403+PID_6001+A10KXYZ\0000" or "USB\VID_067B&PID_2303\12345".
// Windows makes up a number with an ampersand for a device without one.
KelText SerialNumberOf(HDEVINFO devices, SP_DEVINFO_DATA& device) {
    std::array<wchar_t, 256> instance = {};
    if (!::SetupDiGetDeviceInstanceIdW(devices, &device, instance.data(), static_cast<DWORD>(instance.size() - 1),
                                       nullptr))
        return {};
    const std::wstring text(instance.data());
    std::wstring number = text.substr(text.find_last_of(L'\\') + 1);
    if (text.starts_with(L"FTDIBUS\\")) {
        const std::wstring middle = text.substr(0, text.find_last_of(L'\\'));
        number = middle.substr(middle.find_last_of(L'+') + 1);
    }
    return number.find(L'&') == std::wstring::npos ? KelText(number.begin(), number.end()) : KelText();
}

std::map<KelText, Identity> IdentifyPorts() {
    std::map<KelText, Identity> identities;
    HDEVINFO devices = ::SetupDiGetClassDevsW(&portClass, nullptr, nullptr, DIGCF_PRESENT);
    if (devices == INVALID_HANDLE_VALUE)
        return identities;
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    for (DWORD index = 0; index < mostDevices && ::SetupDiEnumDeviceInfo(devices, index, &device); ++index) {
        if (const KelText name = PortNameOf(devices, device); !name.empty())
            identities[name] = {Property(devices, device, SPDRP_MFG), Property(devices, device, SPDRP_FRIENDLYNAME),
                                SerialNumberOf(devices, device), Property(devices, device, SPDRP_SERVICE)};
    }
    ::SetupDiDestroyDeviceInfoList(devices);
    return identities;
}

KelText DeviceObjectOf(const KelText& portName) {
    const std::wstring name(portName.begin(), portName.end());
    std::array<wchar_t, 512> target = {};
    if (name.empty() || ::QueryDosDeviceW(name.c_str(), target.data(), static_cast<DWORD>(target.size() - 1)) == 0)
        return {};
    const std::wstring first(target.data());
    return KelText(first.begin(), first.end());
}

void Probe(const std::filesystem::path& device, PortReport& report) {
    HANDLE opened = ::CreateFileW(device.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened != INVALID_HANDLE_VALUE) {
        ::CloseHandle(opened);
        return;
    }
    const DWORD error = ::GetLastError();
    // A port is open for one program at a time, and the second one is denied access.
    if (error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION)
        report.state = PortState::Busy;
    else
        report.state = error == ERROR_FILE_NOT_FOUND ? PortState::NotThere : PortState::Failed;
    report.reason = SystemErrorText(error);
}

PortReport Report(const PortNames& names, const std::map<KelText, Identity>& identities, const KelText& name,
                  bool isOwn) {
    PortReport report;
    report.name = name;
    report.device = DeviceObjectOf(name);
    if (const auto found = identities.find(name); found != identities.end()) {
        report.maker = found->second.maker;
        report.product = found->second.product;
        report.serialNumber = found->second.serialNumber;
        report.driver = found->second.driver;
    }
    const auto device = names.DeviceOf(name);
    if (isOwn)
        report.state = PortState::Own;
    else if (!device || report.device.empty())
        report.state = PortState::NotThere;
    else
        Probe(*device, report);
    // The name is what users of Windows know.
    report.device = name;
    AddStateAdvice(report);
    return report;
}

}

PortReport InspectPort(const std::filesystem::path& pathsFile, const KelText& portName) {
    return Report(PortNames(pathsFile), IdentifyPorts(), portName, false);
}

std::vector<PortReport> InspectPorts(const std::filesystem::path& pathsFile, const KelText& currentPort,
                                     const KelText& ownPort) {
    const PortNames names(pathsFile);
    const std::map<KelText, Identity> identities = IdentifyPorts();
    std::vector<PortReport> reports;
    const auto take = [&](const KelText& name) {
        reports.push_back(Report(names, identities, name, EqualIgnoringCase(name, ownPort)));
    };
    bool hasCurrent = currentPort.empty();
    for (int number = 1; number <= highestPort; ++number) {
        const KelText name = u"COM" + ToText(number);
        const bool isCurrent = EqualIgnoringCase(name, currentPort);
        hasCurrent = hasCurrent || isCurrent;
        if (isCurrent || !DeviceObjectOf(name).empty())
            take(name);
    }
    if (!hasCurrent)
        take(currentPort);
    return reports;
}

}
