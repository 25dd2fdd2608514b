#pragma once
// What a user has to know about a port before choosing it: which device it is, whether it can be opened, and what to do
// if it cannot.

#include "base/KelText.h"

#include <filesystem>
#include <vector>

namespace tarvin {

enum class PortState {
    Free,
    Own, // the caller has it open
    Busy,
    NotAllowed,
    NotThere,
    Failed
};

// Something that is missing, and the command that mends it.
struct PortAdvice {
    KelText text;
    // For a shell. Empty if no command helps.
    KelText command;
    bool operator==(const PortAdvice&) const = default;
};

// Texts that the system does not tell are empty.
struct PortReport {
    KelText name;
    KelText device;
    KelText maker;
    KelText product;
    KelText serialNumber;
    KelText driver;
    PortState state = PortState::Free;
    // The program that has the port open. A free port may have one too: not every program asks to be alone.
    KelText holder;
    // The system's words for PortState::Failed.
    KelText reason;
    // The most urgent first.
    std::vector<PortAdvice> advice;
};

// Reports about every port that leads to a device, in the order of their numbers, and about `currentPort` in any case.
// `ownPort` is the port that the caller has open; it is not touched.
//
// Opens and closes the device of every other port, and leaves its modes as they are. On POSIX it gives numbers to new
// devices like FindPorts. Blocks as long as the devices and the disk do. Any thread.
std::vector<PortReport> InspectPorts(const std::filesystem::path& pathsFile, const KelText& currentPort,
                                     const KelText& ownPort);

// Reports about one port that the caller does not have open. Opens and closes its device, and gives no device a number.
// Blocks and threads as above.
PortReport InspectPort(const std::filesystem::path& pathsFile, const KelText& portName);

// The state in a few words.
KelText DescribeState(const PortReport& report);

// Adds advice for the states that are alike on every system.
void AddStateAdvice(PortReport& report);

}
