#include "ui/BoardColours.h"

#include <cstddef>

namespace tarvin {

namespace {

// In the order of BoardState.
constexpr BoardColours lightColours[] = {
    {0x5B6B7B, 0xF6F7F9, 0x1B2733, 0x4A5968, 0xFFFFFF}, // idle
    {0x1A66C4, 0xF0F5FD, 0x1B2733, 0x4A5968, 0xFFFFFF}, // running
    {0x1B7A3A, 0xEDF8F0, 0x1B2733, 0x44574B, 0xFFFFFF}, // done
    {0xA65200, 0xFFF4E0, 0x2B2114, 0x5C4E36, 0xFFFFFF}, // held
    {0x6E5200, 0xFFF3A8, 0x2B2614, 0x5A5230, 0xFFFFFF}, // silent
    {0xB71C1C, 0xFDE9EA, 0x33181A, 0x63494B, 0xFFFFFF}, // failed
    {0x8E1B6B, 0xFBEAF5, 0x331828, 0x634A58, 0xFFFFFF}, // no link
};
constexpr BoardColours darkColours[] = {
    {0x9FB0C0, 0x20262C, 0xF0F3F6, 0xB4C0CB, 0x101418}, // idle
    {0x6FB1FF, 0x14243A, 0xF0F4FA, 0xAFC2DA, 0x0A121E}, // running
    {0x63CF85, 0x12291A, 0xEFF8F1, 0xA9C8B2, 0x08140C}, // done
    {0xFFB454, 0x35240C, 0xFBF3E6, 0xDCC6A2, 0x1C1306}, // held
    {0xE8CF5A, 0x2E2A0E, 0xFAF6E2, 0xD5CDA0, 0x181606}, // silent
    {0xFF8A87, 0x3A1517, 0xFCEDEE, 0xE2B7B9, 0x1E0A0B}, // failed
    {0xF08CD0, 0x35142A, 0xFBECF6, 0xDDB6CE, 0x1C0A16}, // no link
};

// In the order of TransferOutcome.
constexpr Rgb lightSigns[] = {0x1B7A3A, 0xB71C1C, 0x5B6B7B, 0xB71C1C};
constexpr Rgb darkSigns[] = {0x63CF85, 0xFF8A87, 0x9FB0C0, 0xFF8A87};

}

const BoardColours& ColoursOf(BoardState state, bool isDark) {
    const auto index = static_cast<std::size_t>(state);
    return isDark ? darkColours[index] : lightColours[index];
}

Rgb SignColour(TransferOutcome outcome, bool isDark) {
    const auto index = static_cast<std::size_t>(outcome);
    return isDark ? darkSigns[index] : lightSigns[index];
}

wxColour ToColour(Rgb rgb) {
    return wxColour(static_cast<unsigned char>(rgb >> 16), static_cast<unsigned char>(rgb >> 8),
                    static_cast<unsigned char>(rgb));
}

}
