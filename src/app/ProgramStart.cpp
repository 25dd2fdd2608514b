#include "app/ProgramStart.h"

#include "app/CommandLine.h"
#include "app/Start.h"
#include "base/System.h"
#include "base/Version.h"

#include <cstdio>

namespace tarvin {

std::optional<ProgramStart> BeginProgram(int argumentCount, const char* const* arguments, const char* programName,
                                         const char* usage) {
    SecureStandardStreams();
    const KelText text = JoinWords(ProgramArguments(argumentCount, arguments));
    if (text == u"--help") {
        std::fputs(usage, stdout);
        return std::nullopt;
    }
    if (text == u"--version") {
        std::printf("%s %s\n", programName, programVersion);
        return std::nullopt;
    }
    KelText reason;
    const auto paths = Start::FindPaths(reason);
    if (!paths) {
        std::fprintf(stderr, "%s: %s\n", programName, ToUtf8(reason).c_str());
        return std::nullopt;
    }
    return ProgramStart{text, *paths};
}

}
