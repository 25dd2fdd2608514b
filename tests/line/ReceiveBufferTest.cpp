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
    CHECK(message->text.size() == 96);
    CHECK(message->text.front() == ' ');
    CHECK(message->text.substr(94) == "~\r");
    CHECK(message->bytes.size() == 255);
    // Without printable bytes it is a message all the same; without a terminator it is none.
    CHECK(buffer.TakeMessage('\r', false)->text.empty());
    CHECK_FALSE(buffer.TakeMessage('\r', false));
    CHECK(buffer.TakeMessage('t', false)->text == "next");
    CHECK(buffer.Count() == 0);
}

TEST_CASE("ReceiveBuffer: an error is one of the message that arrived with it, or next after it") {
    struct Case {
        const char* name;
        std::string before;
        std::string with; // arrives in the read that follows the report
        std::string after;
        std::string marks; // of the messages, in order
    };
    const Case cases[] = {
        {"whole message", "", "one\r", "two\r", "x-"},
        {"the end of a message", "on", "e\r", "two\r", "x-"},
        {"the start of a message", "", "o", "ne\rtwo\r", "x-"},
        {"a report before its character", "one\r", "", "two\r", "-x"},
        {"two messages in one read", "", "one\rtwo\r", "three\r", "xx-"},
        {"two messages, one begun before", "o", "ne\rtwo\r", "three\r", "xx-"},
    };
    for (const Case& each : cases) {
        CAPTURE(each.name);
        ReceiveBuffer buffer;
        Arrive(buffer, each.before);
        buffer.NoteErrors(3);
        Arrive(buffer, each.with);
        Arrive(buffer, each.after);
        std::string marks;
        std::uint32_t errorCount = 0;
        while (const auto message = buffer.TakeMessage('\r', false)) {
            marks.push_back(message->hasErrors ? 'x' : '-');
            errorCount += message->errorCount;
        }
        CHECK(marks == each.marks);
        CHECK(errorCount == 3);
    }
}
