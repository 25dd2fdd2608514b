#pragma once
// Operations that the window asks of the engine, on their way to the monitor thread. Knows nothing of what they do.

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace tarvin {

class CommandQueue {
public:
    using Command = std::function<void()>;

    // Any thread.
    void Post(Command command) {
        const std::lock_guard lock(mutex);
        commands.push_back(std::move(command));
    }

    // Runs what has been posted so far, in order. Monitor thread.
    void Run() {
        std::vector<Command> due;
        {
            const std::lock_guard lock(mutex);
            if (commands.empty())
                return;
            due.swap(commands);
        }
        for (const Command& command : due)
            command();
    }

private:
    std::mutex mutex;
    std::vector<Command> commands;
};

}
