#include "NcText.h"

#include "protocol/Frame.h"

#include <fstream>
#include <random>
#include <stdexcept>

namespace tarvin::bench {

namespace {

// Each line begins with its number, so that a lost or repeated line is noticed.
class LineMaker {
public:
    const std::string& Next() {
        const std::size_t length = 20 + generator() % 21;
        line = 'N';
        line += std::to_string(++number);
        line += "G01X";
        while (line.size() < length)
            line.push_back(static_cast<char>('0' + generator() % 10));
        return line += "\r\n";
    }

private:
    std::minstd_rand generator;
    std::size_t number = 0;
    std::string line;
};

std::ofstream Create(const std::filesystem::path& file) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    return stream;
}

}

void WriteNcLines(const std::filesystem::path& file, std::size_t lineCount) {
    std::ofstream stream = Create(file);
    LineMaker lines;
    for (std::size_t line = 0; line < lineCount; ++line)
        stream << lines.Next();
    stream.flush();
}

void WriteNcBytes(const std::filesystem::path& file, std::size_t byteCount) {
    std::ofstream stream = Create(file);
    LineMaker lines;
    for (std::size_t written = 0; written < byteCount;) {
        const std::string& line = lines.Next();
        stream << line;
        written += line.size();
    }
    stream.flush();
}

std::vector<std::string> ReadDataFrames(const std::filesystem::path& file, std::size_t mostLines) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::string> frames;
    for (std::string line; frames.size() < mostLines && std::getline(stream, line);) {
        line.pop_back();
        frames.push_back(FrameOf(std::string(code::downloadData) + line));
    }
    if (frames.empty())
        throw std::runtime_error(file.string() + " holds no lines");
    return frames;
}

std::string FrameOf(std::string_view text) {
    std::string frame;
    BuildFrame(text, frame);
    return frame;
}

}
