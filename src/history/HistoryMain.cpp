// tarvin-history, which lists and exports the history of transfers.

#include "base/System.h"
#include "history/HistoryCommand.h"

#include <iostream>

int main(int argumentCount, char** arguments) {
    tarvin::SecureStandardStreams();
    tarvin::PrepareOutput();
    const auto words = tarvin::ProgramArguments(argumentCount, arguments);
    return tarvin::RunHistoryCommand(words, std::cout, std::cerr);
}
