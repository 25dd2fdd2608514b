#include "ui/TrafficTime.h"

#include "files/NativeFile.h"
#include "files/Profile.h"
#include "ui/Wx.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr KelTextView section = u"Traffic";
constexpr KelTextView key = u"gutter";

std::filesystem::path ChoiceFile() {
    return UserFolder() / "traffic.ini";
}

std::string Padded(std::string text) {
    return std::string(TrafficTime::columns - std::min(text.size(), TrafficTime::columns), ' ') + text;
}

std::string TimeOfDayText(std::chrono::system_clock::time_point time) {
    const auto second = std::chrono::floor<std::chrono::seconds>(time);
    const auto rest = std::chrono::floor<std::chrono::milliseconds>(time - second);
    const wxDateTime local(std::chrono::system_clock::to_time_t(second));
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03d", local.GetHour(), local.GetMinute(), local.GetSecond(),
                  static_cast<int>(rest.count()));
    return text;
}

std::string DifferenceText(Clock::Duration difference) {
    const auto milliseconds = std::chrono::round<std::chrono::milliseconds>(std::max(difference, Clock::Duration{}));
    char text[32];
    std::snprintf(text, sizeof text, "+%lld.%03d", static_cast<long long>(milliseconds / 1s),
                  static_cast<int>((milliseconds % 1s).count()));
    return text;
}

}

Gutter RememberedGutter() {
    const auto profile = Profile::Read(ChoiceFile());
    const std::int32_t number = profile ? profile->Integer(section, key, 0) : 0;
    const bool isKnown = number > 0 && number <= static_cast<std::int32_t>(Gutter::SinceLast);
    return isKnown ? static_cast<Gutter>(number) : Gutter::Off;
}

void RememberGutter(Gutter gutter) {
    const std::filesystem::path file = ChoiceFile();
    std::error_code ignored;
    std::filesystem::create_directories(file.parent_path(), ignored);
    (void)ReplaceWholeFile(file, "[" + ToUtf8(section) + "]\r\n" + ToUtf8(key) + "=" +
                                     std::to_string(static_cast<int>(gutter)) + "\r\n");
}

void TrafficTime::Synchronise() {
    Synchronise(std::chrono::system_clock::now(), SteadyClock().Now());
}

void TrafficTime::Synchronise(std::chrono::system_clock::time_point newTimeOfDay, Clock::TimePoint newEngineTime) {
    timeOfDay = newTimeOfDay;
    engineTime = newEngineTime;
}

std::string TrafficTime::Text(Gutter gutter, const TextLines& lines, std::uint64_t number) const {
    const Clock::TimePoint time = lines.At(number).time;
    switch (gutter) {
    case Gutter::TimeOfDay:
        return TimeOfDayText(timeOfDay +
                             std::chrono::duration_cast<std::chrono::system_clock::duration>(time - engineTime));
    case Gutter::SinceLast:
        // The oldest line has no line before it.
        return Padded(number == lines.First() ? "" : DifferenceText(time - lines.At(number - 1).time));
    case Gutter::Off:
        break;
    }
    return {};
}

}
