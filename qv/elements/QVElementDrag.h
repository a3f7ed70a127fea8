#pragma once
// The end of a drag that a collection of draggable elements (cursors, cursor links) started:
// the element held in the highlight's slot moves to the release point and takes the button's
// release, and the slot empties. An element that has left the collection since the press is
// not touched.

#include "qv/channels/QVHighlightInfo.h"
#include "qv/foundation/QLCollection.h"

namespace qv {

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
