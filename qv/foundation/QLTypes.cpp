#include "qv/foundation/QLTypes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace qv {

int32_t QLRoundToInt(double AValue)
{
    if (std::isnan(AValue))
        return 0;
    if (AValue >= 2147483647.0)
        return INT32_MAX;
    if (AValue <= -2147483648.0)
        return INT32_MIN;
    return static_cast<int32_t>(std::nearbyint(AValue));
}

TRect QLIntersectRect(const TRect& A, const TRect& B)
{
    TRect R{std::max(A.Left, B.Left), std::max(A.Top, B.Top), std::min(A.Right, B.Right), std::min(A.Bottom, B.Bottom)};
    if (R.IsEmpty())
        return TRect{};
    return R;
}

} // namespace qv
