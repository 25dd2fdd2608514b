// The simulated controller as a program.

#include "controller/Session.h"
#include "framework/StandardStreams.h"
#include "framework/Version.h"

#include <iostream>

int main(int argumentCount, char** arguments) {
    tarvin::SecureStandardStreams();
    const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    return tarvin::controller::RunController(words, tarvin::versionNumber, std::cout, std::cerr);
}
