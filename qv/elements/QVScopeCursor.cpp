#include "qv/elements/QVScopeCursor.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/elements/QVElementDrag.h"
#include "qv/foundation/QLClassBuilder.h"

namespace qv {

TQVScopeCursor::TQVScopeCursor(TQLCollection* ACollection)
    : TQVDisplayCursor(ACollection),
      FChannels(std::make_unique<TQVDisplayCursorChannelLinks>(this, GetLock(), GetDisplay()))
{}

TQVScopeCursor::~TQVScopeCursor() = default;

void TQVScopeCursor::DrawVChannelIntersections(TQLCanvas& ACanvas, double AValue, int32_t /*APosition*/,
                                               bool /*ADragging*/)
{
    DrawIntersections(true, ACanvas, AValue);
}

void TQVScopeCursor::DrawHChannelIntersections(TQLCanvas& ACanvas, double AValue, int32_t /*APosition*/,
                                               bool /*ADragging*/)
{
    DrawIntersections(false, ACanvas, AValue);
}

void TQVScopeCursor::DrawIntersections(bool AVertical, TQLCanvas& ACanvas, double AValue)
{
    const TQVDisplayAxis* Axis = AVertical ? GetXAxis() : GetYAxis();
    if (!Axis)
        return;
    for (TQVDisplayCursorChannelLink* Link : *FChannels) {
        TQVDisplayChannel* Channel = Link->GetChannel();
        if (!Channel || !Channel->GetVisible())
            continue;
        // Only channels drawn against the cursor's own axis meet its line.
        const TQVDisplayAxis* ChannelAxis = AVertical ? static_cast<const TQVDisplayAxis*>(Channel->GetXAxis())
                                                      : static_cast<const TQVDisplayAxis*>(Channel->GetYAxis());
        if (ChannelAxis != Axis)
            continue;
        // The line's printed value in the channel's data units.
        const double Value = Axis->ScaleTickToData(AValue);
        const auto Mark = [&](void*, int32_t AX, int32_t AY, double, double AXValue, double AYValue, bool ATurned) {
            Link->Draw(ACanvas, false, AXValue, AYValue, AX, AY, ATurned, AVertical ? "%Y" : "%X");
        };
        if (AVertical)
            Channel->CalcVIntersections(Mark, nullptr, Value);
        else
            Channel->CalcHIntersections(Mark, nullptr, Value);
    }
}

const TQLClassInfo& TQVScopeCursor::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeCursor>("TQVScopeCursor", &TQVDisplayCursor::StaticClassInfo())
            .Collection("Channels", &TQVScopeCursor::GetChannels)
            .Build();
    return Info;
}

void TQVScopeCursors::DrawElements(TQVDisplayDrawPart /*APart*/, TQLCanvas& ACanvas, const TRect& AClip,
                                   bool /*APrinting*/)
{
    for (TQVScopeCursor* Cursor : *this)
        Cursor->Draw(ACanvas, AClip);
}

bool TQVScopeCursors::HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect, TQVElementHit& AHit)
{
    const TQVDisplayHighlighting* H = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    if (!H || !H->GetCursors()->GetMouseHighlighting())
        return false;
    TQVScopeCursor* Cursor = QVTopElementAt<TQVScopeCursor>(*this, AInfo, X, Y, ARect);
    if (!Cursor)
        return false;
    const TQVDisplayCursorMouseCursor& M = *Cursor->GetMouseCursors();
    AHit.Item = Cursor;
    AHit.Cursor = AInfo.FVMoveCursor && AInfo.FHMoveCursor ? M.GetBoth()
                  : AInfo.FVMoveCursor                     ? M.GetVertical()
                                                           : M.GetHorizontal();
    return true;
}

bool TQVScopeCursors::StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect)
{
    return QVStartElementDrag(*this, AInfo.FDraggedCursor, AInfo, AShift, X, Y, ARect);
}

bool TQVScopeCursors::EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect)
{
    return QVEndElementDrag(*this, AInfo.FDraggedCursor, AInfo, AShift, X, Y, ARect);
}

const TQLClassInfo& TQVScopeCursors::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVScopeCursors", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

const TQLClassInfo& TQVScopeCursorLink::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeCursorLink>("TQVScopeCursorLink", &TQVDisplayCursorLink::StaticClassInfo())
            .Object("Selection", &TQVScopeCursorLink::GetSelection)
            .Build();
    return Info;
}

void TQVScopeCursorLinks::DrawElements(TQVDisplayDrawPart APart, TQLCanvas& ACanvas, const TRect& AClip, bool APrinting)
{
    for (TQVScopeCursorLink* Link : *this)
        Link->Draw(APart, ACanvas, AClip, APrinting);
}

bool TQVScopeCursorLinks::HitTest(TQVHighlightInfo& AInfo, int32_t X, int32_t Y, const TRect& ARect,
                                  TQVElementHit& AHit)
{
    const TQVDisplayHighlighting* H = GetDisplay() ? GetDisplay()->GetHighlighting() : nullptr;
    TQVScopeCursorLink* Link = QVTopElementAt<TQVScopeCursorLink>(*this, AInfo, X, Y, ARect);
    if (!Link)
        return false;
    AHit.Item = Link;
    AHit.Cursor = Link->GetMouseCursor();
    AHit.Takes = H && H->GetCursorLinks()->GetMouseHighlighting();
    return true;
}

bool TQVScopeCursorLinks::StartDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y,
                                    const TRect& ARect)
{
    return QVStartElementDrag(*this, AInfo.FDraggedLink, AInfo, AShift, X, Y, ARect);
}

bool TQVScopeCursorLinks::EndDrag(TQVHighlightInfo& AInfo, TShiftState AShift, int32_t X, int32_t Y, const TRect& ARect)
{
    return QVEndElementDrag(*this, AInfo.FDraggedLink, AInfo, AShift, X, Y, ARect);
}

const TQLClassInfo& TQVScopeCursorLinks::StaticClassInfo()
{
    static const TQLClassInfo Info("TQVScopeCursorLinks", &TQLCollection::StaticClassInfo(), {});
    return Info;
}

} // namespace qv
