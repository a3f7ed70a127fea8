// TQVDisplayAxis: values to pixels and back, and the conversions between the three scales.
#include "qv/axes/QVDisplayAxis.h"

#include "qv/component/QVDisplayOwner.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace qv {

namespace {

// The smallest width a scale is given when its limits coincide.
constexpr double CMinScaleWidth = 0.00001;

int32_t Clamp32(int64_t AValue)
{
    return static_cast<int32_t>(std::clamp<int64_t>(AValue, INT32_MIN, INT32_MAX));
}

// A pixel: the integer base plus a distance rounded to nearest, ties to even.
int32_t PixelAt(int32_t ABase, double ADistance)
{
    return Clamp32(static_cast<int64_t>(ABase) + QLRoundToInt(ADistance));
}

// (AValue - AFromMin) carried from one range onto another; identity for an empty source.
double Affine(double AValue, double AFromMin, double AFromMax, double AToMin, double AToMax)
{
    const double From = AFromMax - AFromMin;
    if (From == 0.0)
        return AValue;
    return (AValue - AFromMin) * (AToMax - AToMin) / From + AToMin;
}

// A width carried from one range onto another; identity for an empty source.
double Proportional(double AValue, double AFromMin, double AFromMax, double AToMin, double AToMax)
{
    const double From = AFromMax - AFromMin;
    if (From == 0.0)
        return AValue;
    return AValue * (AToMax - AToMin) / From;
}

} // namespace

int32_t TQVDisplayAxis::GetPixelStart() const
{
    const TRect View = GetDataViewRect();
    return GetIsVertical() ? View.Top : View.Left;
}

int32_t TQVDisplayAxis::GetPixelLength() const
{
    const TRect View = GetDataViewRect();
    return GetIsVertical() ? QVRectHeight(View) : QVRectWidth(View);
}

void TQVDisplayAxis::GetScaleInfo(double& AOffset, double& AScale, double AMin, double AMax) const
{
    const bool Logarithmic = GetIntScaleMode() != smLinear;
    const bool Reversed = GetScaleReversed();
    if (Reversed) {
        const double Min = AMin;
        AMin = 0.0 - AMax;
        AMax = 0.0 - Min;
    }
    const double Range = Logarithmic ? QVLog10a(AMax) - QVLog10a(AMin) : AMax - AMin;
    if (Range == 0.0) {
        AOffset = GetPixelLength() * 0.5;
        AScale = 1.0;
    } else {
        AScale = GetPixelLength() / Range;
        AOffset = 0.0 - AScale * (Logarithmic ? QVLog10a(AMin) : AMin);
    }
    if (Reversed)
        AScale = 0.0 - AScale;
}

int32_t TQVDisplayAxis::ScaleToPixel(double AValue) const
{
    double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    if (Lo == Hi) {
        Lo -= 1.0;
        Hi += 1.0;
    }
    double Offset = 0.0;
    double Scale = 0.0;
    GetScaleInfo(Offset, Scale, Lo, Hi);
    double Width = Hi - Lo;
    if (Width == 0.0)
        Width = CMinScaleWidth;
    const int32_t Length = GetPixelLength();
    const bool Logarithmic = GetScaleMode() != smLinear;
    // Forward runs from the low end at the start: a horizontal axis unless oposite, a
    // vertical one only when oposite.
    const bool Forward = GetIsVertical() ? GetIsOposite() : !GetIsOposite();
    double Distance;
    if (Forward)
        Distance = Logarithmic ? (QVLog10a(AValue) - QVLog10a(Lo)) * (0.0 - Scale) : Length * (AValue - Lo) / Width;
    else
        Distance = Logarithmic ? (QVLog10a(Hi) - QVLog10a(AValue)) * Scale : Length * (Hi - AValue) / Width;
    return PixelAt(GetPixelStart(), Distance);
}

int32_t TQVDisplayAxis::GetPosFromValue(double AValue) const
{
    const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    const double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    double Offset = 0.0;
    double Scale = 0.0;
    GetScaleInfo(Offset, Scale, Lo, Hi);
    const double Width = Hi - Lo;
    const int32_t Start = GetPixelStart();
    const int32_t Span = GetPixelLength() - 1;
    const bool Logarithmic = GetIntScaleMode() != smLinear;
    const bool Vertical = GetIsVertical();
    if (!Logarithmic && Width == 0.0)
        return Start; // no scale to place a value on

    if (!GetIsYAxis()) {
        if (!Logarithmic)
            return PixelAt(Start, Span * (AValue - Lo) / Width);
        if (!Vertical) {
            // Counted back from the data view's right edge.
            const int64_t Right = GetDataViewRect().Right;
            return Clamp32(Right - QLRoundToInt((QVLog10a(Hi) - QVLog10a(AValue)) * (0.0 - Scale)) - 1);
        }
        return PixelAt(Start, (QVLog10a(AValue) - QVLog10a(Lo)) * (0.0 - Scale));
    }

    const bool Reversed = GetScaleReversed();
    if (!Logarithmic) {
        if (Reversed)
            return PixelAt(Start, Span * (AValue - Lo) / Width);
        const int32_t Pixel = PixelAt(Start, Span * (Hi - AValue) / Width);
        return Vertical ? Clamp32(static_cast<int64_t>(Pixel) + 1) : Pixel;
    }
    if (!Reversed)
        return PixelAt(Start, (QVLog10a(Hi) - QVLog10a(AValue)) * Scale);
    return PixelAt(Start, (QVLog10a(AValue) - QVLog10a(Lo)) * (0.0 - Scale));
}

double TQVDisplayAxis::PixelToScale(int32_t APosition) const
{
    const TRect View = GetDataViewRect();
    return GetPositionFromMouse(APosition, FScaleTick.GetZoomed().GetMin().GetValue(),
                                FScaleTick.GetZoomed().GetMax().GetValue(), View);
}

double TQVDisplayAxis::GetPositionFromMouse(int32_t APosition, double AMin, double AMax, const TRect& ARect) const
{
    const bool Linear = GetScaleMode() == smLinear;
    double LogMin = 0.0;
    double LogMax = 0.0;
    double Width;
    if (Linear)
        Width = AMax - AMin;
    else {
        LogMin = QVLog10a(AMin);
        LogMax = QVLog10a(AMax);
        Width = LogMax - LogMin;
    }
    if (Width == 0.0)
        Width = CMinScaleWidth;

    const bool Vertical = GetIsVertical();
    const double P0 = Vertical ? ARect.Top : ARect.Left;
    const double P1 = Vertical ? ARect.Bottom : ARect.Right;
    double Span = P1 - P0 - 1.0;
    if (Span == 0.0)
        Span = 1.0; // a one-pixel rectangle: every position is its only pixel
    const double Position = APosition;

    if (Linear) {
        const bool FromEnd = Vertical ? GetIsOposite() : GetDirection() == adToRight;
        return FromEnd ? AMax - Width * (P1 - Position) / Span : AMax - Width * (Position - P0) / Span;
    }

    // On a logarithmic axis the pixels of the two ends are rounded first, and the ratio is
    // taken against the end farther from zero, so that a limit near zero does not divide by
    // almost nothing. An end exactly at pixel zero leaves only the plain proportion.
    const double PMax = QLRoundToInt(LogMax * Span / Width);
    const double PMin = QLRoundToInt(LogMin * Span / Width);
    double Log;
    const bool FromLowEnd = Vertical ? GetIsOposite() : GetDirection() == adToRight;
    if (FromLowEnd) {
        const double T = Vertical ? PMax - (P1 - Position) : PMin + Position - P0;
        if (std::fabs(LogMax) <= std::fabs(LogMin))
            Log = PMin != 0.0 ? LogMin * T / PMin : LogMin + Width * (T - PMin) / Span;
        else
            Log = PMax != 0.0 ? LogMax * T / PMax : LogMax + Width * (T - PMax) / Span;
    } else {
        const double T = PMax - (Position - P0);
        Log = PMax != 0.0 ? LogMax * T / PMax : LogMax + Width * (T - PMax) / Span;
    }
    return QVExp10a(Log);
}

bool TQVDisplayAxis::GetValueAt(int32_t AX, int32_t AY, double& AxisPos) const
{
    const TRect View = GetDataViewRect();
    if (!View.Contains(TPoint{AX, AY}))
        return false;
    const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    const double Span = GetScaleZoomedTickMax() - Lo;
    const double Width = QVRectWidth(View);
    const double Height = QVRectHeight(View);
    const double X = AX - View.Left;
    const double Y = AY - View.Top;
    switch (GetDirection()) {
    case adToRight: AxisPos = Width == 0.0 ? Lo : Lo + X * Span / Width; break;
    case adToLeft: AxisPos = Width == 0.0 ? Lo : Lo + (Width - X) * Span / Width; break;
    case adToUp: AxisPos = Height == 0.0 ? Lo : Lo + (Height - Y) * Span / Height; break;
    case adToDown: AxisPos = Height == 0.0 ? Lo : Lo + Y * Span / Height; break;
    }
    return true;
}

// ---- Scale conversions ----

double TQVDisplayAxis::ScaleTickToData(double AValue) const
{
    return Affine(AValue, FScaleTick.GetFull().GetMin().GetValue(), FScaleTick.GetFull().GetMax().GetValue(),
                  FDataTotal.GetFull().GetMin().GetValue(), FDataTotal.GetFull().GetMax().GetValue());
}

double TQVDisplayAxis::DataToScaleTick(double AValue) const
{
    return Affine(AValue, FDataTotal.GetFull().GetMin().GetValue(), FDataTotal.GetFull().GetMax().GetValue(),
                  FScaleTick.GetFull().GetMin().GetValue(), FScaleTick.GetFull().GetMax().GetValue());
}

double TQVDisplayAxis::ScaleRealToScaleTick(double AValue) const
{
    return Affine(AValue, FScaleTotalReal.GetFull().GetMin().GetValue(), FScaleTotalReal.GetFull().GetMax().GetValue(),
                  FScaleTick.GetFull().GetMin().GetValue(), FScaleTick.GetFull().GetMax().GetValue());
}

double TQVDisplayAxis::ScaleRealToData(double AValue) const
{
    return Affine(AValue, FScaleTotalReal.GetFull().GetMin().GetValue(), FScaleTotalReal.GetFull().GetMax().GetValue(),
                  FDataTotal.GetFull().GetMin().GetValue(), FDataTotal.GetFull().GetMax().GetValue());
}

double TQVDisplayAxis::ScaleTickToDataNoOffset(double AValue) const
{
    return Proportional(AValue, FScaleTick.GetFull().GetMin().GetValue(), FScaleTick.GetFull().GetMax().GetValue(),
                        FDataTotal.GetFull().GetMin().GetValue(), FDataTotal.GetFull().GetMax().GetValue());
}

double TQVDisplayAxis::DataToScaleTickNoOffset(double AValue) const
{
    return Proportional(AValue, FDataTotal.GetFull().GetMin().GetValue(), FDataTotal.GetFull().GetMax().GetValue(),
                        FScaleTick.GetFull().GetMin().GetValue(), FScaleTick.GetFull().GetMax().GetValue());
}

} // namespace qv
