// TQVDisplayAxis: settings, limits, the zoom window's bounds, the step and the strip's ticks.
// The value and pixel mapping is in QVDisplayAxisMapping.cpp.
#include "qv/axes/QVDisplayAxis.h"

#include "qv/axes/QVAxisToolBar.h"
#include "qv/axes/QVDisplayAxisList.h"
#include "qv/axes/QVZoomPin.h"

#include "qv/axes/QVDisplayAxisZoomSettings.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cmath>

namespace qv {

TQVDisplayAxis::TQVDisplayAxis(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign)
    : TQVTrackingOptionalAxis(ADisplay, AAlign), FZoomPin(std::make_unique<TQVZoomPin>(this)),
      FToolBar(std::make_unique<TQVAxisToolBar>(ADisplay, this)),
      FZooming(std::make_unique<TQVDisplayAxisZoom>(ADisplay, this)),
      FMin(std::make_unique<TQVAxisValue>(this, ADisplay, [this] { LimitsChanged(); })),
      FMax(std::make_unique<TQVMaxAxisValue>(this, ADisplay, [this] { LimitsChanged(); })),
      FFont(std::make_unique<TQVDisplayFont>(
          this, GetLock(), [this] { FontChanged(); }, "Arial", 8, 0xFFFFFFFF)),
      // Another number format or title changes the texts' sizes, and so the step and layout.
      FFormat(std::make_unique<TQVAxisFormat>(this, GetLock(),
                                              [this] {
                                                  FValidStep = false;
                                                  InvalidateRecalc();
                                              })),
      FAxisLabel(std::make_unique<TQVDisplayTitleLabel>(this, GetLock(), [this] { InvalidateRecalc(); })),
      FButton(std::make_unique<TQVViewButtonSettings>(this, GetLock(), [this] { Invalidate(); })),
      FDataTotal([this] { return GetDataFullMin(); }, [this] { return GetDataFullMax(); },
                 [this] { return GetDataZoomedMin(); }, [this] { return GetDataZoomedMax(); }),
      FScaleTotalReal([this] { return GetScaleFullRealMin(); }, [this] { return GetScaleFullRealMax(); },
                      [this] { return GetScaleZoomedRealMin(); }, [this] { return GetScaleZoomedRealMax(); }),
      FScaleTick([this] { return GetScaleFullTickMin(); }, [this] { return GetScaleFullTickMax(); },
                 [this] { return GetScaleZoomedTickMin(); }, [this] { return GetScaleZoomedTickMax(); })
{
    FScaleTick.GetZoomed().GetMin().SetOnChange([this](double ADelta) { ScaleMinChange(ADelta); });
    FScaleTick.GetZoomed().GetMax().SetOnChange([this](double ADelta) { ScaleMaxChange(ADelta); });
    ADisplay->GetAxes().Add(this);
}

TQVDisplayAxis::~TQVDisplayAxis()
{
    // The partner axis stops hearing from this one first.
    FZoomPin.reset();
    FToolBar.reset();
    // The zoom history must not hand a later undo an axis that is gone.
    GetDisplay()->ForgetZoomAxis(this);
    GetDisplay()->GetAxes().Remove(this);
}

void TQVDisplayAxis::DrawToolBar(TQLCanvas& ACanvas, bool APrinting)
{
    if (!APrinting && FToolBar->GetAxisShown())
        FToolBar->Draw(ACanvas);
}

// ---- Settings ----

void TQVDisplayAxis::SetColor(TAlphaColor AValue)
{
    GetBasicLock().Setter(
        FColor, AValue, [this] { Invalidate(); }, false);
}

void TQVDisplayAxis::SetReversed(bool AValue)
{
    Set(FReversed, AValue, [this] { InvalidateRecalc(); });
}

void TQVDisplayAxis::LimitsChanged()
{
    InvalidateMinMaxCache(true);
    InvalidateRecalc();
}

double TQVDisplayAxis::GetDataZoomedRange() const
{
    return FDataTotal.GetZoomed().GetMax().GetValue() - FDataTotal.GetZoomed().GetMin().GetValue();
}

double TQVDisplayAxis::GetScaleZoomedTickRange() const
{
    return FScaleTick.GetZoomed().GetMax().GetValue() - FScaleTick.GetZoomed().GetMin().GetValue();
}

// ---- Step and text measures ----

double TQVDisplayAxis::GetStep()
{
    const TQVMajorTicks* Major = GetMajorTicks();
    if (Major->GetMode() == mtmAuto) {
        FStep = ComputeValueStep();
        FValidStep = true;
    } else
        FStep = ValidateStep(Major->GetStep(), Major->GetMode(), false);
    return FStep;
}

uint32_t TQVDisplayAxis::GetMaxTextLength() const
{
    TQLCanvas* Canvas = GetMeasureCanvas(FFont.get());
    if (!Canvas)
        return 0;
    int32_t Length;
    if (!GetIsVertical()) {
        // Only the two ends are measured, not the ticks between.
        Length = std::max(Canvas->TextWidth(GetTickText(FScaleTick.GetZoomed().GetMin().GetValue())),
                          Canvas->TextWidth(GetTickText(FScaleTick.GetZoomed().GetMax().GetValue())));
    } else
        Length = Canvas->TextHeight("Xg");
    return static_cast<uint32_t>(std::max(Length, 0));
}

uint32_t TQVDisplayAxis::GetMinScaleLineDistance() const
{
    TQLCanvas* Canvas = GetMeasureCanvas(FFont.get());
    if (GetIntScaleMode() == smLogDecascale)
        return 1;
    int64_t Distance = 0;
    if (Canvas) {
        if (!GetIsVertical())
            Distance = Canvas->TextWidth(GetTickText(DataToScaleTick(FDataTotal.GetZoomed().GetMax().GetValue()))) + 8;
        else
            Distance = Canvas->TextHeight("Xg") + 4;
    }
    return static_cast<uint32_t>(std::max<int64_t>(Distance, 20));
}

// ---- Limits ----

double TQVDisplayAxis::GetDataFullMin() const
{
    return FMin->GetAutoScale() ? 0.0 : FMin->GetDataValue();
}

double TQVDisplayAxis::GetScaleFullTickMin() const
{
    return FDataTotal.GetFull().GetMin().GetValue();
}
double TQVDisplayAxis::GetScaleFullTickMax() const
{
    return FDataTotal.GetFull().GetMax().GetValue();
}
double TQVDisplayAxis::GetScaleFullRealMin() const
{
    return FDataTotal.GetFull().GetMin().GetValue();
}
double TQVDisplayAxis::GetScaleFullRealMax() const
{
    return FDataTotal.GetFull().GetMax().GetValue();
}

namespace {

// The zoomed data limit AZoomed carried from the full data range onto the full printed range.
// An unbounded data range gives a small constant, an empty one counts as a width of 1.
double ZoomedOnScale(double AZoomed, const TQVLimitCachedMinMaxValue& AData, const TQVLimitCachedMinMaxValue& AScale)
{
    const double DataMin = AData.GetFull().GetMin().GetValue();
    double Range = AData.GetFull().GetMax().GetValue() - DataMin;
    if (std::isinf(Range))
        return 0.00001;
    if (Range == 0.0)
        Range = 1.0;
    const double ScaleMin = AScale.GetFull().GetMin().GetValue();
    return (AZoomed - DataMin) * (AScale.GetFull().GetMax().GetValue() - ScaleMin) / Range + ScaleMin;
}

// The zoomed data limit AZoomed scaled to the width of the full real range, with no offsets.
double ZoomedOnReal(double AZoomed, const TQVLimitCachedMinMaxValue& AData, const TQVLimitCachedMinMaxValue& AReal)
{
    double Range = AData.GetFull().GetMax().GetValue() - AData.GetFull().GetMin().GetValue();
    if (Range == 0.0)
        Range = 1.0;
    return AZoomed * (AReal.GetFull().GetMax().GetValue() - AReal.GetFull().GetMin().GetValue()) / Range;
}

} // namespace

double TQVDisplayAxis::GetScaleZoomedTickMin() const
{
    return ZoomedOnScale(FDataTotal.GetZoomed().GetMin().GetValue(), FDataTotal, FScaleTick);
}

double TQVDisplayAxis::GetScaleZoomedTickMax() const
{
    return ZoomedOnScale(FDataTotal.GetZoomed().GetMax().GetValue(), FDataTotal, FScaleTick);
}

double TQVDisplayAxis::GetScaleZoomedRealMin() const
{
    return ZoomedOnReal(FDataTotal.GetZoomed().GetMin().GetValue(), FDataTotal, FScaleTotalReal);
}

double TQVDisplayAxis::GetScaleZoomedRealMax() const
{
    return ZoomedOnReal(FDataTotal.GetZoomed().GetMax().GetValue(), FDataTotal, FScaleTotalReal);
}

void TQVDisplayAxis::InvalidateMinMaxCache(bool AAll)
{
    if (AAll)
        FDataTotal.Invalidate();
    else
        FDataTotal.GetZoomed().Invalidate();
    FScaleTotalReal.Invalidate();
    FScaleTick.Invalidate();
}

void TQVDisplayAxis::InvalidateStep()
{
    InvalidateRecalc();
}

void TQVDisplayAxis::CorrectMinMax()
{
    const TQVDisplayOptionalValue* MinHigh = FMin->GetRange()->GetHigh();
    const TQVDisplayOptionalValue* MinLow = FMin->GetRange()->GetLow();
    const TQVDisplayOptionalValue* MaxHigh = FMax->GetRange()->GetHigh();
    const TQVDisplayOptionalValue* MaxLow = FMax->GetRange()->GetLow();
    auto ShiftBy = [this](double ADelta) {
        FZoomMin += ADelta;
        FZoomMax += ADelta;
    };

    // The edges first, each moving the whole window.
    if (MinHigh->GetEnabled() && FZoomMin > MinHigh->GetValue())
        ShiftBy(MinHigh->GetValue() - FZoomMin);
    if (MinLow->GetEnabled() && FZoomMin < MinLow->GetValue()) {
        ShiftBy(MinLow->GetValue() - FZoomMin);
        if (MaxHigh->GetEnabled() && FZoomMax > MaxHigh->GetValue())
            FZoomMax = MaxHigh->GetValue(); // no room left: the window shrinks
    }
    if (MaxHigh->GetEnabled() && FZoomMax > MaxHigh->GetValue())
        ShiftBy(MaxHigh->GetValue() - FZoomMax);
    if (MaxLow->GetEnabled() && FZoomMax < MaxLow->GetValue()) {
        ShiftBy(MaxLow->GetValue() - FZoomMax);
        if (MinHigh->GetEnabled() && FZoomMin > MinHigh->GetValue())
            FZoomMin = MinHigh->GetValue();
    }

    // Then the width about the centre; this may push an edge back out of its range.
    const TQVDisplayValueRange* Width = GetZoomWidthRange();
    if (!Width)
        return;
    auto SetWidth = [this](double AWidth) {
        const double Centre = (FZoomMin + FZoomMax) / 2.0;
        FZoomMin = Centre - AWidth / 2.0;
        FZoomMax = Centre + AWidth / 2.0;
    };
    if (Width->GetLow()->GetEnabled() && FZoomMax - FZoomMin < Width->GetLow()->GetValue())
        SetWidth(Width->GetLow()->GetValue());
    if (Width->GetHigh()->GetEnabled() && FZoomMax - FZoomMin > Width->GetHigh()->GetValue())
        SetWidth(Width->GetHigh()->GetValue());
}

// ---- Drawing ----

void TQVDisplayAxis::DrawTicks(TQLCanvas& ACanvas, bool ADrawLine, bool /*AVertical*/)
{
    ACanvas.SetPenStyle(psSolid);
    ACanvas.GetPen().SetColor(FColor);
    ACanvas.ApplyFont(*FFont);
    ACanvas.GetBrush().SetStyle(bsClear);
    if (ADrawLine) {
        const TRect View = GetDataViewRect();
        const TRect Strip = GetDrawRect();
        const int32_t Offset = GetAxesSpaceOffset();
        switch (GetScreenAlign()) {
        case vsaTop:
            ACanvas.MoveTo(View.Left, Strip.Bottom - Offset - 2);
            ACanvas.LineTo(View.Right, Strip.Bottom - Offset - 2);
            break;
        case vsaBottom:
            ACanvas.MoveTo(View.Left, Strip.Top + Offset + 2);
            ACanvas.LineTo(View.Right, Strip.Top + Offset + 2);
            break;
        case vsaLeft:
            ACanvas.MoveTo(Strip.Right - Offset - 2, View.Top);
            ACanvas.LineTo(Strip.Right - Offset - 2, View.Bottom);
            break;
        case vsaRight:
            ACanvas.MoveTo(Strip.Left + Offset + 2, View.Top);
            ACanvas.LineTo(Strip.Left + Offset + 2, View.Bottom);
            break;
        case vsaClient: break;
        }
    }
    const TQVAxisTickProc Tick = GetDrawTickProc();
    DrawTickLines(Tick, Tick, true, ACanvas, true, false);
}

void TQVDisplayAxis::DrawTickLines(const TQVAxisTickProc& AHorizontalTick, const TQVAxisTickProc& AVerticalTick,
                                   bool AFromEnd, TQLCanvas& ACanvas, bool ADrawAll, bool ADecascaleAll)
{
    const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    const double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    double Offset = 0.0;
    double Scale = 0.0;
    GetScaleInfo(Offset, Scale, Lo, Hi);

    // An X axis runs along the display, a Y axis across it; a turned display swaps them.
    const bool Turned = GetDisplay()->GetIsVertical();
    const bool Horizontal = GetIsYAxis() ? Turned : !Turned;
    const TQVAxisTickProc& Tick = Horizontal ? AHorizontalTick : AVerticalTick;
    // A plain Y axis has pixels falling as values rise, a plain X axis the other way round.
    const bool Up = GetIsYAxis() ? !GetIsReversedDirect() : GetIsReversedDirect();
    const int32_t TextLength = static_cast<int32_t>(std::min<uint32_t>(GetMaxTextLength(), INT32_MAX));
    if (Up)
        UpTickLines(this, Tick, AFromEnd, ACanvas, TextLength, ADrawAll, Lo, Hi, Offset, Scale, ADecascaleAll);
    else
        DownTickLines(this, Tick, AFromEnd, ACanvas, TextLength, ADrawAll, Lo, Hi, Offset, Scale, ADecascaleAll);
}

const TQLClassInfo& TQVDisplayAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVDisplayAxis>("TQVDisplayAxis", &TQVTrackingOptionalAxis::StaticClassInfo())
            .Object("Format", &TQVDisplayAxis::GetFormat)
            .Color("Color", &TQVDisplayAxis::GetColor, &TQVDisplayAxis::SetColor, TAlphaColor(0xFFFFFFFF))
            .Object("Font", &TQVDisplayAxis::GetFont)
            .Object("Button", &TQVDisplayAxis::GetButton)
            .Object("Min", &TQVDisplayAxis::GetMin)
            .Object("Max", &TQVDisplayAxis::GetMax)
            .Object("AxisLabel", &TQVDisplayAxis::GetAxisLabel)
            .Object("Zooming", &TQVDisplayAxis::GetZooming)
            .Object("ToolBar", &TQVDisplayAxis::GetToolBar)
            .Build();
    return Info;
}

} // namespace qv
