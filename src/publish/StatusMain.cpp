// tarvindl-status, which tells the states of machines.

#include "base/System.h"
#include "publish/StatusCommand.h"

#include <iostream>

int main(int argumentCount, char** arguments) {
    tarvin::SecureStandardStreams();
    tarvin::PrepareOutput();
    const auto words = tarvin::ProgramArguments(argumentCount, arguments);
    return tarvin::RunStatusCommand(words, std::cout, std::cerr);
}
