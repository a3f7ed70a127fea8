#pragma once
// The run-time state of highlighting and dragging in a scope's plot: which element is under
// the mouse, which ones the legend points at, and which is being dragged. The data view keeps
// one record; every element's hit test and drawing read and write it. It holds no element:
// the pointers name elements that their collections own.
//
// The rules by which an element is taken, lit and drawn lit are the same for every kind of
// element, and stand here as templates over the element's type.

#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/foundation/QLPersistent.h"
#include "qv/foundation/QLTypes.h"

namespace qv {

class TQVDisplaySelectableCollectionItem;
class TQVDisplayCursor;
class TQVDisplayCursorLink;
class TQVDisplayTextLabel;
class TQVBasicDisplayMarker;
class TQVDisplayMarker;

class TQVHighlightInfo {
public:
    // The element under the mouse: a cursor, cursor link, marker group, zone, label or channel.
    TQLPersistent* FHighlightedItem = nullptr;
    // The cursor or link under the mouse can move vertically or horizontally.
    bool FVMoveCursor = false;
    bool FHMoveCursor = false;
    bool FVMoveCursorLink = false;
    bool FHMoveCursorLink = false;
    // Elements the legend points at.
    TQVDisplayCursor* FExtHighlightCursor = nullptr;
    TQVDisplayCursorLink* FExtHighlightCursorLink = nullptr;
    TQVDisplayTextLabel* FExtHighlightTextLabel = nullptr;
    TQLPersistent* FExtHighlightMarkerGroup = nullptr;
    // The marker under the mouse.
    TQVBasicDisplayMarker* FHighlightedMarker = nullptr;
    // Drags in progress.
    TQVDisplayCursor* FDraggedCursor = nullptr;
    TQVDisplayCursorLink* FDraggedLink = nullptr;
    TQVDisplaySelectableCollectionItem* FMouseDownElement = nullptr;
    TQVDisplayMarker* FDraggedMarker = nullptr;
    TQVRealPoint FDraggedMarkerPosition{};

    // The mouse left the plot: nothing is under it or pointed at any more. Drags and the
    // movement flags stay, so that a drag carries on when the mouse comes back.
    void MouseLeave()
    {
        FExtHighlightCursor = nullptr;
        FExtHighlightCursorLink = nullptr;
        FExtHighlightTextLabel = nullptr;
        FHighlightedItem = nullptr;
        FExtHighlightMarkerGroup = nullptr;
        FHighlightedMarker = nullptr;
    }
};

// Whether the legend shows AItem lit: it is under the mouse, or the legend points at it and
// its kind lights its legend button.
template <class T>
bool QVGetItemHighlighted(const T* AItem, const TQLPersistent* AHighlightedItem, const T* AExtItem,
                          const TQVDisplayItemHighlighting& ASettings)
{
    if (!AItem)
        return false;
    if (static_cast<const TQLPersistent*>(AItem) == AHighlightedItem)
        return true;
    return AItem == AExtItem && ASettings.GetHiglightLegendButton();
}

// The legend points at AItem (AValue) or away from it, through the slot AExtItem of its kind.
// Pointing away clears the slot whatever it holds; pointing at an item is refused when the
// kind does not highlight from the legend. Returns whether the slot changed, so that the
// caller repaints the plot.
template <class T>
bool QVSetItemHighlighted(T*& AExtItem, T* AItem, bool AValue, const TQVDisplayItemHighlighting& ASettings)
{
    if (!AValue) {
        if (!AExtItem)
            return false;
        AExtItem = nullptr;
        return true;
    }
    if (!ASettings.GetHiglightFromLegend() || AExtItem == AItem)
        return false;
    AExtItem = AItem;
    return true;
}

// Whether AItem is drawn in the highlight colour: never when printing; when the legend points
// at it and its kind highlights from the legend, or when it is under the mouse and its kind
// highlights from the mouse.
template <class T>
bool QVIsItemDrawnHighlighted(const T* AItem, const TQLPersistent* AHighlightedItem, const T* AExtItem,
                              const TQVDisplayItemHighlighting& ASettings, bool APrinting)
{
    if (APrinting || !AItem)
        return false;
    if (AItem == AExtItem && ASettings.GetHiglightFromLegend())
        return true;
    return static_cast<const TQLPersistent*>(AItem) == AHighlightedItem && ASettings.GetHiglightFromMouse();
}

} // namespace qv
