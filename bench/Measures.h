#pragma once
// What is measured. Each measure adds its rows to the table and throws if the program does not do what it is measured
// at.

#include "Table.h"

#include <chrono>
#include <cstddef>

namespace tarvin::bench {

struct RunningProgram;

// How long and how often. More of it makes the figures steadier.
struct Effort {
    std::size_t rounds = 5;
    std::size_t linesPerRound = 20000;
    std::chrono::seconds idleTime{10};
    std::size_t largeFileMegabytes = 100;
    std::size_t largeFileRepetitions = 7;
    std::size_t starts = 20;
    std::chrono::seconds viewTime{10};
};

// The program's answers to acknowledged data lines, beside those of a responder that does nothing else.
void MeasureTurnaround(const Effort& effort, Table& table);
// The same with the comms log on, beside the same without.
void MeasureLoggedTurnaround(const Effort& effort, Table& table);
// What a program costs while nothing happens.
struct IdleFigures {
    Figure share; // of a core
    Figure memory;
    Figure wakeUpsPerSecond;
};
IdleFigures MeasureIdleProgram(const RunningProgram& program, std::chrono::seconds idleTime);
// What the service costs while nothing happens.
void MeasureIdle(const Effort& effort, Table& table);
// A large NC file from the request to its first line, and the memory for it, beside counting its lines.
void MeasureLargeFile(const Effort& effort, Table& table);
// From the start of the service to its first answer.
void MeasureStart(const Effort& effort, Table& table);
// Loading a large dictionary, and looking its texts up.
void MeasureDictionary(const Effort& effort, Table& table);
// The desktop program's answers with its traffic view open, and hidden, beside those of the service. These three need a
// display.
void MeasureWindow(const Effort& effort, Table& table);
// The traffic view under more lines than anybody can read: paints, lines left out, and how soon the window answers.
void MeasureTrafficView(const Effort& effort, Table& table);
// What the desktop program costs while nothing happens, and how soon its window is there.
void MeasureDesktop(const Effort& effort, Table& table);

}
