#include "campaign/SettingsBytes.h"

#include <cstdint>
#include <string_view>

namespace tarvin::campaign {

namespace {

constexpr std::uint32_t recordType = 100091201;

std::string Number(std::uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>((value >> shift) & 0xFF);
    return bytes;
}

// The count of the UTF-16 units with the terminating zero, then the units.
std::string Text(std::string_view text) {
    std::string bytes = Number(static_cast<std::uint32_t>(text.size() + 1));
    for (const char byte : text)
        bytes += {byte, '\0'};
    return bytes + std::string(2, '\0');
}

std::string Fields(const CampaignSettings& settings, IncomingCheck check) {
    std::string fields;
    for (const std::string_view text :
         {std::string_view("COM1"), std::string_view("9600"), std::string_view("None"), std::string_view("8"),
          std::string_view("1"), std::string_view(settings.flowControl), std::string_view(settings.folder),
          std::string_view(settings.folder), std::string_view("nc")})
        fields += Text(text);
    fields += Number(0); // transmit delay
    fields += Text(settings.activityLog);
    fields += Number(1); // write log
    // Character and line delay, start and end code, and the two control characters.
    fields += Number(0) + Number(0) + Number(0) + Number(0) + "\x12\x04";
    fields += Text(""); // comms log file name
    // CTS and DSR handshake, a reserved field, network and server mode.
    fields += Number(1) + Number(1) + Number(0) + Number(0) + Number(0);
    fields += Text("Machine");
    return fields + Number(static_cast<std::uint32_t>(check));
}

}

std::string SettingsBytes(const CampaignSettings& settings) {
    if (!settings.check) {
        return "[Port Settings]\nbaudrate=9600\ntransmit delay=0\nflow control=" + settings.flowControl +
               "\n[Files]\nfile extension=nc\n[Log]\nlog file=" + settings.activityLog + "\nwrite log=1\n";
    }
    const std::string fields = Fields(settings, *settings.check);
    const auto size = static_cast<std::uint32_t>(fields.size());
    // Each length counts the bytes behind it.
    return Number(recordType) + Number(size + 4) + Number(size) + fields;
}

}
