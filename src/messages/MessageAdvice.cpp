#include "messages/MessageAdvice.h"

#include "base/AdviceMessages.h"

#include <cassert>
#include <iterator>
#include <utility>

namespace tarvin {

namespace {

constexpr std::int32_t alwaysShown = 0;

struct Row {
    MessageKind kind;
    NumberedText headline;
    NumberedText advice;
    // Kept in the user's list of suppressed messages from version to version, so a number is never given again.
    std::int32_t dontShowAgainId;
};

// In the order of MessageKind.
constexpr Row rows[] = {
    {MessageKind::PortNotOpened, text::headline::portNotOpened, text::advice::portNotOpened, 101},
    {MessageKind::LinkLost, text::headline::linkLost, text::advice::linkLost, 102},
    {MessageKind::SettingsRefused, text::headline::settingsRefused, text::advice::settingsRefused, 103},
    {MessageKind::PortUnusual, text::headline::portUnusual, text::advice::portUnusual, 104},
    {MessageKind::PortNotClosed, text::headline::portNotClosed, text::advice::portNotClosed, 105},
    {MessageKind::BadSettings, text::headline::badSettings, text::advice::badSettings, 201},
    {MessageKind::SettingsNotRead, text::headline::settingsNotRead, text::advice::settingsNotRead, 202},
    {MessageKind::SettingsNotSaved, text::headline::settingsNotSaved, text::advice::settingsNotSaved, alwaysShown},
    {MessageKind::LogNotWritten, text::headline::logNotWritten, text::advice::logNotWritten, 301},
    {MessageKind::HistoryNotWritten, text::headline::historyNotWritten, text::advice::historyNotWritten, 302},
    {MessageKind::NotAscii, text::headline::notAscii, text::advice::notAscii, alwaysShown},
    {MessageKind::DictionaryNotRead, text::headline::dictionaryNotRead, text::advice::dictionaryNotRead, 203},
    {MessageKind::NoHelpBook, text::headline::noHelpBook, text::advice::noHelpBook, alwaysShown},
    {MessageKind::FileNotCopied, text::headline::fileNotCopied, text::advice::fileNotCopied, alwaysShown},
    {MessageKind::CorruptInstallation, text::headline::corruptInstallation, text::advice::corruptInstallation,
     alwaysShown},
    {MessageKind::TrafficNotSaved, text::headline::trafficNotSaved, text::advice::trafficNotSaved, alwaysShown},
};

}

MessageBoxText WithAdvice(MessageKind kind, MessageBoxText box) {
    const auto index = static_cast<std::size_t>(kind);
    assert(index < std::size(rows) && rows[index].kind == kind);
    const Row& row = rows[index];
    box.headline = row.headline;
    box.advice = row.advice;
    if (row.dontShowAgainId != alwaysShown && ButtonsOf(box.style).size() == 1)
        box.dontShowAgainId = row.dontShowAgainId;
    return box;
}

}
