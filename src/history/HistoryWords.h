#pragma once
// The words that stand for values of a record. On the command line, in lists and in exports they are English in every
// language, so that a script can rely on them.

#include "base/HistoryMessages.h"
#include "logging/TransferRecord.h"

namespace tarvin {

inline constexpr TransferOutcome allOutcomes[] = {TransferOutcome::Completed, TransferOutcome::Failed,
                                                  TransferOutcome::Cancelled, TransferOutcome::Refused};

constexpr KelTextView WordFor(TransferOutcome outcome) {
    switch (outcome) {
    case TransferOutcome::Completed:
        return u"completed";
    case TransferOutcome::Failed:
        return u"failed";
    case TransferOutcome::Cancelled:
        return u"cancelled";
    case TransferOutcome::Refused:
        break;
    }
    return u"refused";
}

// The same for windows.
inline KelTextView LabelFor(TransferOutcome outcome) {
    switch (outcome) {
    case TransferOutcome::Completed:
        return text::historyDialog::completed;
    case TransferOutcome::Failed:
        return text::historyDialog::failed;
    case TransferOutcome::Cancelled:
        return text::historyDialog::cancelled;
    case TransferOutcome::Refused:
        break;
    }
    return text::historyDialog::refused;
}

constexpr KelTextView WordsFor(TransferDirection direction) {
    return direction == TransferDirection::ToMachine ? u"to machine" : u"from machine";
}

}
