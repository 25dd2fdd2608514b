#include "history/HistoryTime.h"

#include <time.h>

namespace tarvin {

std::tm LocalTimeOf(std::time_t time) {
    std::tm local = {};
    ::localtime_r(&time, &local);
    return local;
}

}
