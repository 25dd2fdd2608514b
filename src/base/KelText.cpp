#include "base/KelText.h"

#include <algorithm>
#include <limits>

namespace tarvin {

namespace {

constexpr char16_t escapedByteBase = 0xDC00;

bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

// One decoded code point and its length in bytes. Length 0 means an invalid sequence.
struct Decoded {
    char32_t codePoint;
    std::size_t length;
};

// Decodes at `position`. Refuses overlong forms, surrogates and values beyond U+10FFFF: two spellings of one character
// could not both be turned back into their own bytes.
Decoded Decode(std::string_view utf8, std::size_t position) {
    // Bytes beyond the end read as 0, which no sequence continues with.
    const auto byteAt = [&](std::size_t offset) {
        return position + offset < utf8.size() ? static_cast<unsigned char>(utf8[position + offset]) : 0;
    };
    const auto tail = [&](std::size_t offset) { return static_cast<char32_t>(byteAt(offset) & 0x3F); };
    const unsigned char lead = static_cast<unsigned char>(utf8[position]);
    if (lead < 0x80)
        return {lead, 1};
    // The number of leading one bits is the length.
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    for (std::size_t offset = 1; offset < length; ++offset) {
        if (!IsContinuation(static_cast<unsigned char>(byteAt(offset))))
            return {0, 0};
    }
    if (length == 2) {
        const char32_t codePoint = static_cast<char32_t>((lead & 0x1F) << 6) | tail(1);
        // 0xC0 and 0xC1 begin overlong forms only.
        return lead >= 0xC2 ? Decoded{codePoint, 2} : Decoded{0, 0};
    }
    if (length == 3) {
        const char32_t codePoint = static_cast<char32_t>((lead & 0x0F) << 12) | tail(1) << 6 | tail(2);
        const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        return codePoint >= 0x800 && !surrogate ? Decoded{codePoint, 3} : Decoded{0, 0};
    }
    const char32_t codePoint = static_cast<char32_t>((lead & 0x07) << 18) | tail(1) << 12 | tail(2) << 6 | tail(3);
    return lead <= 0xF4 && codePoint >= 0x10000 && codePoint <= 0x10FFFF ? Decoded{codePoint, 4} : Decoded{0, 0};
}

void AppendUtf8(std::string& utf8, char32_t codePoint) {
    const auto append = [&](char32_t bits) { utf8.push_back(static_cast<char>(bits)); };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0 | codePoint >> 6);
        append(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        append(0xE0 | codePoint >> 12);
        append(0x80 | (codePoint >> 6 & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    } else {
        append(0xF0 | codePoint >> 18);
        append(0x80 | (codePoint >> 12 & 0x3F));
        append(0x80 | (codePoint >> 6 & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    }
}

bool IsPairAt(KelTextView text, std::size_t position) {
    return IsHighSurrogate(text[position]) && position + 1 < text.size() && IsLowSurrogate(text[position + 1]);
}

char32_t CharacterOfPair(char16_t high, char16_t low) {
    return 0x10000 + (static_cast<char32_t>(high - 0xD800) << 10) + static_cast<char32_t>(low - 0xDC00);
}

void AppendCharacter(KelText& text, char32_t character) {
    if (character < 0x10000) {
        text.push_back(static_cast<char16_t>(character));
        return;
    }
    // A surrogate pair: ten bits in each half.
    const char32_t offset = character - 0x10000;
    text.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
}

}

bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

KelText FromUtf8(std::string_view utf8) {
    KelText text;
    text.reserve(utf8.size());
    for (std::size_t position = 0; position < utf8.size();) {
        const Decoded decoded = Decode(utf8, position);
        if (decoded.length == 0) {
            text.push_back(static_cast<char16_t>(escapedByteBase + static_cast<unsigned char>(utf8[position])));
            ++position;
            continue;
        }
        AppendCharacter(text, decoded.codePoint);
        position += decoded.length;
    }
    return text;
}

std::string ToUtf8(KelTextView text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t position = 0; position < text.size(); ++position) {
        const char16_t unit = text[position];
        if (IsPairAt(text, position)) {
            AppendUtf8(utf8, CharacterOfPair(unit, text[++position]));
            // FromUtf8 escapes bytes from 0x80 on only.
        } else if (unit >= escapedByteBase + 0x80 && unit <= escapedByteBase + 0xFF) {
            utf8.push_back(static_cast<char>(unit - escapedByteBase));
        } else {
            AppendUtf8(utf8, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? 0xFFFD : unit);
        }
    }
    return utf8;
}

std::u32string ToCharacters(KelTextView text) {
    std::u32string characters;
    characters.reserve(text.size());
    for (std::size_t position = 0; position < text.size(); ++position) {
        const char16_t unit = text[position];
        if (IsPairAt(text, position))
            characters.push_back(CharacterOfPair(unit, text[++position]));
        else
            characters.push_back(IsHighSurrogate(unit) || IsLowSurrogate(unit) ? U'\uFFFD' : unit);
    }
    return characters;
}

KelText FromCharacters(std::u32string_view characters) {
    KelText text;
    text.reserve(characters.size());
    for (const char32_t character : characters)
        AppendCharacter(text, character);
    return text;
}

KelText FromBytes(std::string_view bytes) {
    KelText text(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [](char byte) { return static_cast<char16_t>(static_cast<unsigned char>(byte)); });
    return text;
}

KelText ToText(std::int64_t number) {
    return FromBytes(std::to_string(number));
}

KelText DurationText(std::chrono::nanoseconds duration) {
    const auto total = std::max<std::int64_t>(std::chrono::duration_cast<std::chrono::seconds>(duration).count(), 0);
    const auto twoDigits = [](std::int64_t number) { return (number < 10 ? u"0" : u"") + ToText(number); };
    const KelText seconds = u":" + twoDigits(total % 60);
    const std::int64_t minutes = total / 60;
    return total < 3600 ? ToText(minutes) + seconds : ToText(minutes / 60) + u":" + twoDigits(minutes % 60) + seconds;
}

std::optional<std::int32_t> LeadingNumber(KelTextView text) {
    constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
    std::optional<std::int64_t> number;
    for (const char16_t unit : text) {
        if (unit < u'0' || unit > u'9')
            break;
        // Stops growing at the largest number, so that no count of digits overflows.
        number = std::min(number.value_or(0) * 10 + (unit - u'0'), largest);
    }
    return number;
}

bool IsControlCharacter(char16_t unit) {
    constexpr char16_t deleteCharacter = 0x7F;
    constexpr char16_t lastControl = 0x9F;
    return unit < u' ' || (unit >= deleteCharacter && unit <= lastControl);
}

char16_t ToUpperAscii(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

bool EqualIgnoringCase(KelTextView left, KelTextView right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char16_t a, char16_t b) { return ToUpperAscii(a) == ToUpperAscii(b); });
}

KelTextView Trimmed(KelTextView text) {
    const auto isBlank = [](char16_t unit) { return unit == u' ' || unit == u'\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

}
