#include "publish/UtcTime.h"

#include <algorithm>
#include <cstdio>

namespace tarvin {

namespace {

using namespace std::chrono;

// The counter of Windows' clock holds later years too; that of other clocks ends in 2262.
constexpr sys_days firstDay = 1970y / 1 / 1;
constexpr sys_days lastDay = 2200y / 12 / 31;

constexpr std::string_view form = "dddd-dd-ddTdd:dd:dd.dddZ";

}

std::string ToUtcText(SystemTime time) {
    const auto moment = std::clamp<sys_time<milliseconds>>(floor<milliseconds>(time), firstDay, lastDay);
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    char text[48] = "";
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    return text;
}

std::optional<SystemTime> FromUtcText(std::string_view text) {
    if (text.size() != form.size())
        return std::nullopt;
    for (std::size_t index = 0; index < form.size(); ++index) {
        const bool isDigit = text[index] >= '0' && text[index] <= '9';
        if (form[index] == 'd' ? !isDigit : text[index] != form[index])
            return std::nullopt;
    }
    const auto number = [&](std::size_t begin, std::size_t length) {
        int value = 0;
        for (const char digit : text.substr(begin, length))
            value = value * 10 + (digit - '0');
        return value;
    };
    const year_month_day date{year(number(0, 4)), month(static_cast<unsigned>(number(5, 2))),
                              day(static_cast<unsigned>(number(8, 2)))};
    const int hour = number(11, 2);
    const int minute = number(14, 2);
    const int second = number(17, 2);
    if (!date.ok() || sys_days(date) < firstDay || sys_days(date) > lastDay || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    return time_point_cast<SystemTime::duration>(sys_days(date)) + hours(hour) + minutes(minute) + seconds(second) +
           milliseconds(number(20, 3));
}

}
