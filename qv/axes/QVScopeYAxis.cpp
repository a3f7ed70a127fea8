// TQVBasicScopeYAxis: autoscaling over a history of frames, the zoomed limits with margin and
// hysteresis, pan limits and snapping; the additional Y axes.
#include "qv/axes/QVScopeYAxis.h"

#include "qv/axes/QVAdditionalAxes.h"
#include "qv/axes/QVAxisDataRange.h"
#include "qv/axes/QVDisplayXAxis.h"
#include "qv/axes/QVLegacyAxisData.h"
#include "qv/axes/QVScopeXAxis.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace qv {

namespace {

// A sample position rounded to the nearest index, ties to even; far values are held to a
// range that any buffer clamps safely.
int64_t SampleIndex(double AValue)
{
    if (std::isnan(AValue))
        return 0;
    constexpr double CLimit = 4.0e18;
    return static_cast<int64_t>(std::nearbyint(std::clamp(AValue, -CLimit, CLimit)));
}

} // namespace

TQVBasicScopeYAxis::TQVBasicScopeYAxis(TQVDisplayOwner* AChart, TQVViewAlign AAlign)
    : TQVDisplayYAxis(AChart, AAlign), FChannelSource(dynamic_cast<IQVAxisChannelSource*>(AChart)),
      FAutoScaling(std::make_unique<TQVScopeAutoScaling>(this, GetLock(),
                                                         [this] {
                                                             InvalidateMinMaxCache(true);
                                                             InvalidateRecalc();
                                                         })),
      FCursorSettings(std::make_unique<TQVDisplayAxisCursorSettings>(AChart)),
      FDataView(std::make_unique<TQVDisplayGridDirectionalLinesSettings>(this, GetLock(), [this] { InvalidateView(); }))
{
    FZoomMin = -1.0;
    FZoomMax = 1.0;
    GetMin()->SetValueDefault(-1.0);
    GetMin()->SetDataValueDefault(-1.0);
    GetMax()->SetValueDefault(1.0);
    GetMax()->SetDataValueDefault(1.0);
    GetAxisLabel()->SetTextDefault("Y Axis");
}

TQVBasicScopeYAxis::~TQVBasicScopeYAxis() = default;

std::vector<IQVAxisChannel*> TQVBasicScopeYAxis::GetAssociatedChannels() const
{
    std::vector<IQVAxisChannel*> Result;
    if (FChannelSource)
        for (IQVAxisChannel* Channel : FChannelSource->GetAxisChannels())
            if (Channel->GetYAxis() == this)
                Result.push_back(Channel);
    return Result;
}

bool TQVBasicScopeYAxis::HasChannelWithMoreThan(int32_t AMinCount) const
{
    for (const IQVAxisChannel* Channel : GetAssociatedChannels())
        if (Channel->GetVisible() && Channel->GetYDrawDataBuffer()->GetSize() > AMinCount)
            return true;
    return false;
}

// ---- Autoscaling ----

bool TQVBasicScopeYAxis::CalcCurrentExtremes(double& AMin, double& AMax) const
{
    if (!FExtremesValid) {
        FExtremesFound = ScanCurrentExtremes(FExtremeMin, FExtremeMax);
        FExtremesValid = true;
    }
    if (FExtremesFound) {
        AMin = FExtremeMin;
        AMax = FExtremeMax;
    }
    return FExtremesFound;
}

bool TQVBasicScopeYAxis::ScanCurrentExtremes(double& AMin, double& AMax) const
{
    bool Found = false;
    std::vector<TChannelExtremes> Kept;
    for (const IQVAxisChannel* Channel : GetAssociatedChannels()) {
        if (!Channel->GetVisible())
            continue;
        const IQVRealBuffer& Y = *Channel->GetYDrawDataBuffer();
        if (Y.GetSize() <= 1)
            continue;
        int64_t First = 0;
        int64_t Last = Y.GetSize() - 1;
        if (const TQVBasicScopeXAxis* XAxis = Channel->GetXAxis()) {
            First = SampleIndex(XAxis->GetMinSample());
            Last = SampleIndex(XAxis->GetMaxSample());
        }
        TChannelExtremes Key;
        Key.Channel = Channel;
        Key.Buffer = &Y;
        Key.Generation = Channel->GetDrawGeneration();
        Key.Size = Y.GetSize();
        Key.First = First;
        Key.Last = Last;
        const auto Same = [&Key](const TChannelExtremes& E) {
            return E.Channel == Key.Channel && E.Buffer == Key.Buffer && E.Generation == Key.Generation &&
                   E.Size == Key.Size && E.First == Key.First && E.Last == Key.Last;
        };
        const auto Cached = std::find_if(FChannelExtremes.begin(), FChannelExtremes.end(), Same);
        if (Cached != FChannelExtremes.end()) {
            Key = *Cached;
        } else {
            // Indexes beyond the record are held to it; an empty range finds nothing.
            const int64_t Size = Y.GetSize();
            const auto From = int32_t(std::clamp<int64_t>(First, 0, Size));
            const auto End = int32_t(std::clamp<int64_t>(Last + 1, 0, Size));
            Key.Found = From < End && Channel->GetDrawYExtremes(From, End, true, Key.Lo, Key.Hi);
        }
        Kept.push_back(Key);
        if (!Key.Found)
            continue;
        const double Lo = Key.Lo, Hi = Key.Hi;
        if (!Found) {
            AMin = Lo;
            AMax = Hi;
            Found = true;
        } else {
            AMin = std::min(AMin, Lo);
            AMax = std::max(AMax, Hi);
        }
    }
    FChannelExtremes = std::move(Kept);
    return Found;
}

// Without data the settings stand in for both extremes, so that the window collapses only
// when Min.Value equals Max.Value, and then opens by half a unit each way.
double TQVBasicScopeYAxis::GetCalcMinCurrentScale() const
{
    double Min = 0.0, Max = 0.0;
    if (!CalcCurrentExtremes(Min, Max)) {
        Min = GetMin()->GetValue();
        Max = GetMax()->GetValue();
    }
    return Min == Max ? Min - 0.5 : Min;
}

double TQVBasicScopeYAxis::GetCalcMaxCurrentScale() const
{
    double Min = 0.0, Max = 0.0;
    if (!CalcCurrentExtremes(Min, Max)) {
        Min = GetMin()->GetValue();
        Max = GetMax()->GetValue();
    }
    return Min == Max ? Max + 0.5 : Max;
}

void TQVBasicScopeYAxis::PopulateScaleHistory()
{
    const uint32_t MaxHistory = FAutoScaling->GetMaxHistory();
    if (MaxHistory == 0 || !HasChannelWithMoreThan(0))
        return;
    if (FValBufIndex >= MaxHistory)
        FValBufIndex = 0;
    const auto Index = static_cast<int32_t>(FValBufIndex);
    FAutoScaling->GetMinValuesBuffer().SetItem(Index, GetCalcMinCurrentScale());
    FAutoScaling->GetMaxValuesBuffer().SetItem(Index, GetCalcMaxCurrentScale());
    ++FValBufIndex;
    if (FValBufSize < MaxHistory)
        ++FValBufSize;
}

void TQVBasicScopeYAxis::InvalidateHistory()
{
    FValBufIndex = 0;
    FValBufSize = 0;
}

// ---- Limits ----

double TQVBasicScopeYAxis::GetDataFullMin() const
{
    return FAutoScaling->GetEnabled() ? GetCalcMinCurrentScale() : GetMin()->GetValue();
}

double TQVBasicScopeYAxis::GetDataFullMax() const
{
    return FAutoScaling->GetEnabled() ? GetCalcMaxCurrentScale() : GetMax()->GetValue();
}

namespace {

// The zoom edge AValue held inside the enabled bounds of ARange.
double ClampToRange(double AValue, const TQVDisplayValueRange* ARange)
{
    if (ARange->GetLow()->GetEnabled() && AValue < ARange->GetLow()->GetValue())
        AValue = ARange->GetLow()->GetValue();
    if (ARange->GetHigh()->GetEnabled() && AValue > ARange->GetHigh()->GetValue())
        AValue = ARange->GetHigh()->GetValue();
    return AValue;
}

// The extreme of the first ACount history entries (held to the buffer's size).
double HistoryExtreme(const IQVRealBuffer& ABuffer, uint32_t ACount, bool AMinimum)
{
    const int32_t Count = static_cast<int32_t>(std::min<uint32_t>(ACount, static_cast<uint32_t>(ABuffer.GetSize())));
    const double* Data = ABuffer.Read();
    double Result = Data[0];
    for (int32_t I = 1; I < Count; ++I)
        Result = AMinimum ? std::min(Result, Data[I]) : std::max(Result, Data[I]);
    return Result;
}

} // namespace

double TQVBasicScopeYAxis::GetDataZoomedMin() const
{
    if (FZoomed)
        return ClampToRange(FZoomMin, GetMin()->GetRange());
    const double FullMin = FDataTotal.GetFull().GetMin().GetValue();
    const double FullMax = FDataTotal.GetFull().GetMax().GetValue();
    double Value = FullMin;
    if (FAutoScaling->GetEnabled() && HasChannelWithMoreThan(1) && FAutoScaling->GetMaxHistory() > 0 &&
        FValBufSize > 0 && FAutoScaling->GetMinValuesBuffer().GetSize() > 0)
        Value = HistoryExtreme(FAutoScaling->GetMinValuesBuffer(), FValBufSize, true);
    const TQVScopeAutoScalingSpace* Below = FAutoScaling->GetSpaceBelow();
    if (Below->GetSpace() != 0)
        Value = Value - Below->GetSpace() * (FullMax - Value) / 200.0;
    if (Below->GetThreshold() != 0 && FCurrentMin < Value &&
        Value < FCurrentMin + Below->GetThreshold() * (FullMax - Value) / 200.0)
        Value = FCurrentMin;
    FCurrentMin = Value;
    return Value;
}

double TQVBasicScopeYAxis::GetDataZoomedMax() const
{
    if (FZoomed)
        return ClampToRange(FZoomMax, GetMax()->GetRange());
    const double FullMin = FDataTotal.GetFull().GetMin().GetValue();
    const double FullMax = FDataTotal.GetFull().GetMax().GetValue();
    double Value = FullMax;
    if (FAutoScaling->GetEnabled() && HasChannelWithMoreThan(1) && FAutoScaling->GetMaxHistory() > 0 &&
        FValBufSize > 0 && FAutoScaling->GetMaxValuesBuffer().GetSize() > 0)
        Value = HistoryExtreme(FAutoScaling->GetMaxValuesBuffer(), FValBufSize, false);
    const TQVScopeAutoScalingSpace* Above = FAutoScaling->GetSpaceAbove();
    if (Above->GetSpace() != 0)
        Value = Value + Above->GetSpace() * (Value - FullMin) / 200.0;
    if (Above->GetThreshold() != 0 && Value < FCurrentMax &&
        FCurrentMax - Above->GetThreshold() * (Value - FullMin) / 200.0 < Value)
        Value = FCurrentMax;
    FCurrentMax = Value;
    return Value;
}

double TQVBasicScopeYAxis::GetRangeWidth(bool ALogarithmic) const
{
    const double Lo = FDataTotal.GetZoomed().GetMin().GetValue();
    const double Hi = FDataTotal.GetZoomed().GetMax().GetValue();
    return ALogarithmic ? QVLog10a(Hi) - QVLog10a(Lo) : Hi - Lo;
}

void TQVBasicScopeYAxis::InvalidateMinMaxCache(bool AAll)
{
    TQVDisplayYAxis::InvalidateMinMaxCache(AAll);
    FExtremesValid = false;
}

void TQVBasicScopeYAxis::Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting)
{
    if (ADrawPart == ddpFeatures)
        QVDrawAxisStrip(*this, ACanvas, AVertical, APrinting, FTrackSize);
}

void TQVBasicScopeYAxis::InvalidateStep()
{
    FValidStep = false;
    InvalidateRecalc();
}

// ---- Mouse support ----

void TQVBasicScopeYAxis::AdjustOffset(double& AOffset) const
{
    const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    const double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    const TQVDisplayValueRange* MinRange = GetMin()->GetRange();
    const TQVDisplayValueRange* MaxRange = GetMax()->GetRange();
    if (MinRange->GetHigh()->GetEnabled() && Lo + AOffset > MinRange->GetHigh()->GetValue())
        AOffset = MinRange->GetHigh()->GetValue() - Lo;
    if (MinRange->GetLow()->GetEnabled() && Lo + AOffset < MinRange->GetLow()->GetValue())
        AOffset = Lo - MinRange->GetLow()->GetValue();
    if (MaxRange->GetHigh()->GetEnabled() && Hi + AOffset > MaxRange->GetHigh()->GetValue())
        AOffset = MaxRange->GetHigh()->GetValue() - Hi;
    if (MaxRange->GetLow()->GetEnabled() && Hi + AOffset < MaxRange->GetLow()->GetValue())
        AOffset = Hi - MaxRange->GetLow()->GetValue();
}

void TQVBasicScopeYAxis::AlignValue(double& AValue) const
{
    if (!FCursorSettings->GetSnapToSample())
        return;
    for (const IQVAxisChannel* Channel : GetAssociatedChannels()) {
        const IQVRealBuffer& Y = *Channel->GetYDrawDataBuffer();
        if (Y.GetSize() > 1)
            QVSnapToNearestSample(Y.Read(), Y.GetSize(), AValue);
    }
}

// ---- Stored form ----

void TQVBasicScopeYAxis::ReadData(const std::string& AText)
{
    const std::vector<double> Values = QVParseRealList(AText, "TQVBasicScopeYAxis.Data");
    if (Values.size() < 2)
        throw std::invalid_argument("TQVBasicScopeYAxis.Data: \"" + AText +
                                    "\" holds fewer than the two limits Min and Max");
    GetMin()->SetValue(Values[0]);
    GetMax()->SetValue(Values[1]);
    QVReadAxisRanges(*this, Values, 2);
}

const TQLClassInfo& TQVBasicScopeYAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicScopeYAxis>("TQVBasicScopeYAxis", &TQVDisplayYAxis::StaticClassInfo())
            .Property("Reversed", &TQVBasicScopeYAxis::GetReversed, &TQVBasicScopeYAxis::SetReversed, false)
            .Object("AutoScaling", &TQVBasicScopeYAxis::GetAutoScaling)
            .Object("CursorSettings", &TQVBasicScopeYAxis::GetCursorSettings)
            .Object("DataView", &TQVBasicScopeYAxis::GetDataView)
            .Defined("Data", &TQVBasicScopeYAxis::GetHidden_, &TQVBasicScopeYAxis::ReadData)
            .StoredWhen(&TQVBasicScopeYAxis::GetLegacyStored)
            .Build();
    return Info;
}

// ---- Additional Y axes ----

TQVAdditionalScopeYAxis::TQVAdditionalScopeYAxis(TQVDisplayOwner* AChart, TQVDisplayCollectionItem* AOwnerItem)
    : TQVBasicScopeYAxis(AChart), FOwnerItem(AOwnerItem)
{}

const TQLClassInfo& TQVAdditionalScopeYAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVAdditionalScopeYAxis>("TQVAdditionalScopeYAxis", &TQVBasicScopeYAxis::StaticClassInfo())
            .Build();
    return Info;
}

void TQVScopeYAxesCollectionItem::AfterConstruction()
{
    GetAxis()->SetAxisLabelDefault("Y Axis " + std::to_string(GetIndex()));
}

const TQLClassInfo& TQVScopeYAxesCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVScopeYAxesCollectionItem>(
                                         "TQVScopeYAxesCollectionItem", &TQVDisplayCollectionItem::StaticClassInfo())
                                         .Object("Axis", &TQVScopeYAxesCollectionItem::GetAxis)
                                         .Build();
    return Info;
}

const TQLClassInfo& TQVScopeYAxesCollection::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeYAxesCollection>("TQVScopeYAxesCollection", &TQLCollection::StaticClassInfo()).Build();
    return Info;
}

// ---- The main Y axis ----

TQVScopeYAxis::TQVScopeYAxis(TQVDisplayOwner* AChart)
    : TQVBasicScopeYAxis(AChart), FAdditionalAxes(std::make_unique<TQVScopeYAxesCollection>(this, GetLock(), AChart))
{}

TQVScopeYAxis::~TQVScopeYAxis() = default;

const TQLClassInfo& TQVScopeYAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeYAxis>("TQVScopeYAxis", &TQVBasicScopeYAxis::StaticClassInfo())
            .Collection("AdditionalAxes", &TQVScopeYAxis::GetAdditionalAxes)
            .Build();
    return Info;
}

} // namespace qv
