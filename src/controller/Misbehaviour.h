#pragma once
// The faults of a controller and its line, chosen by a seed. The same seed gives the same faults on every system. One
// thread at a time.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller {

// All chances are parts in a million.
struct MisbehaviourSettings {
    std::uint64_t seed = 1;
    std::uint32_t garble = 0;
    std::uint32_t drop = 0;
    std::uint32_t noise = 0;
    std::uint32_t garbleReceived = 0;
    std::uint32_t dropReceived = 0;
    bool splitsMessages = false;
};

class Misbehaviour {
public:
    explicit Misbehaviour(const MisbehaviourSettings& settings);

    enum class Fate { AsMeant, Damaged, Lost };

    // Decides the fate of a message before it is sent, and changes its frame accordingly. A message with noise only
    // counts as meant, because the program has to ignore noise.
    Fate Distort(std::string& frame);
    // The ends of the pieces into which `byteCount` bytes are cut, in rising order. The last one is `byteCount`. Valid
    // until the next call.
    const std::vector<std::size_t>& Cut(std::size_t byteCount);

    // True if this received frame, without its carriage return, has to be damaged. Then DamageReceived follows.
    bool DamagesReceived(std::string_view frame);
    // Damages the frame so that its checksum is wrong.
    void DamageReceived(std::string& frame);

private:
    // Two sources, so that faults of sent messages do not depend on the number of received ones.
    using Source = std::mt19937_64;
    static bool Happens(Source& source, std::uint32_t chance) { return chance != 0 && source() % 1'000'000 < chance; }
    static std::size_t Below(Source& source, std::size_t limit) { return static_cast<std::size_t>(source() % limit); }
    void Garble(std::string& frame);
    void AddNoise(std::string& frame);

    const MisbehaviourSettings settings;
    Source outgoing;
    Source incoming;
    bool nextReceivedIsDropped = false;
    std::vector<std::size_t> pieceEnds;
};

}
