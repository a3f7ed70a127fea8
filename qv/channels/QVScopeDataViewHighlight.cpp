// TQVScopeDataView: the plot's highlight state and its clean-up.
#include "qv/channels/QVScopeDataView.h"

#include "qv/component/QVDisplayOwner.h"

namespace qv {

TQVScopeDataView* TQVScopeDataView::Of(const TQVDisplayOwner* ADisplay)
{
    return ADisplay ? dynamic_cast<TQVScopeDataView*>(ADisplay->GetDataView()) : nullptr;
}

void TQVScopeDataView::SetHighlightedChannel(TQLPersistent* AChannel, const TPoint& APoint)
{
    FHighlightedChannel = AChannel;
    FHighlightedChannelPoint = APoint;
}

namespace {

// Clears ASlot when it names AItem. The slots hold pointers to classes that may not be
// complete here; an element is named by its address.
template <class T>
void Forget(T*& ASlot, const void* AItem)
{
    if (static_cast<const void*>(ASlot) == AItem)
        ASlot = nullptr;
}

} // namespace

void TQVScopeDataView::ForgetItem(const TQLPersistent* AItem)
{
    if (!AItem)
        return;
    // Elements derive from the persistent base first, so their address is that of the base.
    const void* Item = AItem;
    TQVHighlightInfo& I = FHighlightInfo;
    Forget(I.FHighlightedItem, Item);
    Forget(I.FExtHighlightCursor, Item);
    Forget(I.FExtHighlightCursorLink, Item);
    Forget(I.FExtHighlightTextLabel, Item);
    Forget(I.FExtHighlightMarkerGroup, Item);
    Forget(I.FHighlightedMarker, Item);
    Forget(I.FDraggedCursor, Item);
    Forget(I.FDraggedLink, Item);
    Forget(I.FMouseDownElement, Item);
    Forget(I.FDraggedMarker, Item);
    Forget(FHighlightedChannel, Item);
    Forget(FExtHighlightZone, Item);
    Forget(FExtHighlightChannel, Item);
    Forget(FExtHighlightChannelLink, Item);
}

void TQVScopeDataView::MouseLeave()
{
    TQVCustomColorDisplayView::MouseLeave();
    FHighlightInfo.MouseLeave();
    FExtHighlightZone = nullptr;
    FExtHighlightChannel = nullptr;
    FHighlightedChannel = nullptr;
    // A point outside any view.
    FCurrentMousePoint.X = -1000;
}

} // namespace qv
