#pragma once
// On which core the benchmark and the programs that it starts run. Where the scheduler happens to put them decides more
// about a turnaround than the programs do, so that it must not be left to chance.

#include <vector>

#include <sched.h>

namespace tarvin::bench {

class Placement {
public:
    Placement();
    // Back to the cores of the beginning.
    ~Placement();
    Placement(const Placement&) = delete;
    Placement& operator=(const Placement&) = delete;

    // Those that the benchmark may use; at least one.
    const std::vector<int>& Cores() const { return cores; }

    // The benchmark, and each program that it starts from now on. Throws if the system refuses.
    void Use(int core);

private:
    cpu_set_t before;
    std::vector<int> cores;
};

}
