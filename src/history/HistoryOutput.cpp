#include "history/HistoryOutput.h"

#include "base/JsonText.h"
#include "history/HistoryTime.h"
#include "history/HistoryWords.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <ostream>
#include <utility>
#include <variant>

namespace tarvin {

namespace {

// One field of a row: a text, a number or a yes/no.
using Value = std::variant<KelText, std::int64_t, bool>;
struct Field {
    const char* name;
    Value value;
};
using Fields = std::vector<Field>;

Fields FieldsOf(const TransferRecord& row) {
    return {{"machine", row.machine},
            {"number", row.number},
            {"path", row.path},
            {"direction", KelText(WordsFor(row.direction))},
            {"outcome", KelText(WordFor(row.outcome))},
            {"reason", row.reason},
            {"begin", FromUtf8(ToIsoText(row.begin))},
            {"end", FromUtf8(ToIsoText(row.end))},
            {"bytes", row.byteCount},
            {"bytes_total", row.bytesTotal},
            {"lines", row.lineCount},
            {"lines_total", row.linesTotal},
            {"repeats", row.repeats},
            {"damaged", row.damaged},
            {"driver_errors", row.driverErrors},
            {"sha256", FromUtf8(row.sha256)},
            {"seen", row.isSeen}};
}

struct Totals {
    std::int64_t outcomeCounts[std::size(allOutcomes)] = {};
    std::int64_t bytesTo = 0;
    std::int64_t bytesFrom = 0;
    std::int64_t repeats = 0;
    std::int64_t damaged = 0;
    std::int64_t driverErrors = 0;
};

using MachineDay = std::pair<std::string, KelText>;

std::map<MachineDay, Totals, std::greater<>> Added(std::span<const TransferRecord> rows) {
    std::map<MachineDay, Totals, std::greater<>> days;
    for (const TransferRecord& row : rows) {
        Totals& totals = days[{ToLocalDay(row.end), row.machine}];
        ++totals.outcomeCounts[static_cast<std::size_t>(row.outcome)];
        (row.direction == TransferDirection::ToMachine ? totals.bytesTo : totals.bytesFrom) += row.byteCount;
        totals.repeats += row.repeats;
        totals.damaged += row.damaged;
        totals.driverErrors += row.driverErrors;
    }
    return days;
}

Fields FieldsOf(const MachineDay& machineDay, const Totals& totals) {
    const auto count = [&](TransferOutcome outcome) { return totals.outcomeCounts[static_cast<std::size_t>(outcome)]; };
    return {{"day", FromUtf8(machineDay.first)},
            {"machine", machineDay.second},
            {"completed", count(TransferOutcome::Completed)},
            {"failed", count(TransferOutcome::Failed)},
            {"cancelled", count(TransferOutcome::Cancelled)},
            {"refused", count(TransferOutcome::Refused)},
            {"bytes_to_machine", totals.bytesTo},
            {"bytes_from_machine", totals.bytesFrom},
            {"repeats", totals.repeats},
            {"damaged", totals.damaged},
            {"driver_errors", totals.driverErrors}};
}

std::string AsCsv(const Value& value) {
    if (const auto* text = std::get_if<KelText>(&value))
        return CsvValue(*text);
    if (const auto* yes = std::get_if<bool>(&value))
        return *yes ? "yes" : "no";
    return std::to_string(std::get<std::int64_t>(value));
}

std::string AsJson(const Value& value) {
    if (const auto* text = std::get_if<KelText>(&value))
        return JsonText(*text);
    if (const auto* yes = std::get_if<bool>(&value))
        return *yes ? "true" : "false";
    return std::to_string(std::get<std::int64_t>(value));
}

// A text on a terminal: a control character could move its cursor or worse.
std::string AsPlain(const Value& value) {
    const auto* text = std::get_if<KelText>(&value);
    if (text == nullptr)
        return AsCsv(value);
    KelText printable = FromCharacters(ToCharacters(*text));
    std::replace_if(
        printable.begin(), printable.end(),
        [](char16_t unit) {
            return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x2028 && unit <= 0x202E);
        },
        u' ');
    return ToUtf8(printable);
}

// Writes rows of fields one by one. `isNamed`: the first line of CSV has the names.
class RowWriter {
public:
    RowWriter(std::ostream& output, HistoryForm form) : output(output), form(form) {
        if (form == HistoryForm::Json)
            output << '[';
    }
    // The names are needed even without a row.
    void WriteNames(const Fields& fields) {
        if (form == HistoryForm::Csv)
            WriteLine(fields, [](const Field& field) { return std::string(field.name); });
    }
    void Write(const Fields& fields) {
        if (form == HistoryForm::Csv) {
            WriteLine(fields, [](const Field& field) { return AsCsv(field.value); });
            return;
        }
        output << (hasRow ? ",\n{" : "\n{");
        hasRow = true;
        for (const Field& field : fields)
            output << (&field == &fields.front() ? "\"" : ",\"") << field.name << "\":" << AsJson(field.value);
        output << '}';
    }
    void End() {
        if (form == HistoryForm::Json)
            output << (hasRow ? "\n]\n" : "]\n");
    }

private:
    template <class ToString>
    void WriteLine(const Fields& fields, ToString toString) {
        for (const Field& field : fields)
            output << (&field == &fields.front() ? "" : ",") << toString(field);
        output << "\r\n";
    }

    std::ostream& output;
    const HistoryForm form;
    bool hasRow = false;
};

struct Column {
    const char* caption;
    bool isRight = false;
};

std::size_t WidthOf(const std::string& text) {
    return ToCharacters(FromUtf8(text)).size();
}

// A list in columns that are as wide as their widest value. The last column is not filled up.
class List {
public:
    explicit List(std::vector<Column> columns) : columns(std::move(columns)) {
        for (const Column& column : this->columns)
            widths.push_back(WidthOf(column.caption));
    }
    void Add(std::vector<std::string> values) {
        for (std::size_t index = 0; index < values.size(); ++index)
            widths[index] = std::max(widths[index], WidthOf(values[index]));
        lines.push_back(std::move(values));
    }
    void Write(std::ostream& output) const {
        std::vector<std::string> captions;
        for (const Column& column : columns)
            captions.emplace_back(column.caption);
        WriteLine(output, captions);
        for (const auto& line : lines) {
            if (!output)
                return;
            WriteLine(output, line);
        }
    }

private:
    void WriteLine(std::ostream& output, const std::vector<std::string>& values) const {
        std::string line;
        for (std::size_t index = 0; index < values.size(); ++index) {
            const std::string fill(widths[index] - WidthOf(values[index]), ' ');
            line += (index > 0 ? "  " : "") + (columns[index].isRight ? fill + values[index] : values[index] + fill);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        output << line << '\n';
    }

    const std::vector<Column> columns;
    std::vector<std::size_t> widths;
    std::vector<std::vector<std::string>> lines;
};

}

std::string CsvValue(KelTextView text) {
    std::string value = ToUtf8(FromCharacters(ToCharacters(text)));
    const bool needsQuotes = std::any_of(value.begin(), value.end(), [](char byte) {
        return byte == ',' || byte == '"' || static_cast<unsigned char>(byte) < 0x20;
    });
    // Some readers drop blanks at the ends.
    if (!needsQuotes && !value.starts_with(' ') && !value.ends_with(' '))
        return value;
    std::string quoted = "\"";
    for (const char byte : value)
        quoted += byte == '"' ? "\"\"" : std::string(1, byte);
    return quoted + '"';
}

void WriteHistory(std::ostream& output, std::span<const TransferRecord> rows, HistoryForm form) {
    if (form != HistoryForm::List) {
        RowWriter writer(output, form);
        writer.WriteNames(FieldsOf(TransferRecord()));
        for (const TransferRecord& row : rows) {
            if (!output)
                return;
            writer.Write(FieldsOf(row));
        }
        writer.End();
        return;
    }
    List list({{"End"},
               {"Machine"},
               {"Direction"},
               {"Number"},
               {"Bytes", true},
               {"Duration", true},
               {"Outcome"},
               {"Reason"}});
    for (const TransferRecord& row : rows)
        list.Add({ToLocalText(row.end), AsPlain(row.machine), AsPlain(KelText(WordsFor(row.direction))),
                  AsPlain(row.number), std::to_string(row.byteCount), ToUtf8(DurationText(row.end - row.begin)),
                  AsPlain(KelText(WordFor(row.outcome))), AsPlain(row.reason)});
    list.Write(output);
}

void WriteTotals(std::ostream& output, std::span<const TransferRecord> rows, HistoryForm form) {
    const auto days = Added(rows);
    if (form != HistoryForm::List) {
        RowWriter writer(output, form);
        writer.WriteNames(FieldsOf(MachineDay(), Totals()));
        for (const auto& [machineDay, totals] : days)
            writer.Write(FieldsOf(machineDay, totals));
        writer.End();
        return;
    }
    List list({{"Day"},
               {"Machine"},
               {"Completed", true},
               {"Failed", true},
               {"Cancelled", true},
               {"Refused", true},
               {"Bytes to", true},
               {"Bytes from", true},
               {"Repeats", true},
               {"Damaged", true},
               {"Driver errors", true}});
    for (const auto& [machineDay, totals] : days) {
        std::vector<std::string> values;
        for (const Field& field : FieldsOf(machineDay, totals))
            values.push_back(AsPlain(field.value));
        list.Add(std::move(values));
    }
    list.Write(output);
}

}
