// TQVDisplayAxis: tick texts, the title, the strip's size and the title's button look.
#include "qv/axes/QVDisplayAxis.h"

#include "qv/axes/QVScaleTickText.h"
#include "qv/component/QVDisplayOwner.h"

#include <algorithm>
#include <cmath>

namespace qv {

namespace {

// On a logarithmic axis ticks crowd toward zero: within the decade of a value they lie as
// close as the decade's width allows, whatever the width of the whole scale. The text of a
// value is thus resolved on its decade, within the window.
void NarrowToDecade(double AValue, double& AMin, double& AMax)
{
    const double Decade = std::floor(std::fabs(QVLog10a(AValue)));
    if (!std::isfinite(Decade))
        return;
    const double Low = std::pow(10.0, Decade) - 1.0;
    const double High = std::pow(10.0, Decade + 1.0) - 1.0;
    const double From = AValue < 0.0 ? 0.0 - High : Low;
    const double To = AValue < 0.0 ? 0.0 - Low : High;
    const double Lo = std::max(std::min(AMin, AMax), From);
    const double Hi = std::min(std::max(AMin, AMax), To);
    if (Hi > Lo) {
        AMin = Lo;
        AMax = Hi;
    }
}

} // namespace

std::string TQVDisplayAxis::GetTickText(double AValue) const
{
    double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    if (GetIntScaleMode() != smLinear)
        NarrowToDecade(AValue, Lo, Hi);
    std::string Text =
        QVGetScaleTickText(AValue, Lo, Hi, FFormat->GetFixedPrecision(), static_cast<uint32_t>(FFormat->GetPrecision()),
                           FFormat->GetPrecisionMode() == dpmScientific);
    if (FOnCustomLabel) {
        // The handler is given the axis to call SetTickText on; asking for a text changes no
        // setting, so the query stays const to its callers.
        TQVDisplayAxis* Self = const_cast<TQVDisplayAxis*>(this);
        Self->FNewText = false;
        FOnCustomLabel(Self, AValue, Text);
        if (FNewText)
            Text = FNewTickText;
    }
    return Text;
}

void TQVDisplayAxis::SetTickText(const std::string& AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    FNewText = true;
    FNewTickText = AValue;
}

std::string TQVDisplayAxis::GetAxisLabelText() const
{
    return FAxisLabel->GetText();
}

TSize TQVDisplayAxis::GetAutoSize() const
{
    int32_t TextWidth = 0;
    int32_t LineHeight = 0;
    if (TQLCanvas* Canvas = GetMeasureCanvas(FFont.get())) {
        TextWidth = std::max(Canvas->TextWidth(GetTickText(FDataTotal.GetZoomed().GetMax().GetValue())),
                             Canvas->TextWidth(GetTickText(FDataTotal.GetZoomed().GetMin().GetValue())));
        LineHeight = Canvas->TextHeight("Xg");
    }
    int32_t Width = TextWidth + 16;
    int32_t Height = LineHeight + 16;
    const bool Horizontal = !GetIsVertical();
    FTrackSize = Horizontal ? Height - 1 : Width - 1;
    // The title's room is a line of the tick font.
    if (FAxisLabel->GetVisible()) {
        if (Horizontal)
            Height += LineHeight + 4;
        else
            Width += LineHeight + 4;
    }
    return TSize{Width, Height};
}

TSize TQVDisplayAxis::GetDefaultSize() const
{
    // Measured also under a fixed size: the track line's depth comes from it.
    const TSize Auto = GetAutoSize();
    if (GetViewSize()->GetAutoSize())
        return Auto;
    return TQVCustomSizeDisplayView::GetDefaultSize();
}

TQVDisplayAxis::TLabelBox TQVDisplayAxis::GetLabelBox(TQLCanvas& ACanvas, const TQVDisplayFont& AFont,
                                                      bool AVertical) const
{
    // Measured in the title's font and turn; the canvas comes back as it was.
    TQLCanvasSave Save(ACanvas);
    TLabelBox Result;
    ACanvas.ApplyFont(AFont);
    Result.Text = GetAxisLabelText();
    const TRect View = GetDataViewRect();
    const TRect Strip = GetDrawRect();
    const TQVViewScreenAlign Align = GetScreenAlign();
    TRect& B = Result.Box;
    if (!AVertical) {
        ACanvas.SetTextAngle(0);
        const int32_t Th = ACanvas.TextHeight("Xg");
        const int32_t Tw = ACanvas.TextWidth(Result.Text);
        B.Left = View.Left + QVRectWidth(View) / 2 - Tw / 2;
        B.Right = B.Left + Tw + 1;
        B.Top = Align == vsaTop ? Strip.Top + 2 : Strip.Bottom - Th - 2;
        B.Bottom = B.Top + Th;
        Result.TextPos = TPoint{B.Left, B.Top};
        return Result;
    }
    // Turned text reads upward on the left and downward on the right, its foot toward the
    // data in both.
    const bool Left = Align == vsaLeft;
    Result.TextAngle = Left ? 90 : 270;
    ACanvas.SetTextAngle(Result.TextAngle);
    const int32_t Tw = ACanvas.TextWidth(Result.Text);
    const int32_t Th = ACanvas.TextHeight(Result.Text);
    const int32_t Edge = Left ? Strip.Left + Th + 2 : Strip.Right - 2;
    const int32_t Length = View.Bottom - View.Top - 1;
    B.Top = View.Top + Length / 2 - Tw / 2;
    B.Left = Edge - Th;
    B.Right = Edge;
    B.Bottom = B.Top + Tw + 1;
    Result.TextPos = Left ? TPoint{B.Left, B.Bottom} : TPoint{B.Right, B.Top};
    return Result;
}

void TQVDisplayAxis::DrawLabelButton(TQLCanvas& ACanvas, const TRect& ABox) const
{
    const TAlphaColor Fill = FLabelButtonDown ? FButton->GetMouseDownColor() : FButton->GetMouseOverColor();
    const TAlphaColor Border =
        FLabelButtonDown ? FButton->GetMouseDownBorderColor() : FButton->GetMouseOverBorderColor();
    ACanvas.GetBrush().SetStyle(bsSolid);
    ACanvas.GetBrush().SetColor(Fill);
    ACanvas.GetPen().SetColor(Border);
    ACanvas.FillRect(ABox);
    const int32_t L = ABox.Left, T = ABox.Top, R = ABox.Right, Bt = ABox.Bottom;
    ACanvas.MoveTo(L, T - 1);
    ACanvas.LineTo(R, T - 1);
    ACanvas.MoveTo(L - 1, T);
    ACanvas.LineTo(L - 1, Bt);
    ACanvas.MoveTo(L, Bt);
    ACanvas.LineTo(R, Bt);
    ACanvas.MoveTo(R, T);
    ACanvas.LineTo(R, Bt);
    // The border colour on the inner corners rounds the box.
    ACanvas.SetPixel(L, T, Border);
    ACanvas.SetPixel(R - 1, T, Border);
    ACanvas.SetPixel(L, Bt - 1, Border);
    ACanvas.SetPixel(R - 1, Bt - 1, Border);
}

void TQVDisplayAxis::DrawLabel(TQLCanvas& ACanvas, const TQVDisplayFont& AFont, bool APrinting, bool AVertical)
{
    TQLCanvasSave Save(ACanvas);
    ACanvas.SetPenStyle(psSolid);
    const TLabelBox Label = GetLabelBox(ACanvas, AFont, AVertical);
    ACanvas.ApplyFont(AFont);
    ACanvas.SetTextAngle(Label.TextAngle);
    if (!APrinting && FLabelButtonShown)
        DrawLabelButton(ACanvas, Label.Box);
    ACanvas.GetBrush().SetStyle(bsClear);
    ACanvas.TextOut(Label.TextPos.X, Label.TextPos.Y, Label.Text);
}

void TQVDisplayAxis::DrawHorizontalLabel(TQLCanvas& ACanvas, const TQVDisplayFont& AFont, bool APrinting)
{
    DrawLabel(ACanvas, AFont, APrinting, false);
}

void TQVDisplayAxis::DrawVerticalLabel(TQLCanvas& ACanvas, const TQVDisplayFont& AFont, bool APrinting)
{
    DrawLabel(ACanvas, AFont, APrinting, true);
}

void TQVDisplayAxis::DrawAxisLabel(TQLCanvas& ACanvas, bool APrinting)
{
    if (!FAxisLabel->GetVisible())
        return;
    if (GetIsVertical())
        DrawVerticalLabel(ACanvas, *FAxisLabel->GetFont(), APrinting);
    else
        DrawHorizontalLabel(ACanvas, *FAxisLabel->GetFont(), APrinting);
}

} // namespace qv
