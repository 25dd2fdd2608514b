#pragma once
// The command line of the simulated controller: its commands, options and help text. Any thread.

#include "base/Result.h"
#include "controller/Conversation.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller {

struct Command {
    enum class Kind { Test, Put, Get, Check, RefusePut, RefuseGet, Send, Expect, Stay };
    Kind kind = Kind::Test;
    std::string name;   // as written on the command line
    std::string number; // the file number, or the text of a message
    std::string file;   // empty if none was given
};

struct ControllerOptions {
    // The line: exactly one of the two is not empty, unless help or version is wanted.
    std::string device;
    std::string pseudoTerminalLink;
    unsigned bitsPerSecond = 9600;
    bool connects = true;
    Clock::Duration connectTime = std::chrono::seconds(10);
    bool traces = false;
    Clock::Duration delayBeforeMessages = {};
    Conversation::Settings conversation;
    MisbehaviourSettings misbehaviour;
    std::vector<Command> commands;
    bool wantsHelp = false;
    bool wantsVersion = false;
};

// Parses the arguments after the program's name. Fails at the first one that is wrong or missing.
Result<ControllerOptions> ParseCommandLine(std::span<const std::string> arguments);

// The text that --help prints.
extern const std::string_view helpText;

}
