#pragma once
// What the command line says: the whole of it is the machine's name, but for the language switch, which the dictionary
// reads. Pure, any thread.

#include "framework/KelText.h"

#include <vector>

namespace tarvin {

// Trimmed; empty if none was given.
KelText MachineNameIn(KelTextView commandLine);

// The words joined by blanks. A language's name gets back the quotes that it lost on its way.
KelText JoinWords(const std::vector<KelText>& words);

// The text behind the program's name. On Windows the system is asked for it, because `arguments` cannot hold all of it.
KelText CommandLineText(int argumentCount, const char* const* arguments);

}
