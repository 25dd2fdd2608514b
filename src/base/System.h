#pragma once
// Small answers of the operating system that any program needs. One source for each system.

#include "base/KelText.h"

#include <vector>

namespace tarvin {

// The system's words for one of its error numbers, of which only the low 16 bits count. Without a trailing line end.
// Any thread.
KelText SystemErrorText(unsigned long errorNumber);

// The name and version of the system in a few words. Any thread.
KelText SystemName();

// The words of the command line behind the program's name, from the arguments of main(). Keeps every character, also
// those that the code page of the system lacks.
std::vector<KelText> ProgramArguments(int argumentCount, const char* const* arguments);

// Opens the null device in place of each standard stream that is closed. Otherwise the next file or device that is
// opened takes the number of the closed stream, and printed text goes there. Called before the first file is opened.
void SecureStandardStreams();

}
