#pragma once
// The scope's marker groups: each group gives its markers their look and owns its free
// markers; channel markers refer to a group by index. The collection draws every group's
// markers where the scope's draw order puts markers, and answers the data view's hit test.

#include "qv/component/QVScopeElements.h"
#include "qv/elements/QVScopeMarker.h"

#include <memory>

namespace qv {

class TQVScopeChannelMarker;

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

    // Each group draws (every group's markers) in turn, then the ghost of a free marker under
    // drag.
    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting) override;

    QL_CLASS_INFO()

private:
    TQVDisplayMarkerClickEvent FOnChannelMarkerClick;
    TQVDisplayMarkerClickEvent FOnClick;
};

} // namespace qv
