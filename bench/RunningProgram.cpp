#include "RunningProgram.h"

#include "NcText.h"
#include "protocol/Frame.h"

#include <stdexcept>

namespace tarvin::bench {

test::TemporaryInstallation MakeInstallation(const FrameLine& line, const std::string& serviceEntries) {
    return test::TemporaryInstallation({.machine = machineName,
                                        .settings = "[Port Settings]\nport=COM1\ntransmit delay=0\n",
                                        .device = line.DevicePath(),
                                        .service = serviceEntries});
}

RunningProgram::RunningProgram(const std::string& programName, const std::string& serviceEntries)
    : installation(MakeInstallation(line, serviceEntries)), process(programName, {}, installation.Path()) {
    const Deadline deadline(std::chrono::seconds(10));
    EstablishLink(line);
}

void AwaitLink(FrameLine& line) {
    const std::string request = FrameOf(code::linkTest);
    do {
        line.Write(request);
    } while (!line.WaitForInput(1));
    if (line.ReadFrame() != FrameOf(code::linkTestAnswer))
        throw std::runtime_error("the link test got another answer than AATS");
}

void EstablishLink(FrameLine& line) {
    AwaitLink(line);
    line.DropInput();
}

}
