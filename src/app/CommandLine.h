#pragma once
// What the command line says: the whole of it is the machine's name, but for the language switch. Pure, any thread.

#include "framework/KelText.h"

#include <optional>

namespace tarvin {

struct CommandLine {
    KelText machineName;             // trimmed; empty if none was given
    std::optional<KelText> language; // what follows "/l="
};

CommandLine ParseCommandLine(KelTextView text);

// The text behind the program's name, as the user typed it or, where the system hands over words, those joined by
// blanks.
KelText CommandLineText(int argumentCount, const char* const* arguments);

}
