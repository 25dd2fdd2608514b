#pragma once
// What the service says about the system's service manager, on the terminal and in the event log.

#include "base/KelText.h"

namespace tarvin::text::serviceManager {

// %1 is the name of a service, here and below.
inline constexpr char16_t description[] =
    u"Serves the machine %1 on its serial line: stores the NC files that it sends "
    u"and sends those that it asks for.";
inline constexpr char16_t installed[] = u"The service %1 is installed. It starts with the system, as %2.";
inline constexpr char16_t updated[] = u"The service %1 was there already; it has been set up anew. It runs as %2.";
inline constexpr char16_t isRunning[] = u"It is running.";
// %1 is the reason.
inline constexpr char16_t isNotRunning[] = u"It could not be started: %1";
inline constexpr char16_t startIsSlow[] = u"it has not reported for 30 seconds";
inline constexpr char16_t seeEvents[] =
    u"it has ended with code %1; the event log tells why (Event Viewer, Windows Logs, Application, source %2)";
inline constexpr char16_t removed[] = u"The service %1 is removed. Settings, logs and NC files stay.";
inline constexpr char16_t notInstalled[] = u"there is no service %1";
inline constexpr char16_t stopIsSlow[] = u"the service %1 has not stopped for 30 seconds";
inline constexpr char16_t administratorNeeded[] = u"%1 Run this as an administrator.";
// %1 is the account, %2 the folder, and %3 the reason.
inline constexpr char16_t noRights[] = u"%1 could not be given rights on %2: %3";
inline constexpr char16_t needsRights[] =
    u"%1 needs the right to change %2, such as by:\n    icacls \"%2\" /grant \"%1:(OI)(CI)M\"";
inline constexpr char16_t needsPassword[] =
    u"Enter the password of %1 in services.msc (properties of the service, Log On), and start the service there.";
inline constexpr char16_t didForAll[] = u"Services: %1";
inline constexpr char16_t unknownAction[] = u"--services needs one of start, stop and remove";
inline constexpr char16_t valueNeeded[] = u"%1 needs a value"; // an option
inline constexpr char16_t wrongStart[] = u"--run-service is for the service manager; leave it out on a terminal";
inline constexpr char16_t notHere[] =
    u"this system has no such services; systemd runs the unit tarvindl@MACHINE.service";

}
