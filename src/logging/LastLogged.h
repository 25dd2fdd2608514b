#pragma once
// The text of the line written last, to either log. Comms log and activity log share it on purpose: what the one has
// just said the other need not repeat. Knows nothing of either. One thread at a time.

#include "base/KelText.h"

#include <string>
#include <string_view>

namespace tarvin {

struct LastLogged {
    std::string text; // UTF-8

    bool Is(std::string_view other) const { return text == other; }
};

}
