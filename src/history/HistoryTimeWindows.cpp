#include "history/HistoryTime.h"

namespace tarvin {

std::tm LocalTimeOf(std::time_t time) {
    // Here each thread has a result of its own.
    const std::tm* local = std::localtime(&time);
    return local != nullptr ? *local : std::tm();
}

}
