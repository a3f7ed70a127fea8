// TQVBasicScopeXAxis: the channels' sample range, domains and rate, and the limits of the
// three scales that follow from them; the additional X axes.
#include "qv/axes/QVScopeXAxis.h"

#include "qv/axes/QVAdditionalAxes.h"
#include "qv/axes/QVAxisDataRange.h"
#include "qv/axes/QVDisplayAxisList.h"
#include "qv/axes/QVLegacyAxisData.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"

#include <algorithm>
#include <cmath>

namespace qv {

namespace {

// The sample rate that stands in when no channel on the axis has one.
constexpr double CDefaultSampleRate = 10000.0;

// Trunc(log10(ARatio) / 3) * 3: the engineering exponent of a positive ratio.
int32_t EngineeringExponent(double ARatio)
{
    if (!(ARatio > 0.0) || !std::isfinite(ARatio))
        return 0;
    return static_cast<int32_t>(std::trunc(std::log10(ARatio) / 3.0)) * 3;
}

} // namespace

TQVBasicScopeXAxis::TQVBasicScopeXAxis(TQVDisplayOwner* AChart, TQVViewAlign AAlign)
    : TQVDisplayXAxis(AChart, AAlign), FChannelSource(dynamic_cast<IQVAxisChannelSource*>(AChart)),
      FCursorSettings(std::make_unique<TQVDisplayAxisCursorSettings>(AChart)),
      FDataView(
          std::make_unique<TQVDisplayGridDirectionalLinesSettings>(this, GetLock(), [this] { InvalidateView(); })),
      FMaxSample(std::make_unique<TQVScopeMaxSample>(this, GetLock(),
                                                     [this] {
                                                         SetSamples(FSamples);
                                                         InvalidateSamples();
                                                     })),
      FUnitScale(std::make_unique<TQVScopeXAxisUnitScale>(this, GetLock(), [this] { UnitScaleRefresh(); })),
      FMaxFreq([this] { return IntCalcMaxFreq(); }), FMaxTime([this] { return IntCalcMaxTime(); }),
      FSampleRate([this] { return IntGetSampleRate(); })
{
    FZoomMin = -1.0;
    FZoomMax = 1.0;
    // The zoom window follows the full printed minimum. Listening to the zoomed minimum
    // instead would move the window by every change of the window itself.
    FScaleTick.GetZoomed().GetMin().SetOnChange(nullptr);
    FScaleTick.GetFull().GetMin().SetOnChange([this](double ADelta) { ScaleMinChange(ADelta); });
    GetMax()->SetValueDefault(1024.0);
    GetMax()->SetDataValueDefault(1024.0);
}

TQVBasicScopeXAxis::~TQVBasicScopeXAxis() = default;

void TQVBasicScopeXAxis::SetTicksMode(TQVDisplayAxisTicksMode AValue)
{
    Set(FTicksMode, AValue, [this] {
        InvalidateMinMaxCache(true);
        InvalidateRecalc();
    });
}

std::vector<IQVAxisChannel*> TQVBasicScopeXAxis::GetAssociatedChannels() const
{
    std::vector<IQVAxisChannel*> Result;
    if (FChannelSource)
        for (IQVAxisChannel* Channel : FChannelSource->GetAxisChannels())
            if (Channel->GetXAxis() == this)
                Result.push_back(Channel);
    return Result;
}

// ---- Domains ----

void TQVBasicScopeXAxis::ObtainDomains() const
{
    FInFreqencyDomain = FInIntensityDomain = FInAxisDomain = false;
    FDomainValid = true;
    for (const IQVAxisChannel* Channel : GetAssociatedChannels()) {
        if (!Channel->GetVisible())
            continue;
        if (Channel->GetFrequencyDomain())
            FInFreqencyDomain = true;
        else if (Channel->GetIntensityDomain())
            FInIntensityDomain = true;
        else if (Channel->GetInAxisDomain())
            FInAxisDomain = true;
    }
}

bool TQVBasicScopeXAxis::GetChannelsInFreqencyDomain() const
{
    if (!FDomainValid)
        ObtainDomains();
    return FInFreqencyDomain;
}

bool TQVBasicScopeXAxis::GetChannelsInIntensityDomain() const
{
    if (!FDomainValid)
        ObtainDomains();
    return FInIntensityDomain;
}

bool TQVBasicScopeXAxis::GetChannelsInAxisDomain() const
{
    if (!FDomainValid)
        ObtainDomains();
    return FInAxisDomain;
}

bool TQVBasicScopeXAxis::InTimeAxis() const
{
    return FTicksMode == atmTime;
}

bool TQVBasicScopeXAxis::InFreqAxis() const
{
    return FTicksMode == atmFrequency || (FTicksMode == atmAuto && GetChannelsInFreqencyDomain());
}

bool TQVBasicScopeXAxis::InXModeAxis() const
{
    return FTicksMode == atmAxis || (FTicksMode == atmAuto && GetChannelsInAxisDomain());
}

bool TQVBasicScopeXAxis::InIntensityAxis() const
{
    return FTicksMode == atmIntensity || (FTicksMode == atmAuto && GetChannelsInIntensityDomain());
}

std::string TQVBasicScopeXAxis::GetAxisLabelText() const
{
    const std::string& Text = GetAxisLabel()->GetText();
    if (!Text.empty())
        return Text;
    TQVXAxisTitleState State;
    State.TicksMode = FTicksMode;
    State.Designing = GetDisplay()->GetDesigning();
    State.InTimeAxis = InTimeAxis();
    State.InFreqAxis = InFreqAxis();
    State.InIntensityAxis = InIntensityAxis();
    State.InXModeAxis = InXModeAxis();
    // Only the rate decides the title's unit; the printed scale of a time axis also looks at
    // the span, and the two may differ.
    State.Exponent = QVGetUnitExponent(FSampleRate.GetValue(), *FUnitScale);
    return QVGetScopeXAxisTitle(Text, State);
}

// ---- Sample rate, time and frequency ----

double TQVBasicScopeXAxis::IntGetSampleRate() const
{
    double Rate = 0.0;
    for (const IQVAxisChannel* Channel : GetAssociatedChannels())
        if (Channel->GetVisible())
            Rate = std::max(Rate, Channel->GetAxisSampleRate());
    return Rate > 0.0 ? Rate : CDefaultSampleRate;
}

int32_t TQVBasicScopeXAxis::GetFreqExponent() const
{
    if (!FUnitScale->GetAutoScale())
        return FUnitScale->GetExponent();
    return EngineeringExponent(FSampleRate.GetValue());
}

int32_t TQVBasicScopeXAxis::GetTimeExponent(double AValue) const
{
    if (!FUnitScale->GetAutoScale())
        return FUnitScale->GetExponent();
    const double Width = AValue == 0.0 ? 1.0 : GetMax()->GetDataValue();
    if (Width == 0.0)
        return 0;
    return EngineeringExponent(FSampleRate.GetValue() / Width * 1000.0);
}

double TQVBasicScopeXAxis::IntCalcMaxFreq() const
{
    // The power is taken in single precision.
    const float Power = std::pow(10.0f, static_cast<float>(GetFreqExponent()));
    return (FSampleRate.GetValue() / 2.0) / static_cast<double>(Power);
}

double TQVBasicScopeXAxis::ConvertToTime(double AValue) const
{
    return (AValue / FSampleRate.GetValue()) * std::pow(10.0, GetTimeExponent(AValue));
}

double TQVBasicScopeXAxis::IntCalcMaxTime() const
{
    return ConvertToTime(GetMaxXValue());
}

double TQVBasicScopeXAxis::CalcMinTime() const
{
    return ConvertToTime(GetMinXValue());
}

// ---- The channels' X range ----

void TQVBasicScopeXAxis::CalculateCurentMinMax() const
{
    const std::vector<IQVAxisChannel*> Channels = GetAssociatedChannels();
    if (Channels.empty()) {
        FCurrentMin = 0.0;
        FCurrentMax = static_cast<double>(FSamples) - 1.0;
        FMinMaxCalculated = true;
        return;
    }
    int32_t Count = 0;
    bool Found = false;
    double Lo = 0.0, Hi = 0.0;
    for (const IQVAxisChannel* Channel : Channels) {
        const IQVRealBuffer& X = *Channel->GetXDrawDataBuffer();
        const int32_t Size = X.GetSize();
        if (Size <= 0)
            continue;
        Count = std::max(Count, Size);
        double ChannelLo = 0.0, ChannelHi = 0.0;
        // A ramp counts up: its finite ends are its extremes.
        const double* XR = X.Read();
        if (Channel->GetDrawIsRamp() && std::isfinite(XR[0]) && std::isfinite(XR[Size - 1]) && XR[0] <= XR[Size - 1]) {
            ChannelLo = XR[0];
            ChannelHi = XR[Size - 1];
        } else if (!QVFiniteMinMax(XR, Size, 0, Size - 1, ChannelLo, ChannelHi)) {
            continue;
        }
        if (!Found) {
            Lo = ChannelLo;
            Hi = ChannelHi;
            Found = true;
        } else {
            Lo = std::min(Lo, ChannelLo);
            Hi = std::max(Hi, ChannelHi);
        }
    }
    if (Count > 0)
        FSamples = Count;
    if (Found) {
        FCurrentMin = Lo;
        FCurrentMax = Hi;
    } else {
        FCurrentMin = 0.0;
        FCurrentMax = GetMax()->GetDataValue() - 1.0;
    }
    FMinMaxCalculated = true;
}

double TQVBasicScopeXAxis::GetMinXValue() const
{
    if (!FMinMaxCalculated)
        CalculateCurentMinMax();
    return FCurrentMin;
}

double TQVBasicScopeXAxis::GetMaxXValue() const
{
    if (!FMinMaxCalculated)
        CalculateCurentMinMax();
    return FCurrentMax;
}

// ---- Samples ----

double TQVBasicScopeXAxis::GetMinSample() const
{
    if (GetMin()->GetAutoScale())
        return TQVDisplayXAxis::GetMinSample();
    const double Lo = FDataTotal.GetFull().GetMin().GetValue();
    const double Hi = FDataTotal.GetFull().GetMax().GetValue();
    return std::max(std::min(GetMin()->GetValue(), Hi), Lo);
}

double TQVBasicScopeXAxis::GetMaxSample() const
{
    if (GetMax()->GetAutoScale())
        return TQVDisplayXAxis::GetMaxSample();
    const double Lo = FDataTotal.GetFull().GetMin().GetValue();
    const double Hi = FDataTotal.GetFull().GetMax().GetValue();
    return std::max(std::min(GetMax()->GetValue(), Hi), Lo);
}

void TQVBasicScopeXAxis::SetSamples(int32_t AValue)
{
    if (!FMaxSample->GetAutosize()) {
        const int32_t Fixed = static_cast<int32_t>(std::min<uint32_t>(FMaxSample->GetValue(), INT32_MAX));
        if (FSamples != Fixed) {
            FSamples = Fixed;
            InvalidateSamples();
        }
        return;
    }
    TQVDisplayXAxis::SetSamples(AValue);
    if (!FValidStep)
        InvalidateSamples();
}

void TQVBasicScopeXAxis::PopulateMaxSample()
{
    int32_t Count = 0;
    for (const IQVAxisChannel* Channel : GetAssociatedChannels())
        if (Channel->GetVisible())
            Count = std::max(Count, Channel->GetYDrawDataBuffer()->GetSize());
    SetSamples(Count);
}

// ---- Scale conversions ----

double TQVBasicScopeXAxis::SampleToScale(double AValue) const
{
    double Span = GetMaxSampleReal() - GetMinSampleReal();
    if (Span == 0.0)
        Span = 1.0;
    return (FDataTotal.GetFull().GetMax().GetValue() - FDataTotal.GetFull().GetMin().GetValue()) * (AValue / Span);
}

double TQVBasicScopeXAxis::SampleToScaleRange(double AValue) const
{
    const double Span = GetMaxSampleReal() - GetMinSampleReal();
    if (Span == 0.0)
        return 0.0;
    return (FDataTotal.GetFull().GetMax().GetValue() - FDataTotal.GetFull().GetMin().GetValue()) * (AValue / Span);
}

double TQVBasicScopeXAxis::ScaleToSample(double AValue) const
{
    double Span = GetScaleFullRealMax() - GetScaleFullRealMin();
    if (Span == 0.0)
        Span = 1.0;
    const double Count =
        FSamples >= 1 ? static_cast<double>(FSamples) : GetMax()->GetDataValue() - GetMin()->GetDataValue();
    return AValue * Count / Span;
}

// ---- Limits ----

double TQVBasicScopeXAxis::GetDataFullMin() const
{
    if (!GetMin()->GetAutoScale())
        return GetMin()->GetDataValue();
    return GetMinXValue();
}

double TQVBasicScopeXAxis::GetDataFullMax() const
{
    const TQVMaxAxisValue* Max = GetMax();
    if (!Max->GetAutoScale())
        return Max->GetMode() == mamValue ? Max->GetDataValue() : GetDataFullMin() + Max->GetValue();
    if (FSamples < 2) {
        if (Max->GetValue() <= GetMin()->GetValue())
            return ScaleToSample(GetMin()->GetValue()) + FSamples - 1;
        return Max->GetDataValue() - 1.0;
    }
    return GetMaxXValue();
}

double TQVBasicScopeXAxis::GetScaleFullTickMin() const
{
    if (FTicksMode == atmManual || !GetMin()->GetTick()->GetAutoScale())
        return GetMin()->GetTick()->GetValue();
    return GetScaleFullRealMin();
}

double TQVBasicScopeXAxis::GetScaleFullRealMin() const
{
    if (FTicksMode == atmManual || !GetMin()->GetAutoScale())
        return GetMin()->GetValue();
    if (InTimeAxis())
        return CalcMinTime();
    if (InFreqAxis())
        return CalcMinFreq();
    if (FSamples < 2)
        return GetMin()->GetValue();
    return GetMinXValue();
}

double TQVBasicScopeXAxis::GetScaleFullTickMax() const
{
    const TQVMaxAxisValue* Max = GetMax();
    if (FTicksMode == atmManual || !Max->GetTick()->GetAutoScale())
        return Max->GetTick()->GetValue();
    if (!Max->GetAutoScale()) {
        if (Max->GetMode() == mamValue)
            return Max->GetValue();
        if (InTimeAxis())
            return ConvertToTime(Max->GetValue()) + ConvertToTime(GetDataFullMin());
        return Max->GetValue() + GetDataFullMin();
    }
    double Value;
    if (InTimeAxis())
        Value = FMaxTime.GetValue();
    else if (InFreqAxis())
        Value = FMaxFreq.GetValue();
    else if (FSamples < 2)
        Value =
            Max->GetValue() <= GetMin()->GetValue() ? GetMin()->GetValue() + FSamples - 1 : Max->GetDataValue() - 1.0;
    else
        Value = GetMaxXValue();
    // A fixed printed start carries the width along.
    if (!GetMin()->GetTick()->GetAutoScale())
        Value += FScaleTick.GetFull().GetMin().GetValue();
    return Value;
}

double TQVBasicScopeXAxis::GetScaleFullRealMax() const
{
    const TQVMaxAxisValue* Max = GetMax();
    if (FTicksMode == atmManual)
        return Max->GetValue();
    if (!Max->GetAutoScale())
        return Max->GetMode() == mamValue ? Max->GetValue() : Max->GetValue() + GetScaleFullRealMin();
    if (InTimeAxis())
        return FMaxTime.GetValue();
    if (InFreqAxis())
        return FMaxFreq.GetValue();
    if (FSamples < 2)
        return Max->GetValue() <= GetMin()->GetValue() ? GetMin()->GetValue() + FSamples - 1
                                                       : Max->GetDataValue() - 1.0;
    return GetMaxXValue();
}

void TQVBasicScopeXAxis::ScaleMinChange(double ADelta)
{
    if (!FZoomed || !std::isfinite(ADelta))
        return;
    FZoomMin += ADelta;
    FZoomMax += ADelta;
}

void TQVBasicScopeXAxis::InvalidateMinMaxCache(bool AAll)
{
    TQVDisplayXAxis::InvalidateMinMaxCache(AAll);
    if (AAll)
        for (TQVDisplayAxis* Axis : GetDisplay()->GetYAxes())
            Axis->InvalidateMinMaxCache(true);
    FMinMaxCalculated = false;
    FMaxFreq.Invalidate();
    FMaxTime.Invalidate();
    FSampleRate.Invalidate();
}

void TQVBasicScopeXAxis::InvalidateFreq()
{
    FDomainValid = false;
    FMaxFreq.Invalidate();
    FMaxTime.Invalidate();
    FSampleRate.Invalidate();
}

void TQVBasicScopeXAxis::InvalidateSamples()
{
    FValidStep = false;
    InvalidateMinMaxCache(true);
    InvalidateRecalc();
}

void TQVBasicScopeXAxis::UnitScaleRefresh()
{
    InvalidateRecalc();
    InvalidateMinMaxCache(false);
}

void TQVBasicScopeXAxis::Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting)
{
    if (ADrawPart == ddpFeatures)
        QVDrawAxisStrip(*this, ACanvas, AVertical, APrinting, FTrackSize);
}

// ---- Mouse support ----

void TQVBasicScopeXAxis::AdjustOffset(double& AOffset) const
{
    const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
    const double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
    const double FullLo = FScaleTick.GetFull().GetMin().GetValue();
    const double FullHi = FScaleTick.GetFull().GetMax().GetValue();
    const TQVDisplayValueRange* MinRange = GetMin()->GetRange();
    const TQVDisplayValueRange* MaxRange = GetMax()->GetRange();

    if (Lo + AOffset < FullLo)
        AOffset = FullLo - Lo;
    if (MinRange->GetHigh()->GetEnabled() && Lo + AOffset > MinRange->GetHigh()->GetValue())
        AOffset = MinRange->GetHigh()->GetValue() - Lo;
    if (MinRange->GetLow()->GetEnabled() && Lo + AOffset < MinRange->GetLow()->GetValue())
        AOffset = Lo - MinRange->GetLow()->GetValue();
    if (Hi + AOffset > FullHi)
        AOffset = FullHi - Hi;
    if (MaxRange->GetHigh()->GetEnabled() && Hi + AOffset > MaxRange->GetHigh()->GetValue())
        AOffset = MaxRange->GetHigh()->GetValue() - Hi;
    if (MaxRange->GetLow()->GetEnabled() && Hi + AOffset < MaxRange->GetLow()->GetValue())
        AOffset = Hi - MaxRange->GetLow()->GetValue();
}

void TQVBasicScopeXAxis::AlignValue(double& AValue) const
{
    if (!FCursorSettings->GetSnapToSample())
        return;
    for (const IQVAxisChannel* Channel : GetAssociatedChannels()) {
        const IQVRealBuffer& X = *Channel->GetXDrawDataBuffer();
        if (X.GetSize() > 1)
            QVSnapToNearestSample(X.Read(), X.GetSize(), AValue);
    }
}

// ---- Stored form ----

void TQVBasicScopeXAxis::ReadMinMaxRange(const std::string& AText)
{
    const std::vector<double> Values = QVParseRealList(AText, "TQVBasicScopeXAxis.MinMaxRange");
    QVReadAxisRanges(*this, Values, 0);
}

void TQVBasicScopeXAxis::ReadDataTick(const std::string& AText)
{
    QVParseRealList(AText, "TQVBasicScopeXAxis.DataTick");
}

const TQLClassInfo& TQVBasicScopeXAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVBasicScopeXAxis>("TQVBasicScopeXAxis", &TQVDisplayXAxis::StaticClassInfo())
            .Property("TicksMode", &TQVBasicScopeXAxis::GetTicksMode, &TQVBasicScopeXAxis::SetTicksMode, atmAuto)
            .Object("CursorSettings", &TQVBasicScopeXAxis::GetCursorSettings)
            .Object("DataView", &TQVBasicScopeXAxis::GetDataView)
            .Object("MaxSample", &TQVBasicScopeXAxis::GetMaxSampleSettings)
            .Object("UnitScale", &TQVBasicScopeXAxis::GetUnitScale)
            .Defined("MinMaxRange", &TQVBasicScopeXAxis::GetHidden_, &TQVBasicScopeXAxis::ReadMinMaxRange)
            .StoredWhen(&TQVBasicScopeXAxis::GetLegacyStored)
            .Defined("DataTick", &TQVBasicScopeXAxis::GetHidden_, &TQVBasicScopeXAxis::ReadDataTick)
            .StoredWhen(&TQVBasicScopeXAxis::GetLegacyStored)
            .Build();
    return Info;
}

// ---- Additional X axes ----

TQVAdditionalScopeXAxis::TQVAdditionalScopeXAxis(TQVDisplayOwner* AChart, TQVDisplayCollectionItem* AOwnerItem)
    : TQVBasicScopeXAxis(AChart), FOwnerItem(AOwnerItem)
{}

const TQLClassInfo& TQVAdditionalScopeXAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVAdditionalScopeXAxis>("TQVAdditionalScopeXAxis", &TQVBasicScopeXAxis::StaticClassInfo())
            .Build();
    return Info;
}

const TQLClassInfo& TQVScopeXAxesCollectionItem::StaticClassInfo()
{
    static const TQLClassInfo Info = TQLClassBuilder<TQVScopeXAxesCollectionItem>(
                                         "TQVScopeXAxesCollectionItem", &TQVDisplayCollectionItem::StaticClassInfo())
                                         .Object("Axis", &TQVScopeXAxesCollectionItem::GetAxis)
                                         .Build();
    return Info;
}

const TQLClassInfo& TQVScopeXAxesCollection::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeXAxesCollection>("TQVScopeXAxesCollection", &TQLCollection::StaticClassInfo()).Build();
    return Info;
}

// ---- The main X axis ----

TQVScopeXAxis::TQVScopeXAxis(TQVDisplayOwner* AChart)
    : TQVBasicScopeXAxis(AChart), FAdditionalAxes(std::make_unique<TQVScopeXAxesCollection>(this, GetLock(), AChart))
{}

TQVScopeXAxis::~TQVScopeXAxis() = default;

const TQLClassInfo& TQVScopeXAxis::StaticClassInfo()
{
    static const TQLClassInfo Info =
        TQLClassBuilder<TQVScopeXAxis>("TQVScopeXAxis", &TQVBasicScopeXAxis::StaticClassInfo())
            .Collection("AdditionalAxes", &TQVScopeXAxis::GetAdditionalAxes)
            .Build();
    return Info;
}

} // namespace qv
