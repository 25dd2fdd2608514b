#include "controller/CommandRunner.h"

#include "controller/ControllerFrame.h"
#include "files/NativeFile.h"

#include <iomanip>
#include <sstream>

namespace tarvin::controller {

namespace {

bool IsTransfer(Command::Kind kind) {
    return kind == Command::Kind::Put || kind == Command::Kind::Get || kind == Command::Kind::Check;
}

double InSeconds(Clock::Duration duration) {
    return std::chrono::duration<double>(duration).count();
}

double InMilliseconds(Clock::Duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

}

Outcome CommandRunner::Run(const Command& command, std::span<const std::string> lines) {
    record = {};
    // Every command but "expect" requires silence first. "expect" is there to receive a message that an earlier command
    // has caused.
    if (command.kind != Command::Kind::Expect) {
        if (Outcome silence = conversation.Begin(); !silence.IsRight())
            return silence;
    }
    const Clock::TimePoint start = clock.Now();
    Outcome outcome = Perform(command, lines);
    // Measured to the last message, not to now: writing the file is not part of the transfer.
    record.elapsed = std::max(link.LastArrival() - start, Clock::Duration::zero());
    return outcome;
}

Outcome CommandRunner::Perform(const Command& command, std::span<const std::string> lines) {
    switch (command.kind) {
    case Command::Kind::Test:
        return conversation.TestLink(record.repeats);
    case Command::Kind::Put:
        return Upload(conversation, command.number, lines, record);
    case Command::Kind::Get:
        return GetInto(command);
    case Command::Kind::Check: {
        LineComparer comparer(lines);
        return Download(conversation, command.number, comparer, record);
    }
    case Command::Kind::RefusePut:
        return conversation.ExpectRefusal(std::string(code::uploadRequest) + command.number, code::cannotGoOn);
    case Command::Kind::RefuseGet:
        return conversation.ExpectRefusal(std::string(code::downloadRequest) + command.number, code::cannotRead);
    case Command::Kind::Send:
        return conversation.Send(command.number);
    case Command::Kind::Expect:
        return conversation.ReceiveExactly(command.number);
    case Command::Kind::Stay:
        return conversation.Stay();
    }
    return Outcome::Failed("unknown command");
}

Outcome CommandRunner::GetInto(const Command& command) {
    if (command.file.empty()) {
        LineSink dropped;
        return Download(conversation, command.number, dropped, record);
    }
    // The file is written only once it is whole.
    LineCollector collector;
    Outcome outcome = Download(conversation, command.number, collector, record);
    if (outcome.IsRight() && !ReplaceWholeFile(command.file, collector.Content()))
        return Outcome::Failed(command.file + " cannot be written");
    return outcome;
}

std::string CommandRunner::Figures(const Command& command) const {
    std::ostringstream text;
    text << std::fixed;
    if (IsTransfer(command.kind)) {
        const double seconds = InSeconds(record.elapsed);
        text << record.lines << " lines, " << record.bytes << " bytes, " << std::setprecision(3) << seconds << " s, "
             << std::setprecision(0) << (seconds > 0 ? static_cast<double>(record.lines) / seconds : 0) << " lines/s, ";
    }
    if (const auto summary = link.Turnaround().Summarize(); summary.count > 0) {
        text << std::setprecision(3) << "turnaround median " << InMilliseconds(summary.median) << " ms, p99 "
             << InMilliseconds(summary.percentile99) << " ms, max " << InMilliseconds(summary.longest) << " ms, ";
    }
    if (IsTransfer(command.kind) || command.kind == Command::Kind::Test)
        text << record.repeats << " repeats, ";
    return text.str();
}

std::string CommandRunner::Report(const Command& command, const Outcome& outcome) const {
    const std::string head = command.name + (command.number.empty() ? "" : " " + command.number) + ": ";
    switch (outcome.kind) {
    case Outcome::Kind::Right:
        return head + Figures(command) + "ok";
    case Outcome::Kind::Stopped:
        return head + Figures(command) + outcome.reason;
    case Outcome::Kind::Failed:
        break;
    }
    return head + "FAILED: " + outcome.reason;
}

}
