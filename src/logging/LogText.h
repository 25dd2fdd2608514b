#pragma once
// The local time and date as the user's locale writes them. Any thread.

#include "base/KelText.h"

namespace tarvin {

struct LocalTimeText {
    KelText time;
    KelText date;
};

LocalTimeText LocalTimeNow();

}
