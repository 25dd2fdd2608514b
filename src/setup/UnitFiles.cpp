#include "setup/UnitFiles.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <utility>

namespace tarvin {

namespace {

constexpr const char* writtenBy = "# Written by tarvindl-setup, which replaces it when the settings change.\n";

bool IsLetterOrDigit(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9');
}

// In a list of paths systemd takes quotes, escapes and specifiers.
std::string QuotedForSystemd(const std::filesystem::path& path) {
    std::string quoted = "\"-";
    for (const char character : ToUtf8(FromPath(path))) {
        if (character == '"' || character == '\\')
            quoted += '\\';
        if (character == '%')
            quoted += '%';
        quoted += character;
    }
    return quoted + '"';
}

// A rule has no way to quote: '?' stands for any one byte that could end the text or act as a pattern.
std::string PatternOf(KelTextView text) {
    std::string pattern = ToUtf8(text);
    for (char& character : pattern) {
        const bool isPlain =
            IsLetterOrDigit(character) || std::string_view("-_.:+ ").find(character) != std::string::npos;
        if (!isPlain)
            character = '?';
    }
    return pattern;
}

// One condition for each text that is known. `key` is ATTR for the device itself, ATTRS for one of its parents; udev
// takes a parent only if all of them hold for it.
std::string UsbConditions(const PortMark& port, std::string_view key) {
    std::string conditions;
    for (const auto& [attribute, text] : {std::pair("idVendor", port.vendorId), std::pair("idProduct", port.productId),
                                          std::pair("serial", port.serialNumber)}) {
        if (!text.empty())
            conditions += std::string(key) + "{" + attribute + "}==\"" + PatternOf(text) + "\", ";
    }
    return conditions;
}

}

std::string UnitInstanceOf(std::string_view machineName) {
    std::string escaped;
    for (const char character : machineName) {
        const bool isPlain = IsLetterOrDigit(character) || character == ':' || character == '_' ||
                             (character == '.' && !escaped.empty());
        char code[8] = "";
        std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned char>(character));
        if (isPlain)
            escaped += character;
        else
            escaped += character == '/' ? "-" : code;
    }
    return escaped;
}

bool FitsOnLine(const std::filesystem::path& path) {
    return std::ranges::none_of(FromPath(path), IsControlCharacter);
}

std::string FoldersDropIn(const std::vector<std::filesystem::path>& folders) {
    std::string text = std::string(writtenBy) + "[Service]\n";
    for (const auto& folder : folders) {
        assert(FitsOnLine(folder));
        text += "ReadWritePaths=" + QuotedForSystemd(folder) + "\n";
    }
    return text;
}

// The property of the USB device tells ModemManager to leave all of the adapter alone; that of the port is for adapters
// that share their number with other devices.
std::string ModemRules(const PortMark& port) {
    if (!FitsOnLine(ToPath(port.device)))
        return {};
    const std::string action = "ENV{ID_MM_DEVICE_IGNORE}=\"1\", ENV{ID_MM_PORT_IGNORE}=\"1\"\n";
    const std::string head = "# " + ToUtf8(port.device) + "\n" + writtenBy;
    // Many adapters have the number 0001, whatever their maker.
    if (!port.serialNumber.empty())
        return head + "SUBSYSTEM==\"usb\", ENV{DEVTYPE}==\"usb_device\", " + UsbConditions(port, "ATTR") +
               "ENV{ID_MM_DEVICE_IGNORE}=\"1\"\nSUBSYSTEM==\"tty\", " + UsbConditions(port, "ATTRS") + action;
    if (!port.idPath.empty())
        return head + "SUBSYSTEM==\"tty\", ENV{ID_PATH}==\"" + PatternOf(port.idPath) + "\", " + action;
    if (!port.kernelName.empty())
        return head + "SUBSYSTEM==\"tty\", KERNEL==\"" + PatternOf(port.kernelName) + "\", " + action;
    return {};
}

}
