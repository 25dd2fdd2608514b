#pragma once
// The texts of tarvindl-setup, of the check of a machine and of the reload of settings, each once. A console speaks
// English; texts that a window shows too have numbers. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// What the value of a setting may be.
namespace settingValue {
// %1 is the name of the setting, %2 the value and %3 the allowed values.
inline constexpr char16_t refused[] = u"%1 cannot be \"%2\". Allowed: %3";
inline constexpr char16_t port[] = u"COM1 to COM256";
// %1 is the highest number.
inline constexpr char16_t number[] = u"a number from 0 to %1";
inline constexpr char16_t flag[] = u"0 (off), 1 (on)";
inline constexpr char16_t character[] = u"a name such as DC2 or EOT, or a number from 0 to 255";
inline constexpr char16_t text[] = u"a text without control characters";
}

}
