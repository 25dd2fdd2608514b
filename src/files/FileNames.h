#pragma once
// The rules for names of files and for separators in paths. Names follow the strictest of the systems, so that a folder
// can move from one system to another. Any thread; does not access the disk.

#include "base/KelText.h"

#include <filesystem>

namespace tarvin {

// Replaces by '_' each character of `name` that no file name may hold, and each dot or blank at the end. Puts a '_' in
// front of the name of a device, and of "KEL" in any case: no machine's settings file may be KEL.INI. Keeps everything
// else; an empty name stays empty.
KelText FileNameFor(KelTextView name);

// True for CON, NUL, COM1 and the other names of devices, with any extension.
bool IsDeviceName(KelTextView fileName);

inline constexpr char16_t pathSeparator = std::filesystem::path::preferred_separator;

// Replaces each '/' and '\' by this system's separator.
KelText WithOwnSeparators(KelText path);

}
