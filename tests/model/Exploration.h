#pragma once
// Plays sequences of events to the model and to the program, and compares them after each event.

#include "model/Subject.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvin::test {

class Exploration {
public:
    explicit Exploration(const Situation& situation) : situation(situation) {}

    // Every event in every state of the model that at most `depth` - 1 events reach. Of the sequences that lead to one
    // state, the first one is played.
    void ExploreStates(int depth);
    // Every sequence of `depth` events.
    void ExploreSequences(int depth);
    // `count` sequences of `length` events, drawn by `seed`.
    void Sample(std::uint32_t seed, int count, int length);

    std::size_t StateCount() const { return stateCount; }
    // Events whose effects have been compared.
    std::size_t ComparedCount() const { return comparedCount; }
    // The first sequences after which model and program differ, with both views.
    const std::vector<std::string>& Differences() const { return differences; }

private:
    using Sequence = std::vector<std::uint8_t>; // indices in the alphabet

    void Begin(const Sequence& events);
    bool Compare(const ConversationModel& model, const Sequence& events);
    void Extend(const ConversationModel& model, Sequence& events, int depth);

    const Situation& situation;
    Subject subject;
    std::size_t stateCount = 0;
    std::size_t comparedCount = 0;
    std::vector<std::string> differences;
};

}
