// The scope Y axis' own pan: its full scale follows the data, so a pan is not held to it.
#include "qv/axes/QVScopeYAxis.h"

#include "qv/component/QVDisplayOwner.h"

namespace qv {

void TQVBasicScopeYAxis::MouseMoveScale(const TPoint& AFrom, const TPoint& ATo)
{
    auto Guard = GetLock()->AcquireWrite();
    // Values grow upwards on a plain Y axis, against the pixels.
    const int32_t Drag = GetIsVertical() ? AFrom.Y - ATo.Y : AFrom.X - ATo.X;
    const double Offset = DragToScale(GetIsReversedDirect() ? -Drag : Drag);
    TQVDisplayOwner* Display = GetDisplay();
    const TQVRealRanges Kept = Display->GetZoomRanges();
    FZoomMax = FMouseZoomMax - Offset;
    FZoomMin = FMouseZoomMin - Offset;
    CorrectMinMax();
    InvalidateMinMaxCache(false);
    Display->ZoomChanged(Kept, zoMousePan);
    SendZoomChange(zoMousePan);
}

} // namespace qv
