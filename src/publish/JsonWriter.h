#pragma once
// Writes a JSON document, member by member. One thread at a time.

#include "base/JsonText.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvin {

class JsonWriter {
public:
    // Begin and End enclose an object or an array. A member of an object has a name, an element of an array has none.
    void BeginObject(std::string_view name = {}) { Begin(name, '{'); }
    void EndObject() { End('}'); }
    void BeginArray(std::string_view name = {}) { Begin(name, '['); }
    void EndArray() { End(']'); }

    void AddText(std::string_view name, KelTextView value) { Add(name, JsonText(value)); }
    void AddNumber(std::string_view name, std::int64_t value) { Add(name, std::to_string(value)); }
    void AddFlag(std::string_view name, bool value) { Add(name, value ? "true" : "false"); }
    void AddNull(std::string_view name) { Add(name, "null"); }
    // With one decimal.
    void AddRate(std::string_view name, std::optional<double> value);
    // A value that is JSON already.
    void Add(std::string_view name, std::string_view json);

    const std::string& Document() const { return document; }

private:
    void Begin(std::string_view name, char bracket);
    void End(char bracket);
    void BeginValue(std::string_view name);

    std::string document;
    bool isFirst = true; // of its object or array
};

}
