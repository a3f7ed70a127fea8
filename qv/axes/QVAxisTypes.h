#pragma once
// Types and functions shared by every value axis: the scale modes, the growth direction of an
// axis on screen, and the logarithm that logarithmic axes use.

#include "qv/foundation/QLEnumInfo.h"

#include <cmath>
#include <cstdint>

namespace qv {

// How values are spread along an axis. smLogDecascale is logarithmic with a tick at every
// whole multiple of each decade.
enum TQVScaleMode : uint8_t { smLinear, smLogarithmic, smLogDecascale };

// The screen direction in which values grow.
enum TQVAxisDirection : uint8_t { adToRight, adToLeft, adToUp, adToDown };

// The logarithm of every logarithmic axis: log10(x + 1) at and above zero, mirrored below it.
// Defined for every real number, 0 at 0 and odd, so a logarithmic axis passes smoothly through
// zero into negative values. The first decade thus runs from 0 to 9.
inline double QVLog10a(double AValue)
{
    if (AValue >= 0.0)
        return std::log10(AValue + 1.0);
    return 0.0 - std::log10(1.0 - AValue);
}

// The inverse of QVLog10a.
inline double QVExp10a(double AValue)
{
    if (AValue >= 0.0)
        return std::pow(10.0, AValue) - 1.0;
    return 0.0 - (std::pow(10.0, 0.0 - AValue) - 1.0);
}

} // namespace qv

QL_DECLARE_ENUM(qv::TQVScaleMode, "smLinear", "smLogarithmic", "smLogDecascale")
QL_DECLARE_ENUM(qv::TQVAxisDirection, "adToRight", "adToLeft", "adToUp", "adToDown")
