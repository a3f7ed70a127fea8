#pragma once
// Free markers: markers placed at an X and a Y value of the plot, owned by their marker
// group. Their axes are chosen by index among the scope's X and Y axes; an index that finds
// no axis falls back on the main axis.

#include "qv/channels/QVScopeMarkerBase.h"
#include "qv/component/QVDisplayCollection.h"

#include <functional>

namespace qv {

class TQVScopeMarkerGroup;

// A marker was dragged from AOldPosition to ANewPosition (axis values).
using TQVDisplayMarkerDraggedEvent =
    std::function<void(TQLPersistent* Sender, TQVRealPoint& AOldPosition, TQVRealPoint& ANewPosition)>;

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

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVDisplayMarkerPosition> FPosition;
    TQVDisplayMarkerDraggedEvent FOnDragged;
};

class TQVScopeMarker : public TQVDisplayMarker {
public:
    explicit TQVScopeMarker(TQLCollection* ACollection);

    // The axes by index among the X (Y) axes; the main axis when the index finds none.
    int32_t GetXAxisIndex() const { return FXAxisIndex; }
    void SetXAxisIndex(int32_t AValue);
    int32_t GetYAxisIndex() const { return FYAxisIndex; }
    void SetYAxisIndex(int32_t AValue);
    TQVDisplayAxis* GetXAxis() const;
    TQVDisplayAxis* GetYAxis() const;
    // The control pixel of the marker's position; false while an axis is missing.
    bool GetPixel(const TQVRealPoint& APosition, TPoint& APixel) const;

    QL_CLASS_INFO()

protected:
    TQVDisplayAxis* GetLabelXAxis() const override { return GetXAxis(); }
    TQVDisplayAxis* GetLabelYAxis() const override { return GetYAxis(); }

private:
    int32_t FXAxisIndex = 0;
    int32_t FYAxisIndex = 0;
};

// The free markers of one group. A new marker joins the group and is named "Marker" and
// the count.
class TQVScopeMarkers : public TQVDisplayCollection<TQVScopeMarker> {
public:
    TQVScopeMarkers(TQVScopeMarkerGroup* AGroup, TQLLockPtr ALock, TQVDisplayOwner* ADisplay);

    TQVScopeMarkerGroup* GetGroup() const { return FGroup; }
    void NewItemCreated(TQLCollectionItem* AItem) override;

    QL_CLASS_INFO()

private:
    TQVScopeMarkerGroup* FGroup;
};

} // namespace qv
