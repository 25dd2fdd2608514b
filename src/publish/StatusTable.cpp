#include "publish/StatusTable.h"

#include <algorithm>

namespace tarvin {

namespace {

constexpr std::size_t barLength = 10;
// All columns but the name of the machine and the remark, with a blank before each.
constexpr std::size_t stateWidth = 11;
constexpr std::size_t numberWidth = 10;
constexpr std::size_t shareWidth = barLength + 7; // "[######----]  63 %"
constexpr std::size_t rateWidth = 8;
constexpr std::size_t errorsWidth = 4;
constexpr std::size_t sinceWidth = 8;
constexpr std::size_t fixedWidth = stateWidth + numberWidth + shareWidth + 1 + rateWidth + errorsWidth + sinceWidth + 6;
constexpr std::size_t leastName = 8;
constexpr std::size_t mostName = 24;

// As wide as the column. A text that is too long ends with two points.
std::string Cell(KelTextView text, std::size_t width, bool isRight = false) {
    std::u32string characters = ToCharacters(Printable(text));
    if (characters.size() > width)
        characters.replace(width - 2, characters.npos, U"..");
    const std::string fill(width - characters.size(), ' ');
    const std::string value = ToUtf8(FromCharacters(characters));
    return isRight ? fill + value : value + fill;
}

std::string ShareCell(const MachineSummary& summary) {
    if (!summary.percent)
        return Cell(summary.byteCount > 0 ? ToText(summary.byteCount) + u" B" : KelText(), shareWidth + 1, true);
    const auto filled = static_cast<std::size_t>(*summary.percent) * barLength / 100;
    return "[" + std::string(filled, '#') + std::string(barLength - filled, '-') + "] " +
           Cell(ToText(*summary.percent) + u" %", 5, true);
}

// The time of today; the date of any other day.
std::string SinceCell(const MachineSummary& summary, const Present& present) {
    if (!summary.since)
        return std::string(sinceWidth, ' ');
    const std::string text = SinceText(*summary.since, present);
    return text.size() == sinceWidth ? text : text.substr(2, sinceWidth);
}

std::string RowOf(const ShownMachine& shown, const Present& present, std::size_t nameWidth, std::size_t remarkWidth) {
    const MachineSummary& summary = shown.summary;
    const KelText rate = summary.linesPerSecond ? FromUtf8(RateText(*summary.linesPerSecond)) : KelText();
    const std::int64_t errors = summary.errors + summary.repeats;
    const bool isRunning = shown.machine.run == KnownMachine::Run::Running;
    std::string row = Cell(shown.machine.name, nameWidth) + ' ' + Cell(summary.state, stateWidth) + ' ' +
                      Cell(summary.number, numberWidth) + ' ' + ShareCell(summary) + ' ' + Cell(rate, rateWidth, true) +
                      ' ' + Cell(isRunning ? ToText(errors) : KelText(), errorsWidth, true) + ' ' +
                      SinceCell(summary, present);
    if (remarkWidth > 0)
        row += ' ' + Cell(summary.remark, remarkWidth);
    return row;
}

// Also for a window of a few columns.
std::string Cut(const std::string& text, std::size_t columns) {
    return ToUtf8(FromCharacters(ToCharacters(FromUtf8(text)).substr(0, columns)));
}

}

std::vector<TableLine> TableOf(const std::vector<ShownMachine>& machines, const Present& present,
                               const TableRoom& room) {
    const auto columns = static_cast<std::size_t>(std::max(room.columns, 1));
    const std::size_t free = columns > fixedWidth ? columns - fixedWidth : 0;
    std::size_t longest = leastName;
    for (const ShownMachine& shown : machines)
        longest = std::max(longest, ToCharacters(shown.machine.name).size());
    const std::size_t nameWidth = std::clamp(free, leastName, std::min(longest, mostName));
    // Less room tells nothing.
    constexpr std::size_t leastRemark = 10;
    const std::size_t remarkWidth = free >= nameWidth + 1 + leastRemark ? free - nameWidth - 1 : 0;

    std::vector<TableLine> lines;
    const auto add = [&](const std::string& text, int exitCode = allWell) {
        lines.push_back({Cut(text, columns), exitCode});
    };
    std::string captions = Cell(u"MACHINE", nameWidth) + ' ' + Cell(u"STATE", stateWidth) + ' ' +
                           Cell(u"FILE", numberWidth) + ' ' + Cell(u"DONE", shareWidth + 1) + ' ' +
                           Cell(u"LINES/S", rateWidth, true) + ' ' + Cell(u"ERR", errorsWidth, true) + ' ' +
                           Cell(u"SINCE", sinceWidth);
    add(captions);
    // The captions, and the last line.
    const auto rows = static_cast<std::size_t>(std::max(room.rows - 2, 1));
    const std::size_t shownCount = machines.size() <= rows ? machines.size() : rows - 1;
    for (std::size_t index = 0; index < shownCount; ++index)
        add(RowOf(machines[index], present, nameWidth, remarkWidth), machines[index].summary.exitCode);
    if (shownCount < machines.size())
        add("... and " + std::to_string(machines.size() - shownCount) + " more");
    add(SinceText(present.system, present) + "  q: quit");
    return lines;
}

}
