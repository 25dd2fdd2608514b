#include "publish/JsonWriter.h"

#include <cstdio>

namespace tarvin {

void JsonWriter::AddRate(std::string_view name, std::optional<double> value) {
    char digits[64] = "null";
    if (value)
        std::snprintf(digits, sizeof digits, "%.1f", *value);
    Add(name, digits);
}

void JsonWriter::Add(std::string_view name, std::string_view json) {
    BeginValue(name);
    document += json;
}

void JsonWriter::Begin(std::string_view name, char bracket) {
    BeginValue(name);
    document += bracket;
    isFirst = true;
}

void JsonWriter::End(char bracket) {
    document += bracket;
    isFirst = false;
}

void JsonWriter::BeginValue(std::string_view name) {
    if (!isFirst)
        document += ',';
    isFirst = false;
    if (name.empty())
        return;
    document += '"';
    document += name;
    document += "\":";
}

}
