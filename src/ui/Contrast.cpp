#include "ui/Contrast.h"

#include <algorithm>
#include <cmath>

namespace tarvin {

namespace {

double Linear(unsigned char channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Luminance(const wxColour& colour) {
    return 0.2126 * Linear(colour.Red()) + 0.7152 * Linear(colour.Green()) + 0.0722 * Linear(colour.Blue());
}

}

double Contrast(const wxColour& one, const wxColour& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

bool IsDark(const wxColour& ground) {
    return Contrast(ground, *wxWHITE) > Contrast(ground, *wxBLACK);
}

wxColour Readable(const wxColour& wanted, const wxColour& ground, double leastContrast) {
    constexpr int steps = 16;
    const wxColour& goal = IsDark(ground) ? *wxWHITE : *wxBLACK;
    for (int step = 0; step < steps; ++step) {
        const wxColour colour = Mixed(goal, wanted, static_cast<double>(step) / steps);
        if (Contrast(colour, ground) >= leastContrast)
            return colour;
    }
    return goal;
}

wxColour Mixed(const wxColour& colour, const wxColour& ground, double share) {
    const auto mix = [share](unsigned char above, unsigned char below) {
        return static_cast<unsigned char>(std::lround(above * share + below * (1 - share)));
    };
    return {mix(colour.Red(), ground.Red()), mix(colour.Green(), ground.Green()), mix(colour.Blue(), ground.Blue())};
}

}
