#include "qv/axes/QVDisplayAxisZoomSettings.h"

#include "qv/axes/QVAxisValues.h"
#include "qv/axes/QVDisplayAxis.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

// ---- TQVDisplayAxisZoom ----

TQVDisplayAxisZoom::TQVDisplayAxisZoom(TQVDisplayOwner* ADisplay, TQVDisplayAxis* AAxis)
    : TQVBasicDisplayZoom(ADisplay),
      // A width cannot be negative.
      FRange(std::make_unique<TQVDisplayValueRange>(this, ADisplay, true)), FAxis(AAxis)
{}

TQVDisplayAxisZoom::~TQVDisplayAxisZoom() = default;

void TQVDisplayAxisZoom::SetRange(const TQVDisplayValueRange* AValue)
{
    FRange->Assign(AValue);
}

bool TQVDisplayAxisZoom::IsZoomed() const
{
    return FAxis->IsZoomed();
}
double TQVDisplayAxisZoom::GetMin() const
{
    return FAxis->GetZoomedOrCurrentMin();
}
double TQVDisplayAxisZoom::GetMax() const
{
    return FAxis->GetZoomedOrCurrentMax();
}

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
