#pragma once
// The contents of the files by which systemd and udev know the machines. Any thread; does not access the disk.

#include "base/KelText.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin {

// The machine's name as systemd-escape writes it, for a unit such as tarvindl@LASER\x202.service.
std::string UnitInstanceOf(std::string_view machineName);

// Whether a path can stand in these files. One with a line end would add lines of its own to a file of root, and the
// settings that it comes from belong to the user of the services.
bool FitsOnLine(const std::filesystem::path& path);

// A drop-in that lets a unit write into these folders, which fit on a line. A folder that is missing does not stop the
// unit.
std::string FoldersDropIn(const std::vector<std::filesystem::path>& folders);

// How udev finds a port again. Texts that are not known are empty.
struct PortMark {
    KelText device; // the path in KEL.INI
    KelText serialNumber;
    KelText vendorId; // as the USB device writes it: 0403
    KelText productId;
    KelText idPath;     // ID_PATH: where the adapter is plugged in
    KelText kernelName; // such as ttyS0
};

// Rules that keep programs for modems off the port: by its serial number together with the numbers of maker and
// product, else by its place, else by its name. Empty if nothing is known, and for a device whose path does not fit on
// a line.
std::string ModemRules(const PortMark& port);

}
