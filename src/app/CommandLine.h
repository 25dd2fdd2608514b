#pragma once
// Reads the command line: all of it is the machine's name, except for the language switch, which the dictionary reads.
// Any thread.

#include "base/KelText.h"

#include <vector>

namespace tarvin {

// The machine's name, without blanks at its ends; empty without a name.
KelText MachineNameIn(KelTextView commandLine);

// The words joined by blanks. The system has removed the quotes around a language's name with blanks: they are put
// back.
KelText JoinWords(const std::vector<KelText>& words);

}
