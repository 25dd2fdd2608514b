#include "model/Exploration.h"

#include <random>
#include <sstream>
#include <unordered_set>
#include <utility>

namespace tarvin::test {

namespace {

constexpr std::size_t mostDifferences = 5;
constexpr std::size_t longestShown = 160;

// The lines of `text` that `other` lacks.
std::string Lacking(const std::string& text, const std::string& other) {
    std::istringstream lines(text);
    std::string lacking;
    for (std::string line; std::getline(lines, line);)
        if (("\n" + other).find("\n" + line + "\n") == std::string::npos)
            lacking += "    " + line.substr(0, longestShown) + "\n";
    return lacking;
}

ConversationModel Begun(const Situation& situation) {
    ConversationModel model(situation);
    for (const Event& each : situation.prelude)
        model.Handle(each);
    return model;
}

}

void Exploration::Begin(const Sequence& events) {
    subject.Begin(situation);
    for (const std::uint8_t each : events)
        subject.Handle(situation.alphabet[each]);
}

bool Exploration::Compare(const ConversationModel& model, const Sequence& events) {
    ++comparedCount;
    const std::string expected = model.Seen().Text();
    const std::string seen = subject.Seen().Text();
    if (seen == expected)
        return true;
    if (differences.size() >= mostDifferences)
        return false;
    std::string names;
    for (const std::uint8_t each : events)
        names += "  " + situation.alphabet[each].name + "\n";
    differences.push_back(situation.name + ":\n" + names + "  the model:\n" + Lacking(expected, seen) +
                          "  the program:\n" + Lacking(seen, expected));
    return false;
}

void Exploration::ExploreStates(int depth) {
    struct State {
        ConversationModel model;
        Sequence events;
    };
    std::vector<State> states = {{Begun(situation), {}}};
    std::unordered_set<std::string> known = {states.front().model.Key()};
    for (int level = 0; level < depth; ++level) {
        std::vector<State> next;
        for (const State& each : states) {
            for (std::size_t index = 0; index < situation.alphabet.size(); ++index) {
                State after = each;
                after.events.push_back(static_cast<std::uint8_t>(index));
                Begin(after.events);
                after.model.Handle(situation.alphabet[index]);
                if (Compare(after.model, after.events) && known.insert(after.model.Key()).second)
                    next.push_back(std::move(after));
            }
        }
        states = std::move(next);
    }
    stateCount += known.size();
}

// Compares after the last event of each sequence: the others end shorter sequences.
void Exploration::Extend(const ConversationModel& model, Sequence& events, int depth) {
    if (depth == 0)
        return;
    for (std::size_t index = 0; index < situation.alphabet.size(); ++index) {
        ConversationModel after = model;
        events.push_back(static_cast<std::uint8_t>(index));
        Begin(events);
        after.Handle(situation.alphabet[index]);
        if (Compare(after, events))
            Extend(after, events, depth - 1);
        events.pop_back();
    }
}

void Exploration::ExploreSequences(int depth) {
    Sequence events;
    Extend(Begun(situation), events, depth);
}

void Exploration::Sample(std::uint32_t seed, int count, int length) {
    std::mt19937 random(seed);
    for (int number = 0; number < count; ++number) {
        ConversationModel model = Begun(situation);
        Sequence events;
        Begin(events);
        for (int position = 0; position < length; ++position) {
            events.push_back(static_cast<std::uint8_t>(random() % situation.alphabet.size()));
            subject.Handle(situation.alphabet[events.back()]);
            model.Handle(situation.alphabet[events.back()]);
            if (!Compare(model, events))
                break;
        }
    }
}

}
