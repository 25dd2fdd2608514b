#include "history/HistoryOptions.h"

#include "base/HistoryMessages.h"
#include "history/HistoryTime.h"
#include "history/HistoryWords.h"

#include <string_view>

namespace tarvin {

namespace {

// More days than a computer has a calendar for.
constexpr std::int32_t mostDays = 36'500;

class Reader {
public:
    explicit Reader(TransferRecord::Time now) : now(now) {}

    Result<HistoryRequest> Read(std::span<const KelText> arguments) {
        while (!arguments.empty()) {
            if (const auto taken = Take(arguments); !taken)
                return taken.Reason();
        }
        if (hasDays && (request.filter.from || request.filter.before))
            return Error{u"--days goes without --from and --to"};
        if (hasDays)
            request.filter.from = StartOfDayBefore(now, days - 1);
        if (request.filter.from && request.filter.before && *request.filter.from >= *request.filter.before)
            return Error{u"--from is after --to"};
        return request;
    }

private:
    // Takes the first option, with its value.
    Result<> Take(std::span<const KelText>& arguments) {
        const KelText word = arguments.front();
        arguments = arguments.subspan(1);
        if (!word.starts_with(u"--"))
            return Error{u"unexpected argument: " + word};
        const std::size_t equals = word.find(u'=');
        const KelText name = word.substr(0, equals);
        const bool hasValue = equals != KelText::npos;
        if (name == u"--csv" || name == u"--json" || name == u"--totals")
            return hasValue ? Error{name + u" takes no value"} : TakeSwitch(name);
        if (name != u"--machine" && name != u"--number" && name != u"--days" && name != u"--from" && name != u"--to" &&
            name != u"--outcome" && name != u"--database")
            return Error{u"unknown option: " + name};
        if (!hasValue && arguments.empty())
            return Error{name + u" needs a value"};
        const KelText value = hasValue ? word.substr(equals + 1) : arguments.front();
        if (!hasValue)
            arguments = arguments.subspan(1);
        if (value.empty())
            return Error{name + u" needs a value"};
        return TakeValue(name, value);
    }

    Result<> TakeSwitch(KelTextView name) {
        if (name == u"--totals") {
            request.wantsTotals = true;
            return {};
        }
        const HistoryForm form = name == u"--csv" ? HistoryForm::Csv : HistoryForm::Json;
        if (request.form != HistoryForm::List && request.form != form)
            return Error{u"--csv and --json exclude each other"};
        request.form = form;
        return {};
    }

    Result<> TakeValue(const KelText& name, const KelText& value) {
        if (name == u"--machine")
            request.filter.machine = value;
        else if (name == u"--number")
            request.filter.number = value;
        else if (name == u"--database")
            request.database = ToPath(value);
        else if (name == u"--days")
            return TakeDays(value);
        else if (name == u"--outcome")
            return TakeOutcome(value);
        else
            return TakeDate(name, value);
        return {};
    }

    Result<> TakeDays(const KelText& value) {
        const bool isNumber = value.find_first_not_of(u"0123456789") == KelText::npos;
        days = isNumber ? LeadingNumber(value).value_or(0) : 0;
        if (days < 1 || days > mostDays)
            return Error{u"--days takes a number from 1 to " + ToText(mostDays) + u", not " + value};
        hasDays = true;
        return {};
    }

    Result<> TakeOutcome(const KelText& value) {
        for (const TransferOutcome outcome : allOutcomes) {
            if (EqualIgnoringCase(value, WordFor(outcome))) {
                request.filter.outcome = outcome;
                return {};
            }
        }
        return Error{u"--outcome takes completed, failed, cancelled or refused, not " + value};
    }

    Result<> TakeDate(const KelText& name, const KelText& value) {
        const bool isFrom = name == u"--from";
        // The last day counts too.
        const auto start = StartOfDay(value, isFrom ? 0 : 1);
        if (!start)
            return Error{name + u" takes a date such as 2026-11-22, not " + value};
        (isFrom ? request.filter.from : request.filter.before) = start;
        return {};
    }

    const TransferRecord::Time now;
    HistoryRequest request;
    bool hasDays = false;
    std::int32_t days = 0;
};

}

Result<HistoryRequest> ReadHistoryOptions(std::span<const KelText> arguments, TransferRecord::Time now) {
    return Reader(now).Read(arguments);
}

}
