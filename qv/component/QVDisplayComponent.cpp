#include "qv/component/QVDisplayComponent.h"

#include "qv/component/QVDisplayOwner.h"

namespace qv {

TQVDisplayComponent::TQVDisplayComponent(TQVDisplayOwner* ADisplay)
    : TQLPersistent(ADisplay, ADisplay ? ADisplay->GetLock() : nullptr), FDisplay(ADisplay)
{
    FDisplay->AddComponent(this);
}

TQVDisplayComponent::~TQVDisplayComponent()
{
    FDisplay->RemoveComponent(this);
}

void TQVDisplayComponent::MouseMove(TShiftState /*AShift*/, int32_t AX, int32_t AY, bool& AHandled)
{
    if (!AHandled && GetDrawRect().Contains(TPoint{AX, AY})) {
        AHandled = true;
        if (!FMouseIsInView) {
            FMouseIsInView = true;
            MouseEnterView();
        }
    } else if (FMouseIsInView) {
        FMouseIsInView = false;
        MouseLeaveView();
    }
}

void TQVDisplayComponent::MouseLeave()
{
    if (FMouseIsInView) {
        FMouseIsInView = false;
        MouseLeaveView();
    }
}

const TQLClassInfo& TQVDisplayComponent::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVDisplayComponent", &TQLPersistent::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
