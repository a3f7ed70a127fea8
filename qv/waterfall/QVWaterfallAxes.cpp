#include "qv/waterfall/QVWaterfallAxes.h"

#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLClassBuilder.h"
#include "qv/waterfall/QVWaterfallOwner.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace qv {

namespace {

// Raises the wheel factor AFactor for a window of AWidth printed units so that the new
// window spans at least two units of AUnit printed units each (rows or samples).
void QVRaiseToTwoUnits(double AWidth, double AUnit, double& AFactor)
{
    if (AWidth == 0.0 || AUnit == 0.0)
        return;
    double V = AWidth * AFactor;
    const double Units = V / AUnit;
    if (Units > 0.0 && Units < 2.0)
        V = 2.0 * AUnit;
    else if (Units < 0.0 && Units > -2.0)
        V = -2.0 * AUnit;
    AFactor = V / AWidth;
}

} // namespace

// ---- X axis: rows ----

TQVWaterfallXAxis::TQVWaterfallXAxis(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall)
    : TQVBasicDisplayXAxis(ADisplay, vaBottom), FWaterfall(AWaterfall)
{
    GetMax()->SetValueDefault(1024.0);
    GetMax()->SetDataValueDefault(1024.0);
    FZoomMin = -1.0;
    FZoomMax = 1.0;
    FSamples = 512;
    GetFormat()->SetPrecision(0);
}

void TQVWaterfallXAxis::SetSamples(int32_t AValue)
{
    if (AValue < 1)
        throw std::invalid_argument("TQVWaterfallXAxis: Samples " + std::to_string(AValue) +
                                    " is not a row count; a waterfall keeps at least 1 row");
    int32_t Value = FSamples;
    Set(Value, AValue, [this, AValue] {
        FSamples = AValue;
        FValidStep = false;
        InvalidateMinMaxCache(true);
        if (FWaterfall)
            FWaterfall->RowBoundChanged();
        InvalidateRecalc();
    });
}

void TQVWaterfallXAxis::SetReversed(bool AValue)
{
    const bool Old = FReversed;
    TQVBasicDisplayXAxis::SetReversed(AValue);
    if (Old != FReversed && FWaterfall)
        FWaterfall->RepopulateView();
}

double TQVWaterfallXAxis::ScaleToSample(double AValue) const
{
    const double TickMin = FScaleTick.GetFull().GetMin().GetValue();
    const double TickMax = FScaleTick.GetFull().GetMax().GetValue();
    if (TickMax == TickMin)
        return 0.0;
    return (FSamples - 1) * ((AValue - TickMin) / (TickMax - TickMin)) + FDataTotal.GetFull().GetMin().GetValue();
}

double TQVWaterfallXAxis::GetMinSample() const
{
    const double Base = TQVBasicDisplayXAxis::GetMinSample();
    return FZoomed ? std::max(ScaleToSample(FZoomMin), Base) : Base;
}

double TQVWaterfallXAxis::GetMaxSample() const
{
    const double Base = TQVBasicDisplayXAxis::GetMaxSample();
    return FZoomed ? std::min(ScaleToSample(FZoomMax), Base) : Base;
}

double TQVWaterfallXAxis::GetDataFullMax() const
{
    if (GetMax()->GetAutoScale())
        return FSamples - 1.0;
    if (GetMax()->GetMode() != mamValue)
        return GetDataFullMin() + GetMax()->GetValue();
    return GetMax()->GetDataValue();
}

double TQVWaterfallXAxis::GetScaleFullTickMin() const
{
    const TQVBasicAxisValue* Tick = GetMin()->GetTick();
    return Tick->GetAutoScale() ? TQVBasicDisplayXAxis::GetScaleFullTickMin() : Tick->GetValue();
}

double TQVWaterfallXAxis::GetScaleFullTickMax() const
{
    const TQVBasicAxisValue* Tick = GetMax()->GetTick();
    return Tick->GetAutoScale() ? TQVBasicDisplayXAxis::GetScaleFullTickMax() : Tick->GetValue();
}

double TQVWaterfallXAxis::GetStep()
{
    const double Step = TQVBasicDisplayXAxis::GetStep();
    const double OneRow = std::abs(DataToScaleTickNoOffset(1.0));
    FStep = std::max(Step, OneRow);
    return FStep;
}

void TQVWaterfallXAxis::AdjustZoomFactor(double AWidth, double& AFactor)
{
    QVRaiseToTwoUnits(AWidth, std::abs(DataToScaleTickNoOffset(1.0)), AFactor);
}

void TQVWaterfallXAxis::IntZoom(double AValue, TQVZoomOperation AOperation)
{
    AdjustZoomFactor(GetScaleZoomedTickRange(), AValue);
    TQVBasicDisplayXAxis::IntZoom(AValue, AOperation);
}

double TQVWaterfallXAxis::GetLeastZoomWidth() const
{
    return std::abs(DataToScaleTickNoOffset(2.0));
}

bool TQVWaterfallXAxis::GetCanZoomIn() const
{
    const TQVDisplayValueRange* Range = GetZoomWidthRange();
    if (Range && Range->GetLow()->GetEnabled() && GetScaleZoomedTickRange() <= Range->GetLow()->GetValue())
        return false;
    return !(FZoomed && GetMaxSample() - GetMinSample() <= 2.0);
}

bool TQVWaterfallXAxis::GetCanZoomOut() const
{
    const TQVDisplayValueRange* Range = GetZoomWidthRange();
    if (Range && Range->GetHigh()->GetEnabled() && GetScaleZoomedTickRange() >= Range->GetHigh()->GetValue())
        return false;
    return FZoomed && (GetScaleFullTickMin() < FZoomMin || GetScaleFullTickMax() > FZoomMax);
}

void TQVWaterfallXAxis::Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting)
{
    if (ADrawPart == ddpFeatures)
        QVDrawAxisStrip(*this, ACanvas, AVertical, APrinting, FTrackSize);
}

const TQLClassInfo& TQVWaterfallXAxis::StaticClassInfo()
{
    using C = TQVWaterfallXAxis;
    static const TQLClassInfo Info = TQLClassBuilder<C>("TQVWaterfallXAxis", &TQVBasicDisplayXAxis::StaticClassInfo())
                                         .Property("Samples", &C::GetSamples, &C::SetSamplesProp, int32_t(512))
                                         .Property("Reversed", &C::GetReversed, &C::SetReversedProp, false)
                                         .Build();
    return Info;
}

// ---- Y axis: the samples of a row ----

TQVWaterfallYAxis::TQVWaterfallYAxis(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall)
    : TQVBasicDisplayYAxis(ADisplay, vaLeft), FWaterfall(AWaterfall)
{
    FZoomMin = -1.0;
    FZoomMax = 1.0;
    GetMax()->GetTick()->SetValueDefault(500.0);
}

void TQVWaterfallYAxis::SetSamples(int32_t AValue)
{
    if (AValue == 0)
        AValue = 512;
    Set(FSamples, AValue, [this] {
        FValidStep = false;
        InvalidateMinMaxCache(true);
        InvalidateRecalc();
    });
}

void TQVWaterfallYAxis::SetTicksMode(TQVDisplayAxisTicksMode AValue)
{
    Set(FTicksMode, AValue, [this] {
        FValidStep = false;
        InvalidateMinMaxCache(true);
        InvalidateRecalc();
    });
}

bool TQVWaterfallYAxis::InFreqAxis() const
{
    return FTicksMode == atmFrequency || (FTicksMode == atmAuto && FWaterfall && FWaterfall->IsFrequencyDomain());
}

bool TQVWaterfallYAxis::InIntensityAxis() const
{
    return FTicksMode == atmIntensity || (FTicksMode == atmAuto && FWaterfall && FWaterfall->IsIntensityDomain());
}

int32_t TQVWaterfallYAxis::GetFreqExponent() const
{
    const double Rate = FWaterfall ? FWaterfall->GetSampleRate() : 10000.0;
    return 3 * static_cast<int32_t>(std::trunc(std::log10(Rate) / 3.0));
}

double TQVWaterfallYAxis::CalcMaxFreq() const
{
    const double Rate = FWaterfall ? FWaterfall->GetSampleRate() : 10000.0;
    return Rate / 2.0 / std::pow(10.0, GetFreqExponent());
}

double TQVWaterfallYAxis::GetMinSample() const
{
    return FDataTotal.GetZoomed().GetMin().GetValue();
}

double TQVWaterfallYAxis::GetMaxSample() const
{
    return FDataTotal.GetZoomed().GetMax().GetValue();
}

double TQVWaterfallYAxis::GetFullDataSamples() const
{
    const double Hi = GetMax()->GetAutoScale() ? FSamples - 1.0 : std::round(GetMax()->GetDataValue());
    const double Lo = GetMin()->GetAutoScale() ? 0.0 : std::round(GetMin()->GetDataValue());
    return Hi - Lo;
}

double TQVWaterfallYAxis::ScaleToSample(double AValue) const
{
    const double TickMin = FScaleTick.GetFull().GetMin().GetValue();
    const double TickMax = FScaleTick.GetFull().GetMax().GetValue();
    if (TickMax == TickMin)
        return 0.0;
    return GetFullDataSamples() * ((AValue - TickMin) / (TickMax - TickMin)) + FDataTotal.GetFull().GetMin().GetValue();
}

double TQVWaterfallYAxis::SampleToScale(double AValue) const
{
    const double TickMin = FScaleTick.GetFull().GetMin().GetValue();
    const double TickMax = FScaleTick.GetFull().GetMax().GetValue();
    const double Span = FSamples > 1 ? FSamples - 1.0 : 1.0;
    return (TickMax - TickMin) * ((AValue - FDataTotal.GetFull().GetMin().GetValue()) / Span) + TickMin;
}

double TQVWaterfallYAxis::SampleToScaleRange(double AValue) const
{
    const double Samples = GetFullDataSamples();
    if (Samples == 0.0)
        return 0.0;
    return (FScaleTick.GetFull().GetMax().GetValue() - FScaleTick.GetFull().GetMin().GetValue()) * (AValue / Samples);
}

void TQVWaterfallYAxis::AdjustZoomFactor(double AWidth, double& AFactor)
{
    QVRaiseToTwoUnits(AWidth, std::abs(SampleToScaleRange(1.0)), AFactor);
}

void TQVWaterfallYAxis::IntZoom(double AValue, TQVZoomOperation AOperation)
{
    AdjustZoomFactor(GetScaleZoomedTickRange(), AValue);
    TQVBasicDisplayYAxis::IntZoom(AValue, AOperation);
}

double TQVWaterfallYAxis::GetLeastZoomWidth() const
{
    return std::abs(SampleToScaleRange(2.0));
}

bool TQVWaterfallYAxis::GetCanZoomOut() const
{
    const TQVDisplayValueRange* Range = GetZoomWidthRange();
    if (Range && Range->GetHigh()->GetEnabled() && GetScaleZoomedTickRange() >= Range->GetHigh()->GetValue())
        return false;
    return FZoomed && (GetScaleFullTickMin() < FZoomMin || GetScaleFullTickMax() > FZoomMax);
}

double TQVWaterfallYAxis::GetDataFullMax() const
{
    return GetMax()->GetAutoScale() ? FSamples - 1.0 : GetMax()->GetDataValue();
}

double TQVWaterfallYAxis::GetDataZoomedMin() const
{
    const double Full = FDataTotal.GetFull().GetMin().GetValue();
    return FZoomed ? std::max(ScaleToSample(FZoomMin), Full) : Full;
}

double TQVWaterfallYAxis::GetDataZoomedMax() const
{
    if (!FZoomed)
        return GetMax()->GetAutoScale() ? GetDataFullMax() : FDataTotal.GetFull().GetMax().GetValue();
    return std::min(ScaleToSample(FZoomMax), GetDataFullMax());
}

double TQVWaterfallYAxis::GetScaleFullTickMin() const
{
    const TQVBasicAxisValue* Tick = GetMin()->GetTick();
    if (FTicksMode == atmManual || !Tick->GetAutoScale())
        return Tick->GetValue();
    return InFreqAxis() ? 0.0 : GetDataFullMin();
}

double TQVWaterfallYAxis::GetScaleFullTickMax() const
{
    const TQVBasicAxisValue* Tick = GetMax()->GetTick();
    if (FTicksMode == atmManual || !Tick->GetAutoScale())
        return Tick->GetValue();
    if (!GetMax()->GetAutoScale())
        return GetMax()->GetValue();
    return InFreqAxis() ? CalcMaxFreq() : GetDataFullMax();
}

double TQVWaterfallYAxis::GetRangeWidth(bool /*ALogarithmic*/) const
{
    return FScaleTick.GetZoomed().GetMax().GetValue() - FScaleTick.GetZoomed().GetMin().GetValue();
}

bool TQVWaterfallYAxis::GetIsReversedDirect() const
{
    return GetDisplay()->GetIsVertical() ? !FReversed : FReversed;
}

std::string TQVWaterfallYAxis::GetAxisLabelText() const
{
    if (!GetAxisLabel()->GetText().empty())
        return GetAxisLabel()->GetText();
    if (FTicksMode == atmAuto && GetDisplay()->GetDesigning())
        return "Y Axis";
    if (InFreqAxis()) {
        switch (const int32_t E = GetFreqExponent()) {
        case -3: return "mHz";
        case 0: return "Hz";
        case 3: return "kHz";
        case 6: return "Mhz";
        default: return "Hz (E" + std::to_string(-E) + ")";
        }
    }
    return InIntensityAxis() ? "Intensity" : "Samples";
}

void TQVWaterfallYAxis::Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting)
{
    if (ADrawPart == ddpFeatures)
        QVDrawAxisStrip(*this, ACanvas, AVertical, APrinting, FTrackSize);
}

const TQLClassInfo& TQVWaterfallYAxis::StaticClassInfo()
{
    using C = TQVWaterfallYAxis;
    static const TQLClassInfo Info = TQLClassBuilder<C>("TQVWaterfallYAxis", &TQVBasicDisplayYAxis::StaticClassInfo())
                                         .Property("Reversed", &C::GetReversed, &C::SetReversed, false)
                                         .Property("TicksMode", &C::GetTicksMode, &C::SetTicksMode, atmAuto)
                                         .Build();
    return Info;
}

} // namespace qv
