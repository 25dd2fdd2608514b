#include "controller/CommandLine.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace tarvin::controller {

namespace {

struct CommandShape {
    std::string_view name;
    Command::Kind kind;
    bool takesNumber;
    enum class File { None, Required, Optional } file;
};

constexpr CommandShape commandShapes[] = {
    {"test", Command::Kind::Test, false, CommandShape::File::None},
    {"put", Command::Kind::Put, true, CommandShape::File::Required},
    {"get", Command::Kind::Get, true, CommandShape::File::Optional},
    {"check", Command::Kind::Check, true, CommandShape::File::Required},
    {"refuse-put", Command::Kind::RefusePut, true, CommandShape::File::None},
    {"refuse-get", Command::Kind::RefuseGet, true, CommandShape::File::None},
    {"send", Command::Kind::Send, true, CommandShape::File::None},
    {"expect", Command::Kind::Expect, true, CommandShape::File::None},
    {"stay", Command::Kind::Stay, false, CommandShape::File::None},
};

const CommandShape* FindCommand(std::string_view name) {
    const auto found = std::ranges::find(commandShapes, name, &CommandShape::name);
    return found == std::end(commandShapes) ? nullptr : &*found;
}

template <typename Number>
bool ParseNumber(std::string_view text, Number minimum, Number maximum, Number& number) {
    Number parsed = {};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error != std::errc() || end != text.data() + text.size() || !(parsed >= minimum && parsed <= maximum))
        return false;
    number = parsed;
    return true;
}

// At most one day.
bool ParseTime(std::string_view text, double unitsPerSecond, Clock::Duration& time) {
    constexpr double mostSeconds = 86400;
    double units = 0;
    if (!ParseNumber(text, 0.0, mostSeconds * unitsPerSecond, units))
        return false;
    time = std::chrono::duration_cast<Clock::Duration>(std::chrono::duration<double>(units / unitsPerSecond));
    return true;
}

// A percentage as parts in a million.
bool ParseChance(std::string_view text, std::uint32_t& chance) {
    double percent = 0;
    if (!ParseNumber(text, 0.0, 100.0, percent))
        return false;
    chance = static_cast<std::uint32_t>(std::lround(percent * 10'000));
    return true;
}

bool ParseCount(std::string_view text, std::size_t& count) {
    return ParseNumber<std::size_t>(text, 1, std::numeric_limits<std::size_t>::max(), count);
}

// Not a carriage return: that would end the message before the answer.
bool ParseCharacter(std::string_view text, std::optional<char>& character) {
    unsigned code = 0;
    if (!ParseNumber(text, 0U, 255U, code) || code == '\r')
        return false;
    character = static_cast<char>(code);
    return true;
}

bool ParseText(std::string_view text, std::string& value) {
    value = text;
    return !text.empty();
}

struct OptionShape {
    std::string_view name;
    bool takesValue;
    // Stores the value. False if the value is not allowed.
    bool (*apply)(std::string_view value, ControllerOptions& options);
};

using Value = std::string_view;
using Options = ControllerOptions;

constexpr OptionShape optionShapes[] = {
    {"--port", true, [](Value v, Options& o) { return ParseText(v, o.device); }},
    {"--pty", true, [](Value v, Options& o) { return ParseText(v, o.pseudoTerminalLink); }},
    {"--baud", true, [](Value v, Options& o) { return ParseNumber(v, 1U, 10'000'000U, o.bitsPerSecond); }},
    {"--connect", true, [](Value v, Options& o) { return ParseTime(v, 1, o.connectTime); }},
    {"--no-connect", false, [](Value, Options& o) { return !(o.connects = false); }},
    {"--timeout", true, [](Value v, Options& o) { return ParseTime(v, 1, o.conversation.answerTime); }},
    {"--start-character", true, [](Value v, Options& o) { return ParseCharacter(v, o.conversation.startCharacter); }},
    {"--nak-every", true, [](Value v, Options& o) { return ParseCount(v, o.conversation.refusesEvery); }},
    {"--stop-after", true, [](Value v, Options& o) { return ParseCount(v, o.conversation.stopsAfter); }},
    {"--seed", true,
     [](Value v, Options& o) { return ParseNumber<std::uint64_t>(v, 0, UINT64_MAX, o.misbehaviour.seed); }},
    {"--garble", true, [](Value v, Options& o) { return ParseChance(v, o.misbehaviour.garble); }},
    {"--drop", true, [](Value v, Options& o) { return ParseChance(v, o.misbehaviour.drop); }},
    {"--noise", true, [](Value v, Options& o) { return ParseChance(v, o.misbehaviour.noise); }},
    {"--garble-received", true, [](Value v, Options& o) { return ParseChance(v, o.misbehaviour.garbleReceived); }},
    {"--drop-received", true, [](Value v, Options& o) { return ParseChance(v, o.misbehaviour.dropReceived); }},
    {"--split", false, [](Value, Options& o) { return o.misbehaviour.splitsMessages = true; }},
    {"--delay", true, [](Value v, Options& o) { return ParseTime(v, 1000, o.delayBeforeMessages); }},
    {"--trace", false, [](Value, Options& o) { return o.traces = true; }},
    {"--help", false, [](Value, Options& o) { return o.wantsHelp = true; }},
    {"--version", false, [](Value, Options& o) { return o.wantsVersion = true; }},
};

Error Failure(const std::string& reason) {
    return {FromUtf8(reason)};
}

// Takes the arguments from the front, one after the other.
class Parser {
public:
    explicit Parser(std::span<const std::string> arguments) : arguments(arguments) {}

    Result<ControllerOptions> Run() {
        while (!arguments.empty()) {
            const std::string first = Take();
            if (Result<> taken = first.starts_with("--") ? TakeOption(first) : TakeCommand(first); !taken)
                return taken.Reason();
        }
        if (!options.wantsHelp && !options.wantsVersion) {
            if (options.device.empty() == options.pseudoTerminalLink.empty())
                return Failure("one of --port and --pty is needed");
            if (options.commands.empty())
                return Failure("no command");
        }
        return std::move(options);
    }

private:
    std::string Take() {
        const std::string first = arguments.front();
        arguments = arguments.subspan(1);
        return first;
    }

    Result<> TakeOption(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const auto shape = std::ranges::find(optionShapes, name, &OptionShape::name);
        if (shape == std::end(optionShapes))
            return Failure("unknown option " + name);
        const bool hasValue = equals != std::string::npos;
        if (hasValue && !shape->takesValue)
            return Failure(name + " takes no value");
        if (shape->takesValue && !hasValue && arguments.empty())
            return Failure(name + " needs a value");
        const std::string value = hasValue ? argument.substr(equals + 1) : shape->takesValue ? Take() : std::string();
        if (!shape->apply(value, options))
            return Failure(name + ": \"" + value + "\" is no value for it");
        return {};
    }

    Result<> TakeCommand(const std::string& name) {
        const CommandShape* const shape = FindCommand(name);
        if (shape == nullptr)
            return Failure("unknown command " + name);
        Command command = {shape->kind, name, {}, {}};
        if (shape->takesNumber) {
            if (arguments.empty() || arguments.front().find('\r') != std::string::npos)
                return Failure(name + " needs " + (shape->kind < Command::Kind::Send ? "a file number" : "a text"));
            command.number = Take();
        }
        if (shape->file == CommandShape::File::Required && arguments.empty())
            return Failure(name + " needs a file");
        // An optional file is absent if the next argument can only be an option or a command.
        const bool hasFile = shape->file == CommandShape::File::Required ||
                             (shape->file == CommandShape::File::Optional && !arguments.empty() &&
                              !arguments.front().starts_with("--") && FindCommand(arguments.front()) == nullptr);
        if (hasFile)
            command.file = Take();
        options.commands.push_back(std::move(command));
        return {};
    }

    std::span<const std::string> arguments;
    ControllerOptions options;
};

}

Result<ControllerOptions> ParseCommandLine(std::span<const std::string> arguments) {
    return Parser(arguments).Run();
}

const std::string_view helpText =
    R"(usage: tarvin-controller (--port DEVICE [--baud N] | --pty LINK) [options] COMMAND...

A simulated machine controller. It opens a serial line, or makes a pseudo-terminal
whose other end is found through the symbolic link LINK (not on Windows), and
carries out its commands one after the other.

Commands
  test                link test
  put NUMBER FILE     sends FILE to the program as the file of that number
  get NUMBER [FILE]   asks for a file, and writes what comes to FILE with CR LF line
                      ends once all of it has come (a FILE with the name of a command
                      is written as ./get)
  check NUMBER FILE   asks for a file and requires its lines to be those of FILE
  refuse-put NUMBER   right only if the program refuses to take the file (AAAK03)
  refuse-get NUMBER   right only if the program refuses to give the file (AAAK01)
  send TEXT           sends one message; nothing is required in return
  expect TEXT         requires TEXT to be the next message that comes
  stay                keeps the line and answers nothing until the program has closed it
                      (on a serial device, where that cannot be seen, until it is ended)
File numbers are sent as given. Lines of FILE end with LF or CR LF; its empty lines
are not sent and not compared, since the program keeps and sends none.

Line
  --baud N            bits per second (9600); always 8 data bits, no parity, 1 stop bit
  --connect SECONDS   how long to wait for the program to open the line and answer the
                      link test, which is repeated until then (10)
  --no-connect        talk at once
  --timeout SECONDS   how long to wait for each answer (5)
  --start-character N the program is to put the byte N before its answer to get
  --trace             print each message; bytes outside 0x20 to 0x7E as [xx]

Misbehaviour (not before the connection stands; the same seed does the same)
  --seed N            (1)
  --garble PERCENT    chance that one bit of a sent message is changed
  --drop PERCENT      chance that a message is not sent
  --noise PERCENT     chance that bytes which the program has to ignore are put before
                      and into a sent message
  --split             send messages in pieces
  --delay MS          wait before each message
  --garble-received PERCENT, --drop-received PERCENT
                      chance that a data line is damaged as it comes in: a bit is
                      changed, a byte lost. It is then asked for again.
  --nak-every N       refuse every N-th data line of a get once
  --stop-after N      fall silent after N data lines of the first transfer that has as
                      many, and go on with the next command

The controller is strict. Each message that comes must have its right checksum and
nothing before, inside or after it. A data line whose checksum is wrong is asked for
again, at most three times. Only a link test is sent again when its answer is missing
or damaged, twice; any other missing, damaged or unexpected answer fails the command,
and so does anything that comes unasked. A damaged request or data line that the
program acknowledges fails the command at its end.

Each command prints one line. Turnaround runs from when the last byte of a message is
handed to the system until the end of the next message has been read. After a command
that failed the rest is not attempted.

Exit status: 0 all went right, 1 a command or the line failed, 2 wrong usage or a
FILE that cannot be read, 3 stopped by --stop-after and otherwise right.
)";

}
