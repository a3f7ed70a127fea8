// TQVDisplayAxis: the zoom window of one axis. The window lives on the printed scale
// (FZoomMin, FZoomMax); the X and Y axes read it back when they compute their zoomed limits.
// The undo history and the report of a change belong to the display; these operations call
// on it.
#include "qv/axes/QVDisplayAxis.h"

#include "qv/axes/QVDisplayAxisZoomSettings.h"
#include "qv/axes/QVZoomPin.h"
#include "qv/component/QVDisplayOwner.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

namespace qv {

namespace {

void CheckLimits(const char* AWhere, double AMin, double AMax)
{
    if (!std::isfinite(AMin) || !std::isfinite(AMax))
        throw std::invalid_argument(std::string(AWhere) + ": zoom limits " + std::to_string(AMin) + " and " +
                                    std::to_string(AMax) + " must be finite numbers");
}

// The narrowest window an axis opens to: a millionth of the values' magnitude, at least
// 0.00001.
double QVMinZoomWidth(double AMin, double AMax)
{
    return std::max(0.00001, 0.000001 * std::max(std::fabs(AMin), std::fabs(AMax)));
}

} // namespace

void TQVDisplayAxis::SetZooming(const TQVDisplayAxisZoom* AValue)
{
    FZooming->Assign(AValue);
}

const TQVDisplayValueRange* TQVDisplayAxis::GetZoomWidthRange() const
{
    return FZooming->GetRange();
}

double TQVDisplayAxis::GetZoomedOrCurrentMin() const
{
    return FZoomed ? FZoomMin : FDataTotal.GetZoomed().GetMin().GetValue();
}

double TQVDisplayAxis::GetZoomedOrCurrentMax() const
{
    return FZoomed ? FZoomMax : FDataTotal.GetZoomed().GetMax().GetValue();
}

// ---- Public operations ----

void TQVDisplayAxis::ZoomBy(double AValue, bool SaveHistory)
{
    QVCheckZoomFactor("TQVDisplayAxis.ZoomBy", AValue);
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayOwner* Display = GetDisplay();
    if (SaveHistory)
        Display->SaveUndoZoom(false);
    const TQVRealRanges Kept = Display->GetZoomRanges();
    IntZoom(AValue, zoZoom);
    FZoomed = true;
    Display->InvalidateRefresh();
    Display->ZoomChanged(Kept, zoZoom);
}

void TQVDisplayAxis::ZoomTo(double AMin, double AMax, bool SaveHistory)
{
    CheckLimits("TQVDisplayAxis.ZoomTo", AMin, AMax);
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayOwner* Display = GetDisplay();
    if (SaveHistory)
        Display->SaveUndoZoom(false);
    const TQVRealRanges Kept = Display->GetZoomRanges();
    IntZoomToScale(AMin, AMax, zoZoom, true);
    Display->InvalidateRefresh();
    Display->ZoomChanged(Kept, zoZoom);
}

void TQVDisplayAxis::ZoomToData(double AMin, double AMax, bool SaveHistory)
{
    CheckLimits("TQVDisplayAxis.ZoomToData", AMin, AMax);
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayOwner* Display = GetDisplay();
    if (SaveHistory)
        Display->SaveUndoZoom(false);
    const TQVRealRanges Kept = Display->GetZoomRanges();
    IntZoomToData(AMin, AMax, zoZoom);
    Display->InvalidateRefresh();
    Display->ZoomChanged(Kept, zoZoom);
}

void TQVDisplayAxis::ZoomIn()
{
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayOwner* Display = GetDisplay();
    Display->SaveUndoZoom(false);
    const TQVRealRanges Kept = Display->GetZoomRanges();
    IntZoomBy(0.5);
    Display->ZoomChanged(Kept, zoZoom);
}

void TQVDisplayAxis::ZoomOut()
{
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayOwner* Display = GetDisplay();
    Display->SaveUndoZoom(false);
    const TQVRealRanges Kept = Display->GetZoomRanges();
    IntZoomBy(2.0);
    Display->ZoomChanged(Kept, zoZoom);
}

void TQVDisplayAxis::ZoomOff()
{
    auto Guard = GetLock()->AcquireWrite();
    TQVDisplayOwner* Display = GetDisplay();
    Display->SaveUndoZoom(false);
    const TQVRealRanges Kept = Display->GetZoomRanges();
    IntZoomOff();
    // Reported like every other change, which also repaints with the full limits.
    Display->ZoomChanged(Kept, zoZoomOff);
}

bool TQVDisplayAxis::GetCanZoomIn() const
{
    const TQVDisplayOptionalValue* WidthLow = GetZoomWidthRange() ? GetZoomWidthRange()->GetLow() : nullptr;
    if (WidthLow && WidthLow->GetEnabled() && GetScaleZoomedTickRange() <= WidthLow->GetValue())
        return false;
    // Both edges pinned: the maximum cannot come down nor the minimum go up any further.
    const TQVDisplayOptionalValue* MaxLow = GetMax()->GetRange()->GetLow();
    const TQVDisplayOptionalValue* MinHigh = GetMin()->GetRange()->GetHigh();
    return !(MaxLow->GetEnabled() && MinHigh->GetEnabled() &&
             FScaleTick.GetZoomed().GetMax().GetValue() <= MaxLow->GetValue() &&
             MinHigh->GetValue() <= FScaleTick.GetZoomed().GetMin().GetValue());
}

bool TQVDisplayAxis::GetCanZoomOut() const
{
    const TQVDisplayOptionalValue* WidthHigh = GetZoomWidthRange() ? GetZoomWidthRange()->GetHigh() : nullptr;
    if (WidthHigh && WidthHigh->GetEnabled() && GetScaleZoomedTickRange() >= WidthHigh->GetValue())
        return false;
    const TQVDisplayOptionalValue* MaxHigh = GetMax()->GetRange()->GetHigh();
    const TQVDisplayOptionalValue* MinLow = GetMin()->GetRange()->GetLow();
    return !(MaxHigh->GetEnabled() && MinLow->GetEnabled() &&
             MaxHigh->GetValue() <= FScaleTick.GetZoomed().GetMax().GetValue() &&
             FScaleTick.GetZoomed().GetMin().GetValue() <= MinLow->GetValue());
}

// ---- Workers ----

void TQVDisplayAxis::IntZoom(double AValue, TQVZoomOperation AOperation)
{
    auto Guard = GetLock()->AcquireWrite();
    ScaleZoomWindow(AValue);
    FValidStep = false;
    InvalidateRecalc();
    SendZoomChange(AOperation);
}

void TQVDisplayAxis::SendZoomChange(TQVZoomOperation AOperation)
{
    FZoomPin->SendChange(AOperation);
}

void TQVDisplayAxis::ScaleZoomWindow(double AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    const double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    const double Width = Hi - Lo;
    const double Delta = (Width * AValue - Width) / 2.0;
    FZoomMax = Hi + Delta;
    FZoomMin = Lo - Delta;
    CorrectMinMax();
    FZoomed = true;
    InvalidateMinMaxCache(false);
}

void TQVDisplayAxis::IntZoomBy(double AValue)
{
    IntZoom(AValue, zoZoom);
}

void TQVDisplayAxis::IntZoomToScale(double AMin, double AMax, TQVZoomOperation AOperation, bool ASendPin)
{
    auto Guard = GetLock()->AcquireWrite();
    if (AMax < AMin)
        std::swap(AMin, AMax);
    // A window narrower than the axis allows opens about its centre.
    if (const double Least = GetLeastZoomWidth(); AMax - AMin < Least) {
        const double Centre = (AMin + AMax) / 2.0;
        AMin = Centre - Least / 2.0;
        AMax = Centre + Least / 2.0;
    }
    FZoomMin = AMin;
    FZoomMax = AMax;
    if (GetRestrictMinMax()) {
        // Not below the data, and never narrower than a small constant.
        const double Lowest = DataToScaleTick(FScaleTotalReal.GetFull().GetMin().GetValue());
        const double Highest = GetScaleFullTickMax();
        if (FZoomMin < Lowest) {
            FZoomMax += Lowest - FZoomMin;
            FZoomMin = Lowest;
        }
        if (FZoomMax < FZoomMin + 0.0001)
            FZoomMax = FZoomMin + 0.0001;
        // Not beyond the data's end either: the window ends there and keeps its width as far
        // as the data reach, so the axis never shows its minimum above its maximum and the
        // window read back is the one shown.
        if (FZoomMax > Highest && Highest > Lowest) {
            const double Width = FZoomMax - FZoomMin;
            FZoomMax = Highest;
            FZoomMin = std::max(Lowest, Highest - Width);
        }
    } else if (!(FZoomMax - FZoomMin >= QVMinZoomWidth(FZoomMin, FZoomMax))) {
        // A window of no width opens to the smallest one about its centre.
        const double Centre = (FZoomMin + FZoomMax) / 2.0;
        const double Half = QVMinZoomWidth(FZoomMin, FZoomMax) / 2.0;
        FZoomMin = Centre - Half;
        FZoomMax = Centre + Half;
    }
    CorrectMinMax();
    FZoomed = true;
    FValidStep = false;
    InvalidateMinMaxCache(false);
    InvalidateRecalc();
    if (ASendPin)
        SendZoomChange(AOperation);
}

void TQVDisplayAxis::IntZoomToData(double AMin, double AMax, TQVZoomOperation AOperation)
{
    IntZoomToScale(DataToScaleTick(AMin), DataToScaleTick(AMax), AOperation, true);
}

void TQVDisplayAxis::IntZoomOff()
{
    BasicZoomOff();
    SendZoomChange(zoZoomOff);
}

void TQVDisplayAxis::BasicZoomOff()
{
    FZoomed = false;
    InvalidateMinMaxCache(false);
}

void TQVDisplayAxis::InternalZoomToScale(double AMin, double AMax, TQVZoomOperation AOperation, bool ASendPin)
{
    IntZoomToScale(AMin, AMax, AOperation, ASendPin);
    GetDisplay()->InvalidateRefresh();
}

void TQVDisplayAxis::GetInternalZoomTo(double& AMin, double& AMax) const
{
    AMin = FScaleTick.GetZoomed().GetMin().GetValue();
    AMax = FScaleTick.GetZoomed().GetMax().GetValue();
}

void TQVDisplayAxis::MouseWheelZoomInt(const TPoint& APoint, double AFactor)
{
    // Where the pointer sits from the centre of the axis, -1 at one end to 1 at the other,
    // counted from the end where the printed values start.
    const double Half = GetDimentionLength() / 2.0;
    const TRect View = GetDataViewRect();
    double Place;
    if (!GetIsVertical())
        Place = GetScaleReversed() ? (View.Right - APoint.X) : (APoint.X - View.Left);
    else
        Place = GetScaleReversed() ? (View.Bottom - APoint.Y) : (APoint.Y - View.Top);
    const double F = Half != 0.0 ? (Place - Half) / Half : 0.0;

    const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    const double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    const double Width = Hi - Lo;
    AdjustZoomFactor(Width, AFactor);
    const double Shift = Width * F / 2.0 - Width * F * AFactor / 2.0;
    const double Grow = (Width * AFactor - Width) / 2.0;
    IntZoomToScale(Lo - Grow - Shift, Hi + Grow - Shift, zoMouseWheel, true);
    FZoomed = true;
}

// ---- Panning ----

void TQVDisplayAxis::IntSaveMouseDownZoom(int32_t AX, int32_t AY)
{
    FLeftMouseDownPoint = TPoint{AX, AY};
    SetMouseZoomValues();
}

void TQVDisplayAxis::SetMouseZoomValues()
{
    FMouseZoomMin = FScaleTick.GetZoomed().GetMin().GetValue();
    FMouseZoomMax = FScaleTick.GetZoomed().GetMax().GetValue();
}

double TQVDisplayAxis::DragToScale(int32_t APixels) const
{
    const TRect View = GetDataViewRect();
    const int32_t Length = GetIsVertical() ? QVRectHeight(View) : QVRectWidth(View);
    if (Length <= 0)
        return 0.0;
    return APixels * GetScaleZoomedTickRange() / Length;
}

void TQVDisplayAxis::MouseMoveScale(const TPoint& AFrom, const TPoint& ATo)
{
    if (!FZoomed)
        return;
    FLeftMouseDownPoint = AFrom;
    MouseOffsetBy(DragToScale(GetIsVertical() ? ATo.Y - AFrom.Y : ATo.X - AFrom.X));
}

void TQVDisplayAxis::MouseOffsetBy(double AValue)
{
    auto Guard = GetLock()->AcquireWrite();
    if (FReversed)
        AValue = 0.0 - AValue;
    const double FullMin = FScaleTick.GetFull().GetMin().GetValue();
    const double FullMax = FScaleTick.GetFull().GetMax().GetValue();
    if (FMouseZoomMin - AValue < FullMin)
        AValue = FMouseZoomMin - FullMin;
    if (FMouseZoomMax - AValue > FullMax)
        AValue = FMouseZoomMax - FullMax;
    TQVDisplayOwner* Display = GetDisplay();
    const TQVRealRanges Kept = Display->GetZoomRanges();
    FZoomMax = FMouseZoomMax - AValue;
    FZoomMin = FMouseZoomMin - AValue;
    CorrectMinMax();
    Display->ZoomChanged(Kept, zoMousePan);
    InvalidateMinMaxCache(false);
    SendZoomChange(zoMousePan);
}

} // namespace qv
