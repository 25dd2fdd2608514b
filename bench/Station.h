#pragma once
// The controller's side of one download after another: requires the data lines that are due and keeps how long each
// took to come. All failures are thrown.

#include "ControllerLine.h"
#include "Figure.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::bench {

class Station {
public:
    // `dataFrames` outlive the station.
    Station(ControllerLine& controllerLine, const std::vector<std::string>& dataFrames, std::size_t sampleCount);

    // Asks for the file with this number, and requires its first line.
    void Begin(const std::string& number);
    // Fetches the lines from `first` to before `last`.
    void Fetch(std::size_t first, std::size_t last);
    void End();

    double LinesPerSecond() const;

    std::vector<Nanoseconds> samples;

private:
    void Expect(std::string_view frame);

    ControllerLine& line;
    const std::vector<std::string>& frames;
    const std::string received;
    Nanoseconds elapsed{};
};

}
