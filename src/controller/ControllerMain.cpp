// The main file of tarvin-controller, the simulated controller.

#include "base/System.h"
#include "base/Version.h"
#include "controller/Session.h"

#include <iostream>

int main(int argumentCount, char** arguments) {
    tarvin::SecureStandardStreams();
    const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    return tarvin::controller::RunController(words, tarvin::versionNumber, std::cout, std::cerr);
}
