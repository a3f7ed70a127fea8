#include "qv/display/QVDisplayZoom.h"

#include "qv/axes/QVAxisValues.h"
#include "qv/axes/QVDisplayAxis.h"
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
    const TQVDisplayAxis* X = GetDisplay()->GetXAxis();
    const TQVDisplayAxis* Y = GetDisplay()->GetYAxis();
    return (X && X->IsZoomed()) || (Y && Y->IsZoomed());
}

double TQVDisplayZoom::GetXMin() const { return GetDisplay()->GetXMinZoom(); }
double TQVDisplayZoom::GetXMax() const { return GetDisplay()->GetXMaxZoom(); }
double TQVDisplayZoom::GetYMin() const { return GetDisplay()->GetYMinZoom(); }
double TQVDisplayZoom::GetYMax() const { return GetDisplay()->GetYMaxZoom(); }

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

// ---- TQVDisplayAxisZoom ----

TQVDisplayAxisZoom::TQVDisplayAxisZoom(TQVDataDisplay* ADisplay, TQVDisplayAxis* AAxis)
    : TQVBasicDisplayZoom(ADisplay),
      // A width cannot be negative.
      FRange(std::make_unique<TQVDisplayValueRange>(this, ADisplay, true)), FAxis(AAxis)
{
}

TQVDisplayAxisZoom::~TQVDisplayAxisZoom() = default;

void TQVDisplayAxisZoom::SetRange(const TQVDisplayValueRange* AValue) { FRange->Assign(AValue); }

bool TQVDisplayAxisZoom::IsZoomed() const { return FAxis->IsZoomed(); }
double TQVDisplayAxisZoom::GetMin() const { return FAxis->GetZoomedOrCurrentMin(); }
double TQVDisplayAxisZoom::GetMax() const { return FAxis->GetZoomedOrCurrentMax(); }

const TQLClassInfo& TQVDisplayAxisZoom::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayAxisZoom>("TQVDisplayAxisZoom", &TQVBasicDisplayZoom::StaticClassInfo())
            .Property("MousePan", &TQVDisplayAxisZoom::GetMousePan, &TQVDisplayAxisZoom::SetMousePan, true)
            .Object("Range", &TQVDisplayAxisZoom::GetRange)
            .Build();
    return Info;
}

} // namespace qv
