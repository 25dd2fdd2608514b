#pragma once
// The texts that reach a user beside the window: notifications of the desktop, and what a start says whose machine
// another program serves. Each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// Notifications. The title is the machine's name; %1 is the name and %2 the file number, here and below, unless a
// comment says otherwise. The name leads the text too, because some desktops show the text alone.
namespace call {
inline constexpr char16_t sent[] = u"%1: %2 was sent to the machine";
inline constexpr char16_t received[] = u"%1: %2 was received from the machine";
// %3 is the reason.
inline constexpr char16_t sendFailed[] = u"%1: %2 was not sent completely. %3";
inline constexpr char16_t receiveFailed[] = u"%1: %2 was not received completely. %3";
inline constexpr char16_t sendRefused[] = u"%1: The machine asked for %2 and did not get it. %3";
inline constexpr char16_t receiveRefused[] = u"%1: The machine offered %2, which was refused. %3";
// %2 is the number of minutes and %3 the file number.
inline constexpr char16_t held[] = u"%1: held by the machine for %2 min. %3 is on its way";
inline constexpr char16_t silent[] = u"%1: nothing from the machine for %2 min. %3 is on its way";
inline constexpr char16_t heldWithoutNumber[] = u"%1: held by the machine for %2 min. A file is on its way";
inline constexpr char16_t silentWithoutNumber[] = u"%1: nothing from the machine for %2 min. A file is on its way";
inline constexpr char16_t linkLost[] = u"%1: the link to the machine is lost";
inline constexpr char16_t linkReturned[] = u"%1: the link to the machine is back";
// In place of a file number that is not known.
inline constexpr char16_t unknownNumber[] = u"a file";
}

// A machine that another program serves.
namespace machine {
// %1 is the machine, %2 the process, %3 the user and %4 the computer.
inline constexpr char16_t servedByService[] =
    u"%1 is served by a service already: process %2 of %3 on %4.\nEnd that service first if this program is to serve "
    u"the machine.";
inline constexpr char16_t servedByWindow[] =
    u"%1 is served by a window already: process %2 of %3 on %4.\nClose that window first if this program is to serve "
    u"the machine.";
inline constexpr char16_t servedByUnknown[] =
    u"%1 is served by another program already.\nEnd that program first if this one is to serve the machine.";
// %1 is the machine and %2 the process.
inline constexpr char16_t windowIsSilent[] =
    u"The window of %1 is open already, but it does not answer: process %2.\nEnd that process first if this program is "
    u"to serve the machine.";
inline constexpr char16_t servedCaption[] = u"%1 Is Served Already";
// %2 is the reason.
inline constexpr char16_t noLock[] =
    u"%1: No lock can be kept beside the settings, so a second program at this machine would go unnoticed: %2";
}

}
