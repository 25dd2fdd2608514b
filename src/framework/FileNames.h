#pragma once
// Which names can stand for a file, by the strictest of the systems, so that a folder can move between them. Knows
// nothing of folders. Any thread.

#include "framework/KelText.h"

namespace tarvin {

// `name` with each character that cannot stand in a file name, or not at its end, replaced by '_'. A device's name gets
// a '_' in front. Everything else is returned as it is, the empty name too.
KelText FileNameFor(KelTextView name);

// True for CON, NUL, COM1 and their like, whatever extension follows.
bool IsDeviceName(KelTextView fileName);

}
