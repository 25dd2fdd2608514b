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

bool ParseTime(std::string_view text, double unitsPerSecond, Clock::Duration& time) {
    constexpr double mostSeconds = 86400;
    double units = 0;
    if (!ParseNumber(text, 0.0, mostSeconds * unitsPerSecond, units))
        return false;
    time = std::chrono::duration_cast<Clock::Duration>(std::chrono::duration<double>(units / unitsPerSecond));
    return true;
}

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
    // False if the value makes no sense.
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

// Reads from the front of the arguments, which it shortens.
class Parser {
public:
    Parser(std::span<const std::string> programArguments, ControllerOptions& parsedOptions, std::string& parseError)
        : arguments(programArguments), options(parsedOptions), error(parseError) {}

    bool Run() {
        while (!arguments.empty()) {
            const std::string first = Take();
            if (!(first.starts_with("--") ? TakeOption(first) : TakeCommand(first)))
                return false;
        }
        return options.wantsHelp || options.wantsVersion || IsComplete();
    }

private:
    std::string Take() {
        const std::string first = arguments.front();
        arguments = arguments.subspan(1);
        return first;
    }

    bool Fail(std::string reason) {
        error = std::move(reason);
        return false;
    }

    bool TakeOption(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const auto shape = std::ranges::find(optionShapes, name, &OptionShape::name);
        if (shape == std::end(optionShapes))
            return Fail("unknown option " + name);
        const bool hasValue = equals != std::string::npos;
        if (hasValue && !shape->takesValue)
            return Fail(name + " takes no value");
        if (shape->takesValue && !hasValue && arguments.empty())
            return Fail(name + " needs a value");
        const std::string value = hasValue ? argument.substr(equals + 1) : shape->takesValue ? Take() : std::string();
        return shape->apply(value, options) || Fail(name + ": \"" + value + "\" is no value for it");
    }

    bool TakeCommand(const std::string& name) {
        const CommandShape* const shape = FindCommand(name);
        if (shape == nullptr)
            return Fail("unknown command " + name);
        Command command = {shape->kind, name, {}, {}};
        if (shape->takesNumber) {
            if (arguments.empty() || arguments.front().find('\r') != std::string::npos)
                return Fail(name + " needs " + (shape->kind < Command::Kind::Send ? "a file number" : "a text"));
            command.number = Take();
        }
        if (shape->file == CommandShape::File::Required && arguments.empty())
            return Fail(name + " needs a file");
        const bool hasFile = shape->file == CommandShape::File::Required ||
                             (shape->file == CommandShape::File::Optional && !arguments.empty() &&
                              !arguments.front().starts_with("--") && FindCommand(arguments.front()) == nullptr);
        if (hasFile)
            command.file = Take();
        options.commands.push_back(std::move(command));
        return true;
    }

    bool IsComplete() {
        if (options.device.empty() == options.pseudoTerminalLink.empty())
            return Fail("one of --port and --pty is needed");
        if (options.commands.empty())
            return Fail("no command");
        return true;
    }

    std::span<const std::string> arguments;
    ControllerOptions& options;
    std::string& error;
};

}

bool ParseCommandLine(std::span<const std::string> arguments, ControllerOptions& options, std::string& error) {
    return Parser(arguments, options, error).Run();
}

}
