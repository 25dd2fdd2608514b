#include "framework/ProgramArguments.h"

namespace tarvin {

std::vector<KelText> ProgramArguments(int argumentCount, const char* const* arguments) {
    std::vector<KelText> words;
    for (int index = 1; index < argumentCount; ++index)
        words.push_back(FromUtf8(arguments[index]));
    return words;
}

}
