#include "publish/PublishedStatus.h"

#include "publish/Json.h"
#include "publish/PublishedExample.h"
#include "publish/StatusFile.h"

#include <random>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

namespace {

std::string Replaced(std::string text, const std::string& part, const std::string& other) {
    const auto place = text.find(part);
    REQUIRE_MESSAGE(place != std::string::npos, part);
    return text.replace(place, part.size(), other);
}

}

TEST_CASE("PublishedStatus: a reader gets what was written, whatever the names hold") {
    const PublishedStatus status = PublishedExample();
    const std::string document = ToJson(status, present);
    const auto read = FromJson(document, present);
    REQUIRE(read);
    CHECK(read->machine == status.machine);
    CHECK(read->installation == status.installation);
    CHECK(read->program == status.program);
    CHECK(read->snapshot.progress == status.snapshot.progress);
    CHECK(read->snapshot.heldSince == status.snapshot.heldSince);
    CHECK(*read->snapshot.recent == *status.snapshot.recent);
    CHECK(ToJson(*read, present) == document);
    // A later reader of the same file sees that more time has passed.
    const Present later = {present.steady + std::chrono::hours(7), present.system + std::chrono::seconds(10)};
    CHECK(later.steady - *FromJson(document, later)->snapshot.heldSince == std::chrono::seconds(100));
}

TEST_CASE("PublishedStatus: more transfers than a file holds cost the oldest, not the file") {
    PublishedStatus status = PublishedExample();
    TransferRecord record = status.snapshot.recent->front();
    record.reason = record.path = record.number = KelText(5000, u'\x01');
    TransferRecords records(90, record);
    records.back().number = u"the last";
    status.snapshot.recent = std::make_shared<const TransferRecords>(records);
    status.snapshot.statusLine = KelText(100'000, u'\xD800');
    const std::string document = ToJson(status, present);
    CHECK(document.size() <= longestStatusFile);
    const auto read = FromJson(document, present);
    REQUIRE(read);
    REQUIRE_FALSE(read->snapshot.recent->empty());
    CHECK(read->snapshot.recent->back().number == u"the last");
    CHECK(read->snapshot.statusLine.size() == 4096);
}

TEST_CASE("PublishedStatus: a document that is cut, damaged or hostile is refused or harmless") {
    const std::string document = ToJson(PublishedExample(), present);
    // Only the line end at the end may be missing.
    for (std::size_t length = 0; length + 1 < document.size(); ++length)
        CHECK_FALSE(FromJson(document.substr(0, length), present));
    std::mt19937 random(4711);
    int accepted = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string damaged = document;
        for (auto count = 1 + random() % 3; count > 0; --count)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        if (const auto read = FromJson(damaged, present)) {
            ++accepted;
            CHECK(FromJson(ToJson(*read, present), present));
        }
    }
    // A changed letter of a name makes no harm.
    CHECK(accepted > 0);
    CHECK(accepted < 20'000);

    struct Change {
        const char* part;
        const char* other;
    };
    const Change changes[] = {
        {"\"version\":1", "\"version\":2"},
        {"\"version\":1", "\"version\":\"1\""},
        {"TarvinDL status", "something else"},
        {"\"state\":12", "\"state\":-1"},
        {"\"state\":12", "\"state\":1e99"},
        {"\"state\":12", "\"state\":99999999999"},
        {"\"bytes\":63", "\"bytes\":-63"},
        {"\"bytes_total\":100", "\"bytes_total\":9223372036854775807"},
        {"\"is_open\":true", "\"is_open\":\"yes\""},
        {"\"is_open\":true", "\"open\":true"},
        {"\"direction\":\"to machine\"", "\"direction\":\"sideways\""},
        {"\"kind\":\"service\"", "\"kind\":7"},
        {"\"lines_per_second\":12.5", "\"lines_per_second\":-1"},
        {"\"machine\":", "\"machine\":\"twice\",\"machine\":"},
        {"\"held_since\":\"2", "\"held_since\":\"9"},
        {"\"transfer\":{", "\"transfer\":7,\"other\":{"},
        {"\"recent\":[", "\"recent\":[7,"},
    };
    for (const Change& change : changes)
        CHECK_FALSE_MESSAGE(FromJson(Replaced(document, change.part, change.other), present), change.other);
    // A member of a later release, and a number without a fraction for one with it.
    CHECK(FromJson(Replaced(document, "\"state\":12", "\"new\":[{}],\"state\":12"), present));
    CHECK(FromJson(Replaced(document, "\"lines_per_second\":12.5", "\"lines_per_second\":12"), present));
}

TEST_CASE("ReadJson: what is no JSON, nested too deep or too much") {
    const std::string deep(200'000, '[');
    const std::string texts[] = {"",
                                 " ",
                                 "{",
                                 "[1,]",
                                 "[1 2]",
                                 "{\"a\"}",
                                 "{\"a\":}",
                                 "{a:1}",
                                 "01",
                                 "+1",
                                 "1.",
                                 "-",
                                 "1e",
                                 ".5",
                                 "1e999",
                                 "NaN",
                                 "\"\n\"",
                                 "\"\\x\"",
                                 "\"\\u12\"",
                                 "\"\\u 123\"",
                                 "\"\\u-123\"",
                                 "\"",
                                 "[1]]",
                                 "nul",
                                 "\"\xFF\"",
                                 "\xEF\xBB\xBF{}",
                                 deep,
                                 "[[[[[[[[[1]]]]]]]]]",
                                 "{\"a\":1,\"a\":2}",
                                 "[" +
                                     std::string(50'000, ' ')
                                         .replace(0, 49'998,
                                                  [] {
                                                      std::string zeros;
                                                      while (zeros.size() < 49'998)
                                                          zeros += "0,";
                                                      return zeros;
                                                  }()) +
                                     "0]"};
    for (const std::string& text : texts)
        CHECK_FALSE_MESSAGE(ReadJson(text), text.substr(0, 40));
    CHECK(std::get<KelText>(ReadJson(" \"\\u00e9\\n\\ud83d\\ude00\xC3\xA9\" ")->content) ==
          u"\u00E9\n\xD83D\xDE00\u00E9");
    CHECK(std::get<std::int64_t>(ReadJson("-9223372036854775808")->content) ==
          std::numeric_limits<std::int64_t>::min());
    CHECK(std::get<double>(ReadJson("-2.5e1")->content) == -25.0);
    CHECK(ReadJson("[[[[[[[[]]]]]]]]"));
}
