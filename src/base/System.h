#pragma once
// Services of the operating system that every program needs. One source for each system.

#include "base/KelText.h"
#include "base/Result.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace tarvin {

// The system's words for one of its error numbers, without a line end. Uses the low 16 bits of the number. Any thread.
KelText SystemErrorText(unsigned long errorNumber);

// The failure of the system call that this thread made last. Call it before any other system call.
Error LastSystemError();

// The name and version of the system in a few words. Any thread.
KelText SystemName();

// The words of the command line after the program's name, from the arguments of main(). Keeps every character, also
// those that the system's code page lacks.
std::vector<KelText> ProgramArguments(int argumentCount, const char* const* arguments);

// The command line as it was typed, with the program's name and with quotes, where the system hands it over so. Any
// thread.
std::optional<KelText> TypedCommandLine();

// The path in an environment variable with an ASCII name. None if it is unset or empty.
std::optional<std::filesystem::path> PathFromEnvironment(const char* name);

// The same, and none for a relative path, which would mean another folder for each program.
inline std::optional<std::filesystem::path> FolderFromEnvironment(const char* name) {
    auto path = PathFromEnvironment(name);
    return path && path->is_absolute() ? path : std::nullopt;
}

// Whether standard input is a terminal: a person may be asked.
bool IsInputTerminal();

// Opens the null device in place of each standard stream that is closed. Otherwise the next file or device that the
// program opens takes the number of the closed stream, and receives the text that the program prints. Call it before
// the program opens its first file.
void SecureStandardStreams();

// Prepares standard output for data. It takes every byte as it is; otherwise Windows puts a CR before each LF. A write
// to a reader that has left fails; otherwise POSIX ends the program. Call it before the first output.
void PrepareOutput();

}
