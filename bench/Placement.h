#pragma once
// Chooses the core for the benchmark and the programs that it starts. The choice changes a turnaround more than the
// programs do, so it is not left to the scheduler.

#include <vector>

#include <sched.h>

namespace tarvin::bench {

class Placement {
public:
    Placement();
    // Restores the cores that were allowed before.
    ~Placement();
    Placement(const Placement&) = delete;
    Placement& operator=(const Placement&) = delete;

    // The cores that the benchmark may use: at least one.
    const std::vector<int>& Cores() const { return cores; }

    // Moves the benchmark, and each program that it starts from now on, to one core. Throws if the system refuses.
    void Use(int core);

private:
    cpu_set_t before;
    std::vector<int> cores;
};

}
