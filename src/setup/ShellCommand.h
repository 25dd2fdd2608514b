#pragma once
// Commands for a user to copy into a terminal. One source for each system: the commands exist on one system alone.

#include "base/KelText.h"

namespace tarvin {

// The command `form` with the words in place of %1 and %2, each quoted where the shell needs it. Empty on Windows.
KelText ShellCommand(KelTextView form, KelTextView first, KelTextView second = {});

}
