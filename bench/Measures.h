#pragma once
// The measures. Each adds its rows to the table, and throws if the program fails at the task that is measured.

#include "Table.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tarvin::bench {

class MeasuredProcess;
struct RunningProgram;

// How long and how often to measure. Larger values give steadier figures.
struct Effort {
    std::size_t rounds = 5;
    std::size_t linesPerRound = 20000;
    std::chrono::seconds idleTime{10};
    std::size_t largeFileMegabytes = 100;
    std::size_t largeFileRepetitions = 7;
    std::size_t starts = 20;
    std::chrono::seconds viewTime{10};
};

// The time of the service's answers to acknowledged data lines, beside a responder that does nothing else.
void MeasureTurnaround(const Effort& effort, Table& table);
// The same with the comms log on, beside the service with the comms log off.
void MeasureLoggedTurnaround(const Effort& effort, Table& table);
// The cost of a program while nothing happens.
struct IdleFigures {
    Figure share; // of a core
    Figure memory;
    Figure wakeUpsPerSecond;
};
IdleFigures MeasureIdleProgram(const RunningProgram& program, std::chrono::seconds idleTime);
// The cost of the service while nothing happens.
void MeasureIdle(const Effort& effort, Table& table);
// The time from the request of a large NC file to its first line, beside counting the lines of the file, and the
// memory.
void MeasureLargeFile(const Effort& effort, Table& table);
// Starts a program again and again, and calls `afterLink` after each first answer to a link test, if it is not empty.
// Returns the times from the start to that answer.
using AfterLink = std::function<void(const MeasuredProcess& process, SteadyTime::time_point started)>;
std::vector<Nanoseconds> MeasureStarts(const std::string& programName, std::size_t starts,
                                       const AfterLink& afterLink = {});
// The time from the start of the service to its first answer.
void MeasureStart(const Effort& effort, Table& table);
// The time to load a large dictionary and to look up its texts.
void MeasureDictionary(const Effort& effort, Table& table);
// The time of the desktop program's answers with its traffic view open and hidden, beside the service. This measure and
// the next two need a display.
void MeasureWindow(const Effort& effort, Table& table);
// The traffic view under more lines than a person can read: paints, lines left out, and the window's response time.
void MeasureTrafficView(const Effort& effort, Table& table);
// The cost of the desktop program while nothing happens, and the time until its window appears.
void MeasureDesktop(const Effort& effort, Table& table);

}
