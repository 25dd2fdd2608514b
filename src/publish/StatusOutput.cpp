#include "publish/StatusOutput.h"

#include "history/HistoryTime.h"
#include "publish/JsonWriter.h"

#include <algorithm>
#include <cstdio>

namespace tarvin {

namespace {

void AddMachine(JsonWriter& json, const ShownMachine& shown, const Present& present) {
    const auto& [machine, summary] = shown;
    json.BeginObject();
    json.AddText("machine", machine.name);
    json.AddText("installation", FromPath(machine.installation));
    json.AddText("state", summary.state);
    json.AddNumber("code", summary.exitCode);
    json.AddText("number", summary.number);
    if (summary.percent)
        json.AddNumber("percent", *summary.percent);
    else
        json.AddNull("percent");
    json.AddRate("lines_per_second", summary.linesPerSecond);
    json.AddNumber("errors", summary.errors);
    json.AddNumber("repeats", summary.repeats);
    if (summary.since)
        json.AddText("since", FromUtf8(ToUtcText(*summary.since)));
    else
        json.AddNull("since");
    json.AddText("remark", summary.remark);
    if (machine.status) {
        std::string document = ToJson(*machine.status, present);
        document.pop_back(); // the line end
        json.Add("published", document);
    } else {
        json.AddNull("published");
    }
    json.EndObject();
}

}

KelText Printable(KelTextView text) {
    KelText printable = FromCharacters(ToCharacters(text));
    std::replace_if(
        printable.begin(), printable.end(),
        [](char16_t unit) {
            return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x2028 && unit <= 0x202E) ||
                   (unit >= 0x2066 && unit <= 0x2069);
        },
        u' ');
    return printable;
}

std::string SinceText(SystemTime time, const Present& present) {
    const std::string text = ToLocalText(time);
    const std::size_t dateLength = text.find(' ') + 1;
    return ToLocalDay(time) == ToLocalDay(present.system) ? text.substr(dateLength) : text;
}

std::string RateText(double rate) {
    char digits[64] = "";
    std::snprintf(digits, sizeof digits, "%.1f", rate);
    return digits;
}

std::string LineOf(const ShownMachine& shown, const Present& present) {
    const MachineSummary& summary = shown.summary;
    std::string line = ToUtf8(Printable(shown.machine.name)) + ": " + ToUtf8(summary.state);
    if (!summary.number.empty())
        line += ' ' + ToUtf8(Printable(summary.number));
    if (summary.percent)
        line += ", " + std::to_string(*summary.percent) + " %";
    else if (summary.byteCount > 0)
        line += ", " + std::to_string(summary.byteCount) + " bytes";
    if (summary.linesPerSecond)
        line += ", " + RateText(*summary.linesPerSecond) + " lines/s";
    if (shown.machine.run == KnownMachine::Run::Running)
        line += ", errors " + std::to_string(summary.errors) + ", repeats " + std::to_string(summary.repeats);
    if (summary.since)
        line += ", since " + SinceText(*summary.since, present);
    if (!summary.remark.empty())
        line += ", " + ToUtf8(Printable(summary.remark));
    return line;
}

std::string JsonOf(const std::vector<ShownMachine>& machines, const Present& present) {
    JsonWriter json;
    json.BeginArray();
    for (const ShownMachine& shown : machines)
        AddMachine(json, shown, present);
    json.EndArray();
    return json.Document() + '\n';
}

}
