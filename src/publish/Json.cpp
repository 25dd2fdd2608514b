#include "publish/Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

// FromUtf8 turns each byte that is no part of valid UTF-8 into a lone surrogate, and valid UTF-8 has none.
bool IsValidUtf8(std::string_view bytes) {
    const KelText text = FromUtf8(bytes);
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (IsHighSurrogate(text[index]) && index + 1 < text.size() && IsLowSurrogate(text[index + 1]))
            ++index;
        else if (IsHighSurrogate(text[index]) || IsLowSurrogate(text[index]))
            return false;
    }
    return true;
}

bool IsDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

// Each function reads one part of the document from its start, and gives none if the document does not go on so.
class Reader {
public:
    explicit Reader(std::string_view document) : rest(document) {}

    std::optional<JsonValue> ReadDocument() {
        auto value = ReadValue(1);
        SkipSpace();
        return rest.empty() ? std::move(value) : std::nullopt;
    }

private:
    void SkipSpace() { rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size())); }

    bool Take(std::string_view word) {
        if (!rest.starts_with(word))
            return false;
        rest.remove_prefix(word.size());
        return true;
    }

    std::optional<JsonValue> ReadValue(int depth) {
        SkipSpace();
        if (depth > deepestJson || ++valueCount > mostJsonValues || rest.empty())
            return std::nullopt;
        if (Take("null"))
            return JsonValue{};
        if (Take("true"))
            return JsonValue{true};
        if (Take("false"))
            return JsonValue{false};
        if (Take("["))
            return ReadArray(depth);
        if (Take("{"))
            return ReadObject(depth);
        if (rest.front() != '"')
            return ReadNumber();
        auto text = ReadText();
        return text ? std::optional(JsonValue{std::move(*text)}) : std::nullopt;
    }

    std::optional<JsonValue> ReadArray(int depth) {
        JsonValue::Array values;
        SkipSpace();
        if (Take("]"))
            return JsonValue{std::move(values)};
        do {
            auto value = ReadValue(depth + 1);
            if (!value)
                return std::nullopt;
            values.push_back(std::move(*value));
            SkipSpace();
        } while (Take(","));
        return Take("]") ? std::optional(JsonValue{std::move(values)}) : std::nullopt;
    }

    std::optional<JsonValue> ReadObject(int depth) {
        JsonValue::Object members;
        SkipSpace();
        if (Take("}"))
            return JsonValue{std::move(members)};
        do {
            SkipSpace();
            auto name = ReadText();
            SkipSpace();
            if (!name || !Take(":"))
                return std::nullopt;
            auto value = ReadValue(depth + 1);
            if (!value || !members.try_emplace(std::move(*name), std::move(*value)).second)
                return std::nullopt;
            SkipSpace();
        } while (Take(","));
        return Take("}") ? std::optional(JsonValue{std::move(members)}) : std::nullopt;
    }

    std::optional<JsonValue> ReadNumber() {
        std::size_t length = rest.starts_with('-') ? 1 : 0;
        const auto countDigits = [&] {
            const std::size_t first = length;
            while (length < rest.size() && IsDigit(rest[length]))
                ++length;
            return length - first;
        };
        const bool hasZero = length < rest.size() && rest[length] == '0';
        const std::size_t digits = countDigits();
        if (digits == 0 || (hasZero && digits > 1))
            return std::nullopt;
        const std::size_t integerLength = length;
        if (length < rest.size() && rest[length] == '.') {
            ++length;
            if (countDigits() == 0)
                return std::nullopt;
        }
        if (length < rest.size() && (rest[length] == 'e' || rest[length] == 'E')) {
            ++length;
            if (length < rest.size() && (rest[length] == '+' || rest[length] == '-'))
                ++length;
            if (countDigits() == 0)
                return std::nullopt;
        }
        const char* const begin = rest.data();
        rest.remove_prefix(length);
        if (length == integerLength) {
            std::int64_t integer = 0;
            if (std::from_chars(begin, begin + length, integer).ec == std::errc())
                return JsonValue{integer};
        }
        double number = 0;
        if (std::from_chars(begin, begin + length, number).ec != std::errc() || !std::isfinite(number))
            return std::nullopt;
        return JsonValue{number};
    }

    std::optional<KelText> ReadText() {
        if (!Take("\""))
            return std::nullopt;
        KelText text;
        for (;;) {
            const auto plain = std::find_if(rest.begin(), rest.end(), [](char byte) {
                return byte == '"' || byte == '\\' || static_cast<unsigned char>(byte) < 0x20;
            });
            const auto length = static_cast<std::size_t>(plain - rest.begin());
            text += FromUtf8(rest.substr(0, length));
            rest.remove_prefix(length);
            if (Take("\""))
                return text;
            const auto unit = Take("\\") ? ReadEscape() : std::nullopt;
            if (!unit)
                return std::nullopt;
            text += *unit;
        }
    }

    std::optional<char16_t> ReadEscape() {
        if (rest.empty())
            return std::nullopt;
        const char kind = rest.front();
        rest.remove_prefix(1);
        constexpr std::string_view kinds = "\"\\/bfnrt";
        constexpr KelTextView units = u"\"\\/\b\f\n\r\t";
        if (const auto found = kinds.find(kind); found != std::string_view::npos)
            return units[found];
        constexpr std::size_t digitCount = 4;
        if (kind != 'u' || rest.size() < digitCount)
            return std::nullopt;
        std::uint16_t unit = 0;
        const auto read = std::from_chars(rest.data(), rest.data() + digitCount, unit, 16);
        if (read.ec != std::errc() || read.ptr != rest.data() + digitCount)
            return std::nullopt;
        rest.remove_prefix(digitCount);
        return static_cast<char16_t>(unit);
    }

    std::string_view rest;
    std::size_t valueCount = 0;
};

}

const JsonValue* JsonValue::Find(KelTextView name) const {
    const auto* const members = std::get_if<Object>(&content);
    if (members == nullptr)
        return nullptr;
    const auto found = members->find(name);
    return found == members->end() ? nullptr : &found->second;
}

Result<JsonValue> ReadJson(std::string_view document) {
    if (!IsValidUtf8(document))
        return Error{u"no valid UTF-8"};
    if (auto value = Reader(document).ReadDocument())
        return std::move(*value);
    return Error{u"no valid JSON"};
}

}
