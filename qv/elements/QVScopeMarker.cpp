// Free markers and the collection of a group's free markers.
#include "qv/elements/QVScopeMarker.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/elements/QVScopeMarkerGroup.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

const TQLClassInfo& TQVDisplayMarkerPosition::StaticClassInfo()
{
    using C = TQVDisplayMarkerPosition;
    static const TQLClassInfo Info =
        TQLClassBuilder<C>("TQVDisplayMarkerPosition", &TQLPersistentNotify::StaticClassInfo())
            .Property("X", &C::GetX, &C::SetX, 0.0)
            .Property("Y", &C::GetY, &C::SetY, 0.0)
            .Build();
    return Info;
}

// ---- TQVDisplayMarker ----

TQVDisplayMarker::TQVDisplayMarker(TQLCollection* ACollection)
    : TQVBasicDisplayMarker(ACollection),
      FPosition(std::make_unique<TQVDisplayMarkerPosition>(this, GetLock(), [this] { InvalidateItem(); }))
{}

TQVDisplayMarker::~TQVDisplayMarker() = default;

void TQVDisplayMarker::DragTo(const TQVRealPoint& ANewPosition)
{
    TQVRealPoint Old = FPosition->GetPoint();
    TQVRealPoint New = ANewPosition;
    FPosition->SetX(New.X);
    FPosition->SetY(New.Y);
    if ((Old.X != New.X || Old.Y != New.Y) && FOnDragged)
        FOnDragged(this, Old, New);
}

bool TQVDisplayMarker::GetPixel(const TQVRealPoint& APosition, TPoint& APixel) const
{
    const TQVDisplayAxis* XAxis = GetLabelXAxis();
    const TQVDisplayAxis* YAxis = GetLabelYAxis();
    if (!XAxis || !YAxis)
        return false;
    const int32_t Along = XAxis->ScaleToPixel(APosition.X);
    const int32_t Across = YAxis->ScaleToPixel(APosition.Y);
    // In a turned display the X axis runs down the control.
    APixel = GetDisplay()->GetIsVertical() ? TPoint{Across, Along} : TPoint{Along, Across};
    return true;
}

const TQLClassInfo& TQVDisplayMarker::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayMarker>("TQVDisplayMarker", &TQVBasicDisplayMarker::StaticClassInfo())
            .Object("Position", &TQVDisplayMarker::GetPosition)
            .Build();
    return Info;
}

// ---- TQVScopeMarker ----

TQVScopeMarker::TQVScopeMarker(TQLCollection* ACollection)
    : TQVDisplayMarker(ACollection), IQVOptionalAxesDisplayCollectionItem(this)
{}

const TQLClassInfo& TQVScopeMarker::StaticClassInfo()
{
    using C = TQVScopeMarker;
    static const TQLClassInfo Info = TQLClassBuilder<C>("TQVScopeMarker", &TQVDisplayMarker::StaticClassInfo())
                                         .Property("XAxisIndex", &C::GetXAxisIndex, &C::SetXAxisIndex, 0)
                                         .StoredWhen(&C::GetIndexStoredAlone)
                                         .Property("YAxisIndex", &C::GetYAxisIndex, &C::SetYAxisIndex, 0)
                                         .StoredWhen(&C::GetIndexStoredAlone)
                                         .Defined("AxisIndex_", &C::GetAxisIndex_, &C::ReadAxisIndex)
                                         .StoredWhen(&C::GetAxisIndexStored)
                                         .Build();
    return Info;
}

// ---- TQVScopeMarkers ----

const TQLClassInfo& TQVScopeMarkers::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVScopeMarkers", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
