#pragma once
// The texts that reach a user beside the window: notifications of the desktop, and what a start says whose machine
// another program serves. Each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// Titles of notifications. %1 is the machine and %2 the file number, unless a comment says otherwise. The machine and
// the number stand first: the desktop shortens long titles at their end. The text below the title is the reason.
namespace call {
inline constexpr NumberedText sent = {21200, u"%1: %2 was sent to the machine"};
inline constexpr NumberedText received = {21201, u"%1: %2 was received from the machine"};
inline constexpr NumberedText sendFailed = {21202, u"%1: %2 was not sent completely"};
inline constexpr NumberedText receiveFailed = {21203, u"%1: %2 was not received completely"};
inline constexpr NumberedText sendRefused = {21204, u"%1: %2 was asked for and could not be sent"};
inline constexpr NumberedText receiveRefused = {21205, u"%1: %2 was offered and refused"};
// %3 is the number of minutes.
inline constexpr NumberedText held = {21206, u"%1: %2 is held by the machine for more than %3 min"};
inline constexpr NumberedText silent = {
    21207, u"%1: %2 is on its way, and nothing came from the machine for more than %3 min"};
inline constexpr NumberedText linkLost = {21208, u"%1: the link to the machine is lost"};
inline constexpr NumberedText linkReturned = {21209, u"%1: the link to the machine is back"};
// In place of a file number that is not known.
inline constexpr NumberedText unknownNumber = {21210, u"A file"};
}

// A machine that another program serves.
namespace machine {
// %1 is the machine, %2 the process, %3 the user and %4 the computer.
inline constexpr NumberedText servedByService = {
    21211,
    u"%1 is served by a service already: process %2 of %3 on %4.\nEnd that service first if this program is to serve "
    u"the machine."};
inline constexpr NumberedText servedByWindow = {
    21212,
    u"%1 is served by a window already: process %2 of %3 on %4.\nClose that window first if this program is to serve "
    u"the machine."};
inline constexpr NumberedText servedByUnknown = {
    21213, u"%1 is served by another program already.\nEnd that program first if this one is to serve the machine."};
// %1 is the machine and %2 the process.
inline constexpr NumberedText windowIsSilent = {
    21214,
    u"The window of %1 is open already, but it does not answer: process %2.\nEnd that process first if this program is "
    u"to serve the machine."};
inline constexpr NumberedText servedCaption = {21215, u"%1 Is Served Already"};
// %2 is the reason.
inline constexpr char16_t noLock[] =
    u"%1: No lock can be kept beside the settings, so a second program at this machine would go unnoticed: %2";
}

}
