#pragma once
// What a part program says of itself.

#include "base/KelText.h"

#include <string_view>

namespace tarvin {

// The first comment in `text`, the start of a program: "(BRACKET LEFT HAND)", or what follows a semicolon. Looks at 60
// lines and gives 80 characters at most, without control characters. Empty if there is none. Bytes that are no UTF-8
// are taken as ISO 8859-1.
KelText FirstComment(std::string_view text);

}
