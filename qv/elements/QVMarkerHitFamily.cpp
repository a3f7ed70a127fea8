#include "qv/elements/QVMarkerHitFamily.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeChannelMarker.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/elements/QVScopeMarkerGroup.h"

#include <cmath>

namespace qv {

namespace {

TQVScopeChannels* ChannelsOf(TQVDisplayOwner* ADisplay)
{
    auto* Scope = dynamic_cast<TQVScopeOwner*>(ADisplay);
    return Scope ? Scope->GetChannels() : nullptr;
}

} // namespace

bool TQVMarkerHitFamily::HitTest(TQVHighlightInfo& /*AInfo*/, int32_t X, int32_t Y, const TRect& /*ARect*/,
                                 TQVElementHit& AHit)
{
    TQVBasicDisplayMarker* Marker = nullptr;
    TQVScopeMarkerGroup* Group = FGroups->HitTest(X, Y, Marker);
    if (!Group)
        return false;
    const TQVDisplayOwner* Display = FGroups->GetDisplay();
    const TQVDisplayHighlighting* H = Display ? Display->GetHighlighting() : nullptr;
    AHit.Item = Group;
    AHit.Cursor = Group->GetMouseCursor();
    AHit.Takes = H && H->GetMarkers()->GetMouseHighlighting();
    AHit.Marker = AHit.Takes ? Marker : nullptr;
    return true;
}

bool TQVMarkerHitFamily::StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y,
                                   const TRect& /*ARect*/)
{
    if (!FGroups->GetNeedsMouseEvents())
        return false;
    TQVScopeChannelMarker* Dragged = nullptr;
    return FGroups->MouseDownOnMarkers(mbLeft, AShift, X, Y, AInfo, Dragged);
}

void TQVMarkerHitFamily::DragMove(TQVHighlightInfo& AInfo, TShiftState /*AShift*/, int32_t X, int32_t Y,
                                  const TRect& /*ARect*/)
{
    if (AInfo.FDraggedMarker) {
        FGroups->DragMarker(AInfo, X, Y);
        return;
    }
    TQVScopeChannelMarker* Marker = DraggedChannelMarker();
    TQVScopeChannel* Channel = Marker ? Marker->GetChannel() : nullptr;
    const TQVDisplayAxis* XAxis = Channel ? Channel->GetXAxis() : nullptr;
    if (!XAxis)
        return;
    // The sample where the channel crosses the X value under the mouse; no crossing (the
    // mouse is past the data, or the channel has a gap there) leaves the ghost where it is.
    const bool Turned = FGroups->GetDisplay()->GetIsVertical();
    const double Value = XAxis->ScaleTickToData(XAxis->PixelToScale(Turned ? Y : X));
    double Position = std::nan("");
    Channel->CalcVIntersections(
        [&](void*, int32_t, int32_t, double APosition, double, double, bool) {
            if (std::isnan(Position))
                Position = APosition;
        },
        nullptr, Value);
    if (std::isnan(Position))
        return;
    Position += Channel->GetScreenStartIndex();
    const auto* Group = dynamic_cast<const TQVScopeMarkerGroup*>(Marker->GetGroup());
    if (Group && Group->GetSnapToSample())
        Position = std::round(Position);
    Marker->DragTo(Position);
    Marker->InvalidateItem();
}

void TQVMarkerHitFamily::ButtonUp(TMouseButton AButton, TShiftState AShift, int32_t X, int32_t Y)
{
    FGroups->MouseUpOnMarkers(AButton, AShift, X, Y);
}

bool TQVMarkerHitFamily::EndDrag(TQVHighlightInfo& AInfo, TShiftState /*AShift*/, int32_t /*X*/, int32_t /*Y*/,
                                 const TRect& /*ARect*/)
{
    if (FGroups->EndMarkerDrag(AInfo))
        return true;
    TQVScopeChannelMarker* Marker = DraggedChannelMarker();
    if (!Marker)
        return false;
    Marker->EndDrag(true);
    return true;
}

TQVScopeChannelMarker* TQVMarkerHitFamily::DraggedChannelMarker() const
{
    if (TQVScopeChannels* Channels = ChannelsOf(FGroups->GetDisplay()))
        for (TQVScopeChannel* Channel : *Channels)
            for (TQVScopeChannelMarker* Marker : *Channel->GetMarkers())
                if (Marker->GetIsDragging())
                    return Marker;
    return nullptr;
}

} // namespace qv
