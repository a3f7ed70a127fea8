#include "qv/display/QVWaterfall.h"

#include "qv/channels/QVChannelMouseHitPoint.h"
#include "qv/component/QVDisplayZoom.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/foundation/QVLog10a.h"
#include "qv/pins/QWOperations.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace qv {

// ---- TQVBasicWaterfall ----

TQVBasicWaterfall::TQVBasicWaterfall()
{
    GetTitle()->SetTextDefault("Waterfall");
    FCursors = std::make_unique<TQVWaterfallCursors>(this, GetLock(), this);
    FMarkerGroups = std::make_unique<TQVWaterfallMarkerGroups>(this, GetLock(), this);
    FLabels = std::make_unique<TQVWaterfallTextLabels>(this, GetLock(), this);
    FCursorLinks = std::make_unique<TQVWaterfallCursorLinks>(this, GetLock(), this);
    // The legend docks before the axes and the level strip, at the control's right edge.
    FLegend = std::make_unique<TQVWaterfallLegendView>(this);
    FLegend->GetMarkerGroups()->SetItems(FMarkerGroups.get());
    FLegend->GetCursors()->SetItems(FCursors.get());
    FLegend->GetCursorLinks()->SetItems(FCursorLinks.get());
    FLegend->GetLabels()->SetItems(FLabels.get());
    FHighlighting = std::make_unique<TQVDisplayHighlighting>(this);
    FXAxis = std::make_unique<TQVWaterfallXAxis>(this, this);
    FYAxis = std::make_unique<TQVWaterfallYAxis>(this, this);
    RowBoundChanged();
}

void TQVBasicWaterfall::ReleaseElements()
{
    // The legend lets go of the collections before they go.
    FLegend.reset();
    FHighlightInfo = TQVHighlightInfo{};
    // Links let go of their cursors before the cursors go.
    FCursorLinks.reset();
    FLabels.reset();
    FMarkerGroups.reset();
    FCursors.reset();
}

TQVBasicWaterfall::~TQVBasicWaterfall()
{
    BeginDestroy();
    ReleaseElements();
    FYAxis.reset();
    FXAxis.reset();
}

TQVDisplayComponent* TQVBasicWaterfall::GetDataView() const
{
    return GetWaterfallDataView();
}

bool TQVBasicWaterfall::GetWaterfallHold() const
{
    const TQVBasicWaterfallDataView* View = GetWaterfallDataView();
    return GetHold() || (View && View->InMouseZooming());
}

void TQVBasicWaterfall::SetVertical(bool AValue)
{
    Set(FVertical, AValue, [this] {
        SetNeedsRecalc();
        FForcedFullRedraw = true;
        InvalidateRefresh();
    });
}

void TQVBasicWaterfall::OnRefreshTimer(TQLPersistent* /*ASender*/)
{
    auto Guard = GetLock()->AcquireWrite();
    if (!Guard)
        return;
    const bool Added = GetWaterfallBuffers().TakeBuffersAdded();
    const bool Changed = GetWaterfallBuffers().TakeBuffersChanged();
    if (Added || Changed || GetNeedsRecalc())
        InvalidateRefresh();
}

void TQVBasicWaterfall::ForceFullRedraw()
{
    FForcedFullRedraw = true;
    InvalidateRefresh();
}

void TQVBasicWaterfall::Print()
{
    struct THoldRestore {
        TQVBasicWaterfall& Waterfall;
        bool Old;
        ~THoldRestore() { Waterfall.SetHold(Old); }
    } Restore{*this, GetHold()};
    SetHold(true);
    TQVDataDisplay::Print();
}

void TQVBasicWaterfall::PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& /*ARect*/,
                                         const TQLRegion& ARegion, bool APrinting)
{
    // Rows are taken in before the layout: the first row sets the Y axis' sample count,
    // which sizes its strip.
    UpdateIntBuffers();
    RecalculateViewRects();
    if (!APrinting)
        FNeedsRecalc.store(false, std::memory_order_release);
    TQLCanvasSave Save(ACanvas);
    const TRect Plot{0, 0, GetPlotWidth(), GetPlotHeight()};
    ACanvas.GetBrush().SetStyle(bsSolid);
    ACanvas.GetBrush().SetColor(GetColor());
    ACanvas.SetPenStyle(psSolid);
    ACanvas.SetTextColor(0xFFFFFFFF);
    ACanvas.SetClipRegion(ARegion);
    ACanvas.FillRect(Plot);
    // Hosted displays lie on the background, under everything the waterfall draws.
    GetElements()->DrawElements(ddpForeground, ACanvas, Plot, APrinting);

    const bool Vertical = GetIsVertical();
    for (TQVDisplayView* View : GetViews()) {
        if (!View->IsVisible())
            continue;
        if (!View->GetDrawRect().IsEmpty() && ARegion.RectInRegion(View->GetDrawRect()))
            View->Draw(ddpFeatures, ACanvas, Vertical, APrinting);
        else
            View->DrawEx(ddpFeatures, ACanvas, Vertical);
    }

    TQVBasicWaterfallDataView* DataView = GetWaterfallDataView();
    const TRect ViewRect = DataView->GetDrawRect();
    if (GetWaterfallBuffers().GetBuffersCount() > 0 && !ViewRect.IsEmpty() && ARegion.RectInRegion(ViewRect))
        DataView->DirectDraw(ABitmap);
    // The hit point follows the data under a still mouse.
    if (GetWaterfallBuffers().TakeBuffersChanged())
        DataView->HitTests();

    if (FMarkerGroups->GetCount() > 0 && !ViewRect.IsEmpty()) {
        TQLCanvasSave ViewSave(ACanvas);
        ACanvas.SetClipRegion(TQLRegion(QLIntersectRect(ViewRect, Plot)));
        FMarkerGroups->DrawMarkers(ACanvas, ViewRect, APrinting);
    }
    // Labels are placed in the view with its bottom line included.
    if (FLabels->GetCount() > 0 && !ViewRect.IsEmpty()) {
        TQLCanvasSave ViewSave(ACanvas);
        ACanvas.SetClipRegion(TQLRegion(QLIntersectRect(ViewRect, Plot)));
        FLabels->Draw(ACanvas, TRect{ViewRect.Left, ViewRect.Top, ViewRect.Right, ViewRect.Bottom - 1}, APrinting);
    }
    if (!APrinting) {
        TQLCanvasSave ViewSave(ACanvas);
        ACanvas.SetClipRegion(TQLRegion(QLIntersectRect(ViewRect, Plot)));
        if (FHighlighting->GetMouseHitPoint()->GetEnabled())
            DrawHitPoint(ACanvas);
        DataView->DrawMouseSelction(ACanvas);
        ACanvas.ClearClipRegion();
    }
    if ((FCursors->GetCount() > 0 || FCursorLinks->GetCount() > 0) && !ViewRect.IsEmpty()) {
        TQLCanvasSave ViewSave(ACanvas);
        ACanvas.SetClipRegion(TQLRegion(QLIntersectRect(ViewRect, Plot)));
        FCursors->Draw(ACanvas, ViewRect);
        FCursorLinks->Draw(ACanvas, ViewRect, APrinting);
    }
    if (!APrinting && GetIsFocused())
        ACanvas.DrawFocusRect(Plot);
    // Followers see what the cursors stand on in the picture just drawn.
    if (!APrinting)
        FCursors->UpdateCursorsData(*this);
}

void TQVBasicWaterfall::DrawHitPoint(TQLCanvas& ACanvas)
{
    const TQVBasicWaterfallDataView* View = GetWaterfallDataView();
    const TQVChannelMouseHitPoint& HitPoint = *FHighlighting->GetMouseHitPoint();
    if (!View->GetIsHighlighted() || !HitPoint.GetEnabled())
        return;
    ACanvas.GetBrush().SetStyle(bsSolid);
    ACanvas.GetBrush().SetColor(GetColor());
    TAlphaColor Colour = HitPoint.GetColor();
    if (HitPoint.GetUseChannelColor()) {
        // The colour the value has in the level bar.
        double Low = GetCurrentMinLevel(), High = GetCurrentMaxLevel();
        double Value = std::clamp(GetToolTipZValue(), std::min(Low, High), std::max(Low, High));
        if (GetLevelsLogarithmic()) {
            Low = QVLog10a(Low), High = QVLog10a(High), Value = QVLog10a(Value);
        }
        Colour = GetLevelView()->ValueToColor(Value - Low, High - Low);
    }
    ACanvas.GetPen().SetColor(Colour);
    DrawHitTest(ACanvas, View->GetHighlightedPoint(), HitPoint);
}

double TQVBasicWaterfall::GetValueAtInt(double AMinValue, int32_t AX, int32_t AY, bool& AFound) const
{
    return GetWaterfallDataView()->GetValueAtInt(AMinValue, AX, AY, AFound);
}

double TQVBasicWaterfall::GetValueAtScale(double AMinValue, double AXValue, double AYValue) const
{
    return GetWaterfallDataView()->GetValueAtScale(AMinValue, AXValue, AYValue);
}

std::shared_ptr<IQVRealBuffer> TQVBasicWaterfall::GetBufferAtXScale(double AValue) const
{
    return GetWaterfallDataView()->GetBufferAtXScale(AValue);
}

std::shared_ptr<IQVRealBuffer> TQVBasicWaterfall::GetBufferAtYScale(double AValue) const
{
    return GetWaterfallDataView()->GetBufferAtYScale(AValue);
}

std::string TQVBasicWaterfall::GetFormatLabelText(const TPoint& APoint, double AXValue, double AYValue,
                                                  const std::string& AFormat, const std::string& ADefault)
{
    bool Found = false;
    const double Z = GetValueAtInt(GetCurrentMinLevel(), APoint.X, APoint.Y, Found);
    std::string Text = AFormat.empty() ? ADefault : AFormat;
    std::string Result;
    // "%D" inserts ADefault in place, and the walk goes on through it; a default that names
    // itself again is expanded once only.
    bool DefaultInserted = false;
    for (size_t I = 0; I < Text.size(); ++I) {
        if (Text[I] != '%') {
            Result += Text[I];
            continue;
        }
        if (I + 1 >= Text.size())
            break;
        const char Letter = static_cast<char>(std::toupper(static_cast<unsigned char>(Text[I + 1])));
        ++I;
        switch (Letter) {
        case 'X': Result += FXAxis->GetTickText(AXValue); break;
        case 'Y': Result += FYAxis->GetTickText(AYValue); break;
        case 'Z': Result += GetLevelTickText(Z); break;
        case '%': Result += '%'; break;
        case 'D':
            if (!DefaultInserted) {
                DefaultInserted = true;
                Text.insert(I + 1, ADefault);
            }
            break;
        default: break;
        }
    }
    return Result;
}

std::string TQVBasicWaterfall::GetFormatedLabelText()
{
    const TQVBasicWaterfallDataView* View = GetWaterfallDataView();
    const TQVRealPoint Value = View->GetValuePoint();
    return GetFormatLabelText(View->GetCurrentMousePoint(), Value.X, Value.Y,
                              FHighlighting->GetMouseHitPoint()->GetPointLabel()->GetText(), "%X : %Y : %Z");
}

const TQLClassInfo& TQVBasicWaterfall::StaticClassInfo()
{
    using C = TQVBasicWaterfall;
    static const TQLClassInfo Info = TQLClassBuilder<C>("TQVBasicWaterfall", &TQVDataDisplay::StaticClassInfo())
                                         .Object("XAxis", &C::GetXAxis)
                                         .Object("YAxis", &C::GetYAxis)
                                         .Object("Highlighting", &C::GetHighlighting)
                                         .Collection("Cursors", &C::GetCursors)
                                         .Collection("CursorLinks", &C::GetCursorLinks)
                                         .Collection("MarkerGroups", &C::GetMarkerGroups)
                                         .Collection("Labels", &C::GetLabels)
                                         .Object("Legend", &C::GetLegend)
                                         .Property("Vertical", &C::GetVertical, &C::SetVertical, false)
                                         .Build();
    return Info;
}

// ---- TQVWaterfall ----

TQVWaterfall::TQVWaterfall()
{
    FData = std::make_unique<TQVWaterfallData>(this);
    {
        const TQLLockPtr Lock = GetLock();
        auto Guard = Lock->AcquireWrite();
        FInputPin = std::make_shared<TQWSinkPin>(
            std::initializer_list<TQVDataKind>{dkReal, dkSingle, dkInteger, dkCardinal, dkInt64, dkUInt64, dkSmallInt,
                                               dkWord},
            [this, Lock](TQWPin* APin, TQVDataKind AIID, const TQWOperation& AOperation, uint64_t AState) {
                const auto* Sink = dynamic_cast<const TQWSinkPin*>(APin);
                if (!Sink || Sink->IsClosed())
                    return false;
                return SinkDispatch(APin, AIID, AOperation, AState);
            });
    }
    FBuffers = std::make_unique<TQVWaterfallBuffers>(*this, FBufferSection);
    FDataView = std::make_unique<TQVWaterfallDataView>(this, this);
    FLevels = std::make_unique<TQVWaterfallDisplayLevelView>(
        this, this, [this] { return GetCurrentMinLevel(); }, [this] { return GetCurrentMaxLevel(); },
        [this](int32_t AX, int32_t AY) { return FDataView->GetIntValueAt(AX, AY); });
    // The level strip docks first; the axes, then the data view, take what it leaves.
    GetViews().Reassign(FXAxis.get());
    GetViews().Reassign(FYAxis.get());
    GetViews().Reassign(FDataView.get());
}

TQVWaterfall::~TQVWaterfall()
{
    BeginDestroy();
    FInputPin->Close();
    // The cursors and markers ask the display for its data view as they go.
    ReleaseElements();
    FDataView.reset();
    FLevels.reset();
}

bool TQVWaterfall::SinkDispatch(TQWPin* /*APin*/, TQVDataKind /*AIID*/, const TQWOperation& AOperation,
                                uint64_t /*AState*/)
{
    if (const auto* Start = dynamic_cast<const TQWStartOperation*>(&AOperation)) {
        const auto* Rate = dynamic_cast<const TQWStartRateOperation*>(Start);
        SetSampleRateValue(Rate ? Rate->GetSampleRate() : 10000.0);
        SetDomains(dynamic_cast<const TQWStartSpectrumOperation*>(Start) != nullptr,
                   dynamic_cast<const TQWStartIntensityOperation*>(Start) != nullptr);
        auto Guard = GetLock()->AcquireWrite();
        if (Guard)
            Clear();
        return true;
    }
    if (const auto* Supplied = dynamic_cast<const TQWSuppliedBufferOperation*>(&AOperation)) {
        if (!Supplied->GetBuffer())
            return false;
        // The row goes to the waiting list only: a sender never waits for a paint.
        AddBuffer(TQVRealBuffer(*Supplied->GetBuffer()));
        return true;
    }
    return false;
}

void TQVWaterfall::SetSampleRateValue(double AValue)
{
    if (!std::isfinite(AValue) || AValue < 0.0)
        throw std::invalid_argument("TQVWaterfall: SampleRate " + std::to_string(AValue) +
                                    " is not a rate; it must be a finite number at or above 0");
    FSampleRate.store(AValue, std::memory_order_release);
    FYAxis->InvalidateMinMaxCache(true);
    SetNeedsRecalc();
}

double TQVWaterfall::GetSampleRate() const
{
    const double Rate = GetSampleRateValue();
    return Rate == 0.0 ? 10000.0 : Rate;
}

void TQVWaterfall::SetDomains(bool AFrequency, bool AIntensity)
{
    FFrequencyDomain = AFrequency;
    FIntensityDomain = AIntensity;
    FYAxis->InvalidateMinMaxCache(true);
    SetNeedsRecalc();
}

void TQVWaterfall::UpdateIntBuffers()
{
    auto Guard = GetLock()->AcquireWrite();
    FBuffers->UpdateIntBuffers();
}

bool TQVWaterfall::PopulateDrawBuffers()
{
    // Pending rows wait while held; a release applies them.
    if (!GetWaterfallHold())
        FBuffers->PopulateDrawBuffers();
    return false;
}

bool TQVWaterfall::SetBufferInt(uint32_t AIndex, const IQVRealBuffer& ABuffer)
{
    auto Guard = GetLock()->AcquireWrite();
    return FBuffers->SetBufferInt(AIndex, ABuffer);
}

void TQVWaterfall::SetBuffer(uint32_t AIndex, const IQVRealBuffer& ABuffer)
{
    if (!SetBufferInt(AIndex, ABuffer))
        throw ERangeError("Index out of range = " + std::to_string(AIndex));
}

void TQVWaterfall::Clear()
{
    auto Guard = GetLock()->AcquireWrite();
    UpdateIntBuffers();
    FBufferSection.Execute([this] {
        FBuffers->Clear(GetWaterfallHold());
        FDataView->ResetBufferFill();
        FForcedFullRedraw = true;
    });
    InvalidateRefresh();
}

TQVRealBufferArray TQVWaterfall::GetIntData()
{
    auto Guard = GetLock()->AcquireWrite();
    return FBuffers->GetIntData();
}

TQVRealBufferArray TQVWaterfall::GetDrawData()
{
    return FBuffers->GetDrawData();
}

double TQVWaterfall::GetCurrentMinLevel() const
{
    const TQVLevelAxis* Axis = FLevels->GetAxis();
    const double Current = FBuffers->GetCurrentMin();
    if (Axis->GetAutoscale() && FBuffers->GetExtremesCount() > 0 && !std::isnan(Current))
        return Current;
    return Axis->GetMin();
}

double TQVWaterfall::GetCurrentMaxLevel() const
{
    const TQVLevelAxis* Axis = FLevels->GetAxis();
    const double Current = FBuffers->GetCurrentMax();
    if (Axis->GetAutoscale() && FBuffers->GetExtremesCount() > 0 && !std::isnan(Current))
        return Current;
    return Axis->GetMax();
}

void TQVWaterfall::MainViewScrolled(bool AForceInvalidate)
{
    if (PaintIsDisabled() || !FLevels)
        return;
    FLevels->MainViewScrolled(AForceInvalidate);
}

const TQLClassInfo& TQVWaterfall::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVWaterfall>("TQVWaterfall", &TQVBasicWaterfall::StaticClassInfo())
            .Object("Levels", &TQVWaterfall::GetLevels)
            .Build();
    return Info;
}

// ---- TQVWaterfallData ----

void TQVWaterfallData::AddData(const IQVRealBuffer& ABuffer)
{
    FWaterfall->AddBuffer(ABuffer);
}

void TQVWaterfallData::AddData(const IQVIntegerBuffer& ABuffer)
{
    FWaterfall->AddBuffer(TQVRealBuffer(ABuffer.Read(), ABuffer.GetSize()));
}

void TQVWaterfallData::SetData(uint32_t AIndex, const IQVRealBuffer& ABuffer)
{
    FWaterfall->SetBuffer(AIndex, ABuffer);
}

void TQVWaterfallData::SetData(uint32_t AIndex, const IQVIntegerBuffer& ABuffer)
{
    FWaterfall->SetBuffer(AIndex, TQVRealBuffer(ABuffer.Read(), ABuffer.GetSize()));
}

void TQVWaterfallData::SetData(const TQVRealBufferArray& ABuffers)
{
    // Every row is checked before the history changes: a refused array leaves it alone.
    int32_t Size = 0;
    for (const auto& Row : ABuffers) {
        const int32_t RowSize = Row ? Row->GetSize() : 0;
        if (RowSize <= 0 || (Size != 0 && RowSize != Size))
            throw std::invalid_argument("TQVWaterfallData::SetData: a row of " + std::to_string(RowSize) +
                                        " samples does not fit rows of " + std::to_string(Size ? Size : RowSize) +
                                        " samples");
        Size = RowSize;
    }
    FWaterfall->Clear();
    for (const auto& Row : ABuffers)
        FWaterfall->AddBuffer(*Row);
}

TQVRealBufferArray TQVWaterfallData::GetData() const
{
    return FWaterfall->GetIntData();
}

TQVRealBufferArray TQVWaterfallData::GetDrawData() const
{
    return FWaterfall->GetDrawData();
}

std::vector<double> TQVWaterfallData::GetCreateIntDataArray(int32_t& ABuffersCount, int32_t& ABufferSize) const
{
    const TQVRealBufferArray Rows = GetData();
    ABuffersCount = static_cast<int32_t>(Rows.size());
    ABufferSize = Rows.empty() ? 0 : Rows.front()->GetSize();
    std::vector<double> Result(static_cast<size_t>(ABuffersCount) * static_cast<size_t>(ABufferSize));
    for (size_t I = 0; I < Rows.size(); ++I)
        std::copy_n(Rows[I]->Read(), std::min(ABufferSize, Rows[I]->GetSize()),
                    Result.data() + I * static_cast<size_t>(ABufferSize));
    return Result;
}

void TQVWaterfallData::Clear()
{
    FWaterfall->Clear();
}

double TQVWaterfallData::GetSampleRate() const
{
    return FWaterfall->GetSampleRateValue();
}

void TQVWaterfallData::SetSampleRate(double AValue)
{
    FWaterfall->SetSampleRateValue(AValue);
}

} // namespace qv
