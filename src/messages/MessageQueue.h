#pragma once
// The boxes that wait for their user. One is open at a time, and equal ones are counted instead of shown one after the
// other. One thread at a time.

#include "messages/MessageReport.h"

#include <deque>

namespace tarvin {

// A box, and how often it came.
struct CountedBox {
    MessageBoxText box;
    int count = 1;
    KelText lastTime; // as users read it
};

class MessageQueue {
public:
    // Takes a box that came at `time`. If one that looks like it is open or waits, that one counts it.
    void Add(MessageBoxText box, KelText time);
    // The box that is open or has to be opened. Null without one; valid until the next call that is not const.
    const CountedBox* Present() const { return boxes.empty() ? nullptr : &boxes.front(); }
    // The present box was closed. Requires one.
    void EndPresent();
    // The outage is over: drops the boxes about it.
    void EndOutage();

private:
    std::deque<CountedBox> boxes;
};

}
