#pragma once
// Text as the program keeps it: UTF-16 code units, with the conversions at its borders. Knows nothing of files.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarvin {

using KelText = std::u16string;
using KelTextView = std::u16string_view;

// A byte that is not part of valid UTF-8 becomes the lone surrogate 0xDC00 + byte, and ToUtf8 turns that back into the
// byte, so that any POSIX path survives the way in and out.
KelText FromUtf8(std::string_view utf8);
std::string ToUtf8(KelTextView text);

// The characters of the text, with U+FFFD for each lone surrogate, and the text of such characters.
std::u32string ToCharacters(KelTextView text);
KelText FromCharacters(std::u32string_view characters);

// One code unit 0 to 255 for each byte.
KelText FromBytes(std::string_view bytes);

// Decimal digits, with a minus sign where needed.
KelText ToText(std::int64_t number);

// The number that the text begins with, the largest there is if the digits say more; none if the first is no digit.
std::optional<std::int32_t> LeadingNumber(KelTextView text);

std::filesystem::path ToPath(KelTextView text);
KelText FromPath(const std::filesystem::path& path);

// ASCII letters only: the names and switches that the program compares are ASCII.
bool EqualIgnoringCase(KelTextView left, KelTextView right);
char16_t ToUpperAscii(char16_t unit);

// Without the blanks and tabs at both ends.
KelTextView Trimmed(KelTextView text);

}
