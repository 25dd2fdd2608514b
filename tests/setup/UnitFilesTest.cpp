#include "setup/UnitFiles.h"

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("UnitFiles: a machine's name is escaped as systemd-escape does") {
    // What systemd-escape 252 has printed for these names.
    const std::pair<const char*, const char*> names[] = {
        {"LASER", "LASER"},
        {"LASER 2", "LASER\\x202"},
        {"CUT/3", "CUT-3"},
        {"A-B", "A\\x2dB"},
        {".hidden", "\\x2ehidden"},
        {"a.b", "a.b"},
        {"Fr\xc3\xa4se", "Fr\\xc3\\xa4se"},
        {"x\\y", "x\\x5cy"},
        {"a:b_c", "a:b_c"},
        {"50%+", "50\\x25\\x2b"},
        {"@home", "\\x40home"},
    };
    for (const auto& [name, escaped] : names)
        CHECK(UnitInstanceOf(name) == escaped);
}

TEST_CASE("UnitFiles: folders are quoted for systemd, and a missing one does not stop the unit") {
    const std::string text = FoldersDropIn({"/srv/nc", "/srv/50% \"new\" \\ files"});
    CHECK(text.ends_with("[Service]\nReadWritePaths=\"-/srv/nc\"\n"
                         "ReadWritePaths=\"-/srv/50%% \\\"new\\\" \\\\ files\"\n"));
}

TEST_CASE("UnitFiles: a port is told by its number, else by its place, else by its name, and no text breaks out") {
    CHECK(ModemRules({u"/dev/x", u"A50285BI", u"0403", u"6001", u"pci-0", u"ttyUSB0"})
              .ends_with("SUBSYSTEM==\"usb\", ENV{DEVTYPE}==\"usb_device\", ATTR{idVendor}==\"0403\", "
                         "ATTR{idProduct}==\"6001\", ATTR{serial}==\"A50285BI\", "
                         "ENV{ID_MM_DEVICE_IGNORE}=\"1\"\n"
                         "SUBSYSTEM==\"tty\", ATTRS{idVendor}==\"0403\", ATTRS{idProduct}==\"6001\", "
                         "ATTRS{serial}==\"A50285BI\", ENV{ID_MM_DEVICE_IGNORE}=\"1\", "
                         "ENV{ID_MM_PORT_IGNORE}=\"1\"\n"));
    CHECK(ModemRules({u"/dev/x", {}, {}, {}, u"pci-0000:00:14.0-usb-0:1:1.0", u"ttyUSB0"})
              .find("ENV{ID_PATH}==\"pci-0000:00:14.0-usb-0:1:1.0\"") != std::string::npos);
    CHECK(ModemRules({u"/dev/ttyS0", {}, {}, {}, {}, u"ttyS0"}).find("KERNEL==\"ttyS0\"") != std::string::npos);
    CHECK(ModemRules({u"/dev/x", {}, {}, {}, {}, {}}).empty());
    CHECK(ModemRules({u"/dev/x\nRUN+=\"/bin/sh\"", u"A50285BI", {}, {}, {}, {}}).empty());
    const std::string hostile = ModemRules({u"/dev/x", u"1\", RUN+=\"/bin/sh*", {}, {}, {}, {}});
    CHECK(hostile.find("RUN+=\"") == std::string::npos);
    CHECK(hostile.find("ATTR{serial}==\"1?? RUN+???bin?sh?\"") != std::string::npos);
}
