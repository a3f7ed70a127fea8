#pragma once
// The X axes of a scope. Their data scale counts samples; what a sample means comes from the
// channels on the axis (a time at their sample rate, a frequency of a spectrum, their own X
// values, an intensity) or from TicksMode. The printed scale follows from that meaning, the
// real scale is what a value truly is. The main X axis owns any number of additional X axes;
// a channel picks its axis by XAxisIndex (0 the main axis, N the additional axis N - 1).
//
// The limit getters run through the caches of TQVDisplayAxis; the sample range of the
// channels, their sample rate and their domains are cached here too, and renewed when the
// caches are invalidated (a refresh with new data does that).

#include "qv/axes/QVAdditionalAxes.h"
#include "qv/axes/QVAxisChannel.h"
#include "qv/axes/QVDisplayGridSettings.h"
#include "qv/axes/QVDisplayXAxis.h"
#include "qv/axes/QVScopeAxisSettings.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayCollectionItem.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace qv {

class TQVBasicScopeXAxis : public TQVDisplayXAxis {
public:
    TQVBasicScopeXAxis(TQVDisplayOwner* AChart, TQVViewAlign AAlign = vaBottom);
    ~TQVBasicScopeXAxis() override;

    // The chart's channels, through the display; null on a display without channels.
    IQVAxisChannelSource* GetChannelSource() const { return FChannelSource; }

    // ---- Settings ----
    TQVDisplayAxisTicksMode GetTicksMode() const { return FTicksMode; }
    void SetTicksMode(TQVDisplayAxisTicksMode AValue);
    TQVDisplayAxisCursorSettings* GetCursorSettings() const { return FCursorSettings.get(); }
    void SetCursorSettings(const TQVDisplayAxisCursorSettings* AValue) { FCursorSettings->Assign(AValue); }
    // The grid lines drawn across the data view at this axis' ticks.
    TQVDisplayGridDirectionalLinesSettings* GetDataView() const { return FDataView.get(); }
    void SetDataView(const TQVDisplayGridDirectionalLinesSettings* AValue) { FDataView->Assign(AValue); }
    const TQVDisplayGridDirectionalLinesSettings* GetViewGridOptions() const override { return FDataView.get(); }
    // The published property MaxSample. Its accessors carry a suffix: GetMaxSample is the
    // last sample in view.
    TQVScopeMaxSample* GetMaxSampleSettings() const { return FMaxSample.get(); }
    void SetMaxSampleSettings(const TQVScopeMaxSample* AValue) { FMaxSample->Assign(AValue); }
    TQVScopeXAxisUnitScale* GetUnitScale() const { return FUnitScale.get(); }
    void SetUnitScale(const TQVScopeXAxisUnitScale* AValue) { FUnitScale->Assign(AValue); }

    // ---- Channels on the axis ----
    // The channels whose X axis this is, in the chart's order.
    std::vector<IQVAxisChannel*> GetAssociatedChannels() const;

    // ---- Title ----
    // AxisLabel.Text when set; else "X Axis" for manual ticks and in a designer, or the unit
    // of a time or frequency axis at the exponent the sample rate alone decides (or
    // UnitScale.Exponent), "Intensity", "X Axis" for the channels' X values, or "Samples".
    std::string GetAxisLabelText() const override;

    // ---- Domains: what the samples mean ----
    bool InTimeAxis() const;
    bool InFreqAxis() const;
    bool InXModeAxis() const;
    bool InIntensityAxis() const;
    bool GetChannelsInFreqencyDomain() const;
    bool GetChannelsInIntensityDomain() const;
    bool GetChannelsInAxisDomain() const;
    // Reads the domain of every visible channel on the axis; a channel counts once, in the
    // first of frequency, intensity and axis that it is in.
    void ObtainDomains() const;

    // ---- Sample rate, time and frequency ----
    // The greatest sample rate of the visible channels on the axis; 10000 when none is set.
    double IntGetSampleRate() const;
    double GetSampleRate() const { return FSampleRate.GetValue(); }
    // The power of ten by which time values are printed; AValue 0 measures against a
    // one-sample span, any other against Max.DataValue samples.
    int32_t GetTimeExponent(double AValue) const;
    // The power of ten by which frequencies are printed.
    int32_t GetFreqExponent() const;
    // A sample position as a time in printed units.
    double ConvertToTime(double AValue) const;
    double IntCalcMaxFreq() const;
    double IntCalcMaxTime() const;
    virtual double CalcMinFreq() const { return 0.0; }
    virtual double CalcMinTime() const;

    // ---- The channels' X range ----
    virtual double GetMinXValue() const;
    virtual double GetMaxXValue() const;
    // The finite X range and the longest X count of the channels on the axis; FSamples takes
    // that count when it is positive.
    void CalculateCurentMinMax() const;

    // ---- Samples ----
    double GetMinSample() const override;
    double GetMaxSample() const override;
    double GetMinSampleReal() const override { return GetMinXValue(); }
    double GetMaxSampleReal() const override { return GetMaxXValue(); }
    // Autosize: the count given; else MaxSample.Value, whatever is given.
    void SetSamples(int32_t AValue) override;
    // The greatest Y count of the visible channels on the axis, handed to SetSamples.
    void PopulateMaxSample() override;

    // ---- Scale conversions ----
    double SampleToScale(double AValue) const;
    // As SampleToScale, but 0 for a data range of no width.
    double SampleToScaleRange(double AValue) const;
    double ScaleToSample(double AValue) const;

    // ---- Limits ----
    double GetDataFullMin() const override;
    double GetDataFullMax() const override;
    double GetScaleFullTickMin() const override;
    double GetScaleFullTickMax() const override;
    double GetScaleFullRealMin() const override;
    double GetScaleFullRealMax() const override;
    // The full printed minimum moved by ADelta (a new start time, a fixed tick start): a
    // zoom window moves with it.
    void ScaleMinChange(double ADelta) override;
    // With AAll also the Y axes: their autoscaling reads the sample range of this axis.
    void InvalidateMinMaxCache(bool AAll) override;
    // The channels' domains or sample rates changed.
    void InvalidateFreq();
    // The sample count changed: every limit and the step anew.
    void InvalidateSamples();
    // UnitScale changed.
    void UnitScaleRefresh();

    // ---- Drawing ----
    // The strip: its background, base line and ticks, and the track line of the mouse.
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) override;

    // ---- Mouse support ----
    // Limits a pan by AOffset printed units: never beyond the full printed scale, then
    // within Min.Range and Max.Range.
    virtual void AdjustOffset(double& AOffset) const;
    // With CursorSettings.SnapToSample: moves AValue onto the nearest X sample of the
    // channels on the axis.
    virtual void AlignValue(double& AValue) const;
    // Scales the zoom window about its centre; the step and the layout stay as they are.
    void IntZoom(double AValue, TQVZoomOperation AOperation) override
    {
        ScaleZoomWindow(AValue);
        SendZoomChange(AOperation);
    }

    // ---- Stored form ----
    // Older forms: six numbers, the range bounds of Min and Max, then of the zoom width.
    void ReadMinMaxRange(const std::string& AText);
    // Older forms' tick data: checked to be a list of numbers, no longer used.
    void ReadDataTick(const std::string& AText);

    QL_CLASS_INFO()

private:
    // The older lists are read, never written.
    bool GetLegacyStored() const { return false; }

    IQVAxisChannelSource* FChannelSource;
    TQVDisplayAxisTicksMode FTicksMode = atmAuto;
    std::unique_ptr<TQVDisplayAxisCursorSettings> FCursorSettings;
    std::unique_ptr<TQVDisplayGridDirectionalLinesSettings> FDataView;
    std::unique_ptr<TQVScopeMaxSample> FMaxSample;
    std::unique_ptr<TQVScopeXAxisUnitScale> FUnitScale;
    // Caches of the const limit getters.
    mutable bool FMinMaxCalculated = false;
    mutable double FCurrentMin = 0.0;
    mutable double FCurrentMax = 0.0;
    TQVDisplayCachedValue FMaxFreq;
    TQVDisplayCachedValue FMaxTime;
    // Cleared by InvalidateFreq, which may come from a producer thread.
    mutable std::atomic<bool> FDomainValid{false};
    mutable bool FInFreqencyDomain = false;
    mutable bool FInIntensityDomain = false;
    mutable bool FInAxisDomain = false;
    TQVDisplayCachedValue FSampleRate;
};

class TQVScopeXAxesCollectionItem;

// An X axis held by an item of the main X axis' AdditionalAxes.
class TQVAdditionalScopeXAxis : public TQVBasicScopeXAxis {
public:
    TQVAdditionalScopeXAxis(TQVDisplayOwner* AChart, TQVDisplayCollectionItem* AOwnerItem);
    // The item of the main axis' AdditionalAxes that holds this axis.
    TQVDisplayCollectionItem* GetOwnerItem() const { return FOwnerItem; }

    QL_CLASS_INFO()

private:
    TQVDisplayCollectionItem* FOwnerItem;
};

class TQVScopeXAxesCollectionItem : public TQVAdditionalAxesCollectionItem<TQVAdditionalScopeXAxis> {
public:
    using TQVAdditionalAxesCollectionItem::TQVAdditionalAxesCollectionItem;

    QL_CLASS_INFO()
};

class TQVScopeXAxesCollection : public TQVAdditionalAxesCollection<TQVScopeXAxesCollectionItem> {
public:
    using TQVAdditionalAxesCollection::TQVAdditionalAxesCollection;

    QL_CLASS_INFO()
};

// The main X axis of a scope.
class TQVScopeXAxis : public TQVBasicScopeXAxis {
public:
    explicit TQVScopeXAxis(TQVDisplayOwner* AChart);
    ~TQVScopeXAxis() override;

    TQVScopeXAxesCollection* GetAdditionalAxes() const { return FAdditionalAxes.get(); }
    void SetAdditionalAxes(const TQVScopeXAxesCollection* AValue) { FAdditionalAxes->Assign(AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVScopeXAxesCollection> FAdditionalAxes;
};

} // namespace qv
