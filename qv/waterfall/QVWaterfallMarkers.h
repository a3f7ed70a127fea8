#pragma once
// The waterfall's markers. A marker stands at an X (rows) and Y scale value of the picture; in
// a group in mmRelative mode it rides with the history: when rows leave the picture its X
// drops by as many, and once it falls below 0 (its row has left) the marker is deleted. A
// group can join its markers with a line, and is hit on that line as well as on its markers.

#include "qv/channels/QVScopeMarkerBase.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/elements/QVScopeMarker.h"
#include "qv/elements/QVScopeMarkerGroup.h"

#include <memory>

namespace qv {

class TQVWaterfallMarkerGroup;

enum TQVWaterfallMarkerMode : uint8_t { mmRelative, mmAbsolute };

// The line through a group's markers, in their order.
class TQVWaterfallMarkerGroupLine : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    bool GetVisible() const { return FVisible; }
    void SetVisible(bool AValue) { Set(FVisible, AValue); }
    TAlphaColor GetColor() const { return FColor; }
    void SetColor(TAlphaColor AValue) { Set(FColor, AValue); }
    int32_t GetWidth() const { return FWidth; }
    void SetWidth(int32_t AValue) { Set(FWidth, AValue); }
    // The line takes the colour of the group's points (its brush) rather than Color.
    bool GetUsePointsColor() const { return FUsePointsColor; }
    void SetUsePointsColor(bool AValue) { Set(FUsePointsColor, AValue); }

    QL_CLASS_INFO()

private:
    bool FVisible = false;
    TAlphaColor FColor = 0xFFFF0000;
    int32_t FWidth = 1;
    bool FUsePointsColor = true;
};

class TQVWaterfallMarker : public TQVDisplayMarker {
public:
    using TQVDisplayMarker::TQVDisplayMarker;

    QL_CLASS_INFO()

protected:
    TQVDisplayAxis* GetLabelXAxis() const override;
    TQVDisplayAxis* GetLabelYAxis() const override;
    // A marker that goes (its row left the picture) is no longer under the mouse or dragged.
    void BeforeDestruction() override;
};

class TQVWaterfallMarkers : public TQVGroupMarkers<TQVWaterfallMarker, TQVWaterfallMarkerGroup> {
public:
    using TQVGroupMarkers::TQVGroupMarkers;

    QL_CLASS_INFO()
};

class TQVWaterfallMarkerGroup : public TQVDisplayMarkerGroup {
public:
    explicit TQVWaterfallMarkerGroup(TQLCollection* ACollection);
    ~TQVWaterfallMarkerGroup() override;

    TQVWaterfallMarkers* GetMarkers() const { return FMarkers.get(); }
    void SetMarkers(const TQVWaterfallMarkers* AValue) { FMarkers->Assign(AValue); }
    TQVWaterfallMarkerGroupLine* GetLine() const { return FLine.get(); }
    void SetLine(const TQVWaterfallMarkerGroupLine* AValue) { FLine->Assign(AValue); }
    TQVWaterfallMarkerMode GetMode() const { return FMode; }
    void SetMode(TQVWaterfallMarkerMode AValue) { Set(FMode, AValue); }

    // 0 when a marker's symbol holds the pixel (SelectedMarker is that marker, the first in
    // order); otherwise the distance in pixels to the nearest segment between two markers as
    // last drawn, 10000 when there is none.
    double HitTest(int32_t AX, int32_t AY, TQVBasicDisplayMarker*& SelectedMarker) const;
    // In mmRelative mode ACount rows left the picture: every X drops by ACount, and a marker
    // whose X falls below 0 is deleted.
    void ScrollBy(int32_t ACount);
    // The line through the markers (wider in the highlight colour first when the group is
    // lit), then each marker at its place.
    void Draw(TQLCanvas& ACanvas, const TRect& ADispRect, bool APrinting);

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVWaterfallMarkers> FMarkers;
    std::unique_ptr<TQVWaterfallMarkerGroupLine> FLine;
    TQVWaterfallMarkerMode FMode = mmRelative;
};

class TQVWaterfallMarkerGroups : public TQVPaletteDisplayCollection<TQVWaterfallMarkerGroup> {
public:
    TQVWaterfallMarkerGroups(TQLPersistent* AOwner, TQLLockPtr ALock, TQVDisplayOwner* ADisplay);

    // A new group is named "MarkerGroup" and the count and takes, of the waterfall's 14
    // group colours, the one fewest groups use (the earlier on a tie).
    void NewItemCreated(TQLCollectionItem* AItem) override;
    TAlphaColor GetWaterfallNewColor(const TQLCollectionItem* AExcept) const;
    void SetOnClick(TQVDisplayMarkerClickEvent AHandler) { FOnClick = std::move(AHandler); }
    const TQVDisplayMarkerClickEvent& GetOnClick() const { return FOnClick; }
    // Whether the picture must test markers under a press: a click event is set, or a group
    // can be dragged or has a mouse event.
    bool GetNeedsMouseEvents() const;
    // Deletes the markers of every group.
    void ClearAllMarkers();
    void ScrollBy(int32_t ACount);
    // Every visible group, then the ghost of a marker under drag (not when printing).
    void DrawMarkers(TQLCanvas& ACanvas, const TRect& ADispRect, bool APrinting);
    // The group whose markers or line lie nearest the pixel, within 3 pixels, groups from
    // last to first; null when none. AMarker is the marker hit, if any.
    TQVWaterfallMarkerGroup* HitTest(int32_t AX, int32_t AY, TQVBasicDisplayMarker*& AMarker) const;
    // A left press: the last marker (groups and markers from last to first) whose symbol
    // holds the pixel fires OnClick; unless a handler took it, the marker and its group hear
    // the press, and a group that can drag starts the drag in AInfo. Returns whether a marker
    // was hit.
    bool MouseDownOnMarkers(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, TQVHighlightInfo& AInfo);

    QL_CLASS_INFO()

private:
    TQVDisplayMarkerClickEvent FOnClick;
};

} // namespace qv

QL_DECLARE_ENUM(qv::TQVWaterfallMarkerMode, "mmRelative", "mmAbsolute")
