#include "qv/waterfall/QVWaterfallCursorLinks.h"

#include "qv/elements/QVElementDrag.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/waterfall/QVWaterfallCursor.h"
#include "qv/waterfall/QVWaterfallOwner.h"

namespace qv {

TQLCollection* TQVWaterfallCursorLink::GetLinkCursors() const
{
    const auto* Waterfall = dynamic_cast<const TQVWaterfallOwner*>(GetDisplay());
    return Waterfall ? Waterfall->GetWaterfallCursors() : nullptr;
}

void TQVWaterfallCursorLink::BeforeDestruction()
{
    TQVDisplayCursorLink::BeforeDestruction();
    if (TQVHighlightInfo* Info = GetDisplay() ? GetDisplay()->GetHighlightInfo() : nullptr) {
        if (Info->FHighlightedItem == this)
            Info->FHighlightedItem = nullptr;
        if (Info->FExtHighlightCursorLink == this)
            Info->FExtHighlightCursorLink = nullptr;
        if (Info->FDraggedLink == this)
            Info->FDraggedLink = nullptr;
    }
}

const TQLClassInfo& TQVWaterfallCursorLink::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallCursorLink", &TQVDisplayCursorLink::StaticClassInfo(), {});
    return Info;
}

void TQVWaterfallCursorLinks::Draw(TQLCanvas& ACanvas, const TRect& AClip, bool APrinting)
{
    for (TQVWaterfallCursorLink* Link : *this)
        Link->Draw(ddpFeatures, ACanvas, AClip, APrinting);
}

TQVWaterfallCursorLink* TQVWaterfallCursorLinks::HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y,
                                                         const TRect& ARect)
{
    return QVTopElementAt<TQVWaterfallCursorLink>(*this, AInfo, X, Y, ARect);
}

bool TQVWaterfallCursorLinks::StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y,
                                        const TRect& ARect)
{
    return QVStartElementDrag(*this, AInfo.FDraggedLink, AInfo, AShift, X, Y, ARect);
}

bool TQVWaterfallCursorLinks::EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y,
                                      const TRect& ARect)
{
    return QVEndElementDrag(*this, AInfo.FDraggedLink, AInfo, AShift, X, Y, ARect);
}

const TQLClassInfo& TQVWaterfallCursorLinks::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVWaterfallCursorLinks", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
