#pragma once
// What the command line says: the whole of it is the machine's name, but for the language switch, which the dictionary
// reads. Pure, any thread.

#include "base/KelText.h"

#include <vector>

namespace tarvin {

// Trimmed; empty if none was given.
KelText MachineNameIn(KelTextView commandLine);

// The words joined by blanks. A language's name gets back the quotes that it lost on its way.
KelText JoinWords(const std::vector<KelText>& words);

}
