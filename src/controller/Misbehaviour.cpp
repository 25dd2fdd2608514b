#include "controller/Misbehaviour.h"

#include "controller/ControllerFrame.h"

namespace tarvin::controller {

namespace {

constexpr std::uint8_t xon = 0x11;
constexpr std::uint8_t xoff = 0x13;

// Faults leave flow control alone: a stray XOFF would hold the line forever.
bool StopsTheLine(std::uint8_t byte) {
    return byte == xon || byte == xoff;
}

}

Misbehaviour::Misbehaviour(const MisbehaviourSettings& settings)
    : settings(settings), outgoing(settings.seed), incoming(~settings.seed) {}

Misbehaviour::Fate Misbehaviour::Distort(std::string& frame) {
    if (Happens(outgoing, settings.drop))
        return Fate::Lost;
    const bool isGarbled = Happens(outgoing, settings.garble);
    if (isGarbled)
        Garble(frame);
    if (Happens(outgoing, settings.noise))
        AddNoise(frame);
    return isGarbled ? Fate::Damaged : Fate::AsMeant;
}

void Misbehaviour::Garble(std::string& frame) {
    std::uint8_t damaged = 0;
    std::size_t position = 0;
    do {
        position = Below(outgoing, frame.size());
        damaged = static_cast<std::uint8_t>(static_cast<std::uint8_t>(frame[position]) ^ (1U << Below(outgoing, 8)));
    } while (StopsTheLine(damaged));
    frame[position] = static_cast<char>(damaged);
}

void Misbehaviour::AddNoise(std::string& frame) {
    for (std::size_t count = 1 + Below(outgoing, 4); count > 0; --count) {
        std::uint8_t byte = 0;
        do {
            byte = static_cast<std::uint8_t>(Below(outgoing, 256));
        } while ((byte >= 0x20 && byte <= 0x7E) || byte == frameEnd || StopsTheLine(byte));
        frame.insert(Below(outgoing, frame.size()), 1, static_cast<char>(byte));
    }
}

const std::vector<std::size_t>& Misbehaviour::Cut(std::size_t byteCount) {
    pieceEnds.clear();
    if (settings.splitsMessages) {
        for (std::size_t end = 1; end < byteCount; ++end) {
            if (Happens(outgoing, 300'000))
                pieceEnds.push_back(end);
        }
    }
    pieceEnds.push_back(byteCount);
    return pieceEnds;
}

bool Misbehaviour::DamagesReceived(std::string_view frame) {
    // The controller can ask only for data lines again.
    if (!frame.starts_with(code::downloadData))
        return false;
    nextReceivedIsDropped = Happens(incoming, settings.dropReceived);
    return nextReceivedIsDropped || Happens(incoming, settings.garbleReceived);
}

void Misbehaviour::DamageReceived(std::string& frame) {
    const std::string whole = frame;
    // A lost byte may leave a checksum that is right by chance. A changed bit among the lower six never does.
    for (int attempt = 0; nextReceivedIsDropped && attempt < 8; ++attempt) {
        frame.erase(Below(incoming, frame.size()), 1);
        if (!HasRightChecksum(frame))
            return;
        frame = whole;
    }
    const std::size_t position = Below(incoming, frame.size());
    frame[position] = static_cast<char>(static_cast<std::uint8_t>(frame[position]) ^ (1U << Below(incoming, 6)));
}

}
