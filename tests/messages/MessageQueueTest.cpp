#include "messages/MessageQueue.h"

#include "messages/MessageAdvice.h"

#include <doctest/doctest.h>

namespace tarvin::test {

TEST_CASE("MessageQueue: equal boxes are counted where one is open or waits, with the last time") {
    MessageQueue queue;
    const MessageBoxText log = {u"Unable to write", u"Problem"};
    const MessageBoxText outage = {u"COM1", u"Read Data"};
    queue.Add(outage, u"1");
    for (const char16_t* time : {u"2", u"3", u"4"})
        queue.Add(log, time);
    queue.Add(outage, u"5");
    CHECK(queue.Present()->count == 2);
    CHECK(queue.Present()->lastTime == u"5");
    queue.EndPresent();
    REQUIRE(queue.Present() != nullptr);
    CHECK(queue.Present()->box.LooksLike(log));
    CHECK(queue.Present()->count == 3);
    CHECK(queue.Present()->lastTime == u"4");
    queue.EndPresent();
    CHECK(queue.Present() == nullptr);
    // After the user has closed it, it is new again.
    queue.Add(log, u"6");
    CHECK(queue.Present()->count == 1);
}

TEST_CASE("MessageQueue: the end of an outage takes its boxes away, those that wait too") {
    MessageQueue queue;
    MessageBoxText outage = {u"COM1", u"Read Data"};
    outage.endsWithOutage = true;
    MessageBoxText refused = {u"COM1", u"Set Comm State"};
    refused.endsWithOutage = true;
    queue.Add(outage, u"1");
    queue.Add({u"text", u"Problem"}, u"2");
    queue.Add(refused, u"3");
    queue.EndOutage();
    REQUIRE(queue.Present() != nullptr);
    CHECK(queue.Present()->box.caption == u"Problem");
    queue.EndPresent();
    CHECK(queue.Present() == nullptr);
}

TEST_CASE("MessageAdvice: a question has no number by which it could be suppressed") {
    const MessageBoxText told = WithAdvice(MessageKind::LogNotWritten, {u"text", u"Problem", okOnly});
    CHECK(told.dontShowAgainId == 301);
    CHECK(told.text == u"text");
    CHECK_FALSE(told.headline.empty());
    CHECK_FALSE(WithAdvice(MessageKind::LogNotWritten, {u"text", u"Problem", yesNo}).dontShowAgainId);
}

}
