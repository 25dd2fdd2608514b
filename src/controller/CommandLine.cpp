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
    R"(Usage: tarvin-controller --port DEVICE | --pty LINK [OPTION]... COMMAND...

A simulated machine controller on a serial line, or on a pseudo-terminal to
which the link LINK leads (not on Windows). Carries out its commands in order.

Commands: test; put NUMBER FILE; get NUMBER [FILE]; check NUMBER FILE;
    refuse-put NUMBER; refuse-get NUMBER; send TEXT; expect TEXT; stay

  --baud N             speed (9600); always 8 data bits, no parity, 1 stop bit
  --connect SECONDS    how long to wait for the program's first answer (10)
  --no-connect         talk at once
  --timeout SECONDS    how long to wait for each answer (5)
  --delay MS           wait before each message; --split sends it in pieces
  --start-character N  the byte that the program puts before its answer to get
  --trace              print each message
  --garble, --drop, --noise PERCENT           damage what is sent, by --seed N
  --garble-received, --drop-received PERCENT  damage received data lines
  --nak-every N        refuse every N-th data line of a get once
  --stop-after N       fall silent after N data lines
  --help, --version    this text, the version

Exit code: 0 all went right, 1 a command or the line failed, 2 wrong usage or a
FILE that cannot be read, 3 stopped by --stop-after and otherwise right.
)";

}
