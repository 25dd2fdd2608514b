#include "port/PortMode.h"

#include <string>

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("PortMode: a mode that no port has is refused") {
    const auto mode = ParsePortMode("baud=115200 parity=E data=7 stop=2");
    REQUIRE(mode);
    CHECK(mode->bitsPerSecond == 115200);
    CHECK(mode->parity == PortMode::Parity::Even);
    CHECK(mode->dataBits == 7);
    CHECK(mode->stopBits == PortMode::StopBits::Two);
    for (const std::string bad :
         {"", "baud= parity=N data=8 stop=1", "baud=0 parity=N data=8 stop=1", "baud=-9600 parity=N data=8 stop=1",
          "baud=9600x parity=N data=8 stop=1", "baud=99999999999 parity=N data=8 stop=1",
          "baud=9600 parity= data=8 stop=1", "baud=9600 parity=X data=8 stop=1", "baud=9600 parity=N data=9 stop=1",
          "baud=9600 parity=N data=4 stop=1", "baud=9600 parity=N data=8 stop=3", "baud=9600 parity=N data=8"}) {
        CAPTURE(bad);
        CHECK_FALSE(ParsePortMode(bad));
    }
}
