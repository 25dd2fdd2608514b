#pragma once
// A strict reader of JSON (RFC 8259) for small documents of other programs. Any thread.

#include "base/Result.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarvin {

struct JsonValue {
    using Array = std::vector<JsonValue>;
    using Object = std::map<KelText, JsonValue, std::less<>>;

    // monostate is null. A number without fraction and exponent that fits is an integer.
    std::variant<std::monostate, bool, std::int64_t, double, KelText, Array, Object> content;

    // The member of an object with this name. Null if there is none, or if the value is no object.
    const JsonValue* Find(KelTextView name) const;
};

// Values may be nested this deep, the outermost one included.
inline constexpr int deepestJson = 8;
// A document may have so many values, the inner ones included.
inline constexpr std::size_t mostJsonValues = 20'000;

// Reads one document, with nothing but white space around it. Fails if it is no JSON, no valid UTF-8, beyond one of the
// limits above, has a name twice in one object, or a number beyond the range of a double. Time and memory grow with the
// size of the document; the caller limits that.
Result<JsonValue> ReadJson(std::string_view document);

}
