#include "Placement.h"

#include "harness/SystemCallPosix.h"

namespace tarvin::bench {

Placement::Placement() {
    test::RequireCall(::sched_getaffinity(0, sizeof before, &before) == 0, "cores of the benchmark");
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
    test::RequireCall(::sched_setaffinity(0, sizeof one, &one) == 0, "placement on a core");
}

}
