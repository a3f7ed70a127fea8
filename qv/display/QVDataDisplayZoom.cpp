// TQVDataDisplay: zooming over all axes, and the undo and redo history of zoom windows.
#include "qv/display/QVDataDisplay.h"

#include "qv/axes/QVDisplayAxis.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/display/QVDisplayZoomList.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace qv {

void QVCheckZoomFactor(const char* AWhere, double AValue)
{
    if (!std::isfinite(AValue) || AValue <= 0.0)
        throw std::invalid_argument(std::string(AWhere) + ": zoom factor " + std::to_string(AValue) +
                                    " is not a positive number");
}

void QVCheckZoomLimit(const char* AWhere, double AValue)
{
    if (!std::isfinite(AValue))
        throw std::invalid_argument(std::string(AWhere) + ": zoom limit " + std::to_string(AValue) +
                                    " is not a finite number");
}

namespace {

// The other axes of a direction follow the main one by proportion: each edge moves by the
// same fraction of the axis' own window as the main axis' edge moves of its window.
void ZoomDirectionTo(TQVDisplayAxis* AMain, const TQVDisplayAxisList& AAxes, double AMin, double AMax,
                     TQVZoomOperation AOperation)
{
    if (!AMain)
        return;
    const double Min = AMain->GetScaleTick().GetZoomed().GetMin().GetValue();
    const double Max = AMain->GetScaleTick().GetZoomed().GetMax().GetValue();
    const double Range = Max - Min;
    double RatioBegin = 1.0;
    double RatioEnd = 1.0;
    if (Range != 0.0) {
        RatioBegin = (Min - AMin) / Range;
        RatioEnd = (Max - AMax) / Range;
    }
    for (TQVDisplayAxis* Axis : AAxes) {
        if (Axis == AMain)
            continue;
        const double AxisMin = Axis->GetScaleTick().GetZoomed().GetMin().GetValue();
        const double AxisMax = Axis->GetScaleTick().GetZoomed().GetMax().GetValue();
        const double AxisRange = AxisMax - AxisMin;
        Axis->IntZoomToScale(AxisMin - AxisRange * RatioBegin, AxisMax - AxisRange * RatioEnd, AOperation, true);
    }
    AMain->IntZoomToScale(AMin, AMax, AOperation, true);
}

} // namespace

void TQVDataDisplay::SetZooming(const TQVDisplayZoom* AValue)
{
    FZooming->Assign(AValue);
}

// ---- History ----

std::unique_ptr<TQVAxisZoomList> TQVDataDisplay::GetAxisUndoList() const
{
    auto List = std::make_unique<TQVAxisZoomList>();
    for (TQVDisplayAxis* Axis : FAxes)
        List->Add(Axis);
    return List;
}

void TQVDataDisplay::SaveUndoZoom(bool AFromWheel)
{
    auto Guard = GetLock()->AcquireWrite();
    if (FWasMouseWheel && AFromWheel)
        return; // the burst goes on: still the same undo step
    FWasMouseWheel = AFromWheel;
    FUndoList->Add(GetAxisUndoList());
    FRedoList->Clear();
}

void TQVDataDisplay::ClearZoomUndo()
{
    auto Guard = GetLock()->AcquireWrite();
    FUndoList->Clear();
    FRedoList->Clear();
    FWasMouseWheel = false;
}

void TQVDataDisplay::UndoZoom()
{
    auto Guard = GetLock()->AcquireWrite();
    FWasMouseWheel = false;
    const TQVRealRanges Ranges = GetZoomRanges();
    // The present zoom goes on the redo stack even when there is nothing to undo.
    FRedoList->Add(GetAxisUndoList());
    std::unique_ptr<TQVAxisZoomList> List;
    if (FUndoList->Get(List)) {
        IntZoomToList(*List, zoUndo);
        ZoomChanged(Ranges, zoUndo);
    }
}

void TQVDataDisplay::RedoZoom()
{
    auto Guard = GetLock()->AcquireWrite();
    const TQVRealRanges Ranges = GetZoomRanges();
    FUndoList->Add(GetAxisUndoList());
    std::unique_ptr<TQVAxisZoomList> List;
    if (FRedoList->Get(List)) {
        IntZoomToList(*List, zoRedo);
        ZoomChanged(Ranges, zoRedo);
    }
}

void TQVDataDisplay::IntZoomToList(const TQVAxisZoomList& AList, TQVZoomOperation AOperation)
{
    for (const TQVAxisZoomListItem& Item : AList) {
        if (FAxes.IndexOf(Item.Axis) < 0)
            continue; // an axis that has gone since
        if (Item.Zoomed)
            Item.Axis->IntZoomToScale(Item.Min, Item.Max, AOperation, true);
        else
            Item.Axis->IntZoomOff();
    }
    InvalidateRefresh();
}

bool TQVDataDisplay::CanUndoZoom() const
{
    return FUndoList->HasItems();
}

bool TQVDataDisplay::CanRedoZoom() const
{
    return FRedoList->HasItems();
}

void TQVDataDisplay::ForgetZoomAxis(const TQVDisplayAxis* AAxis)
{
    if (FUndoList)
        FUndoList->RemoveAxis(AAxis);
    if (FRedoList)
        FRedoList->RemoveAxis(AAxis);
}

// ---- Operations ----

void TQVDataDisplay::ZoomOff()
{
    auto Guard = GetLock()->AcquireWrite();
    SaveUndoZoom(false);
    const TQVRealRanges Ranges = GetZoomRanges();
    IntZoomOff();
    ZoomChanged(Ranges, zoZoomOff);
}

void TQVDataDisplay::IntZoomOff()
{
    InvalidateRefresh();
    for (TQVDisplayAxis* Axis : FAxes)
        Axis->IntZoomOff();
}

void TQVDataDisplay::ZoomBy(double XValue, double YValue, bool SaveHistory)
{
    QVCheckZoomFactor("TQVDataDisplay.ZoomBy", XValue);
    QVCheckZoomFactor("TQVDataDisplay.ZoomBy", YValue);
    auto Guard = GetLock()->AcquireWrite();
    if (SaveHistory)
        SaveUndoZoom(false);
    const TQVRealRanges Ranges = GetZoomRanges();
    for (TQVDisplayAxis* Axis : FYAxes)
        Axis->IntZoom(YValue, zoZoom);
    for (TQVDisplayAxis* Axis : FXAxes)
        Axis->IntZoom(XValue, zoZoom);
    InvalidateRefresh();
    ZoomChanged(Ranges, zoZoom);
}

void TQVDataDisplay::ZoomTo(double XMin, double XMax, double YMin, double YMax, bool SaveHistory)
{
    ZoomToWindow("TQVDataDisplay.ZoomTo", XMin, XMax, YMin, YMax, SaveHistory, true);
}

void TQVDataDisplay::ZoomToData(double XMin, double XMax, double YMin, double YMax, bool SaveHistory)
{
    ZoomToWindow("TQVDataDisplay.ZoomToData", XMin, XMax, YMin, YMax, SaveHistory, false);
}

void TQVDataDisplay::ZoomToWindow(const char* AOperation, double XMin, double XMax, double YMin, double YMax,
                                  bool SaveHistory, bool AIsScale)
{
    for (double Value : {XMin, XMax, YMin, YMax})
        QVCheckZoomLimit(AOperation, Value);
    auto Guard = GetLock()->AcquireWrite();
    if (SaveHistory)
        SaveUndoZoom(false);
    const TQVRealRanges Ranges = GetZoomRanges();
    if (FZooming->GetHoldOnZoom())
        SetHold(true);
    IntZoomTo(XMin, XMax, YMin, YMax, zoZoom, AIsScale);
    ZoomChanged(Ranges, zoZoom);
}

void TQVDataDisplay::IntZoomTo(double XMin, double XMax, double YMin, double YMax, TQVZoomOperation AOperation,
                               bool AIsScale)
{
    TQVDisplayAxis* X = GetXAxis();
    TQVDisplayAxis* Y = GetYAxis();
    if (!AIsScale) {
        // Data limits become printed limits through the main axes' full ranges, as an
        // axis' own ZoomToData does.
        if (X) {
            XMin = X->DataToScaleTick(XMin);
            XMax = X->DataToScaleTick(XMax);
        }
        if (Y) {
            YMin = Y->DataToScaleTick(YMin);
            YMax = Y->DataToScaleTick(YMax);
        }
    }
    ZoomDirectionTo(X, FXAxes, XMin, XMax, AOperation);
    ZoomDirectionTo(Y, FYAxes, YMin, YMax, AOperation);
    InvalidateRefresh();
}

void TQVDataDisplay::MouseWheelZoom(const TPoint& APoint, double AXFactor, double AYFactor)
{
    if (!FZooming->GetMouseWheelEnabled())
        return;
    QVCheckZoomFactor("TQVDataDisplay.MouseWheelZoom", AXFactor);
    QVCheckZoomFactor("TQVDataDisplay.MouseWheelZoom", AYFactor);
    auto Guard = GetLock()->AcquireWrite();
    if (FZooming->GetMode() == zmXAxis)
        AYFactor = 1.0;
    else if (FZooming->GetMode() == zmYAxis)
        AXFactor = 1.0;
    const TQVRealRanges Ranges = GetZoomRanges();
    SaveUndoZoom(true);
    for (TQVDisplayAxis* Axis : FXAxes)
        Axis->MouseWheelZoomInt(APoint, AXFactor);
    for (TQVDisplayAxis* Axis : FYAxes)
        Axis->MouseWheelZoomInt(APoint, AYFactor);
    ZoomChanged(Ranges, zoMouseWheel);
}

void TQVDataDisplay::MouseWheelZoomAxis(TQVDisplayAxis* AAxis, const TPoint& APoint, double AFactor)
{
    if (!AAxis || FAxes.IndexOf(AAxis) < 0)
        throw std::invalid_argument("TQVDataDisplay.MouseWheelZoomAxis: the axis is not an axis of this display");
    QVCheckZoomFactor("TQVDataDisplay.MouseWheelZoomAxis", AFactor);
    auto Guard = GetLock()->AcquireWrite();
    SaveUndoZoom(true);
    const TQVRealRanges Ranges = GetZoomRanges();
    AAxis->MouseWheelZoomInt(APoint, AFactor);
    InvalidateRefresh();
    ZoomChanged(Ranges, zoMouseWheel);
}

// ---- Reports and queries ----

void TQVDataDisplay::ZoomChanged(TQVRealRanges ARanges, TQVZoomOperation AOperation)
{
    InvalidateRecalc();
    if (!FOnZoomChanged)
        return;
    ARanges.XMin = FZooming->GetXMin();
    ARanges.XMax = FZooming->GetXMax();
    ARanges.YMin = FZooming->GetYMin();
    ARanges.YMax = FZooming->GetYMax();
    FOnZoomChanged(this, AOperation, ARanges);
}

TQVRealRanges TQVDataDisplay::GetZoomRanges() const
{
    TQVRealRanges Ranges;
    Ranges.XOldMin = GetXMinZoom();
    Ranges.XOldMax = GetXMaxZoom();
    Ranges.YOldMin = GetYMinZoom();
    Ranges.YOldMax = GetYMaxZoom();
    return Ranges;
}

bool TQVDataDisplay::IsMainAxisZoomed() const
{
    const TQVDisplayAxis* X = GetXAxis();
    const TQVDisplayAxis* Y = GetYAxis();
    return (X && X->IsZoomed()) || (Y && Y->IsZoomed());
}

bool TQVDataDisplay::IsZoomed() const
{
    for (const TQVDisplayAxis* Axis : FAxes)
        if (Axis->IsZoomed())
            return true;
    return false;
}

bool TQVDataDisplay::GetIntCanZoomIn() const
{
    const TQVDisplayAxis* X = GetXAxis();
    const TQVDisplayAxis* Y = GetYAxis();
    if (!X && !Y)
        return true;
    return (X && X->GetCanZoomIn()) || (Y && Y->GetCanZoomIn());
}

bool TQVDataDisplay::GetIntCanZoomOut() const
{
    const TQVDisplayAxis* X = GetXAxis();
    const TQVDisplayAxis* Y = GetYAxis();
    if (!X && !Y)
        return true;
    return (X && X->GetCanZoomOut()) || (Y && Y->GetCanZoomOut());
}

double TQVDataDisplay::GetXMinZoom() const
{
    const TQVDisplayAxis* X = GetXAxis();
    return X ? X->GetZoomedOrCurrentMin() : 0.0;
}

double TQVDataDisplay::GetXMaxZoom() const
{
    const TQVDisplayAxis* X = GetXAxis();
    return X ? X->GetZoomedOrCurrentMax() : 0.0;
}

double TQVDataDisplay::GetYMinZoom() const
{
    const TQVDisplayAxis* Y = GetYAxis();
    return Y ? Y->GetZoomedOrCurrentMin() : 0.0;
}

double TQVDataDisplay::GetYMaxZoom() const
{
    const TQVDisplayAxis* Y = GetYAxis();
    return Y ? Y->GetZoomedOrCurrentMax() : 0.0;
}

} // namespace qv
