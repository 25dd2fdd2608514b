#pragma once
// The damage that a bad line does to one message. Any thread.

#include "campaign/Random.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::campaign {

// Lose: the whole message vanishes. Forge: a data line changes and its checksum with it, which no receiver can notice.
// Forge is for checks of the judge and never chosen by chance.
enum class DamageKind { Flip, Drop, Double, Swap, Insert, Delay, Lose, Forge };

// The kinds that happen by chance.
const std::vector<DamageKind>& OrdinaryKinds();
std::string_view NameOf(DamageKind kind);

struct DamagedFrame {
    std::string bytes;
    std::chrono::milliseconds delay = {};
};

// The frame, which ends with its carriage return, after the damage. It may come out unchanged, for example if all bytes
// are equal and two of them are swapped.
DamagedFrame ApplyDamage(DamageKind kind, std::string_view frame, Random& random);

}
