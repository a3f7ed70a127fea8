// TQVDisplayAxis and the mouse: the title as a button (hover, press, release, the mouse
// cursor), a drag along the strip that pans a zoomed axis, and the wheel that zooms round
// the pointer.
#include "qv/axes/QVDisplayAxis.h"

#include "qv/axes/QVDisplayAxisZoomSettings.h"
#include "qv/component/QVDisplayOwner.h"

namespace qv {

void TQVDisplayAxis::InvalidateLabelBox()
{
    TQLCanvas* Canvas = GetDisplay()->GetCanvas();
    if (!Canvas) {
        InvalidateView();
        return;
    }
    const TRect Box = GetLabelBox(*Canvas, *FAxisLabel->GetFont(), GetIsVertical()).Box;
    GetDisplay()->InvalidateIntRect(TRect{Box.Left - 1, Box.Top - 1, Box.Right + 1, Box.Bottom + 1});
}

void TQVDisplayAxis::ButtonHitTest(int32_t AX, int32_t AY, bool AForceInvalidate)
{
    if (!FButton->GetEnabled())
        return;
    const bool Old = FLabelButtonShown;
    FLabelButtonShown = false;
    const TPoint Point{AX, AY};
    TQLCanvas* Canvas = GetDisplay()->GetCanvas();
    if (Canvas && FAxisLabel->GetVisible() && GetDrawRect().Contains(Point))
        FLabelButtonShown = GetLabelBox(*Canvas, *FAxisLabel->GetFont(), GetIsVertical()).Box.Contains(Point);
    if (FLabelButtonShown == Old && !AForceInvalidate)
        return;
    TQVDisplayOwner* Display = GetDisplay();
    if (FLabelButtonShown && !FButtonCursorSet) {
        Display->SetDisplayCursor(FButton->GetCursor());
        Display->SetToolCursorChanged(true);
        FButtonCursorSet = true;
    } else if (!FLabelButtonShown && FButtonCursorSet) {
        Display->SetDisplayCursor(Display->GetCursor());
        Display->SetToolCursorChanged(false);
        FButtonCursorSet = false;
    }
    InvalidateLabelBox();
}

void TQVDisplayAxis::MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled)
{
    TQVTrackingOptionalAxis::MouseMove(AShift, AX, AY, AHandled);
    ButtonHitTest(AX, AY, false);
    if (!FLeftMouseButtonDown || !FZooming->GetMousePan())
        return;
    const TPoint Point{AX, AY};
    if (!FPanSaved && FZoomed && !(Point.X == FLeftMouseDownPoint.X && Point.Y == FLeftMouseDownPoint.Y)) {
        // One undo step for the whole drag, taken when it first moves the axis.
        GetDisplay()->SaveUndoZoom(false);
        FPanSaved = true;
    }
    MouseMoveScale(FLeftMouseDownPoint, Point);
}

void TQVDisplayAxis::MouseWheelDown(TShiftState /*AShift*/, const TPoint& APoint)
{
    MouseWheelZoom(APoint, 1.1);
}

void TQVDisplayAxis::MouseWheelUp(TShiftState /*AShift*/, const TPoint& APoint)
{
    MouseWheelZoom(APoint, 0.9);
}

void TQVDisplayAxis::MouseWheelZoom(const TPoint& APoint, double AFactor)
{
    if (!IsVisible() || !FZooming->GetMouseWheelEnabled())
        return;
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayOwner* Display = GetDisplay();
    // A burst of notches is one undo step.
    Display->SaveUndoZoom(true);
    const TQVRealRanges Kept = Display->GetZoomRanges();
    MouseWheelZoomInt(APoint, AFactor);
    Display->InvalidateRefresh();
    Display->ZoomChanged(Kept, zoMouseWheel);
}

void TQVDisplayAxis::MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                               bool& AHandled)
{
    TQVTrackingOptionalAxis::MouseDown(AButton, AShift, AX, AY, AMouseInside, AHandled);
    if (AHandled || AButton != mbLeft)
        return;
    ButtonHitTest(AX, AY, true);
    FLabelButtonDown = FLabelButtonShown;
    if (!FLabelButtonDown) {
        // A press on the strip elsewhere starts a drag that pans the axis.
        if (AMouseInside && IsVisible()) {
            FLeftMouseButtonDown = true;
            FPanSaved = false;
            IntSaveMouseDownZoom(AX, AY);
            AHandled = true;
        }
        return;
    }
    if (const TQVViewButtonClickEvent& OnClick = FButton->GetOnClick())
        OnClick(this, AHandled);
    if (AHandled)
        return;
    AHandled = true;
    FDialogShown = true;
    GetDisplay()->DoAxisClick(GetDisplay()->GetAxisIndex(this));
}

void TQVDisplayAxis::MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside)
{
    TQVTrackingOptionalAxis::MouseUp(AButton, AShift, AX, AY, AMouseInside);
    if (AButton == mbLeft)
        FLeftMouseButtonDown = false;
    if (AButton != mbLeft || !FLabelButtonDown)
        return;
    FLabelButtonDown = false;
    ButtonHitTest(AX, AY, true);
}

void TQVDisplayAxis::MouseLeave()
{
    TQVTrackingOptionalAxis::MouseLeave();
    FLeftMouseButtonDown = false;
    if (!FLabelButtonShown && !FLabelButtonDown)
        return;
    FLabelButtonShown = false;
    FLabelButtonDown = false;
    // The display puts its own cursor back when the mouse leaves it.
    FButtonCursorSet = false;
    InvalidateLabelBox();
}

} // namespace qv
