#include "campaign/Damage.h"

#include "campaign/CampaignFrame.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace tarvin::campaign {

namespace {

// Longer than the controller waits for an answer, now and then.
constexpr std::size_t shortestDelay = 20;
constexpr std::size_t longestDelay = 400;

// The last character of the text before the checksum becomes another one.
void Forge(std::string& bytes) {
    assert(bytes.size() > 2);
    char& last = bytes[bytes.size() - 3];
    last = last == '0' ? '1' : '0';
    bytes[bytes.size() - 2] = ChecksumOf(std::string_view(bytes).substr(0, bytes.size() - 2));
}

}

const std::vector<DamageKind>& OrdinaryKinds() {
    static const std::vector<DamageKind> kinds = {DamageKind::Flip, DamageKind::Drop,   DamageKind::Double,
                                                  DamageKind::Swap, DamageKind::Insert, DamageKind::Delay,
                                                  DamageKind::Lose};
    return kinds;
}

std::string_view NameOf(DamageKind kind) {
    switch (kind) {
    case DamageKind::Flip:
        return "flip";
    case DamageKind::Drop:
        return "drop";
    case DamageKind::Double:
        return "double";
    case DamageKind::Swap:
        return "swap";
    case DamageKind::Insert:
        return "insert";
    case DamageKind::Delay:
        return "delay";
    case DamageKind::Lose:
        return "lose";
    case DamageKind::Forge:
        return "forge";
    }
    return {};
}

DamagedFrame ApplyDamage(DamageKind kind, std::string_view frame, Random& random) {
    assert(frame.size() >= 2);
    DamagedFrame damaged = {std::string(frame)};
    std::string& bytes = damaged.bytes;
    const std::size_t place = random.Below(bytes.size());
    switch (kind) {
    case DamageKind::Flip:
        bytes[place] = static_cast<char>(bytes[place] ^ (1 << random.Below(8)));
        break;
    case DamageKind::Drop:
        bytes.erase(place, 1);
        break;
    case DamageKind::Double:
        bytes.insert(place, 1, bytes[place]);
        break;
    case DamageKind::Swap:
        std::swap(bytes[place], bytes[place == 0 ? 1 : place - 1]);
        break;
    case DamageKind::Insert:
        bytes.insert(place, 1, static_cast<char>(random.Below(256)));
        break;
    case DamageKind::Delay:
        damaged.delay = std::chrono::milliseconds(shortestDelay + random.Below(longestDelay - shortestDelay));
        break;
    case DamageKind::Lose:
        bytes.clear();
        break;
    case DamageKind::Forge:
        Forge(bytes);
        break;
    }
    return damaged;
}

}
