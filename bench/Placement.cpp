#include "Placement.h"

#include <cerrno>
#include <system_error>

namespace tarvin::bench {

namespace {

[[noreturn]] void Throw() {
    throw std::system_error(errno, std::generic_category(), "placement on a core");
}

}

Placement::Placement() {
    if (::sched_getaffinity(0, sizeof before, &before) != 0)
        Throw();
    for (int core = 0; core < CPU_SETSIZE; ++core) {
        if (CPU_ISSET(static_cast<std::size_t>(core), &before))
            cores.push_back(core);
    }
}

Placement::~Placement() {
    (void)::sched_setaffinity(0, sizeof before, &before);
}

void Placement::Use(int core) {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<std::size_t>(core), &one);
    if (::sched_setaffinity(0, sizeof one, &one) != 0)
        Throw();
}

}
