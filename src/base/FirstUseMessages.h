#pragma once
// The texts of the page for the first use and of the report about ports, each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

namespace firstUse {
inline constexpr char16_t name[] = u"First use";
inline constexpr char16_t heading[] = u"Which port leads to the machine?";
inline constexpr char16_t ports[] = u"Ports";
inline constexpr char16_t lookAgain[] = u"Look Again";
inline constexpr char16_t looking[] = u"Looking for ports...";
inline constexpr char16_t noPorts[] =
    u"This computer has no serial port that the system knows. Plug the adapter in, then look again.";
inline constexpr char16_t speed[] = u"Speed (baud)";
inline constexpr char16_t extension[] = u"Extension";
inline constexpr char16_t folder[] = u"NC folder";
inline constexpr char16_t browse[] = u"Browse...";
inline constexpr char16_t browseCaption[] = u"Choose the NC Folder";
inline constexpr char16_t useAndTest[] = u"Use and Test";
inline constexpr char16_t useAndTestTip[] = u"Keeps these settings and opens the port";
inline constexpr char16_t command[] = u"Command";
// %1 is a file number and %2 the path of its file.
inline constexpr char16_t example[] = u"The machine asks for %1: %2";
inline constexpr char16_t exampleByHand[] = u"You send and receive files in this folder: %2";
// %1 is the port.
inline constexpr char16_t opening[] = u"Opening %1...";
inline constexpr char16_t stillClosed[] = u"%1 could not be opened with these settings. It is tried again each second.";
inline constexpr char16_t choosePort[] = u"Choose a port first.";
}

// The state of a port, as one or a few words.
namespace portState {
inline constexpr char16_t free[] = u"free";
inline constexpr char16_t own[] = u"in use by this program";
inline constexpr char16_t busy[] = u"busy";
// %1 is a program.
inline constexpr char16_t busyWith[] = u"busy: %1";
inline constexpr char16_t notAllowed[] = u"no permission";
inline constexpr char16_t notThere[] = u"not plugged in";
inline constexpr char16_t failed[] = u"does not open";
// %1 is the name of a program and %2 the number of its process.
inline constexpr char16_t program[] = u"%1 (process %2)";
}

// What is missing before a port can be used. %1 is the port's device, unless a comment says otherwise.
namespace portAdvice {
inline constexpr char16_t busy[] = u"Another program uses %1. Close it, then look again.";
// %2 is the program, here and below.
inline constexpr char16_t busyWith[] = u"%2 uses %1. Close it, then look again.";
inline constexpr char16_t sharedWith[] =
    u"%2 has %1 open too. It would take characters of the machine away: close it, then look again.";
// %2 is the group and %3 the user, here and below.
inline constexpr char16_t notMember[] =
    u"%1 is open to the group %2 only. Make %3 a member of it with this command, then log out and in again.";
inline constexpr char16_t logInAgain[] =
    u"%3 is now a member of the group %2, which may open %1. Log out and in again: only then it counts.";
inline constexpr char16_t refused[] = u"The system refuses to open %1, although %3 is a member of the group %2.";
inline constexpr char16_t noGroup[] =
    u"No group may open %1. This command gives it to %3 until it is plugged in anew; a udev rule makes it last.";
inline constexpr char16_t notThere[] = u"The device of %1 is not there. Plug it in or switch it on, then look again.";
// %2 is the reason.
inline constexpr char16_t failed[] = u"%1 cannot be opened: %2";
inline constexpr char16_t modemManager[] =
    u"ModemManager looks for mobile modems and may open %1 and send to it. If this computer has no such modem, switch "
    u"it off with this command.";
}

// Commands. %1 and %2 are words of a shell.
namespace portCommand {
inline constexpr char16_t addToGroup[] = u"sudo usermod -aG %1 %2";
inline constexpr char16_t giveDevice[] = u"sudo chown %1 %2";
inline constexpr char16_t stopModemManager[] = u"sudo systemctl disable --now ModemManager";
}

}
