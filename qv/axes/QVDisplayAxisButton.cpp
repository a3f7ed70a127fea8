// TQVDisplayAxis: the title as a button - hover, press, release and the mouse cursor.
#include "qv/axes/QVDisplayAxis.h"

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
}

void TQVDisplayAxis::MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                               bool& AHandled)
{
    TQVTrackingOptionalAxis::MouseDown(AButton, AShift, AX, AY, AMouseInside, AHandled);
    if (AHandled || AButton != mbLeft)
        return;
    ButtonHitTest(AX, AY, true);
    FLabelButtonDown = FLabelButtonShown;
    if (!FLabelButtonDown)
        return;
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
    if (AButton != mbLeft || !FLabelButtonDown)
        return;
    FLabelButtonDown = false;
    ButtonHitTest(AX, AY, true);
}

void TQVDisplayAxis::MouseLeave()
{
    TQVTrackingOptionalAxis::MouseLeave();
    if (!FLabelButtonShown && !FLabelButtonDown)
        return;
    FLabelButtonShown = false;
    FLabelButtonDown = false;
    // The display puts its own cursor back when the mouse leaves it.
    FButtonCursorSet = false;
    InvalidateLabelBox();
}

} // namespace qv
