#pragma once
// The element families that the data view asks, in a fixed order, what lies under the
// mouse: cursors, cursor links, marker groups, zones, ellipses, labels; the channels come
// last and are the data view's own. A family that is not there is passed over, so a new
// kind of element takes its place in the order by registering.

#include "qv/foundation/QLTypes.h"

#include <array>
#include <cstdint>

namespace qv {

class TQVHighlightInfo;
class TQVDisplaySelectableCollectionItem;
class TQVBasicDisplayMarker;

// The families in the order of their precedence under the mouse.
enum TQVHitFamilyKind : uint8_t { hfCursors, hfCursorLinks, hfMarkerGroups, hfZones, hfEllipses, hfLabels };
inline constexpr int32_t QVHitFamilyKindCount = 6;

// What a family found under the mouse.
struct TQVElementHit {
    // The element hit.
    TQVDisplaySelectableCollectionItem* Item = nullptr;
    // The marker of a marker group that was hit, if any.
    TQVBasicDisplayMarker* Marker = nullptr;
    // The mouse cursor the element asks for.
    TCursor Cursor = crDefault;
    // Whether the element becomes the highlighted item; one that does not (its kind does not
    // highlight from the mouse) only sets the mouse cursor, and the search goes on.
    bool Takes = true;
};

class IQVDataViewHitFamily {
public:
    virtual ~IQVDataViewHitFamily() = default;
    // The topmost element at (X, Y) of the data view's rectangle ARect, asked from the last
    // element to the first. May set the movement flags of AInfo.
    virtual bool HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect, TQVElementHit& AHit) = 0;
    // A left press at (X, Y): the element under it starts a drag. True when one did; the
    // press then belongs to the family until EndDrag.
    virtual bool StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect)
    {
        return false;
    }
    // The mouse moved to (X, Y) while the family may hold a drag: the dragged element
    // follows it.
    virtual void DragMove(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect) {}
    // Any button went up at (X, Y); every family hears it before a left release ends a drag.
    virtual void ButtonUp(TMouseButton AButton, TShiftState AShift, int32_t X, int32_t Y) {}
    // The left button went up: the family's drag, if it has one, ends at (X, Y). True when
    // it had one.
    virtual bool EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect)
    {
        return false;
    }
    // A drag of the family is under way during which no element lights up under the mouse,
    // only the channels.
    virtual bool GetHoldsElementsBack() const { return false; }
};

// The families of a data view by kind; the table does not own them.
using TQVDataViewHitFamilies = std::array<IQVDataViewHitFamily*, QVHitFamilyKindCount>;

} // namespace qv
