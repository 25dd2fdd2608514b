#include "Measures.h"
#include "NcText.h"
#include "RunningProgram.h"
#include "protocol/Frame.h"

#include <stdexcept>

namespace tarvin::bench {

using namespace std::chrono_literals;

namespace {

const std::string number = "200";

Nanoseconds TimeToFirstLine(FrameLine& line, const std::string& firstFrame) {
    const Deadline deadline(60s);
    const std::string request = FrameOf(std::string(code::downloadRequest) + number);
    const auto requested = SteadyTime::now();
    line.Write(request);
    if (line.ReadFrame() != FrameOf(code::acknowledge))
        throw std::runtime_error("the large file was refused");
    const bool isRight = line.ReadFrame() == firstFrame;
    const Nanoseconds time = SteadyTime::now() - requested;
    if (!isRight)
        throw std::runtime_error("the first line of the large file is wrong");
    // A link test ends the download, so that the next request starts a new one.
    EstablishLink(line);
    return time;
}

Nanoseconds TimeToCountLines(const std::filesystem::path& file) {
    const auto started = SteadyTime::now();
    MeasuredProcess counter("/usr/bin/wc", {"-l", file.string()});
    counter.Wait(60s);
    return SteadyTime::now() - started;
}

}

void MeasureLargeFile(const Effort& effort, Table& table) {
    RunningProgram service(serviceProgram);
    const auto file = service.NcFile(number);
    WriteNcBytes(file, effort.largeFileMegabytes * 1000 * 1000);
    const std::string firstFrame = ReadDataFrames(file, 1).front();

    // Writing has put the file into the page cache. One run of each, not counted, warms everything else.
    TimeToCountLines(file);
    TimeToFirstLine(service.line, firstFrame);
    service.process.ResetPeak();
    std::vector<Nanoseconds> counting;
    std::vector<Nanoseconds> loading;
    for (std::size_t repetition = 0; repetition < effort.largeFileRepetitions; ++repetition) {
        counting.push_back(TimeToCountLines(file));
        loading.push_back(TimeToFirstLine(service.line, firstFrame));
    }

    const std::string name = std::to_string(effort.largeFileMegabytes) + " MB file: ";
    table.Compare(name + "first line / wc -l", Milliseconds(Median(loading)), Milliseconds(Median(counting)), 8);
    table.Compare(name + "longest / wc -l", Milliseconds(Longest(loading)), Milliseconds(Longest(counting)));
    table.Compare(name + "peak memory / size", Mebibytes(service.process.PeakResidentBytes()),
                  Mebibytes(std::filesystem::file_size(file)), 1.3);
    service.process.Stop();
}

}
