#include "messages/MessageQueue.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace tarvin {

void MessageQueue::Add(MessageBoxText box, KelText time) {
    const auto same =
        std::ranges::find_if(boxes, [&](const CountedBox& counted) { return counted.box.LooksLike(box); });
    if (same == boxes.end()) {
        boxes.push_back({std::move(box), 1, std::move(time)});
        return;
    }
    ++same->count;
    same->lastTime = std::move(time);
}

void MessageQueue::EndPresent() {
    assert(!boxes.empty());
    boxes.pop_front();
}

void MessageQueue::EndOutage() {
    std::erase_if(boxes, [](const CountedBox& counted) { return counted.box.endsWithOutage; });
}

}
