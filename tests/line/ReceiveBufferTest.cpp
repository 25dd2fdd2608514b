#include "line/ReceiveBuffer.h"

#include <algorithm>
#include <string_view>

#include <doctest/doctest.h>

using namespace tarvin;

namespace {

void Arrive(ReceiveBuffer& buffer, std::string_view bytes) {
    std::copy(bytes.begin(), bytes.end(), buffer.Room().begin());
    buffer.Commit(bytes.size());
}

}

TEST_CASE("ReceiveBuffer: a message is its printable bytes up to the terminator") {
    ReceiveBuffer buffer;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\r')
            Arrive(buffer, std::string(1, static_cast<char>(byte)));
    }
    CHECK_FALSE(buffer.TakeMessage('\r', false));
    CHECK(buffer.Count() == 255);
    Arrive(buffer, "\r\n\rnext");
    const auto message = buffer.TakeMessage('\r', true);
    REQUIRE(message);
    CHECK(message->size() == 96);
    CHECK(message->front() == ' ');
    CHECK(message->substr(94) == "~\r");
    // Without printable bytes it is a message all the same; without a terminator it is none.
    CHECK(buffer.TakeMessage('\r', false) == "");
    CHECK_FALSE(buffer.TakeMessage('\r', false));
    CHECK(buffer.TakeMessage('t', false) == "next");
    CHECK(buffer.Count() == 0);
}
