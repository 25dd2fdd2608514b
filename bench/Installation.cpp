#include "Installation.h"

#include "NcText.h"
#include "protocol/Frame.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace tarvin::bench {

namespace {

std::filesystem::path MakeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tarvin-bench-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), name);
    return name;
}

void WriteFile(const std::filesystem::path& path, const std::string& content) {
    std::ofstream stream(path, std::ios::binary);
    if (!(stream << content << std::flush))
        throw std::runtime_error(path.string() + " cannot be written");
}

}

Installation::Installation(const std::string& devicePath, const std::string& serviceSettings) : folder(MakeFolder()) {
    std::filesystem::create_directory(folder / "NC");
    WriteFile(folder / "KEL.INI",
              "[PROGRAM PATHS]\nNC Files=NC\n[PORTS]\nCOM1=" + devicePath + "\n[Service]\n" + serviceSettings);
    WriteFile(folder / "TARVIN.INI", "[Port Settings]\nport=COM1\ntransmit delay=0\n");
}

Installation::~Installation() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

RunningProgram::RunningProgram(const std::string& programName, const std::string& serviceSettings)
    : installation(line.DevicePath(), serviceSettings), process({OwnProgram(programName)}, installation.Folder()) {
    const Deadline deadline(std::chrono::seconds(10));
    EstablishLink(line);
}

void AwaitLink(ControllerLine& line) {
    const std::string test = FrameOf(code::linkTest);
    do {
        line.Write(test);
    } while (!line.WaitForInput(1));
    if (line.ReadFrame() != FrameOf(code::linkTestAnswer))
        throw std::runtime_error("the link test was answered by something else");
}

void EstablishLink(ControllerLine& line) {
    AwaitLink(line);
    line.DropInput();
}

}
