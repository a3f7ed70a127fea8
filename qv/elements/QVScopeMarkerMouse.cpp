// The data view's mouse over markers: which marker is hit, what a press, a drag and a release
// do to markers and their groups. The data view calls these in its own order of precedence.
#include "qv/axes/QVDisplayAxis.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeChannelMarker.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/elements/QVScopeMarkerGroup.h"

#include <algorithm>

namespace qv {

namespace {

TQVScopeChannels* ChannelsOf(TQVDisplayOwner* ADisplay)
{
    auto* Scope = dynamic_cast<TQVScopeOwner*>(ADisplay);
    return Scope ? Scope->GetChannels() : nullptr;
}

} // namespace

TQVScopeMarkerGroup* TQVScopeMarkerGroups::HitTest(int32_t AX, int32_t AY, TQVBasicDisplayMarker*& AMarker) const
{
    for (TQVScopeMarkerGroup* Group : GetReverse()) {
        TQVBasicDisplayMarker* Marker = nullptr;
        if (Group->GetVisible() && Group->HitTest(AX, AY, Marker)) {
            AMarker = Marker;
            return Group;
        }
    }
    return nullptr;
}

bool TQVScopeMarkerGroups::MouseDownOnMarkers(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY,
                                              TQVHighlightInfo& AInfo, TQVScopeChannelMarker*& ADraggedChannelMarker)
{
    if (AButton != mbLeft || !GetNeedsMouseEvents())
        return false;
    // The marker hears the press, then its group; a group that can drag starts the drag.
    auto Press = [&](TQVBasicDisplayMarker* AMarker) {
        AMarker->MouseDown(AButton, AShift, AX, AY, true);
        TQVDisplayMarkerGroup* Group = AMarker->GetGroup();
        if (!Group)
            return false;
        Group->MouseDown(AButton, AShift, AX, AY, true);
        return Group->GetCanDrag();
    };
    if (TQVScopeChannels* Channels = ChannelsOf(GetDisplay()))
        for (TQVScopeChannel* Channel : Channels->GetReverse())
            for (TQVScopeChannelMarker* Marker : Channel->GetMarkers()->GetReverse()) {
                if (!Marker->HitTest(AX, AY))
                    continue;
                bool Handled = false;
                if (FOnChannelMarkerClick)
                    FOnChannelMarkerClick(this, Channel->GetIndex(), Marker->GetIndex(),
                                          TQVRealPoint{Marker->GetPosition(), 0.0}, Handled);
                if (!Handled && Press(Marker)) {
                    Marker->BeginDrag();
                    ADraggedChannelMarker = Marker;
                }
                return true;
            }
    for (TQVScopeMarkerGroup* Group : GetReverse())
        for (TQVScopeMarker* Marker : Group->GetMarkers()->GetReverse()) {
            if (!Marker->HitTest(AX, AY))
                continue;
            bool Handled = false;
            if (FOnClick)
                FOnClick(this, Group->GetIndex(), Marker->GetIndex(), Marker->GetPosition()->GetPoint(), Handled);
            if (!Handled && Press(Marker)) {
                AInfo.FDraggedMarker = Marker;
                AInfo.FDraggedMarkerPosition = Marker->GetPosition()->GetPoint();
            }
            return true;
        }
    return false;
}

void TQVScopeMarkerGroups::DragMarker(TQVHighlightInfo& AInfo, int32_t AX, int32_t AY) const
{
    auto* Marker = dynamic_cast<TQVScopeMarker*>(AInfo.FDraggedMarker);
    const TQVDisplayAxis* XAxis = Marker ? Marker->GetXAxis() : nullptr;
    const TQVDisplayAxis* YAxis = Marker ? Marker->GetYAxis() : nullptr;
    if (!XAxis || !YAxis)
        return;
    // In a turned display the X axis runs down the control.
    const bool Turned = GetDisplay()->GetIsVertical();
    double X = XAxis->PixelToScale(Turned ? AY : AX);
    const double Y = YAxis->PixelToScale(Turned ? AX : AY);
    X = std::min(X, XAxis->GetScaleTick().GetFull().GetMax().GetValue());
    X = std::max(X, XAxis->GetScaleTick().GetFull().GetMin().GetValue());
    AInfo.FDraggedMarkerPosition = TQVRealPoint{X, Y};
    Marker->InvalidateItem();
}

void TQVScopeMarkerGroups::MouseUpOnMarkers(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY)
{
    if (TQVScopeChannels* Channels = ChannelsOf(GetDisplay()))
        for (TQVScopeChannel* Channel : Channels->GetReverse())
            for (TQVScopeChannelMarker* Marker : Channel->GetMarkers()->GetReverse())
                Marker->MouseUp(AButton, AShift, AX, AY, true);
    for (TQVScopeMarkerGroup* Group : GetReverse())
        Group->MouseUp(AButton, AShift, AX, AY, true);
}

bool TQVScopeMarkerGroups::EndMarkerDrag(TQVHighlightInfo& AInfo)
{
    TQVDisplayMarker* Marker = AInfo.FDraggedMarker;
    if (!Marker)
        return false;
    AInfo.FDraggedMarker = nullptr;
    Marker->DragTo(AInfo.FDraggedMarkerPosition);
    Marker->InvalidateItem();
    return true;
}

} // namespace qv
