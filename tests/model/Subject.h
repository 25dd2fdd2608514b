#pragma once
// The program's side of the conversation, from TarvinApp down to the disk, driven by the model's events.

#include "model/ConversationModel.h"

#include <memory>

namespace tarvin::test {

class Subject {
public:
    // Works in a folder of its own, and leaves nothing behind.
    Subject();
    ~Subject();

    // Begins anew in the situation.
    void Begin(const Situation& situation);
    void Handle(const Event& event);
    View Seen() const;

private:
    struct Conversation;
    struct Folder;
    const std::unique_ptr<Folder> folder;
    std::unique_ptr<Conversation> conversation;
};

}
