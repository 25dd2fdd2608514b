// tarvindl-setup, which makes installations, adds machines and changes their settings.

#include "base/System.h"
#include "setup/SetupCommand.h"

#include <iostream>

int main(int argumentCount, char** arguments) {
    tarvin::SecureStandardStreams();
    const auto words = tarvin::ProgramArguments(argumentCount, arguments);
    return tarvin::RunSetupCommand(words, {std::cin, std::cout, std::cerr, tarvin::IsInputTerminal()});
}
