#pragma once
// Numbers that depend on their seed alone, on every system: the distributions of the standard library differ.

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>

namespace tarvin::campaign {

class Random {
public:
    explicit Random(std::initializer_list<std::uint32_t> seeds) {
        std::seed_seq sequence(seeds);
        engine.seed(sequence);
    }

    // 0 to `limit` - 1. Requires limit > 0.
    std::size_t Below(std::size_t limit) {
        assert(limit > 0);
        return static_cast<std::size_t>(engine() % limit);
    }
    template <class Choices>
    const auto& OneOf(const Choices& choices) {
        return choices[Below(std::size(choices))];
    }

private:
    std::mt19937_64 engine;
};

}
