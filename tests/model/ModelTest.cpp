#include "model/Exploration.h"
#include "model/Situations.h"

#include <algorithm>
#include <cstdlib>

#include <doctest/doctest.h>

using namespace tarvin::test;

namespace {

constexpr std::uint32_t seed = 20260713;

// The whole exploration is to depth 6, with all sequences of 4 events. It takes some minutes, so it is asked for.
int Setting(const char* variable, int usual) {
    const char* const text = std::getenv(variable);
    return text != nullptr ? std::atoi(text) : usual;
}

}

TEST_CASE("TarvinApp: the conversation is that of its model, whatever comes in whatever state") {
    const int depth = Setting("TARVIN_MODEL_DEPTH", TARVIN_MODEL_USUAL_DEPTH);
    const int unmergedDepth = Setting("TARVIN_MODEL_UNMERGED_DEPTH", 2);
    const int sampleCount = Setting("TARVIN_MODEL_SAMPLES", 100 * TARVIN_MODEL_USUAL_DEPTH);
    for (const Situation& situation : Situations()) {
        CAPTURE(situation.name);
        Exploration exploration(situation);
        exploration.ExploreStates(std::min(depth, situation.deepest));
        exploration.ExploreSequences(unmergedDepth);
        exploration.Sample(seed, sampleCount, 12);
        MESSAGE(situation.name << ": " << situation.alphabet.size() << " events, " << exploration.StateCount()
                               << " states, " << exploration.ComparedCount() << " comparisons");
        CHECK(exploration.ComparedCount() > situation.alphabet.size());
        for (const std::string& difference : exploration.Differences())
            FAIL_CHECK(difference);
    }
}
