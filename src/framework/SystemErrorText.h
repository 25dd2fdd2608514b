#pragma once
// The operating system's words for one of its error numbers. Any thread.

#include "framework/KelText.h"

namespace tarvin {

// Only the low 16 bits of the number are looked up. Without a trailing line end.
KelText SystemErrorText(unsigned long errorNumber);

}
