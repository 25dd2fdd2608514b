#pragma once
// The lines of NC files: read from a file to be sent, and received from a download to be kept or compared. Lines stand
// without their line ends.

#include "base/Result.h"
#include "controller/Outcome.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller {

// Splits the content of an NC file. Lines end with LF or CR LF. Leaves out empty lines, as the program does. Fails if a
// line holds another carriage return, because that would end the line's message early.
Result<std::vector<std::string>> SplitNcLines(std::string_view content);

// Reads an NC file of at most 256 MiB and splits it.
Result<std::vector<std::string>> ReadNcLines(const std::filesystem::path& path);

// Takes the lines of a download. This one drops them. One thread at a time.
class LineSink {
public:
    virtual ~LineSink() = default;
    // Take each line in order, and then the end. An outcome that is not right ends the transfer.
    virtual Outcome Take(std::string_view) { return Outcome::Right(); }
    virtual Outcome TakeEnd() { return Outcome::Right(); }
};

// Keeps the lines as the content of a file with CR LF line ends.
class LineCollector : public LineSink {
public:
    LineCollector() { content.reserve(1U << 20); }
    Outcome Take(std::string_view lineText) override;
    const std::string& Content() const { return content; }

private:
    std::string content;
};

// Requires exactly the expected lines in their order.
class LineComparer : public LineSink {
public:
    // The lines outlive the comparer.
    explicit LineComparer(std::span<const std::string> expected) : expected(expected) {}
    Outcome Take(std::string_view lineText) override;
    Outcome TakeEnd() override;

private:
    const std::span<const std::string> expected;
    std::size_t taken = 0;
};

}
