#pragma once
// What the user asked the controller to do. Knows nothing of how it is done. Any thread.

#include "controller/Conversation.h"

#include <span>
#include <string>
#include <vector>

namespace tarvin::controller {

struct Command {
    enum class Kind { Test, Put, Get, Check, RefusePut, RefuseGet, Send, Expect, Stay };
    Kind kind = Kind::Test;
    // The name of the command.
    std::string name;
    // The file number, or the text of a message.
    std::string number;
    // Empty if none was given.
    std::string file;
};

struct ControllerOptions {
    // One of the two is given.
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

// The arguments behind the program's name. False, with the reason in `error`, if they make no sense.
bool ParseCommandLine(std::span<const std::string> arguments, ControllerOptions& options, std::string& error);

}
