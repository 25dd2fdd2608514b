#include "base/wThread.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::chrono_literals;

namespace {

class Poller : public wThread {
public:
    Poller() { Start(); }
    ~Poller() override {
        Stop();
        Wait();
    }

private:
    int Body() override {
        while (!StopRequested())
            std::this_thread::sleep_for(1ms);
        return 0;
    }
};

}

TEST_CASE("wThread: WaitFor tells a running body from one that has returned") {
    Poller first;
    Poller second;
    CHECK(first.Identifier() != second.Identifier());
    CHECK_FALSE(first.WaitFor(5ms));
    first.Stop();
    CHECK(first.WaitFor(10s));
    CHECK_FALSE(second.WaitFor(0ms));
}
