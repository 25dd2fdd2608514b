#pragma once
// What a box tells beyond its text: a first line in plain words, what to do, and whether the user can suppress it. One
// table has all of it. Any thread.

#include "messages/MessageReport.h"

namespace tarvin {

// The messages that a box can show.
enum class MessageKind {
    PortNotOpened,
    LinkLost,
    SettingsRefused, // by the port
    PortUnusual,
    PortNotClosed,
    BadSettings,
    SettingsNotRead,
    SettingsNotSaved,
    LogNotWritten,
    HistoryNotWritten,
    NotAscii,
    DictionaryNotRead,
    NoHelpBook,
    FileNotCopied,
    CorruptInstallation,
    TrafficNotSaved,
};

// The box with the headline and the advice of its kind. A kind that comes again and again gets the number by which the
// user can suppress it; a box with more than one button stays without: its answer must be the user's.
MessageBoxText WithAdvice(MessageKind kind, MessageBoxText box);

}
