#include "qv/foundation/QLCanvas.h"

#include "qv/foundation/QVDisplayBrush.h"
#include "qv/foundation/QVDisplayFont.h"
#include "qv/foundation/QVDisplayPen.h"

namespace qv {

void TQLCanvas::ApplyPen(const TQVDisplayPen& APen)
{
    TQLCanvasPen& Pen = GetPen();
    Pen.SetColor(APen.GetColor());
    Pen.SetWidth(APen.GetWidth());
    Pen.SetStyle(QVPenStyleOf(APen.GetDash()));
}

void TQLCanvas::ApplyBrush(const TQVDisplayBrush& ABrush)
{
    TQLCanvasBrush& Brush = GetBrush();
    Brush.SetColor(ABrush.GetColor());
    Brush.SetStyle(ABrush.GetKind() == bkSolid ? bsSolid : bsClear);
}

void TQLCanvas::ApplyFont(const TQVDisplayFont& AFont)
{
    FFont = AFont.ToCanvasFont();
}

void TQLCanvas::ResetDrawState()
{
    FPen = TQLCanvasPen();
    FBrush = TQLCanvasBrush();
    FTextAngle = 0;
}

void TQLCanvas::SaveState()
{
    FSaved.push_back(TSavedState{FPen, FBrush, FFont, FPenPos, FTextAngle});
}

void TQLCanvas::RestoreState()
{
    if (FSaved.empty())
        return;
    const TSavedState& S = FSaved.back();
    FPen = S.Pen;
    FBrush = S.Brush;
    FFont = S.Font;
    FPenPos = S.PenPos;
    FTextAngle = S.TextAngle;
    FSaved.pop_back();
    StateRestored();
}

TRect TQLRegion::GetBounds() const
{
    if (FRects.empty())
        return TRect{};
    TRect B = FRects.front();
    for (const TRect& R : FRects) {
        B.Left = std::min(B.Left, R.Left);
        B.Top = std::min(B.Top, R.Top);
        B.Right = std::max(B.Right, R.Right);
        B.Bottom = std::max(B.Bottom, R.Bottom);
    }
    return B;
}

} // namespace qv
