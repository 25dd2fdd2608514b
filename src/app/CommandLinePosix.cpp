#include "app/CommandLine.h"

namespace tarvin {

KelText CommandLineText(int argumentCount, const char* const* arguments) {
    std::vector<KelText> words;
    for (int index = 1; index < argumentCount; ++index)
        words.push_back(FromUtf8(arguments[index]));
    return JoinWords(words);
}

}
