#pragma once
// A clip region as a set of rectangles: what the canvas clips to and what the paint code
// asks "does this rectangle touch the region" of.

#include "qv/foundation/QLTypes.h"

#include <algorithm>
#include <vector>

namespace qv {

class TQLRegion {
public:
    TQLRegion() = default;
    explicit TQLRegion(const TRect& ARect) { Add(ARect); }

    // Empty rectangles are ignored.
    void Add(const TRect& ARect)
    {
        if (!ARect.IsEmpty())
            FRects.push_back(ARect);
    }
    void Clear() { FRects.clear(); }

    bool IsEmpty() const { return FRects.empty(); }
    const std::vector<TRect>& GetRects() const { return FRects; }

    // Whether any part of the rectangle lies in the region.
    bool RectInRegion(const TRect& ARect) const
    {
        for (const TRect& R : FRects)
            if (!QLIntersectRect(R, ARect).IsEmpty())
                return true;
        return false;
    }
    bool PtInRegion(const TPoint& APoint) const
    {
        for (const TRect& R : FRects)
            if (R.Contains(APoint))
                return true;
        return false;
    }
    TRect GetBounds() const;

private:
    std::vector<TRect> FRects;
};

} // namespace qv
