#pragma once
// The Y axes of a scope. With autoscaling on, the scale follows the data in view, with a
// memory of the last frames' extremes (PopulateScaleHistory, once per refresh with new data),
// a margin beyond the data and a hysteresis, so that a noisy signal does not make the scale
// jump with every frame: the scale grows at once and shrinks only when an edge has moved in
// by more than the threshold. A zoomed axis ignores autoscaling.
//
// The main Y axis owns any number of additional Y axes; a channel picks its axis by
// YAxisIndex (0 the main axis, N the additional axis N - 1).

#include "qv/axes/QVAdditionalAxes.h"
#include "qv/axes/QVAxisChannel.h"
#include "qv/axes/QVDisplayGridSettings.h"
#include "qv/axes/QVDisplayYAxis.h"
#include "qv/axes/QVScopeAxisSettings.h"
#include "qv/component/QVDisplayCollection.h"
#include "qv/component/QVDisplayCollectionItem.h"

#include <memory>
#include <string>
#include <vector>

namespace qv {

class TQVBasicScopeYAxis : public TQVDisplayYAxis {
public:
    TQVBasicScopeYAxis(TQVDisplayOwner* AChart, TQVViewAlign AAlign = vaLeft);
    ~TQVBasicScopeYAxis() override;

    // The chart's channels, through the display; null on a display without channels.
    IQVAxisChannelSource* GetChannelSource() const { return FChannelSource; }

    // ---- Settings ----
    TQVScopeAutoScaling* GetAutoScaling() const { return FAutoScaling.get(); }
    void SetAutoScaling(const TQVScopeAutoScaling* AValue) { FAutoScaling->Assign(AValue); }
    TQVDisplayAxisCursorSettings* GetCursorSettings() const { return FCursorSettings.get(); }
    void SetCursorSettings(const TQVDisplayAxisCursorSettings* AValue) { FCursorSettings->Assign(AValue); }
    // The grid lines drawn across the data view at this axis' ticks.
    TQVDisplayGridDirectionalLinesSettings* GetDataView() const { return FDataView.get(); }
    void SetDataView(const TQVDisplayGridDirectionalLinesSettings* AValue) { FDataView->Assign(AValue); }
    const TQVDisplayGridDirectionalLinesSettings* GetViewGridOptions() const override { return FDataView.get(); }
    // The text the axis title starts with: "Y Axis", "Y Axis N" on additional axes.
    // It is AxisLabel's default text: the title follows it until the user gives one.
    const std::string& GetAxisLabelDefault() const { return GetAxisLabel()->GetTextDefault(); }
    void SetAxisLabelDefault(const std::string& AValue) { GetAxisLabel()->SetTextDefault(AValue); }

    // ---- Channels on the axis ----
    // The channels whose Y axis this is, in the chart's order.
    std::vector<IQVAxisChannel*> GetAssociatedChannels() const;

    // ---- Autoscaling ----
    // The finite extremes of the visible channels on the axis over the X axis' sample range;
    // Min.Value (Max.Value) when no channel has more than one sample; a window one unit wide
    // round a flat signal.
    double GetCalcMinCurrentScale() const;
    double GetCalcMaxCurrentScale() const;
    // Writes this frame's extremes into the history.
    void PopulateScaleHistory();
    // Forgets the history.
    void InvalidateHistory();
    uint32_t GetValBufIndex() const { return FValBufIndex; }
    uint32_t GetValBufSize() const { return FValBufSize; }
    // The limits last handed out while not zoomed; the hysteresis holds an edge at them.
    double GetHeldMin() const { return FCurrentMin; }
    double GetHeldMax() const { return FCurrentMax; }

    // ---- Limits ----
    double GetDataFullMin() const override;
    double GetDataFullMax() const override;
    double GetDataZoomedMin() const override;
    double GetDataZoomedMax() const override;
    double GetRangeWidth(bool ALogarithmic) const override;
    bool GetRestrictMinMax() const override { return false; }
    // The channels' extremes are read anew too.
    void InvalidateMinMaxCache(bool AAll) override;
    void InvalidateStep() override;

    // ---- Drawing ----
    // The strip: its background, base line and ticks, and the track line of the mouse.
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) override;
    bool GetIsZoomed() const { return FZoomed; }

    // ---- Mouse support ----
    // Limits a pan by AOffset printed units to Min.Range and Max.Range. The low bounds
    // answer with the offset's sign turned round, so a pan past a low bound bounces back.
    virtual void AdjustOffset(double& AOffset) const;
    // With CursorSettings.SnapToSample: moves AValue onto the nearest sample of each channel
    // on the axis in turn.
    virtual void AlignValue(double& AValue) const;
    // Pans free of the full scale, which moves with the autoscaled data.
    void MouseMoveScale(const TPoint& AFrom, const TPoint& ATo) override;
    double SampleToScaleRange(double AValue) const { return AValue; }

    // ---- Stored form ----
    // Older forms: Min.Value, Max.Value, then optionally the range bounds of Min and Max,
    // then optionally those of the zoom width.
    void ReadData(const std::string& AText);

    QL_CLASS_INFO()

private:
    // The older lists are read, never written.
    bool GetLegacyStored() const { return false; }
    // Whether a visible channel on the axis holds more than AMinCount samples.
    bool HasChannelWithMoreThan(int32_t AMinCount) const;
    // The finite extremes of the visible channels on the axis; false when none qualified.
    // Scanned once per invalidation of the limits.
    bool CalcCurrentExtremes(double& AMin, double& AMax) const;
    bool ScanCurrentExtremes(double& AMin, double& AMax) const;

    IQVAxisChannelSource* FChannelSource;
    std::unique_ptr<TQVScopeAutoScaling> FAutoScaling;
    std::unique_ptr<TQVDisplayAxisCursorSettings> FCursorSettings;
    std::unique_ptr<TQVDisplayGridDirectionalLinesSettings> FDataView;
    uint32_t FValBufIndex = 0;
    uint32_t FValBufSize = 0;
    // Written by the const zoomed-limit getters: the hysteresis remembers them.
    mutable double FCurrentMin = 0.0;
    mutable double FCurrentMax = 0.0;
    mutable bool FExtremesValid = false;
    mutable bool FExtremesFound = false;
    mutable double FExtremeMin = 0.0;
    mutable double FExtremeMax = 0.0;
    // Each channel's finite extremes over the visible samples, kept while the channel's draw
    // stage and the visible range stay the same, so that a limit invalidation that brings no
    // new data (a zoom, a repaint) does not read the samples again.
    struct TChannelExtremes {
        const void* Channel = nullptr;
        const void* Buffer = nullptr;
        uint64_t Generation = 0;
        int32_t Size = 0;
        int64_t First = 0;
        int64_t Last = 0;
        bool Found = false;
        double Lo = 0.0;
        double Hi = 0.0;
    };
    mutable std::vector<TChannelExtremes> FChannelExtremes;
};

class TQVScopeYAxesCollectionItem;

// A Y axis held by an item of the main Y axis' AdditionalAxes.
class TQVAdditionalScopeYAxis : public TQVBasicScopeYAxis {
public:
    TQVAdditionalScopeYAxis(TQVDisplayOwner* AChart, TQVDisplayCollectionItem* AOwnerItem);
    // The item of the main axis' AdditionalAxes that holds this axis.
    TQVDisplayCollectionItem* GetOwnerItem() const { return FOwnerItem; }

    QL_CLASS_INFO()

private:
    TQVDisplayCollectionItem* FOwnerItem;
};

class TQVScopeYAxesCollectionItem : public TQVAdditionalAxesCollectionItem<TQVAdditionalScopeYAxis> {
public:
    using TQVAdditionalAxesCollectionItem::TQVAdditionalAxesCollectionItem;
    // Names the axis "Y Axis " and the item's index.
    void AfterConstruction() override;

    QL_CLASS_INFO()
};

class TQVScopeYAxesCollection : public TQVAdditionalAxesCollection<TQVScopeYAxesCollectionItem> {
public:
    using TQVAdditionalAxesCollection::TQVAdditionalAxesCollection;

    QL_CLASS_INFO()
};

// The main Y axis of a scope.
class TQVScopeYAxis : public TQVBasicScopeYAxis {
public:
    explicit TQVScopeYAxis(TQVDisplayOwner* AChart);
    ~TQVScopeYAxis() override;

    TQVScopeYAxesCollection* GetAdditionalAxes() const { return FAdditionalAxes.get(); }
    void SetAdditionalAxes(const TQVScopeYAxesCollection* AValue) { FAdditionalAxes->Assign(AValue); }

    QL_CLASS_INFO()

private:
    std::unique_ptr<TQVScopeYAxesCollection> FAdditionalAxes;
};

} // namespace qv
