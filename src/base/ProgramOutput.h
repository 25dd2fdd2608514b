#pragma once
// The end of a program's output, for programs whose output is their result: a full disk must not look like success.

#include <iosfwd>

namespace tarvin {

// Writes out what is left, and gives the exit code of the program: `exitCode`, or `failure`, after a message on
// `errors`, if a part of the output could not be written. A reader that has left early is no failure. Call it with
// nothing written elsewhere since the last output.
int EndOutput(std::ostream& output, std::ostream& errors, const char* program, int exitCode, int failure = 1);

// The same for standard output and standard error.
int EndOutput(const char* program, int exitCode, int failure = 1);

}
