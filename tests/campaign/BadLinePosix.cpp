#include "campaign/BadLine.h"
#include "campaign/CampaignFrame.h"
#include "harness/SystemCallPosix.h"

#include <algorithm>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace tarvin::campaign {

using std::chrono::steady_clock;
using test::RequireCall;

namespace {

std::string DescribeDamage(DamageKind kind, const DamagedFrame& damaged) {
    std::string text(NameOf(kind));
    if (kind == DamageKind::Delay)
        return text + " by " + std::to_string(damaged.delay.count()) + " ms";
    return damaged.bytes.empty() ? text : text + ": " + Readable(damaged.bytes);
}

}

void BadLine::Reconnect(int newDescriptor) {
    descriptor = newDescriptor;
    fromProgram.clear();
    received.clear();
    for (Way* way : {&toProgram, &toController}) {
        way->frames.clear();
        way->partial.clear();
        way->isPartialDamaged = false;
    }
}

void BadLine::Begin(const Plan& newPlan) {
    plan = newPlan;
    start = steady_clock::now();
    traffic.clear();
    damageCount = 0;
    isDamaging = true;
    hasForged = false;
    // Each direction has numbers of its own: the damage of one does not depend on the timing of the other.
    toProgram.random.emplace(std::initializer_list<std::uint32_t>{plan.seed, plan.transfer, 1});
    toController.random.emplace(std::initializer_list<std::uint32_t>{plan.seed, plan.transfer, 2});
}

void BadLine::EndDamage() {
    isDamaging = false;
}

std::chrono::microseconds BadLine::Elapsed() const {
    return std::chrono::duration_cast<std::chrono::microseconds>(steady_clock::now() - start);
}

std::optional<DamageKind> BadLine::ChooseDamage(Way& way, std::string_view frame) {
    if (!isDamaging)
        return {};
    if (plan.forgesFirstDataLine && !hasForged &&
        (frame.starts_with(code::uploadData) || frame.starts_with(code::downloadData))) {
        hasForged = true;
        return DamageKind::Forge;
    }
    const unsigned rate = way.direction == Direction::ToProgram ? plan.damageToProgram : plan.damageToController;
    if (way.random->Below(1000) >= rate)
        return {};
    return way.random->OneOf(plan.kinds);
}

void BadLine::Put(Way& way, std::string_view frame) {
    LineEvent event = {
        LineEvent::Kind::Sent, way.direction, Elapsed(), std::string(frame.substr(0, frame.size() - 1)), false, {}};
    DamagedFrame damaged = {std::string(frame)};
    if (const auto kind = ChooseDamage(way, frame)) {
        damaged = ApplyDamage(*kind, frame, *way.random);
        event.isDamaged = damaged.bytes != frame || damaged.delay.count() > 0;
        if (event.isDamaged) {
            ++damageCount;
            event.damage = DescribeDamage(*kind, damaged);
        }
    }
    // A line keeps the order of its bytes: what follows a delayed message waits behind it.
    TimePoint due = steady_clock::now() + damaged.delay;
    if (!way.frames.empty())
        due = std::max(due, way.frames.back().due);
    way.frames.push_back({due, damaged.bytes, damaged.bytes != frame});
    traffic.push_back(std::move(event));
}

// Keeps what the receiver sees: each carriage return ends a message, whatever the sender meant.
void BadLine::Arrive(Way& way, const Frame& frame) {
    // A lost message leaves no trace in the next one.
    way.isPartialDamaged = way.isPartialDamaged || (frame.isDamaged && !frame.bytes.empty());
    for (const char byte : frame.bytes) {
        if (byte != frameEnd) {
            way.partial += byte;
            continue;
        }
        if (!way.partial.empty()) {
            traffic.push_back(
                {LineEvent::Kind::Arrived, way.direction, Elapsed(), way.partial, way.isPartialDamaged, {}});
            if (way.direction == Direction::ToController)
                received.push_back(way.partial);
        }
        way.partial.clear();
        way.isPartialDamaged = frame.isDamaged;
    }
    if (way.partial.empty())
        way.isPartialDamaged = false;
}

// Hands over the frames that are due. True if there was one.
bool BadLine::Deliver(Way& way) {
    bool hasDelivered = false;
    while (!way.frames.empty() && way.frames.front().due <= steady_clock::now()) {
        const Frame frame = std::move(way.frames.front());
        way.frames.pop_front();
        if (way.direction == Direction::ToProgram && !frame.bytes.empty()) {
            RequireCall(::write(descriptor, frame.bytes.data(), frame.bytes.size()) ==
                            static_cast<ssize_t>(frame.bytes.size()),
                        "write to the line");
        }
        Arrive(way, frame);
        hasDelivered = true;
    }
    return hasDelivered;
}

// True if something was read. Requires that poll() has announced it.
bool BadLine::ReadProgram() {
    char chunk[4096];
    const ssize_t count = ::read(descriptor, chunk, sizeof chunk);
    // A hang-up looks like this until the program has opened its port again.
    if (count <= 0)
        return false;
    fromProgram.append(chunk, static_cast<std::size_t>(count));
    for (std::size_t end = 0; (end = fromProgram.find(frameEnd)) != std::string::npos;) {
        // An empty frame has no byte that a damage could touch.
        if (end > 0)
            Put(toController, std::string_view(fromProgram).substr(0, end + 1));
        fromProgram.erase(0, end + 1);
    }
    return true;
}

// Waits until bytes come, a frame is due or `deadline` has passed, and moves what can be moved. True if anything has
// moved towards the controller.
bool BadLine::Pump(TimePoint deadline) {
    Deliver(toProgram);
    if (Deliver(toController))
        return true;
    for (const Way* way : {&toProgram, &toController}) {
        if (!way->frames.empty())
            deadline = std::min(deadline, way->frames.front().due);
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now()).count();
    pollfd end = {descriptor, POLLIN, 0};
    if (::poll(&end, 1, static_cast<int>(std::max<std::int64_t>(left, 0))) > 0 && !ReadProgram())
        ::poll(nullptr, 0, 1);
    Deliver(toProgram);
    return Deliver(toController);
}

void BadLine::Send(std::string_view message) {
    Put(toProgram, std::string(message) + frameEnd);
    Deliver(toProgram);
}

std::optional<std::string> BadLine::Receive(TimePoint deadline) {
    while (received.empty() && steady_clock::now() < deadline)
        Pump(deadline);
    if (received.empty())
        return {};
    std::string message = std::move(received.front());
    received.pop_front();
    return message;
}

void BadLine::ClearReceived(std::chrono::milliseconds quiet) {
    TimePoint quietUntil = steady_clock::now() + quiet;
    while (steady_clock::now() < quietUntil) {
        if (Pump(quietUntil))
            quietUntil = steady_clock::now() + quiet;
    }
    received.clear();
    toController.partial.clear();
    toController.isPartialDamaged = false;
}

}
