#pragma once
// The value-to-colour rules of the level display. A value is given as its distance AValue
// from the low end of the level range and the range's length MaxValue, so that
// AValue / MaxValue runs from 0 to 1. Colours are 0xAARRGGBB with alpha 255; in memory (little
// endian) that is blue, green, red, alpha, the order of the waterfall's pixel image.
//
// The rules, in the order they are tried:
//   grey scale:      g = Round(AValue / MaxValue * 255), cut to 8 bits, in all three bytes;
//   two colours up:  a gradient through the colours set at equal distances (Gradient);
//   otherwise:       the built-in scale of 1409 steps, black, blue, cyan, green, yellow,
//                    red, towards magenta (BuiltIn).
// The level bar differs in two points: one colour fades from black to it (Fade), and no
// colour at all uses the built-in scale with step 704 when MaxValue is 0.
// Round is to nearest, ties to even. A NaN value counts as 0: it takes the bottom colour.

#include "qv/foundation/QLTypes.h"

#include <cstdint>
#include <vector>

namespace qv {

// The built-in scale at step AIndex (0..1408).
TAlphaColor QVLevelBuiltInColor(int32_t AIndex);

class TQVLevelColorMap {
public:
    TQVLevelColorMap() = default;
    TQVLevelColorMap(bool AGrayScale, std::vector<TAlphaColor> AColors)
        : FGrayScale(AGrayScale), FColors(std::move(AColors))
    {}

    // The colour of a pixel of the waterfall's image.
    TAlphaColor ValueToColorGBR(double AValue, double MaxValue) const;
    // The colour of the level bar.
    TAlphaColor ValueToColor(double AValue, double MaxValue) const;

    // Colours ACount values of a row: each (its QVLog10a with ALogarithmic) clamped to
    // ALow..AHigh (a NaN to ALow) and coloured as ValueToColorGBR(value - ALow, ARange).
    void ColourRun(const double* AValues, int32_t ACount, uint32_t* AOut, double ALow, double AHigh, double ARange,
                   bool ALogarithmic) const;

    TAlphaColor Gray(double AValue, double MaxValue) const;
    TAlphaColor BuiltIn(double AValue, double MaxValue) const;
    TAlphaColor Fade(double AValue, double MaxValue) const;
    TAlphaColor Gradient(double AValue, double MaxValue) const;

    bool GetGrayScale() const { return FGrayScale; }
    const std::vector<TAlphaColor>& GetColors() const { return FColors; }

private:
    bool FGrayScale = false;
    std::vector<TAlphaColor> FColors;
};

} // namespace qv
