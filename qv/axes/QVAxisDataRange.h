#pragma once
// Extremes and nearest values over channel samples, as the axes need them: samples that are
// not finite (NaN gaps, infinities) take no part, so a scale follows the finite data.

#include "qv/foundation/QVArrayOps.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace qv {

// The finite extremes of AData[AFirst..ALast], the indexes clamped to the AData's ASize
// entries. False, with AMin and AMax untouched, when no finite sample lies in the range.
inline bool QVFiniteMinMax(const double* AData, int32_t ASize, int64_t AFirst, int64_t ALast, double& AMin,
                           double& AMax)
{
    if (!AData || ASize <= 0)
        return false;
    const int64_t First = std::max<int64_t>(AFirst, 0);
    const int64_t Last = std::min<int64_t>(ALast, ASize - 1);
    if (Last < First)
        return false;
    return QVArrayFiniteMinMax(AData + First, size_t(Last - First + 1), AMin, AMax);
}

// Moves AValue onto the nearest finite sample of AData (the first one on a tie) when it lies
// strictly between the finite extremes; leaves it alone otherwise.
inline void QVSnapToNearestSample(const double* AData, int32_t ASize, double& AValue)
{
    double Lo = 0.0, Hi = 0.0;
    if (!QVFiniteMinMax(AData, ASize, 0, ASize - 1, Lo, Hi) || !(Lo < AValue && AValue < Hi))
        return;
    double Best = AValue;
    double BestDistance = INFINITY;
    for (int32_t I = 0; I < ASize; ++I) {
        const double V = AData[I];
        if (!std::isfinite(V))
            continue;
        const double Distance = std::fabs(V - AValue);
        if (Distance < BestDistance) {
            BestDistance = Distance;
            Best = V;
        }
    }
    AValue = Best;
}

} // namespace qv
