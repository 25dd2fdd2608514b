#pragma once
// The line between the campaign's controller and the program: a pseudo-terminal whose messages are damaged here and
// there, in both directions, as a seed decides. Keeps all traffic of a transfer. Failed system calls throw. One thread.

#include "campaign/Damage.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::campaign {

enum class Direction { ToProgram, ToController };

// One message in the traffic of a transfer.
struct LineEvent {
    // Sent: as the sender meant it. Arrived: as the receiver cuts it out of its bytes, at the carriage return.
    enum class Kind { Sent, Arrived };
    Kind kind = Kind::Sent;
    Direction direction = Direction::ToProgram;
    std::chrono::microseconds time = {}; // since the start of the transfer
    std::string bytes;                   // without the carriage return
    bool isDamaged = false;              // an arrival: its bytes or its end differ from the ones sent
    std::string damage;                  // to a message sent, in words; empty without damage
};

class BadLine {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    struct Plan {
        std::uint32_t seed = 1;
        std::uint32_t transfer = 0; // with the seed, decides which messages are damaged, and how
        // Of 1000 messages of a direction, so many are damaged on average.
        unsigned damageToProgram = 0;
        unsigned damageToController = 0;
        std::vector<DamageKind> kinds = OrdinaryKinds();
        bool forgesFirstDataLine = false;
    };

    // `descriptor` is the controller's end of a pseudo-terminal and stays open as long as it is used.
    explicit BadLine(int descriptor) : descriptor(descriptor) {}

    // Goes on with a new pseudo-terminal. Messages on their way on the old one are dropped.
    void Reconnect(int newDescriptor);

    // Forgets the traffic so far and damages messages from now on.
    void Begin(const Plan& newPlan);
    // From now on the line is good. The traffic stays.
    void EndDamage();

    // Sends the message and its carriage return.
    void Send(std::string_view message);
    // The next message of the program, without its carriage return, or none until `deadline`.
    std::optional<std::string> Receive(TimePoint deadline);
    // Reads until nothing has come for `quiet` and drops all of it, as a controller clears its buffer.
    void ClearReceived(std::chrono::milliseconds quiet);

    const std::vector<LineEvent>& Traffic() const { return traffic; }
    // Messages that the plan has damaged so far, delays and losses included.
    int DamageCount() const { return damageCount; }

private:
    struct Frame {
        TimePoint due;
        std::string bytes;
        bool isDamaged = false;
    };
    struct Way {
        Direction direction = Direction::ToProgram;
        std::deque<Frame> frames; // on their way, in order
        std::string partial;      // bytes of the message that has begun to arrive
        bool isPartialDamaged = false;
        std::optional<Random> random;
    };

    void Put(Way& way, std::string_view frame);
    std::optional<DamageKind> ChooseDamage(Way& way, std::string_view frame);
    bool Deliver(Way& way);
    void Arrive(Way& way, const Frame& frame);
    bool ReadProgram();
    bool Pump(TimePoint deadline);
    std::chrono::microseconds Elapsed() const;

    int descriptor;
    Plan plan;
    TimePoint start = std::chrono::steady_clock::now();
    Way toProgram = {Direction::ToProgram, {}, {}, false, {}};
    Way toController = {Direction::ToController, {}, {}, false, {}};
    std::string fromProgram;          // bytes of a frame that the program has not ended
    std::deque<std::string> received; // whole messages for the controller
    std::vector<LineEvent> traffic;
    int damageCount = 0;
    bool isDamaging = false;
    bool hasForged = false;
};

}
