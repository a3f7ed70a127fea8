#pragma once
// The waterfall's axes. The X axis counts rows: Samples is the bound on the history and the
// width of the pixel image. The Y axis counts the samples of a row; the row store hands it
// the size of the oldest row. Both map sample positions to printed values linearly; the Y
// axis prints frequencies up to half the sample rate when the rows are spectra.

#include "qv/axes/QVDisplayXAxis.h"
#include "qv/axes/QVDisplayYAxis.h"
#include "qv/axes/QVScopeAxisSettings.h"

namespace qv {

class TQVWaterfallOwner;

class TQVWaterfallXAxis : public TQVBasicDisplayXAxis {
public:
    TQVWaterfallXAxis(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall);

    // Rows kept and shown, 512 by default. A value below 1 raises std::invalid_argument
    // naming it and changes nothing.
    void SetSamples(int32_t AValue) override;
    // The published property's setter.
    void SetSamplesProp(int32_t AValue) { SetSamples(AValue); }
    // Turning the axis round turns the image's rows round.
    void SetReversed(bool AValue) override;
    void SetReversedProp(bool AValue) { SetReversed(AValue); }

    // The visible rows: the zoom window carried onto rows, within 0..Samples-1.
    double GetMinSample() const override;
    double GetMaxSample() const override;
    // A printed value as a row position.
    double ScaleToSample(double AValue) const;

    double GetDataFullMax() const override;
    double GetScaleFullTickMin() const override;
    double GetScaleFullTickMax() const override;
    // Never a step below one row.
    double GetStep() override;
    // A zoom never shows fewer than two rows: the wheel, ZoomBy and ZoomIn scale the window
    // no further, and a narrower window opens about its centre.
    void AdjustZoomFactor(double AWidth, double& AFactor) override;
    void IntZoom(double AValue, TQVZoomOperation AOperation) override;
    double GetLeastZoomWidth() const override;
    // No zooming in once two rows or fewer show (or Zooming.Range's least width is
    // reached); zooming out only while the window leaves rows out.
    bool GetCanZoomIn() const override;
    bool GetCanZoomOut() const override;
    TQVScaleMode GetIntScaleMode() const override { return smLinear; }
    void SetIntScaleMode(TQVScaleMode) override {}
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) override;

    QL_CLASS_INFO()

private:
    TQVWaterfallOwner* FWaterfall;
};

class TQVWaterfallYAxis : public TQVBasicDisplayYAxis {
public:
    TQVWaterfallYAxis(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall);

    // Samples in a row; 0 counts as 512.
    int32_t GetSamples() const { return FSamples; }
    void SetSamples(int32_t AValue);
    // What the samples mean: atmAuto follows the rows (spectra print frequencies).
    TQVDisplayAxisTicksMode GetTicksMode() const { return FTicksMode; }
    void SetTicksMode(TQVDisplayAxisTicksMode AValue);
    bool InFreqAxis() const;
    bool InIntensityAxis() const;
    // Half the sample rate in engineering units (kHz for 20000 rows per second: 10), and the
    // power of ten of that unit.
    double CalcMaxFreq() const;
    int32_t GetFreqExponent() const;

    // The visible samples of a row: the zoomed data limits.
    double GetMinSample() const;
    double GetMaxSample() const;
    double ScaleToSample(double AValue) const;
    double SampleToScale(double AValue) const;
    // A span of AValue samples in printed units.
    double SampleToScaleRange(double AValue) const;
    // The full sample span (Samples - 1 unless Max and Min are fixed).
    double GetFullDataSamples() const;

    double GetDataFullMax() const override;
    double GetDataZoomedMin() const override;
    double GetDataZoomedMax() const override;
    double GetScaleFullTickMin() const override;
    double GetScaleFullTickMax() const override;
    double GetRangeWidth(bool ALogarithmic) const override;
    bool GetIsReversedDirect() const override;
    TQVAxisDirection GetDefaultHorizDir() const override { return adToRight; }
    TQVAxisDirection GetDefaultVertDir() const override { return adToUp; }
    bool GetIsOposite() const override { return false; }
    // Never fewer than two samples shown, as the X axis does with rows.
    void AdjustZoomFactor(double AWidth, double& AFactor) override;
    void IntZoom(double AValue, TQVZoomOperation AOperation) override;
    double GetLeastZoomWidth() const override;
    bool GetCanZoomOut() const override;
    std::string GetAxisLabelText() const override;
    TQVScaleMode GetIntScaleMode() const override { return smLinear; }
    void SetIntScaleMode(TQVScaleMode) override {}
    void Draw(TQVDisplayDrawPart ADrawPart, TQLCanvas& ACanvas, bool AVertical, bool APrinting) override;

    QL_CLASS_INFO()

private:
    TQVWaterfallOwner* FWaterfall;
    int32_t FSamples = 500;
    TQVDisplayAxisTicksMode FTicksMode = atmAuto;
};

} // namespace qv
