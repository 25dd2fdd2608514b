#pragma once
// The texts of the page for the first use and of the report about ports, each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

namespace firstUse {
inline constexpr NumberedText name = {21800, u"First use"};
inline constexpr NumberedText heading = {21801, u"Which port leads to the machine?"};
inline constexpr NumberedText ports = {21802, u"Ports"};
inline constexpr NumberedText lookAgain = {21803, u"Look Again"};
inline constexpr NumberedText looking = {21804, u"Looking for ports..."};
inline constexpr NumberedText noPorts = {
    21805, u"This computer has no serial port that the system knows. Plug the adapter in, then look again."};
inline constexpr NumberedText speed = {21806, u"Speed (baud)"};
inline constexpr NumberedText extension = {21807, u"Extension"};
inline constexpr NumberedText folder = {21808, u"NC folder"};
inline constexpr NumberedText browse = {21809, u"Browse..."};
inline constexpr NumberedText browseCaption = {21810, u"Choose the NC Folder"};
inline constexpr NumberedText useAndTest = {21811, u"Use and Test"};
inline constexpr NumberedText useAndTestTip = {21812, u"Keeps these settings and opens the port"};
inline constexpr NumberedText command = {21813, u"Command"};
// %1 is a file number and %2 the path of its file.
inline constexpr NumberedText example = {21814, u"The machine asks for %1: %2"};
inline constexpr NumberedText exampleByHand = {21815, u"You send and receive files in this folder: %2"};
// %1 is the port.
inline constexpr NumberedText opening = {21816, u"Opening %1..."};
inline constexpr NumberedText stillClosed = {
    21817, u"%1 could not be opened with these settings. It is tried again each second."};
inline constexpr NumberedText choosePort = {21818, u"Choose a port first."};
}

// The state of a port, as one or a few words.
namespace portState {
inline constexpr NumberedText free = {21819, u"free"};
inline constexpr NumberedText own = {21820, u"in use by this program"};
inline constexpr NumberedText busy = {21821, u"busy"};
// %1 is a program.
inline constexpr NumberedText busyWith = {21822, u"busy: %1"};
inline constexpr NumberedText notAllowed = {21823, u"no permission"};
inline constexpr NumberedText notThere = {21824, u"not plugged in"};
inline constexpr NumberedText failed = {21825, u"does not open"};
// %1 is the name of a program and %2 the number of its process.
inline constexpr NumberedText program = {21826, u"%1 (process %2)"};
}

// What is missing before a port can be used. %1 is the port's device, unless a comment says otherwise.
namespace portAdvice {
inline constexpr NumberedText busy = {21827, u"Another program uses %1. Close it, then look again."};
// %2 is the program, here and below.
inline constexpr NumberedText busyWith = {21828, u"%2 uses %1. Close it, then look again."};
inline constexpr NumberedText sharedWith = {
    21829, u"%2 has %1 open too. It would take characters of the machine away: close it, then look again."};
// %2 is the group and %3 the user, here and below.
inline constexpr NumberedText notMember = {
    21830, u"%1 is open to the group %2 only. Make %3 a member of it with this command, then log out and in again."};
inline constexpr NumberedText logInAgain = {
    21831, u"%3 is now a member of the group %2, which may open %1. Log out and in again: only then it counts."};
inline constexpr NumberedText refused = {21832,
                                         u"The system refuses to open %1, although %3 is a member of the group %2."};
inline constexpr NumberedText noGroup = {
    21833,
    u"No group may open %1. This command gives it to %3 until it is plugged in anew; a udev rule makes it last."};
inline constexpr NumberedText notThere = {
    21834, u"The device of %1 is not there. Plug it in or switch it on, then look again."};
// %2 is the reason.
inline constexpr NumberedText failed = {21835, u"%1 cannot be opened: %2"};
inline constexpr NumberedText modemManager = {
    21836,
    u"ModemManager looks for mobile modems and may open %1 and send to it. If this computer has no such modem, switch "
    u"it off with this command."};
}

// Commands. %1 and %2 are words of a shell.
namespace portCommand {
inline constexpr char16_t addToGroup[] = u"sudo usermod -aG %1 %2";
inline constexpr char16_t giveDevice[] = u"sudo chown %1 %2";
inline constexpr char16_t stopModemManager[] = u"sudo systemctl disable --now ModemManager";
}

}
