#pragma once
// The X axes of every display. An X axis runs along the display (up and down on a turned
// display) and counts in samples on its data scale: FSamples samples are in view. The scope
// and waterfall X axes give the samples their meaning (time, frequency, X values).

#include "qv/axes/QVDisplayAxis.h"
#include "qv/axes/QVScaleModeAxis.h"

namespace qv {

class TQVBasicDisplayXAxis : public TQVDisplayAxis {
public:
    TQVBasicDisplayXAxis(TQVDisplayOwner* ADisplay, TQVViewAlign AAlign = vaBottom);
    ~TQVBasicDisplayXAxis() override;

    // ---- Samples ----
    int32_t GetSamples() const { return FSamples; }
    // 0 here.
    virtual double GetMinSample() const;
    // The last sample: FSamples - 1, or Max.DataValue while no sample is counted.
    virtual double GetMaxSample() const;
    // The sample range of the data itself; the sample limits here.
    virtual double GetMinSampleReal() const { return GetMinSample(); }
    virtual double GetMaxSampleReal() const { return GetMaxSample(); }
    virtual void SetSamples(int32_t AValue);
    // Refreshes the sample count from the channels; nothing here.
    virtual void PopulateMaxSample() {}

    // ---- Orientation: along the display ----
    bool GetIsVertical() const override;
    bool GetIsOposite() const override { return GetIsReversed() != GetIsVertical(); }
    // A plain X axis counts as scale-reversed: the pixel functions rely on that sign.
    bool GetScaleReversed() const override { return !FReversed; }
    TQVViewScreenAlign GetScreenAlign() const override;

    // ---- Geometry ----
    // The data view's width, or its height on a turned display.
    int32_t GetDimentionLength() const override;
    double GetRangeWidth(bool ALogarithmic) const override;
    // Half the text of the zoomed minimum (maximum), plus 4.
    int32_t GetDefaultOffsetBegin() const override;
    int32_t GetDefaultOffsetEnd() const override;

    // ---- Limits ----
    // The full data limits, narrowed to the zoom window carried onto the data scale.
    double GetDataZoomedMin() const override;
    double GetDataZoomedMax() const override;

    // ---- Title ----
    // AxisLabel.Text, or "X Axis" when that is empty.
    std::string GetAxisLabelText() const override;
    // The text unchanged: the waterfall's X axis turns it into its own form.
    std::string GetLabelText(const std::string& AText) const { return AText; }

    bool GetIsZoomed() const { return FZoomed; }
    // The last mouse position of a drag.
    const TPoint& GetOldMousePos() const { return FOldMousePos; }

    QL_CLASS_INFO()

protected:
    // Written by the limit computations of the scope axis, which run in const getters.
    mutable int32_t FSamples = 0;
    TPoint FOldMousePos{0, 0};
};

class TQVDisplayXAxis : public TQVScaleModeAxis<TQVBasicDisplayXAxis> {
public:
    using TQVScaleModeAxis<TQVBasicDisplayXAxis>::TQVScaleModeAxis;

    QL_CLASS_INFO()
};

// Draws an axis strip: its background unless it takes the control's colour, the base line
// and ticks, the title when visible, and the track line opposite the mouse (not while
// printing or designing).
void QVDrawAxisStrip(TQVDisplayAxis& AAxis, TQLCanvas& ACanvas, bool AVertical, bool APrinting, int32_t ATrackSize);

// The screen side of an axis strip: as configured, or turned a quarter on a turned display.
TQVViewScreenAlign QVTurnedScreenAlign(TQVViewAlign AAlign, bool ATurned);

} // namespace qv
