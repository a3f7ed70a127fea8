#pragma once
// Free markers: markers placed at an X and a Y value of the plot, owned by their marker
// group. Their axes are chosen by index among the scope's X and Y axes, as for every element
// tied to axes; an index that finds no axis falls back on the main axis.

#include "qv/channels/QVScopeMarkerBase.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/elements/QVOptionalAxesDisplayCollectionItem.h"

#include <string>
#include <utility>

namespace qv {

class TQVScopeMarkerGroup;

// A point in axis values; every change repaints through the owner's closure.
class TQVDisplayMarkerPosition : public TQLPersistentNotify {
public:
    using TQLPersistentNotify::TQLPersistentNotify;

    double GetX() const { return FX; }
    void SetX(double AValue) { Set(FX, AValue); }
    double GetY() const { return FY; }
    void SetY(double AValue) { Set(FY, AValue); }
    TQVRealPoint GetPoint() const { return TQVRealPoint{FX, FY}; }

    QL_CLASS_INFO()

private:
    double FX = 0.0;
    double FY = 0.0;
};

class TQVDisplayMarker : public TQVBasicDisplayMarker {
public:
    explicit TQVDisplayMarker(TQLCollection* ACollection);
    ~TQVDisplayMarker() override;

    TQVDisplayMarkerPosition* GetPosition() const { return FPosition.get(); }
    void SetPosition(const TQVDisplayMarkerPosition* AValue) { FPosition->Assign(AValue); }
    void SetOnDragged(TQVDisplayMarkerDraggedEvent AHandler) { FOnDragged = std::move(AHandler); }
    const TQVDisplayMarkerDraggedEvent& GetOnDragged() const { return FOnDragged; }
    // Ends a drag at ANewPosition: the marker moves there and OnDragged fires when it moved.
    void DragTo(const TQVRealPoint& ANewPosition);
    // The control pixel of a position on the label's axes (turned in a turned display);
    // false while an axis is missing.
    bool GetPixel(const TQVRealPoint& APosition, TPoint& APixel) const;

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayMarkerPosition> FPosition;
    TQVDisplayMarkerDraggedEvent FOnDragged;
};

class TQVScopeMarker : public TQVDisplayMarker, public IQVOptionalAxesDisplayCollectionItem {
public:
    explicit TQVScopeMarker(TQLCollection* ACollection);

    QL_CLASS_INFO()

protected:
    TQVDisplayAxis* GetLabelXAxis() const override { return GetXAxis(); }
    TQVDisplayAxis* GetLabelYAxis() const override { return GetYAxis(); }

private:
    // The indexes are stored together as "AxisIndex_", never one by one.
    bool GetIndexStoredAlone() const { return false; }
};

// The free markers of one group. A new marker joins the group and is named "Marker" and
// the count.
// A marker group's own markers, for the scope's groups and the waterfall's: a new marker joins
// the group and is named "Marker" and the count.
template <class TMarker, class TGroup>
class TQVGroupMarkers : public TQVDisplayCollection<TMarker> {
public:
    TQVGroupMarkers(TGroup* AGroup, TQLLockPtr ALock, TQVDisplayOwner* ADisplay)
        : TQVDisplayCollection<TMarker>(AGroup, std::move(ALock), ADisplay), FGroup(AGroup)
    {}

    TGroup* GetGroup() const { return FGroup; }
    void NewItemCreated(TQLCollectionItem* AItem) override
    {
        TQVDisplayCollection<TMarker>::NewItemCreated(AItem);
        auto* Marker = static_cast<TMarker*>(AItem);
        Marker->SetName("Marker" + std::to_string(this->GetCount()));
        Marker->SetGroup(FGroup);
    }

private:
    TGroup* FGroup;
};

class TQVScopeMarkers : public TQVGroupMarkers<TQVScopeMarker, TQVScopeMarkerGroup> {
public:
    using TQVGroupMarkers::TQVGroupMarkers;

    QL_CLASS_INFO()
};

} // namespace qv
