#include "qv/elements/QVLabelHitFamily.h"

#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/elements/QVTextLabel.h"

namespace qv {

bool TQVLabelHitFamily::HitTest(TQVHighlightInfo& /*AInfo*/, int32_t X, int32_t Y, const TRect& /*ARect*/,
                                TQVElementHit& AHit)
{
    TQVScopeTextLabel* Label = FLabels->HitTest(X, Y);
    if (!Label)
        return false;
    TQVDisplayOwner* Display = FLabels->GetDisplay();
    const TQVDisplayHighlighting* H = Display ? Display->GetHighlighting() : nullptr;
    AHit.Item = Label;
    AHit.Cursor = Display ? Display->GetCursor() : crDefault;
    AHit.Takes = H && H->GetLabels()->GetMouseHighlighting();
    return true;
}

} // namespace qv
