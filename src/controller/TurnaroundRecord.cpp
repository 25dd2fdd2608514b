#include "controller/TurnaroundRecord.h"

#include <algorithm>

namespace tarvin::controller {

TurnaroundRecord::Summary TurnaroundRecord::Summarize() const {
    if (times.empty())
        return {};
    std::vector<Clock::Duration> sorted = times;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t count = sorted.size();
    return {count, sorted[(count - 1) / 2], sorted[(count * 99 + 99) / 100 - 1], sorted.back()};
}

}
