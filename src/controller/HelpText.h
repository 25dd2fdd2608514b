#pragma once
// What --help prints.

#include <string_view>

namespace tarvin::controller {

extern const std::string_view helpText;

}
