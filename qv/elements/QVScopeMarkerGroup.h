#pragma once
// The scope's marker groups: each group gives its markers their look and owns its free
// markers; channel markers refer to a group by index. The collection draws every group's
// markers where the scope's draw order puts markers, and answers the data view's hit test.

#include "qv/component/QVScopeElements.h"
#include "qv/elements/QVScopeMarker.h"

#include <memory>

namespace qv {

class TQVScopeChannelMarker;
class TQVHighlightInfo;

// A click on a marker: the owner's index (the group's, or the channel's for a channel
// marker), the marker's index, its position, and whether a handler took the click.
using TQVDisplayMarkerClickEvent = std::function<void(TQLPersistent* Sender, int32_t AOwnerIndex, int32_t MarkerIndex,
                                                      TQVRealPoint ClickedValue, bool& Handled)>;

class TQVScopeMarkerGroup : public TQVDisplayMarkerGroup {
public:
    explicit TQVScopeMarkerGroup(TQLCollection* ACollection);
    ~TQVScopeMarkerGroup() override;

    bool GetSnapToSample() const { return FSnapToSample; }
    void SetSnapToSample(bool AValue) { Set(FSnapToSample, AValue); }
    TQVScopeMarkers* GetMarkers() const { return FMarkers.get(); }
    void SetMarkers(const TQVScopeMarkers* AValue) { FMarkers->Assign(AValue); }

    // The first marker of the group, in the order they joined it, whose symbol holds the
    // pixel (AX, AY).
    bool HitTest(int32_t AX, int32_t AY, TQVBasicDisplayMarker*& SelectedMarker) const;
    // Frees every marker of the group: its own free markers and the channel markers that use
    // it (each leaves its channel).
    void Clear();
    // Draws the free markers of every visible group of the scope, not only this one's; the
    // part is not looked at.
    void Draw(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& ADispRect, bool APrinting);

    QL_CLASS_INFO()

private:
    bool FSnapToSample = true;
    std::unique_ptr<TQVScopeMarkers> FMarkers;
};

class TQVScopeMarkerGroups : public TQVPaletteDisplayCollection<TQVScopeMarkerGroup>, public IQVScopeElementFamily {
public:
    TQVScopeMarkerGroups(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay);

    // A new group is named "MarkerGroup" and the count, and takes the least used colour.
    void NewItemCreated(TQLCollectionItem* AItem) override;
    // Whether the data view must test markers under the mouse: a click event is set, or a
    // group can be dragged or has a mouse event.
    bool GetNeedsMouseEvents() const;
    void SetOnChannelMarkerClick(TQVDisplayMarkerClickEvent AHandler) { FOnChannelMarkerClick = std::move(AHandler); }
    const TQVDisplayMarkerClickEvent& GetOnChannelMarkerClick() const { return FOnChannelMarkerClick; }
    void SetOnClick(TQVDisplayMarkerClickEvent AHandler) { FOnClick = std::move(AHandler); }
    const TQVDisplayMarkerClickEvent& GetOnClick() const { return FOnClick; }

    // ---- The data view's mouse over markers (QVScopeMarkerMouse.cpp) ----
    // The marker under the pixel: groups from last to first, each by its own HitTest; null
    // when none. AMarker is the marker hit.
    TQVScopeMarkerGroup* HitTest(int32_t AX, int32_t AY, TQVBasicDisplayMarker*& AMarker) const;
    // A press of the left button over the markers, when GetNeedsMouseEvents: channel markers
    // first (channels and their markers from last to first), then free markers (groups and
    // markers from last to first). The first marker hit fires the click event of its kind;
    // unless a handler took it, the marker and then its group hear the press, and a group
    // that can drag starts the drag: a channel marker's through its BeginDrag, a free
    // marker's in AInfo (FDraggedMarker, FDraggedMarkerPosition). Returns whether a marker
    // was hit; the press is then the markers'.
    bool MouseDownOnMarkers(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, TQVHighlightInfo& AInfo,
                            TQVScopeChannelMarker*& ADraggedChannelMarker);
    // A move during a free marker's drag: the dragged position is the value under the mouse
    // on the marker's axes, X held to the X axis' full range (upper bound first), Y free.
    void DragMarker(TQVHighlightInfo& AInfo, int32_t AX, int32_t AY) const;
    // A release: every channel marker and then every group hears it, last to first.
    void MouseUpOnMarkers(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY);
    // Ends a free marker's drag: the marker moves to the dragged position (OnDragged fires
    // when it moved). Returns whether a drag was under way.
    bool EndMarkerDrag(TQVHighlightInfo& AInfo);

    // Each group draws (every group's markers) in turn, then the ghost of a free marker under
    // drag.
    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override;

    QL_CLASS_INFO()

private:
    TQVDisplayMarkerClickEvent FOnChannelMarkerClick;
    TQVDisplayMarkerClickEvent FOnClick;
};

} // namespace qv
