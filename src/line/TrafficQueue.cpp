#include "line/TrafficQueue.h"

#include "base/Messages.h"

#include <utility>

namespace tarvin {

void TrafficQueue::SetWanted(bool isWanted) {
    const MutexLock lock(mutex);
    wanted = isWanted;
    lines.clear();
    lostCount = 0;
}

bool TrafficQueue::Push(TrafficLine line) {
    const MutexLock lock(mutex);
    if (!IsWanted())
        return false;
    if (lines.size() >= capacity) {
        ++lostCount;
        return false;
    }
    lines.push_back(std::move(line));
    return lines.size() == 1;
}

std::vector<TrafficLine> TrafficQueue::Take() {
    const MutexLock lock(mutex);
    std::vector<TrafficLine> taken = std::exchange(lines, {});
    // Lines are lost only while the queue is full, so there is a last one, whose time is nearest to that of the loss.
    if (lostCount > 0)
        taken.push_back({TrafficLine::Kind::Note,
                         ToUtf8(Filled(text::trace::linesNotShown, {ToText(static_cast<std::int64_t>(lostCount))})),
                         false, taken.back().time});
    lostCount = 0;
    return taken;
}

}
