#include "history/HistoryTime.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace tarvin {

namespace {

using namespace std::chrono;

// The whole second before the time, also before 1970.
std::time_t SecondOf(TransferRecord::Time time) {
    return static_cast<std::time_t>(floor<seconds>(time).time_since_epoch().count());
}

std::string Formatted(const std::tm& local, const char* format) {
    char text[40] = "";
    std::strftime(text, sizeof text, format, &local);
    return text;
}

// The difference between the local time and UTC. The fields of the local time, taken as UTC, are off by just that.
minutes OffsetOf(const std::tm& local, std::time_t second) {
    const sys_days day = year_month_day(year(local.tm_year + 1900), month(static_cast<unsigned>(local.tm_mon + 1)),
                                        std::chrono::day(static_cast<unsigned>(local.tm_mday)));
    const auto asUtc = day.time_since_epoch() + hours(local.tm_hour) + minutes(local.tm_min) + seconds(local.tm_sec);
    return duration_cast<minutes>(asUtc - seconds(second));
}

TransferRecord::Time StartOf(std::tm day) {
    day.tm_hour = day.tm_min = day.tm_sec = 0;
    // The system knows whether it is summer there.
    day.tm_isdst = -1;
    return system_clock::from_time_t(std::mktime(&day));
}

}

std::string ToIsoText(TransferRecord::Time time) {
    const std::time_t second = SecondOf(time);
    const std::tm local = LocalTimeOf(second);
    const auto offset = OffsetOf(local, second).count();
    const auto distance = offset < 0 ? -offset : offset;
    const auto fraction = duration_cast<milliseconds>(time - system_clock::from_time_t(second)).count();
    char rest[24] = "";
    std::snprintf(rest, sizeof rest, ".%03d%c%02d:%02d", static_cast<int>(fraction), offset < 0 ? '-' : '+',
                  static_cast<int>(distance / 60 % 100), static_cast<int>(distance % 60));
    return Formatted(local, "%Y-%m-%dT%H:%M:%S") + rest;
}

std::string ToLocalText(TransferRecord::Time time) {
    return Formatted(LocalTimeOf(SecondOf(time)), "%Y-%m-%d %H:%M:%S");
}

std::string ToLocalDay(TransferRecord::Time time) {
    return Formatted(LocalTimeOf(SecondOf(time)), "%Y-%m-%d");
}

std::optional<TransferRecord::Time> StartOfDay(KelTextView day, int daysLater) {
    int parts[3] = {};
    if (day.size() != 10 || day[4] != u'-' || day[7] != u'-')
        return std::nullopt;
    for (std::size_t index = 0; index < day.size(); ++index) {
        if (index == 4 || index == 7)
            continue;
        if (day[index] < u'0' || day[index] > u'9')
            return std::nullopt;
        int& part = parts[index < 4 ? 0 : index < 7 ? 1 : 2];
        part = part * 10 + (day[index] - u'0');
    }
    const year_month_day date{year(parts[0]), month(static_cast<unsigned>(parts[1])),
                              std::chrono::day(static_cast<unsigned>(parts[2]))};
    if (!date.ok() || parts[0] < 1970 || parts[0] > 2200)
        return std::nullopt;
    std::tm local = {};
    local.tm_year = parts[0] - 1900;
    local.tm_mon = parts[1] - 1;
    local.tm_mday = parts[2] + daysLater;
    return StartOf(local);
}

TransferRecord::Time StartOfDayBefore(TransferRecord::Time now, int daysBefore) {
    std::tm local = LocalTimeOf(SecondOf(now));
    local.tm_mday -= daysBefore;
    return StartOf(local);
}

}
