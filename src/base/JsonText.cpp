#include "base/JsonText.h"

#include <cstdio>

namespace tarvin {

std::string JsonText(KelTextView text) {
    std::string json = "\"";
    const auto escape = [&](char16_t unit) {
        char escaped[8] = "";
        std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(unit));
        json += escaped;
    };
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char16_t unit = text[index];
        const bool isPair = IsHighSurrogate(unit) && index + 1 < text.size() && IsLowSurrogate(text[index + 1]);
        if (isPair)
            json += ToUtf8(text.substr(index++, 2));
        else if (unit == u'"' || unit == u'\\')
            json += {'\\', static_cast<char>(unit)};
        else if (unit < 0x20 || unit == 0x7F || IsHighSurrogate(unit) || IsLowSurrogate(unit))
            escape(unit);
        else
            json += ToUtf8({&unit, 1});
    }
    return json + '"';
}

}
