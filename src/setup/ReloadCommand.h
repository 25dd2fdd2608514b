#pragma once
// Asks the program that serves a machine to read its settings again. One thread at a time.

#include "files/Installation.h"

#include <optional>

namespace tarvin {

struct ReloadReply {
    KelText text;
    // The new settings count, or will when a transfer has ended. Also if no program runs.
    bool isWell;
};

// Waits for the answer, 10 s at most.
ReloadReply RequestReload(const Installation& installation, const KelText& machineName);

// What a user has to know after a change of the settings: a program still works with those it had. None if no program
// serves the machine.
std::optional<KelText> ReloadNeeded(const Installation& installation, const KelText& machineName);

}
