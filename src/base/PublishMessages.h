#pragma once
// The texts about the status that programs publish, and of the window that shows one, each once. Written as in
// Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

namespace publish {
// %1 is the reason.
inline constexpr char16_t notPublished[] = u"Other programs cannot see the status. It cannot be published: %1";
inline constexpr char16_t noFolder[] =
    u"there is no folder for it, because neither TARVINDL_RUNTIME nor a folder of the user's session is set";
inline constexpr char16_t otherOwner[] = u"the file belongs to a user who does not own its folder";
inline constexpr char16_t tooLong[] = u"the file is too long";
inline constexpr char16_t otherForm[] = u"the file is no status of TarvinDL";
// %1 is a number.
inline constexpr char16_t otherVersion[] = u"the file has version %1, which another release has written";
// %1 is the name of a member.
inline constexpr char16_t badMember[] = u"the member \"%1\" of the file is missing or wrong";
// %1 is the file and %2 the reason.
inline constexpr char16_t unreadable[] = u"%1: %2";
// %1 is the computer.
inline constexpr char16_t otherComputer[] = u"published by a program of the computer %1";
// %1 is the process, %2 its user and %3 the computer.
inline constexpr char16_t hiddenService[] =
    u"served by a service, process %1 of %2 on %3, whose status this user cannot read";
inline constexpr char16_t hiddenWindow[] =
    u"served by a window, process %1 of %2 on %3, whose status this user cannot read";
}

// What stands above the window of a machine that another program serves. %1 is the computer and %2 the process, unless
// a comment says otherwise.
namespace watching {
inline constexpr NumberedText servedByService = {
    22200, u"Served by the service on %1, process %2. This window only shows it."};
inline constexpr NumberedText servedByWindow = {
    22201, u"Served by another window on %1, process %2. This window only shows it."};
inline constexpr NumberedText ended = {
    22202, u"The program on %1, process %2, has ended. Start TarvinDL again to serve the machine from a window."};
inline constexpr NumberedText died = {
    22203, u"The program on %1, process %2, has died. Start TarvinDL again to serve the machine from a window."};
// %1 is the reason.
inline constexpr NumberedText unreadable = {22204, u"The machine is served, but its state cannot be read: %1"};
inline constexpr NumberedText notServed = {22205, u"No program serves the machine"};
}

}
