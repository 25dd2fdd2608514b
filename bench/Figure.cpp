#include "Figure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarvin::bench {

std::string Figure::Text() const {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f%s%s", decimals, value, *unit == '\0' ? "" : " ", unit);
    return text;
}

Figure Microseconds(Nanoseconds time) {
    return {static_cast<double>(time.count()) / 1e3, "us", 1};
}

Figure Milliseconds(Nanoseconds time) {
    return {static_cast<double>(time.count()) / 1e6, "ms", 1};
}

Figure Mebibytes(std::size_t byteCount) {
    return {static_cast<double>(byteCount) / (1024 * 1024), "MiB", 1};
}

Nanoseconds Quantile(std::vector<Nanoseconds>& samples, double share) {
    std::sort(samples.begin(), samples.end());
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(samples.size())));
    return samples.at(std::clamp<std::size_t>(rank, 1, samples.size()) - 1);
}

}
