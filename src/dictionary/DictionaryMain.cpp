// tarvin-dictionary, the compiler of the text dictionary.

#include "base/System.h"
#include "dictionary/DictionaryCommand.h"

#include <iostream>

int main(int argumentCount, char** arguments) {
    const auto words = tarvin::ProgramArguments(argumentCount, arguments);
    return tarvin::dictionary::RunDictionaryCommand(words, std::cout, std::cerr);
}
