#pragma once
// Drags of the elements of a collection (cursors, cursor links): the topmost element under a
// press goes into the highlight's slot and takes the press; at the release it moves to the
// release point, takes the release, and the slot empties. An element that has left the
// collection since the press is not touched.

#include "qv/channels/QVHighlightInfo.h"
#include "qv/foundation/QLCollection.h"

namespace qv {

// The topmost element of AItems under the mouse (the last one drawn), or null: the first,
// from the end, whose HitTest(AHitArgs...) holds.
template <class TElement, class TItems, class... THitArgs>
TElement* QVTopElementAt(const TItems& AItems, THitArgs&&... AHitArgs)
{
    for (TElement* Element : AItems.GetReverse())
        if (Element->HitTest(AHitArgs...))
            return Element;
    return nullptr;
}

template <class TElement, class TItems>
bool QVStartElementDrag(const TItems& AItems, TElement*& ADragged, TQVHighlightInfo& AInfo, TShiftState AShift,
                        int32_t X, int32_t Y, const TRect& ARect)
{
    TElement* Element = QVTopElementAt<TElement>(AItems, AInfo, X, Y, ARect);
    if (!Element)
        return false;
    ADragged = Element;
    Element->MouseDown(mbLeft, AShift, X, Y, true);
    return true;
}

template <class TElement>
bool QVEndElementDrag(const TQLCollection& ACollection, TElement*& ADragged, TQVHighlightInfo& AInfo,
                      TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect)
{
    TElement* Element = ADragged;
    if (!Element || ACollection.IndexOfItem(Element) < 0)
        return false;
    Element->MoveTo(AInfo, X, Y, ARect);
    Element->MouseUp(mbLeft, AShift, X, Y, true);
    ADragged = nullptr;
    return true;
}

} // namespace qv
