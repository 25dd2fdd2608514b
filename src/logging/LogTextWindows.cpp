#include "base/WindowsApi.h"
#include "logging/LogText.h"

namespace tarvin {

LocalTimeText LocalTimeNow() {
    SYSTEMTIME now = {};
    ::GetLocalTime(&now);
    // Windows limits the formats of time and date to 79 characters.
    wchar_t time[80] = L"";
    wchar_t date[80] = L"";
    ::GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &now, nullptr, time, 80);
    ::GetDateFormatW(LOCALE_USER_DEFAULT, 0, &now, nullptr, date, 80);
    const std::wstring timeText = time;
    const std::wstring dateText = date;
    return {KelText(timeText.begin(), timeText.end()), KelText(dateText.begin(), dateText.end())};
}

}
