#pragma once
// How an exchange, or a step of one, went. Any thread.

#include <string>
#include <utility>

namespace tarvin::controller {

struct Outcome {
    // Stopped: the controller fell silent in the middle, as it was told to.
    enum class Kind { Right, Stopped, Failed };
    Kind kind = Kind::Right;
    // For a person; empty when all is right.
    std::string reason;

    bool IsRight() const { return kind == Kind::Right; }

    static Outcome Right() { return {}; }
    static Outcome Stopped(std::string why) { return {Kind::Stopped, std::move(why)}; }
    static Outcome Failed(std::string why) { return {Kind::Failed, std::move(why)}; }
};

}
