// Windows has no pseudo-terminal that could stand for a serial port.

#include "controller/ControllerLine.h"

namespace tarvin::controller {

std::unique_ptr<ControllerLine> MakePseudoTerminal(const std::filesystem::path&, std::string& error) {
    error = "--pty is not available on Windows; use --port with one end of a null-modem pair";
    return nullptr;
}

}
