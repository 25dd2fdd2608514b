#pragma once
// The controller's verdict on an exchange or a part of it. Three-valued, unlike Result: an exchange that was stopped on
// purpose is neither right nor failed. Any thread.

#include <string>
#include <utility>

namespace tarvin::controller {

struct Outcome {
    // Stopped: the controller fell silent in the middle of a transfer, as its options demand.
    enum class Kind { Right, Stopped, Failed };
    Kind kind = Kind::Right;
    // For people. Empty for Right.
    std::string reason;

    bool IsRight() const { return kind == Kind::Right; }

    static Outcome Right() { return {}; }
    static Outcome Stopped(std::string reason) { return {Kind::Stopped, std::move(reason)}; }
    static Outcome Failed(std::string reason) { return {Kind::Failed, std::move(reason)}; }
};

}
