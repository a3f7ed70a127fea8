#pragma once
// The waterfall: a display of successive rows of reals (spectra, profiles, time slices) as a
// scrolling colour image, with a level scale beside it. Rows come from any thread through
// Data (or the input pin) and wait in the row store; each paint takes them in, colours only
// the new rows into the data view's image and resamples the visible span into the picture.
// The control turns a pixel or a scale value back into a sample, zooms with the mouse and by
// call, and fills the hit point's label from templates ("%X : %Y : %Z").
//
// TQVBasicWaterfall owns the axes, the highlighting and the paint order; TQVWaterfall adds
// the row store, its data facade, the input pin, the level view and the data view.

#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/display/QVDataDisplay.h"
#include "qv/pins/QWPins.h"
#include "qv/waterfall/QVLevelDisplay.h"
#include "qv/waterfall/QVWaterfallAxes.h"
#include "qv/waterfall/QVWaterfallBuffers.h"
#include "qv/waterfall/QVWaterfallCursor.h"
#include "qv/waterfall/QVWaterfallCursorLinks.h"
#include "qv/waterfall/QVWaterfallDataView.h"
#include "qv/waterfall/QVWaterfallLegendView.h"
#include "qv/waterfall/QVWaterfallMarkers.h"
#include "qv/waterfall/QVWaterfallOwner.h"
#include "qv/waterfall/QVWaterfallTextLabels.h"

#include <atomic>
#include <memory>
#include <string>

namespace qv {

class TQVBasicWaterfall : public TQVDataDisplay, public TQVWaterfallOwner, public IQVWaterfallRowHost {
public:
    TQVBasicWaterfall();
    ~TQVBasicWaterfall() override;

    // ---- Settings ----
    TQVWaterfallXAxis* GetXAxis() const override { return FXAxis.get(); }
    void SetXAxis(const TQVWaterfallXAxis* AValue) { FXAxis->Assign(AValue); }
    TQVWaterfallYAxis* GetYAxis() const override { return FYAxis.get(); }
    void SetYAxis(const TQVWaterfallYAxis* AValue) { FYAxis->Assign(AValue); }
    TQVDisplayHighlighting* GetHighlighting() const override { return FHighlighting.get(); }
    // Cursors over the picture; each publishes its row and slice after every paint.
    TQVWaterfallCursors* GetCursors() const { return FCursors.get(); }
    void SetCursors(const TQVWaterfallCursors* AValue) { FCursors->Assign(AValue); }
    // Links that measure between two cursors, drawn over them.
    TQVWaterfallCursorLinks* GetCursorLinks() const { return FCursorLinks.get(); }
    void SetCursorLinks(const TQVWaterfallCursorLinks* AValue) { FCursorLinks->Assign(AValue); }
    TQVWaterfallCursorLinks* GetWaterfallCursorLinks() const override { return FCursorLinks.get(); }
    // Names written over the picture at scale positions, under the cursors.
    TQVWaterfallTextLabels* GetLabels() const { return FLabels.get(); }
    void SetLabels(const TQVWaterfallTextLabels* AValue) { FLabels->Assign(AValue); }
    TQVWaterfallTextLabels* GetWaterfallTextLabels() const override { return FLabels.get(); }
    // Markers over the picture; in mmRelative groups they scroll with the rows.
    TQVWaterfallMarkerGroups* GetMarkerGroups() const { return FMarkerGroups.get(); }
    void SetMarkerGroups(const TQVWaterfallMarkerGroups* AValue) { FMarkerGroups->Assign(AValue); }
    TQVWaterfallMarkerGroups* GetWaterfallMarkerGroups() const override { return FMarkerGroups.get(); }
    // Docked right; lists the marker groups, cursors, cursor links and labels, and takes no
    // room while all are empty.
    TQVWaterfallLegendView* GetLegend() const { return FLegend.get(); }
    void SetLegend(const TQVWaterfallLegendView* AValue) { FLegend->Assign(AValue); }
    TQVWaterfallCursors* GetWaterfallCursors() const override { return FCursors.get(); }
    // The marker under the mouse and the marker being dragged.
    TQVHighlightInfo* GetHighlightInfo() const override { return &FHighlightInfo; }
    void SetHighlighting(const TQVDisplayHighlighting* AValue) { FHighlighting->Assign(AValue); }
    // Rows run down the display and samples across it.
    bool GetVertical() const { return FVertical; }
    void SetVertical(bool AValue);
    bool GetIsVertical() const override { return FVertical; }

    // ---- Refresh and paint ----
    // A tick repaints only when rows arrived or the history changed.
    void OnRefreshTimer(TQLPersistent* ASender) override;
    // The next draw colours every row anew.
    void ForceFullRedraw() override;
    void RepopulateView() override { ForceFullRedraw(); }
    // Background, the docked views, the image, the markers, the labels, the hit point and the
    // box being dragged, the cursors and their links, the focus; then the cursors publish
    // their rows and slices.
    void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                          bool APrinting) override;
    // Prints with the picture held; Hold comes back as it was, also when the print fails.
    void Print() override;
    bool GetSetupEnabled() const { return true; }

    // ---- The waterfall's parts ----
    virtual TQVBasicWaterfallDataView* GetWaterfallDataView() const = 0;
    TQVDisplayComponent* GetDataView() const override;
    TQWCriticalSection& GetBufferSection() override { return FBufferSection; }
    TQVWaterfallXAxis* GetWaterfallXAxis() const override { return FXAxis.get(); }
    TQVWaterfallYAxis* GetWaterfallYAxis() const override { return FYAxis.get(); }
    bool TakeForcedFullRedraw() override { return FForcedFullRedraw.exchange(false); }
    bool GetWaterfallHold() const override;
    void DoColorChannelClick(int32_t /*AIndex*/) override {}

    // ---- Lookup ----
    // The sample under a control pixel: AMinValue over the columns not yet filled (AFound
    // false), -100000 outside the rows or samples.
    double GetValueAtInt(double AMinValue, int32_t AX, int32_t AY, bool& AFound) const;
    double GetValueAtScale(double AMinValue, double AXValue, double AYValue) const;
    std::shared_ptr<IQVRealBuffer> GetBufferAtXScale(double AValue) const override;
    // A time slice: sample Round(position) of every row, oldest first.
    std::shared_ptr<IQVRealBuffer> GetBufferAtYScale(double AValue) const override;
    // The value under the mouse, as the tool tip shows it.
    virtual double GetToolTipZValue() const { return 0.0; }
    // The level value's text, for "%Z".
    virtual std::string GetLevelTickText(double AValue) const { return std::to_string(AValue); }

    // ---- Label templates ----
    // AFormat, or ADefault when empty, with "%X", "%Y" and "%Z" replaced by the texts of the
    // X and Y scale values and of the value at APoint, "%D" by ADefault (itself expanded),
    // "%%" by a percent sign; any other letter vanishes with its percent sign.
    std::string GetFormatLabelText(const TPoint& APoint, double AXValue, double AYValue, const std::string& AFormat,
                                   const std::string& ADefault);
    // The hit point's label: its template, or "%X : %Y : %Z".
    std::string GetFormatedLabelText();
    std::string GetFormatedMouseHitLabelText() override { return GetFormatedLabelText(); }
    // Draws the mark and label at the highlighted point, in the level colour of its value
    // when the hit point uses data colours.
    virtual void DrawHitPoint(TQLCanvas& ACanvas);

    // ---- Row host ----
    int32_t GetRowBound() const override { return FRowBound.load(std::memory_order_acquire); }
    bool GetRowHold() const override { return GetWaterfallHold(); }
    void RowRangeChanged() override { MainViewScrolled(true); }
    void RowSizeChanged(int32_t ASize) override { FYAxis->SetSamples(ASize); }
    void RowBoundChanged() override { FRowBound.store(FXAxis->GetSamples(), std::memory_order_release); }

    QL_CLASS_INFO()

protected:
    void Invalidate() override { TQVDataDisplay::Invalidate(); }
    // Frees the legend, then the links, labels, markers and cursors, in the order in which
    // each still finds what it refers to; the destructors call it.
    void ReleaseElements();

    TQWCriticalSection FBufferSection;
    std::unique_ptr<TQVDisplayHighlighting> FHighlighting;
    std::atomic<bool> FForcedFullRedraw{true};
    std::unique_ptr<TQVWaterfallXAxis> FXAxis;
    std::unique_ptr<TQVWaterfallYAxis> FYAxis;
    std::unique_ptr<TQVWaterfallCursors> FCursors;
    std::unique_ptr<TQVWaterfallMarkerGroups> FMarkerGroups;
    std::unique_ptr<TQVWaterfallCursorLinks> FCursorLinks;
    std::unique_ptr<TQVWaterfallTextLabels> FLabels;
    std::unique_ptr<TQVWaterfallLegendView> FLegend;
    mutable TQVHighlightInfo FHighlightInfo;
    bool FVertical = false;
    // XAxis.Samples, read by producers on their threads.
    std::atomic<int32_t> FRowBound{512};
};

class TQVWaterfall;

// The application's way in: rows from any thread, replaced, read back, cleared.
class TQVWaterfallData {
public:
    explicit TQVWaterfallData(TQVWaterfall* AWaterfall) : FWaterfall(AWaterfall) {}

    // Appends one row. The pointer forms copy ASize values of any of the numeric types; a
    // buffer is shared, not copied. An empty row, or one whose length differs from the
    // waterfall's rows, raises std::invalid_argument naming both lengths; a null pointer with
    // a size raises std::invalid_argument.
    template <class T>
    void AddData(const T* ABuffer, int32_t ASize)
    {
        AddData(TQVRealBuffer(ABuffer, ASize));
    }
    void AddData(const IQVRealBuffer& ABuffer);
    void AddData(const IQVIntegerBuffer& ABuffer);
    // Replaces row AIndex of the history (drawn rows, then rows waiting for a hold to end);
    // an index past them raises ERangeError "Index out of range = AIndex".
    template <class T>
    void SetData(uint32_t AIndex, const T* ABuffer, int32_t ASize)
    {
        SetData(AIndex, TQVRealBuffer(ABuffer, ASize));
    }
    void SetData(uint32_t AIndex, const IQVRealBuffer& ABuffer);
    void SetData(uint32_t AIndex, const IQVIntegerBuffer& ABuffer);
    // Clears, then appends every row in order.
    void SetData(const TQVRealBufferArray& ABuffers);
    // The history as it will be once every pending row is applied.
    TQVRealBufferArray GetData() const;
    // The rows drawn now.
    TQVRealBufferArray GetDrawData() const;
    // The rows one after the other, ABufferSize values each; ABuffersCount rows.
    std::vector<double> GetCreateIntDataArray(int32_t& ABuffersCount, int32_t& ABufferSize) const;
    void Clear();
    // Rows per second, as set (0 by default; the axes count 0 as 10000).
    double GetSampleRate() const;
    void SetSampleRate(double AValue);

private:
    TQVWaterfall* FWaterfall;
};

class TQVWaterfall : public TQVBasicWaterfall {
public:
    TQVWaterfall();
    ~TQVWaterfall() override;

    TQVWaterfallData* GetData() { return FData.get(); }
    TQVWaterfallDataView* GetDataView() const override { return FDataView.get(); }
    TQVBasicWaterfallDataView* GetWaterfallDataView() const override { return FDataView.get(); }
    TQVWaterfallDisplayLevelView* GetLevels() const { return FLevels.get(); }
    void SetLevels(const TQVWaterfallDisplayLevelView* AValue) { FLevels->Assign(AValue); }
    TQVBasicLevelDisplayLevelView* GetLevelView() const override { return FLevels.get(); }
    const std::shared_ptr<TQWSinkPin>& GetInputPin() const { return FInputPin; }
    // The value under the mouse, as the tool tip shows it.
    double GetToolTipZValue() const override { return FDataView->GetCurrentMouseValueResult(); }

    // ---- Rows ----
    void AddBuffer(const IQVRealBuffer& ABuffer) { FBuffers->AddBuffer(ABuffer); }
    void SetBuffer(uint32_t AIndex, const IQVRealBuffer& ABuffer);
    bool SetBufferInt(uint32_t AIndex, const IQVRealBuffer& ABuffer);
    void Clear();
    TQVRealBufferArray GetIntData();
    TQVRealBufferArray GetDrawData();
    TQVWaterfallBuffers& GetWaterfallBuffers() override { return *FBuffers; }
    void UpdateIntBuffers() override;
    bool PopulateDrawBuffers() override;
    int32_t GetBufferSize() const { return FBuffers->GetBufferSize(); }
    int32_t GetBuffersCount() const { return FBuffers->GetBuffersCount(); }

    // ---- Levels and domain ----
    // The levels: the data's running range with Levels.Axis.Autoscale and rows, else the
    // axis' Min and Max.
    double GetCurrentMinLevel() const override;
    double GetCurrentMaxLevel() const override;
    bool GetLevelsLogarithmic() const override { return FLevels->GetAxis()->GetScaleMode() != smLinear; }
    void MainViewScrolled(bool AForceInvalidate) override;
    std::string GetLevelTickText(double AValue) const override { return FLevels->GetTickText(AValue); }
    double GetSampleRateValue() const { return FSampleRate.load(std::memory_order_acquire); }
    void SetSampleRateValue(double AValue);
    double GetSampleRate() const override;
    bool IsFrequencyDomain() const override { return FFrequencyDomain.load(); }
    bool IsIntensityDomain() const override { return FIntensityDomain.load(); }
    // Marks the rows as spectra or intensities (as a pin's start does).
    void SetDomains(bool AFrequency, bool AIntensity);
    // The level view's setup button opens the setup dialog on the level settings.
    void DoColorChannelClick(int32_t /*AIndex*/) override { ShowSetupDialogFor(FLevels.get()); }

    QL_CLASS_INFO()

private:
    bool SinkDispatch(TQWPin* APin, TQVDataKind AIID, const TQWOperation& AOperation, uint64_t AState);

    std::shared_ptr<TQWSinkPin> FInputPin;
    std::unique_ptr<TQVWaterfallDisplayLevelView> FLevels;
    std::unique_ptr<TQVWaterfallBuffers> FBuffers;
    std::atomic<double> FSampleRate{0.0};
    std::atomic<bool> FFrequencyDomain{false};
    std::atomic<bool> FIntensityDomain{false};
    std::unique_ptr<TQVWaterfallData> FData;
    std::unique_ptr<TQVWaterfallDataView> FDataView;
};

} // namespace qv
