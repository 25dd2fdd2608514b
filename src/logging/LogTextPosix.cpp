#include "logging/LogText.h"

#include <ctime>

#include <locale.h>
#include <time.h>

namespace tarvin {

namespace {

// The user's locale, for time alone: the program's own locale stays as it is, so that numbers keep their form.
locale_t TimeLocale() {
    static const locale_t users = ::newlocale(LC_TIME_MASK, "", nullptr);
    static const locale_t plain = ::newlocale(LC_TIME_MASK, "C", nullptr);
    return users != nullptr ? users : plain;
}

KelText Formatted(const char* format, const std::tm& time) {
    char text[128] = "";
    ::strftime_l(text, sizeof text, format, &time, TimeLocale());
    return FromUtf8(text);
}

}

LocalTimeText LocalTimeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    ::localtime_r(&now, &local);
    return {Formatted("%X", local), Formatted("%x", local)};
}

}
