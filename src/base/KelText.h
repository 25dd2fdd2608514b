#pragma once
// The program's text: UTF-16 code units, with conversions from and to UTF-8, bytes, numbers and paths. Any thread.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarvin {

using KelText = std::u16string;
using KelTextView = std::u16string_view;

// Each byte that is not part of valid UTF-8 becomes the lone surrogate 0xDC00 + byte. ToUtf8 turns that surrogate back
// into the byte, so every POSIX path survives both conversions.
KelText FromUtf8(std::string_view utf8);
// Any other lone surrogate becomes U+FFFD.
std::string ToUtf8(KelTextView text);

// Converts to and from whole characters. Each lone surrogate becomes U+FFFD.
std::u32string ToCharacters(KelTextView text);
KelText FromCharacters(std::u32string_view characters);

// One code unit, 0 to 255, for each byte.
KelText FromBytes(std::string_view bytes);

// Decimal digits, with a minus sign for negative numbers.
KelText ToText(std::int64_t number);

// Such as 0:31, 12:07 and 1:02:03. A duration below zero counts as zero.
KelText DurationText(std::chrono::nanoseconds duration);

// The decimal number at the start of the text, at most the largest int32. None if the text does not start with a digit.
std::optional<std::int32_t> LeadingNumber(KelTextView text);

std::filesystem::path ToPath(KelTextView text);
KelText FromPath(const std::filesystem::path& path);

// High surrogates are the first halves of pairs, low surrogates the second halves.
bool IsHighSurrogate(char16_t unit);
bool IsLowSurrogate(char16_t unit);

// True for the C0 and C1 control characters and DEL: none of them belongs into a name, a setting or a line of text.
bool IsControlCharacter(char16_t unit);

// Both change ASCII letters only. All names and switches that the program compares are ASCII.
bool EqualIgnoringCase(KelTextView left, KelTextView right);
char16_t ToUpperAscii(char16_t unit);

// Drops the blanks and tabs at both ends.
KelTextView Trimmed(KelTextView text);

}
