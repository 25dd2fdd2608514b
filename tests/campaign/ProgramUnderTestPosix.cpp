#include "campaign/ProgramUnderTest.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include <unistd.h>

namespace tarvin::campaign {

namespace {

constexpr auto longestWord = std::chrono::milliseconds(250);
constexpr auto longestEnd = std::chrono::seconds(5);
constexpr char machine[] = "LASER";
constexpr char activityLog[] = "activity.log";

ProgramWord WordOf(const std::string& line) {
    if (line.find("Completed") != std::string::npos)
        return ProgramWord::Completed;
    for (const char* error : {"Error(s)", "could not open", "File format error", "Cancelled"}) {
        if (line.find(error) != std::string::npos)
            return ProgramWord::Errors;
    }
    return ProgramWord::None;
}

}

ProgramUnderTest::ProgramUnderTest(const Options& options)
    : installation({.machine = machine, .settings = ""}), program(options.program) {
    installation.WriteFile(installation.SettingsName(),
                           SettingsBytes({.flowControl = options.flowControl,
                                          .folder = NcFolder().string(),
                                          .activityLog = (installation / activityLog).string(),
                                          .check = options.check}));
}

void ProgramUnderTest::Start() {
    std::filesystem::remove(installation / "line");
    terminal = std::make_unique<test::PseudoTerminal>();
    // A program that is slow to open its port must not find a line that has hung up.
    terminal->HoldDevice();
    std::filesystem::create_symlink(terminal->Device(), installation / "line");
    service = std::make_unique<test::ChildProcess>(
        program, test::ChildProcess::Options{
                     // Ctrl-C on the campaign lets the running transfer end, so the program must not get it as well.
                     .arguments = {machine},
                     .environment = {{"TARVINDL_HOME", installation.Path().string()}},
                     .beforeStart = [] { ::setsid(); }});
    if (!service->WaitForOutput("Waiting..."))
        throw std::runtime_error(program + " does not open its port; its output: " + service->Output());
}

std::string ProgramUnderTest::Stop() {
    if (!service)
        return {};
    std::string end;
    try {
        service->Signal(SIGTERM);
        if (const int code = service->WaitForExit(longestEnd); code != 0)
            end = "has ended with code " + std::to_string(code);
    } catch (const std::runtime_error&) {
        // The destructor of its process kills it.
        end = "does not end";
    }
    service.reset();
    terminal.reset();
    return end;
}

std::string ProgramUnderTest::Words() const {
    std::ifstream file(installation / activityLog, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(forgottenBytes));
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : std::string();
}

void ProgramUnderTest::ForgetWords() {
    forgottenBytes += Words().size();
}

ProgramWord ProgramUnderTest::LastWord(ProgramWord expected) const {
    const auto deadline = std::chrono::steady_clock::now() + longestWord;
    for (;;) {
        ProgramWord last = ProgramWord::None;
        const std::string words = Words();
        for (std::size_t begin = 0; begin < words.size();) {
            const std::size_t end = std::min(words.find('\n', begin), words.size());
            const ProgramWord word = WordOf(words.substr(begin, end - begin));
            if (word != ProgramWord::None)
                last = word;
            begin = end + 1;
        }
        if (last == expected || std::chrono::steady_clock::now() > deadline)
            return last;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

}
