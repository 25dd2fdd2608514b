#include "base/ProgramOutput.h"

#include <cerrno>
#include <cstdio>
#include <ostream>

namespace tarvin {

namespace {

constexpr const char* reason = "the output cannot be written";

}

// A stream tells only that a write has failed. `errno` still has the reason, because nothing is written after a
// failure.
int EndOutput(std::ostream& output, std::ostream& errors, const char* program, int exitCode, int failure) {
    if (output)
        errno = 0;
    output.flush();
    if (output || errno == EPIPE)
        return exitCode;
    errors << program << ": " << reason << ".\n";
    return failure;
}

int EndOutput(const char* program, int exitCode, int failure) {
    const bool hadFailed = std::ferror(stdout) != 0;
    if (!hadFailed)
        errno = 0;
    const bool isWritten = std::fflush(stdout) == 0 && !hadFailed;
    if (isWritten || errno == EPIPE)
        return exitCode;
    std::fprintf(stderr, "%s: %s.\n", program, reason);
    return failure;
}

}
