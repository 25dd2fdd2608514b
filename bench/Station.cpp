#include "Station.h"

#include "NcText.h"
#include "protocol/Frame.h"

#include <stdexcept>

namespace tarvin::bench {

namespace {

constexpr std::chrono::seconds longestTurn{30};

}

Station::Station(FrameLine& line, const std::vector<std::string>& frames, std::size_t sampleCount)
    : line(line), frames(frames), dataGood(FrameOf(code::dataGood)) {
    samples.reserve(sampleCount);
}

void Station::Begin(const std::string& number) {
    const Deadline deadline(longestTurn);
    line.Write(FrameOf(std::string(code::downloadRequest) + number));
    Expect(FrameOf(code::acknowledge));
    Expect(frames.front());
}

void Station::Fetch(std::size_t first, std::size_t last) {
    const Deadline deadline(longestTurn);
    const auto started = SteadyTime::now();
    for (std::size_t next = first; next < last; ++next) {
        // The time starts before the write: the program may have answered before the write returns.
        const auto asked = SteadyTime::now();
        line.Write(dataGood);
        const std::string_view frame = line.ReadFrame();
        samples.push_back(SteadyTime::now() - asked);
        if (frame != frames[next])
            throw std::runtime_error("line " + std::to_string(next) + " arrived as " + std::string(frame));
    }
    elapsed += SteadyTime::now() - started;
}

void Station::End() {
    const Deadline deadline(longestTurn);
    line.Write(dataGood);
    Expect(FrameOf(code::downloadEnd));
}

double Station::LinesPerSecond() const {
    return static_cast<double>(samples.size()) / std::chrono::duration<double>(elapsed).count();
}

void Station::Expect(std::string_view frame) {
    const std::string_view actual = line.ReadFrame();
    if (actual != frame)
        throw std::runtime_error(std::string(frame) + " was expected, but the program sent " + std::string(actual));
}

}
