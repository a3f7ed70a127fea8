#include "qv/component/QVDisplayZoom.h"

#include "qv/component/QVDisplayOwner.h"

#include "qv/foundation/QLClassBuilder.h"

namespace qv {

// ---- TQVBasicDisplayZoom ----

const TQLClassInfo& TQVBasicDisplayZoom::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicDisplayZoom>("TQVBasicDisplayZoom", &TQVDisplayPersistent::StaticClassInfo())
            .Property("MouseWheelEnabled", &TQVBasicDisplayZoom::GetMouseWheelEnabled,
                      &TQVBasicDisplayZoom::SetMouseWheelEnabled, true)
            .Build();
    return Info;
}

// ---- TQVDisplayZoom ----

bool TQVDisplayZoom::IsZoomed() const
{
    return GetDisplay()->IsMainAxisZoomed();
}

double TQVDisplayZoom::GetXMin() const
{
    return GetDisplay()->GetXMinZoom();
}
double TQVDisplayZoom::GetXMax() const
{
    return GetDisplay()->GetXMaxZoom();
}
double TQVDisplayZoom::GetYMin() const
{
    return GetDisplay()->GetYMinZoom();
}
double TQVDisplayZoom::GetYMax() const
{
    return GetDisplay()->GetYMaxZoom();
}

const TQLClassInfo& TQVDisplayZoom::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayZoom>("TQVDisplayZoom", &TQVBasicDisplayZoom::StaticClassInfo())
            .Property("MouseZoom", &TQVDisplayZoom::GetMouseZoom, &TQVDisplayZoom::SetMouseZoom, true)
            .Property("KeyboardZoom", &TQVDisplayZoom::GetKeyboardZoom, &TQVDisplayZoom::SetKeyboardZoom, true)
            .Color("SelectionColor", &TQVDisplayZoom::GetSelectionColor, &TQVDisplayZoom::SetSelectionColor,
                   TAlphaColor(0xFFFFFFFF))
            .Property("HoldOnZoom", &TQVDisplayZoom::GetHoldOnZoom, &TQVDisplayZoom::SetHoldOnZoom, true)
            .Property("HoldOnPan", &TQVDisplayZoom::GetHoldOnPan, &TQVDisplayZoom::SetHoldOnPan, false)
            .Property("Mode", &TQVDisplayZoom::GetMode, &TQVDisplayZoom::SetMode, zmBoth)
            .Build();
    return Info;
}

} // namespace qv
