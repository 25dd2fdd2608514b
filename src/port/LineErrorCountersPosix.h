#pragma once
// The errors that a driver counts in received characters. One thread uses it.

#include "port/SerialPort.h"

namespace tarvin {

class LineErrorCounters {
public:
    // Starts with the present counts of the open device. Errors of earlier users of the port do not count.
    void Start(int device);
    // The errors since the last call, or since Start. None where the driver counts none.
    LineErrors TakeNew(int device);

private:
    bool hasCounters = false;
    LineErrors known;
};

}
