#pragma once
// Reads the command line: all of it is the machine's name, except for the language switch, which the dictionary reads.
// Any thread.

#include "base/KelText.h"

#include <vector>

namespace tarvin {

// The command line without the program's name, from the arguments of main(). Where the system hands it over as it was
// typed, blanks between words stay as they are.
KelText CommandLineOf(int argumentCount, const char* const* arguments);

// The words joined by blanks. The system has removed the quotes around a language's name with blanks: they are put
// back.
KelText JoinWords(const std::vector<KelText>& words);

// The part of a typed command line after the program's name. Quotes go, apart from those of the language switch, and
// blanks stay, within quotes and between words. \" stands for a quote.
KelText TypedArguments(KelTextView typed);

// The machine's name, without blanks at its ends; empty without a name. The language switch is taken out, with a blank
// before it; the rest stays as it is.
KelText MachineNameIn(KelTextView commandLine);

}
