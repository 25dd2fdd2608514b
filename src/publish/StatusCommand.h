#pragma once
// The program tarvindl-status from its arguments to its exit code, without main(), so that tests can run it.

#include "base/KelText.h"

#include <iosfwd>
#include <span>

namespace tarvin {

// The exit code: see MachineSummary.h. The worst of the machines, and notKnown for wrong usage, for a name that no
// machine has, and if no machine is known at all.
int RunStatusCommand(std::span<const KelText> arguments, std::ostream& output, std::ostream& errors);

}
