// Windows has no pseudo-terminal that can take the place of a serial port.

#include "controller/ControllerLine.h"

namespace tarvin::controller {

Result<std::unique_ptr<ControllerLine>> MakePseudoTerminal(const std::filesystem::path&) {
    return Error{u"--pty is not available on Windows; use --port with one end of a null-modem pair"};
}

}
