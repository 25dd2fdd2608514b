#pragma once
// What the command line says: the whole of it is the machine's name, but for the language switch, which the dictionary
// reads. Pure, any thread.

#include "framework/KelText.h"

namespace tarvin {

// Trimmed; empty if none was given.
KelText MachineNameIn(KelTextView commandLine);

// The text behind the program's name, as the user typed it or, where the system hands over words, those joined by
// blanks.
KelText CommandLineText(int argumentCount, const char* const* arguments);

}
