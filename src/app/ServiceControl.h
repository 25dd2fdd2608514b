#pragma once
// The service under the system's service manager, on Windows: one managed service for each machine. On other systems
// every operation here fails, because their manager starts the program like any other.

#include "app/ServiceHost.h"
#include "base/Result.h"

#include <filesystem>
#include <functional>

namespace tarvin {

// The option by which the service manager starts the program. The installation and the rest of the command line follow.
inline constexpr KelTextView runServiceOption = u"--run-service";

struct ManagedService {
    KelText machineName;
    // What the service gets as its command line: the machine's name, with the language switch if there is one.
    KelText commandLine;
    // Has a KEL.INI. The service serves this one, whatever account it runs under.
    std::filesystem::path installation;
    // Empty: an account of the service's own, which needs no password.
    KelText account;
};

// "TarvinDL " and the machine's name as it stands in file names.
KelText ServiceNameOf(KelTextView machineName);

// The name of the account that the service runs under.
KelText AccountOf(const ManagedService& service);

// Whether the system has a service manager of this kind.
bool HasServiceManager();

// Makes the service, or sets up the present one anew: it starts with the system, is restarted if it dies, writes to the
// event log, and its account may use the program and change the installation. Then starts it. Returns what was done, in
// lines for the user. Needs an administrator. Blocks for a minute at most.
Result<KelText> InstallService(const ManagedService& service);

// Stops the service and removes it. Needs an administrator. Blocks for half a
// minute at most.
Result<KelText> RemoveService(KelTextView machineName);

enum class ServiceAction { Start, Stop, Remove };

// Acts on all services that run this program's file, and returns their names. Goes on after a failure, and returns the
// last reason then. Needs an administrator.
Result<KelText> ActOnServices(ServiceAction action);

// Connects this process to the service manager that has started it, and calls `serve` on a thread of the manager's.
// Its result is the service's exit code. Blocks until the service has ended. Fails if the manager has not started this
// process. Call it once.
Result<> RunForServiceManager(const std::function<int(ServiceHost&)>& serve);

}
