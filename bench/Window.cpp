// The controller's turnaround with the desktop program, beside the service in the same run. The cost of the window
// while nothing happens, and the time until it appears.

#include "Desktop.h"
#include "Measures.h"
#include "NcText.h"
#include "Placement.h"
#include "RunningProgram.h"
#include "Station.h"

#include <algorithm>
#include <stdexcept>
#include <thread>
#include <utility>

namespace tarvin::bench {

using namespace std::chrono_literals;

namespace {

// Enough for the window to paint several times within its own turn, so that painting slows its own answers.
constexpr std::size_t linesPerTurn = 4000;
// Enough for the window to show the last lines before the turn of the other program.
constexpr auto timeToShow = 200ms;
// The board tells a silence after 5 s.
constexpr auto timeToCount = 6s;
// Opening the view replaces a picture and so changes most pixels of its area. All other changes in the window are far
// smaller.
constexpr std::size_t pixelsOfView = 50000;
const std::string number = "100";

// The two programs under comparison, and the processor time of the window's thread during the window's turns.
struct Sides {
    RunningProgram& desktop;
    Station window;
    Station service;
    Nanoseconds windowThread{};
    Nanoseconds windowTurns{};
};

void FetchAndShow(Sides& sides, std::size_t first, std::size_t last) {
    const auto started = SteadyTime::now();
    const Nanoseconds before = sides.desktop.process.MainThreadTime();
    sides.window.Fetch(first, last);
    std::this_thread::sleep_for(timeToShow);
    sides.windowThread += sides.desktop.process.MainThreadTime() - before;
    sides.windowTurns += SteadyTime::now() - started;
}

void RunRounds(const Effort& effort, std::size_t lineCount, Sides& sides) {
    for (std::size_t round = 0; round < effort.rounds; ++round) {
        sides.window.Begin(number);
        sides.service.Begin(number);
        for (std::size_t first = 1; first < lineCount; first += linesPerTurn) {
            const std::size_t last = std::min(first + linesPerTurn, lineCount);
            FetchAndShow(sides, first, last);
            sides.service.Fetch(first, last);
        }
        sides.window.End();
        sides.service.End();
    }
}

void OpenView(const RunningProgram& desktop) {
    const Deadline deadline(10s);
    const std::string window = AwaitWindow(desktop.process);
    const std::string before = DisplayPixels();
    PressKey(window, "alt+v");
    for (int look = 0; look < 100; ++look) {
        if (ChangedPixels(before, DisplayPixels()) >= pixelsOfView)
            return;
        std::this_thread::sleep_for(50ms);
    }
    throw std::runtime_error("the traffic view did not open");
}

double WindowShare(const Sides& sides) {
    return static_cast<double>(sides.windowThread.count()) / static_cast<double>(sides.windowTurns.count());
}

void AddRows(const std::string& name, Sides& sides, Table& table, auto... mostAllowed) {
    auto& own = sides.window.samples;
    auto& least = sides.service.samples;
    table.Compare(name + "median", Microseconds(Median(own)), Microseconds(Median(least)), mostAllowed...);
    for (const auto& [share, what] : {std::pair{0.99, "99th percentile"}, std::pair{1.0, "longest"}})
        table.Compare(name + what, Microseconds(Quantile(own, share)), Microseconds(Quantile(least, share)));
    table.Compare(name + "lines per second", {sides.window.LinesPerSecond(), "", 0},
                  {sides.service.LinesPerSecond(), "", 0});
    table.Inform(name + "window's thread", {100 * WindowShare(sides), "%", 1});
}

// The controller stops in the middle of a download: the board counts the seconds of the silence. Beside it the same for
// the service, which looks at the modem lines as often.
void MeasureSilence(const Effort& effort, Table& table) {
    const auto measure = [&](const char* programName, const auto& figures) {
        RunningProgram program(programName);
        WriteNcLines(program.NcFile(number), 2);
        Station(program.line, ReadDataFrames(program.NcFile(number), 2), 1).Begin(number);
        std::this_thread::sleep_for(timeToCount);
        const auto started = SteadyTime::now();
        const Nanoseconds before = program.process.MainThreadTime();
        // Long enough for several steps of the clock.
        const IdleFigures idle = MeasureIdleProgram(program, std::max<std::chrono::seconds>(effort.idleTime, 10s));
        const Nanoseconds mainThread = program.process.MainThreadTime() - before;
        figures(idle, std::chrono::duration<double>(mainThread) / (SteadyTime::now() - started));
        program.process.Stop();
    };
    measure(serviceProgram, [&](const IdleFigures& idle, double) {
        table.Inform("silent machine, service: share of a core", idle.share);
        table.Inform("silent machine, service: wake-ups per second", idle.wakeUpsPerSecond);
    });
    measure(desktopProgram, [&](const IdleFigures& idle, double mainThread) {
        table.Inform("silent machine, desktop: share of a core", idle.share);
        table.Inform("silent machine, desktop: wake-ups per second", idle.wakeUpsPerSecond);
        table.Check("silent machine: window with the board's clock", {100 * mainThread, "%", 3}, {0.1, "%", 3});
    });
}

}

void MeasureWindow(const Effort& effort, Table& table) {
    RequireDisplay();
    const std::vector<int> cores = Placement().Cores();
    const std::size_t lineCount = effort.linesPerRound + 1;
    Placement placement;
    placement.Use(cores.back());
    RunningProgram desktop(desktopProgram);
    RunningProgram service(serviceProgram);
    for (const RunningProgram* program : {&desktop, &service})
        WriteNcLines(program->NcFile(number), lineCount);
    const auto frames = ReadDataFrames(service.NcFile(number), lineCount);

    placement.Use(cores.front());
    const std::size_t sampleCount = effort.rounds * effort.linesPerRound;
    const auto sides = [&] {
        return Sides{desktop, Station(desktop.line, frames, sampleCount), Station(service.line, frames, sampleCount)};
    };
    Sides hidden = sides();
    RunRounds(effort, lineCount, hidden);
    Sides open = sides();
    OpenView(desktop);
    RunRounds(effort, lineCount, open);
    desktop.process.Stop();
    service.process.Stop();
    AddRows("view open: ", open, table, 1.2);
    AddRows("view hidden: ", hidden, table);
}

void MeasureDesktop(const Effort& effort, Table& table) {
    RequireDisplay();
    {
        RunningProgram desktop(desktopProgram);
        std::this_thread::sleep_for(2s);
        const IdleFigures idle = MeasureIdleProgram(desktop, effort.idleTime);
        table.Inform("desktop idle: share of a core", idle.share);
        table.Inform("desktop idle: memory", idle.memory);
        table.Inform("desktop idle: wake-ups per second", idle.wakeUpsPerSecond);
        desktop.process.Stop();
    }
    MeasureSilence(effort, table);
    std::vector<Nanoseconds> shown;
    std::vector<Nanoseconds> linked = MeasureStarts(
        desktopProgram, effort.starts, [&](const MeasuredProcess& process, SteadyTime::time_point started) {
            AwaitWindow(process);
            shown.push_back(SteadyTime::now() - started);
        });
    table.Inform("desktop start to link test: median", Milliseconds(Median(linked)));
    table.Inform("desktop start to link test and window: median", Milliseconds(Median(shown)));
    table.Inform("desktop start to link test and window: longest", Milliseconds(Longest(shown)));
}

}
