#include "history/HistoryRows.h"
#include "history/HistoryTime.h"

#include <cstdlib>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

TEST_CASE("HistoryTime: exports carry the offset of their moment, days begin at local midnight") {
    struct Case {
        const char* zone;
        std::int64_t milliseconds;
        const char* iso;
    };
    const Case cases[] = {
        {"UTC0", 1'700'000'000'007, "2023-11-14T22:13:20.007+00:00"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", 1'700'000'000'000, "2023-11-14T23:13:20.000+01:00"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", 1'690'000'000'999, "2023-07-22T06:26:40.999+02:00"},
        {"NST3:30", 1'700'000'000'000, "2023-11-14T18:43:20.000-03:30"},
        {"NPT-5:45", 0, "1970-01-01T05:45:00.000+05:45"},
    };
    const char* const before = std::getenv("TZ");
    const std::string kept = before != nullptr ? before : "";
    for (const Case& each : cases) {
        ::setenv("TZ", each.zone, 1);
        ::tzset();
        CHECK(ToIsoText(TimeAt(each.milliseconds)) == each.iso);
    }
    ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    ::tzset();
    // This day has 23 hours.
    CHECK(*StartOfDay(u"2026-03-29", 1) - *StartOfDay(u"2026-03-29") == std::chrono::hours(23));
    CHECK(StartOfDayBefore(*StartOfDay(u"2026-03-29", 1), 1) == *StartOfDay(u"2026-03-29"));
    if (before != nullptr)
        ::setenv("TZ", kept.c_str(), 1);
    else
        ::unsetenv("TZ");
    ::tzset();
}
