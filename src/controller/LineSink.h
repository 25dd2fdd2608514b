#pragma once
// Where the lines of a download go. Knows nothing of messages. One thread at a time.

#include "controller/Outcome.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tarvin::controller {

// Takes every line and forgets it.
class LineSink {
public:
    virtual ~LineSink() = default;
    // An outcome that is not right ends the transfer.
    virtual Outcome Take(std::string_view) { return Outcome::Right(); }
    virtual Outcome TakeEnd() { return Outcome::Right(); }
};

// Keeps the lines as the content of a file, each with CR LF.
class LineCollector : public LineSink {
public:
    LineCollector() { content.reserve(1U << 20); }
    Outcome Take(std::string_view lineText) override;
    const std::string& Content() const { return content; }

private:
    std::string content;
};

// Requires the lines that it was given, no more, no fewer, in this order.
class LineComparer : public LineSink {
public:
    // The lines outlive the comparer.
    explicit LineComparer(std::span<const std::string> expectedLines) : expected(expectedLines) {}
    Outcome Take(std::string_view lineText) override;
    Outcome TakeEnd() override;

private:
    const std::span<const std::string> expected;
    std::size_t taken = 0;
};

}
