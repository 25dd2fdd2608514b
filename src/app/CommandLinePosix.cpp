#include "app/CommandLine.h"

namespace tarvin {

KelText CommandLineText(int argumentCount, const char* const* arguments) {
    KelText text;
    for (int index = 1; index < argumentCount; ++index) {
        if (index > 1)
            text += u' ';
        text += FromUtf8(arguments[index]);
    }
    return text;
}

}
