#pragma once
// The words of the controller's protocol. What the controller says begins with "AB", what the program says with "AA".
// Knows nothing of when they are said.

#include <string_view>

namespace tarvin::controller {

inline constexpr std::string_view linkTestCode = "ABTS";
inline constexpr std::string_view uploadRequestCode = "ABST";
inline constexpr std::string_view downloadRequestCode = "ABSE";
inline constexpr std::string_view uploadLineCode = "ABAD";
inline constexpr std::string_view uploadEndCode = "ABEF";
inline constexpr std::string_view lineAcceptedCode = "ABAK";
inline constexpr std::string_view lineRefusedCode = "ABNK";

inline constexpr std::string_view linkAnswerCode = "AATS";
inline constexpr std::string_view acknowledgeCode = "AAAK";
inline constexpr std::string_view readRefusalCode = "AAAK01";
inline constexpr std::string_view abortCode = "AAAK03";
inline constexpr std::string_view downloadLineCode = "AADA";
inline constexpr std::string_view downloadEndCode = "AAEF";

}
