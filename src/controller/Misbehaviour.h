#pragma once
// The ways in which a controller and its line can go wrong, drawn from a seed: the same seed gives the same faults on
// every system. Knows nothing of lines and of time. One thread at a time.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller {

// Chances are parts in a million.
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
    explicit Misbehaviour(const MisbehaviourSettings& chosenSettings);

    enum class Fate { AsMeant, Damaged, Lost };

    // Decides what becomes of a message that is to be sent, and changes the bytes of its frame to that. Noise alone
    // leaves the message as meant: the program has to ignore it.
    Fate Distort(std::string& frame);
    // Where to cut `byteCount` bytes into pieces: ends of pieces, rising, the last one is `byteCount`. Valid until the
    // next call.
    const std::vector<std::size_t>& Cut(std::size_t byteCount);

    // True if the frame, without its carriage return, is to be taken as damaged on its way in.
    bool DamagesReceived(std::string_view frame);
    // Damages such a frame so that its checksum shows it.
    void DamageReceived(std::string& frame);

private:
    // Two sources, so that what goes wrong on the way out does not depend on how much has come in.
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
