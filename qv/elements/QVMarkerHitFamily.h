#pragma once
// The scope's markers as a family of the data view's hit chain: a marker under the mouse lights
// its group, a left press clicks or starts a drag (channel markers before free ones), the
// drag follows the mouse, and the release moves the marker.

#include "qv/channels/QVDataViewHitFamily.h"

namespace qv {

class TQVScopeMarkerGroups;
class TQVScopeChannelMarker;

class TQVMarkerHitFamily : public IQVDataViewHitFamily {
public:
    // The family asks AGroups, which it does not own.
    explicit TQVMarkerHitFamily(TQVScopeMarkerGroups* AGroups) : FGroups(AGroups) {}

    // The topmost group with a marker under the mouse; the group's mouse cursor is shown, and
    // the group and its marker light up while markers highlight from the mouse.
    bool HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect, TQVElementHit& AHit) override;
    // A marker under the press takes it, when the groups listen to the mouse at all.
    bool StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect) override;
    // A free marker's ghost follows the mouse; a channel marker's ghost goes to the sample
    // under the mouse (the nearest whole sample when its group snaps to samples).
    void DragMove(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect) override;
    // Every marker and group hears the release.
    void ButtonUp(TMouseButton AButton, TShiftState AShift, int32_t X, int32_t Y) override;
    // The dragged marker moves to its ghost.
    bool EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect) override;
    // A channel marker is being dragged.
    bool GetHoldsElementsBack() const override { return DraggedChannelMarker() != nullptr; }

private:
    // The channel marker under drag, found among the channels so that a marker freed during
    // its drag is never named.
    TQVScopeChannelMarker* DraggedChannelMarker() const;

    TQVScopeMarkerGroups* FGroups;
};

} // namespace qv
