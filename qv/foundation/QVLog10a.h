#pragma once
// The logarithm of every logarithmic scale in the library, and its inverse.

#include <cmath>

namespace qv {

// log10(x + 1) at and above zero, mirrored below it. Defined for every real number, 0 at 0
// and odd, so a logarithmic axis passes smoothly through zero into negative values. The
// first decade thus runs from 0 to 9.
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
