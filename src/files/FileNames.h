#pragma once
// Which names can stand for a file, by the strictest of the systems, so that a folder can move between them, and what
// stands between the parts of a path. Knows nothing of what is on a disk. Any thread.

#include "base/KelText.h"

#include <filesystem>

namespace tarvin {

// `name` with each character that cannot stand in a file name, or not at its end, replaced by '_'. A device's name gets
// a '_' in front. Everything else is returned as it is, the empty name too.
KelText FileNameFor(KelTextView name);

// True for CON, NUL, COM1 and their like, whatever extension follows.
bool IsDeviceName(KelTextView fileName);

inline constexpr char16_t pathSeparator = std::filesystem::path::preferred_separator;

// The path with this system's separator wherever that of any system stands.
KelText WithOwnSeparators(KelText path);

}
