#include "transfer/ReplacedFiles.h"

#include "base/Messages.h"
#include "base/System.h"
#include "files/FileReplacement.h"
#include "files/FolderRights.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr const char* folderName = "replaced";
constexpr const char* wholeEnding = ".whole";
constexpr KelTextView timePattern = u"0000-00-00_000000";
constexpr std::size_t mostDigitsOfNumber = 4;

std::string PresentTime() {
    using namespace std::chrono;
    const auto now = floor<seconds>(system_clock::now());
    const auto today = floor<days>(now);
    const year_month_day date(today);
    const hh_mm_ss time(now - today);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u_%02d%02d%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

// A name in `folder` that no file has: the name of `path`, the time and `ending`.
fs::path FreeTimedName(const fs::path& folder, const fs::path& path, const char* ending) {
    const std::string time = PresentTime();
    for (int number = 1;; ++number) {
        fs::path name = path.filename();
        name += "." + time + (number > 1 ? "_" + std::to_string(number) : std::string()) + ending;
        std::error_code ignored;
        if (!fs::exists(fs::symlink_status(folder / name, ignored)))
            return folder / name;
    }
}

// When a file was replaced: its time, and its number within that second.
using Moment = std::pair<KelText, std::int32_t>;

// The moment in the name of a kept file. None for the name of another file.
std::optional<Moment> MomentIn(KelTextView keptName, KelTextView name) {
    if (!keptName.starts_with(name) || keptName.size() < name.size() + 1 + timePattern.size() ||
        keptName[name.size()] != u'.')
        return std::nullopt;
    const auto isDigit = [](char16_t unit) { return unit >= u'0' && unit <= u'9'; };
    const KelTextView time = keptName.substr(name.size() + 1, timePattern.size());
    const bool isTime =
        std::equal(time.begin(), time.end(), timePattern.begin(), [&](char16_t unit, char16_t expected) {
            return expected == u'0' ? isDigit(unit) : unit == expected;
        });
    if (!isTime)
        return std::nullopt;
    KelTextView rest = keptName.substr(name.size() + 1 + timePattern.size());
    if (rest.empty())
        return Moment(time, 1);
    const bool isNumbered = rest.front() == u'_' && rest.size() > 1 && rest.size() <= 1 + mostDigitsOfNumber &&
                            std::all_of(rest.begin() + 1, rest.end(), isDigit);
    return isNumbered ? std::optional(Moment(time, LeadingNumber(rest.substr(1)).value_or(0))) : std::nullopt;
}

}

Result<fs::path> KeepReplaced(const fs::path& path) {
    const fs::path folder = path.parent_path() / folderName;
    if (const std::error_code error = MakeSharedFolder(folder)) {
        const KelText reason = SystemErrorText(static_cast<unsigned long>(error.value()));
        return Error{Filled(text::transferReason::olderNotKept, {FromPath(folder), reason})};
    }
    const fs::path kept = FreeTimedName(folder, path, "");
    if (const auto linked = LinkOrCopy(path, kept); !linked) {
        Error reason = linked.Reason();
        reason.text = Filled(text::transferReason::olderNotKept, {FromPath(folder), reason.text});
        return reason;
    }
    return kept;
}

void PruneReplaced(const fs::path& path, int keptCount) {
    const KelText name = FromPath(path.filename());
    std::vector<std::pair<Moment, fs::path>> kept;
    std::error_code error;
    fs::directory_iterator entries(path.parent_path() / folderName, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        std::error_code ignored;
        const auto moment = MomentIn(FromPath(entries->path().filename()), name);
        if (moment && fs::is_regular_file(entries->symlink_status(ignored)))
            kept.emplace_back(*moment, entries->path());
    }
    std::sort(kept.begin(), kept.end());
    const std::size_t staying = std::min(kept.size(), static_cast<std::size_t>(std::max(keptCount, 0)));
    for (std::size_t index = 0; index < kept.size() - staying; ++index)
        fs::remove(kept[index].second, error);
}

fs::path WholeNameFor(const fs::path& path) {
    return FreeTimedName(path.parent_path(), path, wholeEnding);
}

}
