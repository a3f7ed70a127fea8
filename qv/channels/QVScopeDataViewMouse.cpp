// TQVScopeDataView: the mouse over the plot. Every move finds what lies under the mouse (the
// element families in their order, then the channels) and lights it; a left press drags a
// cursor, a link or a marker, reports a channel click, or starts a zoom box or a pan.
#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVDisplayAxisList.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeDataView.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/component/QVDisplayCollectionItem.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/component/QVDisplayZoom.h"

namespace qv {

namespace {
TQVScopeChannels* ChannelsOf(TQVDisplayOwner* ADisplay)
{
    auto* Scope = dynamic_cast<TQVScopeOwner*>(ADisplay);
    return Scope ? Scope->GetChannels() : nullptr;
}
} // namespace

void TQVScopeDataView::DispatchLeaveEnter(TQLPersistent* AFrom, TQLPersistent* ATo)
{
    if (AFrom == ATo)
        return;
    if (auto* From = dynamic_cast<TQVDisplaySelectableCollectionItem*>(AFrom))
        From->MouseLeave();
    if (auto* To = dynamic_cast<TQVDisplaySelectableCollectionItem*>(ATo))
        To->MouseEnter();
}

void TQVScopeDataView::SetElementCursor(TCursor ACursor)
{
    TQVDisplayOwner* Display = GetDisplay();
    Display->SetElementCursorChanged(true);
    Display->SetDisplayCursor(ACursor);
    FElementCursorShown = true;
}

void TQVScopeDataView::HitTests()
{
    const TQLPersistent* OldItem = FHighlightInfo.FHighlightedItem;
    const TQVBasicDisplayMarker* OldMarker = FHighlightInfo.FHighlightedMarker;
    IntHitTests();
    if (OldItem != FHighlightInfo.FHighlightedItem || OldMarker != FHighlightInfo.FHighlightedMarker)
        Invalidate();
}

void TQVScopeDataView::IntHitTests()
{
    TQVHighlightInfo& I = FHighlightInfo;
    TQVDisplayOwner* Display = GetDisplay();
    FHighlightedChannel = nullptr;
    TQLPersistent* Old = I.FHighlightedItem;
    // While a cursor or a link is dragged nothing else lights up.
    if (I.FDraggedCursor || I.FDraggedLink) {
        DispatchLeaveEnter(Old, nullptr);
        I.FHighlightedItem = nullptr;
        I.FHighlightedMarker = nullptr;
        return;
    }
    I.FHighlightedItem = nullptr;
    I.FHighlightedMarker = nullptr;
    const TPoint P = FCurrentMousePoint;
    const TRect Rect = GetDrawRect();
    if (Rect.Contains(P) && !FLeftMouseDown) {
        // While a channel marker is dragged only the channels light up.
        bool ElementsHeldBack = false;
        for (const IQVDataViewHitFamily* Family : FHitFamilies)
            ElementsHeldBack = ElementsHeldBack || (Family && Family->GetHoldsElementsBack());
        for (IQVDataViewHitFamily* Family : FHitFamilies) {
            if (ElementsHeldBack)
                break;
            TQVElementHit Hit;
            if (!Family || !Family->HitTest(I, P.X, P.Y, Rect, Hit))
                continue;
            SetElementCursor(Hit.Cursor);
            if (!Hit.Takes)
                continue;
            I.FHighlightedItem = Hit.Item;
            I.FHighlightedMarker = Hit.Marker;
            DispatchLeaveEnter(Old, I.FHighlightedItem);
            return;
        }
        TQVScopeChannels* Channels = ChannelsOf(Display);
        int32_t Index = 0, Begin = 0, End = 0;
        TPoint HitPoint{};
        TQVHitDetectDirection Direction = hddBoth;
        double Fraction = 0.0;
        if (Channels && Channels->HitTest(P.X, P.Y, Index, HitPoint, Direction, Fraction, Begin, End)) {
            TQVScopeChannel* Channel = Channels->GetItem(Index);
            SetValueFromChannelHit(Channel, Begin, End, Fraction, Direction);
            SetElementCursor(Channel->GetMouseCursor());
            FHighlightedChannelPoint = HitPoint;
            FHighlightedChannel = Channel;
            I.FHighlightedItem = Channel;
            DispatchLeaveEnter(Old, Channel);
            if (Old && Old != Channel && Channels->GetOnLeaveChannel())
                Channels->GetOnLeaveChannel()(Display);
            if (Channels->GetOnOverChannel())
                Channels->GetOnOverChannel()(Display, Index, Begin, End, FValuePoint);
            const TQVDisplayHighlighting* H = Display->GetHighlighting();
            if (H && H->GetMouseHitPoint()->GetEnabled())
                InvalidateView();
            return;
        }
    }
    TQVScopeChannels* Channels = ChannelsOf(Display);
    if (Old && Channels && dynamic_cast<TQVScopeChannel*>(Old) && Channels->GetOnLeaveChannel())
        Channels->GetOnLeaveChannel()(Display);
    DispatchLeaveEnter(Old, nullptr);
    if (FElementCursorShown) {
        Display->SetDisplayCursor(Display->GetCursor());
        Display->SetElementCursorChanged(false);
        FElementCursorShown = false;
    }
}

void TQVScopeDataView::SetValueFromChannelHit(TQLPersistent* AChannel, int32_t ABegin, int32_t AEnd, double AFraction,
                                              TQVHitDetectDirection ADirection)
{
    auto* Channel = static_cast<TQVScopeChannel*>(AChannel);
    const TQVDisplayAxis* XAxis = Channel->GetXAxis();
    const TQVDisplayAxis* YAxis = Channel->GetYAxis();
    if (!XAxis || !YAxis)
        return;
    const int32_t Start = Channel->GetScreenStartIndex();
    const IQVRealBuffer& XS = *Channel->GetXScreenDataBuffer();
    const IQVRealBuffer& YS = *Channel->GetYScreenDataBuffer();
    const int32_t B = ABegin - Start, E = AEnd - Start;
    if (B < 0 || E < 0 || B >= XS.GetSize() || E >= XS.GetSize() || E >= YS.GetSize())
        return;
    const bool XLinear = XAxis->GetScaleMode() == smLinear;
    const bool YLinear = YAxis->GetScaleMode() == smLinear;
    const TRect Rect = GetDrawRect();
    const auto FromMouse = [&](const TQVDisplayAxis* AAxis) {
        const int32_t Pos = AAxis->GetIsVertical() ? FCurrentMousePoint.Y : FCurrentMousePoint.X;
        return AAxis->GetPositionFromMouse(Pos, AAxis->GetScaleTick().GetZoomed().GetMin().GetValue(),
                                           AAxis->GetScaleTick().GetZoomed().GetMax().GetValue(), Rect);
    };
    const auto X = [&](int32_t i) { return XAxis->DataToScaleTick(XS.GetItem(i)); };
    const auto Y = [&](int32_t i) { return YAxis->DataToScaleTick(YS.GetItem(i)); };
    if (B == E) {
        FValuePoint.X = XLinear ? X(B) : FromMouse(XAxis);
        // A bar's value scales with the place on it; a sample's fraction is 0.
        FValuePoint.Y = YLinear ? Y(B) * (1.0 - AFraction) : FromMouse(YAxis);
    } else if (ADirection == hddPoint) {
        FValuePoint.X = X(E);
        FValuePoint.Y = Y(B);
    } else {
        if (ADirection == hddVertical)
            FValuePoint.X = X(E);
        else
            FValuePoint.X = XLinear ? X(B) + (X(E) - X(B)) * AFraction : FromMouse(XAxis);
        if (ADirection == hddHorizontal)
            FValuePoint.Y = Y(B);
        else
            FValuePoint.Y = YLinear ? Y(B) + (Y(E) - Y(B)) * AFraction : FromMouse(YAxis);
    }
}

void TQVScopeDataView::MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                                 bool& AHandled)
{
    TQVCustomColorDisplayView::MouseDown(AButton, AShift, AX, AY, AMouseInside, AHandled);
    if (AHandled)
        return;
    TQVDisplayOwner* Display = GetDisplay();
    for (TQVDisplayAxis* Axis : Display->GetAxes())
        Axis->IntSaveMouseDownZoom(AX, AY);
    FViewMouseMoved = false;
    if (!AMouseInside)
        return;
    FLeftMouseDownPoint = TPoint{AX, AY};
    FCurrentMousePoint = FLeftMouseDownPoint;
    if (AButton != mbLeft)
        return;
    const TRect Rect = GetDrawRect();
    // Cursors, links and markers, in their order: the first that starts a drag takes the press.
    for (IQVDataViewHitFamily* Family : FHitFamilies)
        if (Family && Family->StartDrag(FHighlightInfo, AShift, AX, AY, Rect)) {
            FLeftMouseItemDown = FHighlightInfo.FDraggedCursor || FHighlightInfo.FDraggedLink;
            Invalidate();
            return;
        }
    bool Handled = false;
    TQVScopeChannels* Channels = ChannelsOf(Display);
    if (Channels && Channels->GetOnClick()) {
        int32_t Index = 0, Begin = 0, End = 0;
        TPoint HitPoint{};
        TQVHitDetectDirection Direction = hddBoth;
        double Fraction = 0.0;
        if (Channels->HitTest(AX, AY, Index, HitPoint, Direction, Fraction, Begin, End)) {
            TQVScopeChannel* Channel = Channels->GetItem(Index);
            const int32_t Start = Channel->GetScreenStartIndex();
            const IQVRealBuffer& XS = *Channel->GetXScreenDataBuffer();
            const IQVRealBuffer& YS = *Channel->GetYScreenDataBuffer();
            TQVRealPoint Clicked{XS.GetItem(Begin - Start), YS.GetItem(Begin - Start)};
            if (Begin != End) {
                Clicked.X += (XS.GetItem(End - Start) - Clicked.X) * Fraction;
                Clicked.Y += (YS.GetItem(End - Start) - Clicked.Y) * Fraction;
            }
            Channels->GetOnClick()(Display, Index, Begin, End, Clicked, Handled);
        }
    }
    if (!Handled)
        FLeftMouseDown = true;
}

void TQVScopeDataView::MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled)
{
    TQVCustomColorDisplayView::MouseMove(AShift, AX, AY, AHandled);
    TQVDisplayOwner* Display = GetDisplay();
    // The axes' tracking marks follow the mouse: an X move concerns the axes along the
    // display, a Y move those across it.
    const bool Turned = Display->GetIsVertical();
    const bool XMoved = AX != FCurrentMousePoint.X;
    const bool YMoved = AY != FCurrentMousePoint.Y;
    for (TQVDisplayAxis* Axis : Display->GetAxes()) {
        const bool AlongX = Axis->GetIsYAxis() == Turned;
        if (Axis->IsVisible() && (AlongX ? XMoved : YMoved))
            Axis->InvalidateView();
    }
    FCurrentMousePoint = TPoint{AX, AY};
    const bool Dragging = FHighlightInfo.FDraggedCursor || FHighlightInfo.FDraggedLink || FHighlightInfo.FDraggedMarker;
    if (FLeftMouseDown && Display->GetNavigateMode() == nmPan && !Dragging) {
        if (!FViewMouseMoved) {
            // The window before the pan is what undo brings back.
            Display->SaveUndoZoom(false);
            if (Display->GetZooming()->GetHoldOnPan())
                Display->SetHold(true);
        }
        for (TQVDisplayAxis* Axis : Display->GetAxes())
            Axis->MouseMoveScale(FLeftMouseDownPoint, FCurrentMousePoint);
        FViewMouseMoved = true;
    }
    const TRect Rect = GetDrawRect();
    for (IQVDataViewHitFamily* Family : FHitFamilies)
        if (Family)
            Family->DragMove(FHighlightInfo, AShift, AX, AY, Rect);
    if (FLeftMouseDown || FLeftMouseItemDown)
        Invalidate();
    HitTests();
}

void TQVScopeDataView::MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside)
{
    TQVCustomColorDisplayView::MouseUp(AButton, AShift, AX, AY, AMouseInside);
    for (IQVDataViewHitFamily* Family : FHitFamilies)
        if (Family)
            Family->ButtonUp(AButton, AShift, AX, AY);
    if (AButton != mbLeft)
        return;
    TQVDisplayOwner* Display = GetDisplay();
    const TQVRealRanges Old = Display->GetZoomRanges();
    if (FLeftMouseItemDown) {
        Invalidate();
        FLeftMouseItemDown = false;
    }
    const TRect Rect = GetDrawRect();
    for (IQVDataViewHitFamily* Family : FHitFamilies)
        if (Family && Family->EndDrag(FHighlightInfo, AShift, AX, AY, Rect)) {
            Invalidate();
            return;
        }
    if (!FLeftMouseDown)
        return;
    FLeftMouseDown = false;
    if (Display->GetNavigateMode() == nmZoom) {
        MouseZoom(AX, AY);
    } else if (FViewMouseMoved) {
        Display->ZoomChanged(Old, zoZoom);
        FViewMouseMoved = false;
    }
    Invalidate();
}

} // namespace qv
