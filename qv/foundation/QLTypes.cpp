#include "qv/foundation/QLTypes.h"

#include <algorithm>

namespace qv {

TRect QLIntersectRect(const TRect& A, const TRect& B)
{
    TRect R{std::max(A.Left, B.Left), std::max(A.Top, B.Top), std::min(A.Right, B.Right),
            std::min(A.Bottom, B.Bottom)};
    if (R.IsEmpty())
        return TRect{};
    return R;
}

} // namespace qv
