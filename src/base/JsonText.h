#pragma once
// Texts of JSON. Any thread.

#include "base/KelText.h"

#include <string>

namespace tarvin {

// The text with its quotes. Control characters become escapes. A byte of a path that is no UTF-8 becomes the escape of
// a lone surrogate: U+DC00 plus the byte. So the result is valid UTF-8 whatever the text holds.
std::string JsonText(KelTextView text);

}
