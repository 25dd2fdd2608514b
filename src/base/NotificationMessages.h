#pragma once
// The texts that reach a user beside the window: notifications of the desktop, and what a start says whose machine
// another program serves. Each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// Titles of notifications. %1 is the machine and %2 the file number, unless a comment says otherwise. The machine and
// the number stand first: the desktop shortens long titles at their end. The text below the title is the reason.
namespace call {
inline constexpr char16_t sent[] = u"%1: %2 was sent to the machine";
inline constexpr char16_t received[] = u"%1: %2 was received from the machine";
inline constexpr char16_t sendFailed[] = u"%1: %2 was not sent completely";
inline constexpr char16_t receiveFailed[] = u"%1: %2 was not received completely";
inline constexpr char16_t sendRefused[] = u"%1: %2 was asked for and could not be sent";
inline constexpr char16_t receiveRefused[] = u"%1: %2 was offered and refused";
// %3 is the number of minutes.
inline constexpr char16_t held[] = u"%1: %2 is held by the machine for more than %3 min";
inline constexpr char16_t silent[] = u"%1: %2 is on its way, and nothing came from the machine for more than %3 min";
inline constexpr char16_t linkLost[] = u"%1: the link to the machine is lost";
inline constexpr char16_t linkReturned[] = u"%1: the link to the machine is back";
// In place of a file number that is not known.
inline constexpr char16_t unknownNumber[] = u"A file";
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
