#pragma once
// The controller's side of downloads, one after the other. Measures the time of each data line, and throws if a line
// differs from the expected one.

#include "FrameLine.h"
#include "Table.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::bench {

class Station {
public:
    // `frames` are the data frames of the file that is downloaded, and outlive the station. Memory is reserved for
    // `sampleCount` samples, so that no allocation disturbs the measurement.
    Station(FrameLine& line, const std::vector<std::string>& frames, std::size_t sampleCount);

    // Requests the file with this number and receives its first line.
    void Begin(const std::string& number);
    // Receives the lines `first` to `last` - 1, counted from 0.
    void Fetch(std::size_t first, std::size_t last);
    // Acknowledges the last line and receives the end of the download.
    void End();

    double LinesPerSecond() const;

    // The turnaround of each line that Fetch has received.
    std::vector<Nanoseconds> samples;

private:
    void Expect(std::string_view frame);

    FrameLine& line;
    const std::vector<std::string>& frames;
    const std::string dataGood; // the frame that acknowledges a line
    Nanoseconds elapsed{};
};

}
