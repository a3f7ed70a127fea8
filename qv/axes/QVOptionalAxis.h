#pragma once
// The first level of every axis strip: a view that can be hidden and that chooses the step
// between its major ticks. The automatic step is the smallest of 1, 2, 2.5 and 5 times a power
// of ten whose ticks keep the minimum line distance and leave room for the tick texts; a given
// step is doubled until it fits. The last automatic choice is remembered with what it was
// computed from, so that an axis can tell whether it still holds.

#include "qv/axes/QVAxisTicks.h"
#include "qv/axes/QVAxisTypes.h"
#include "qv/component/QVDisplayView.h"
#include "qv/foundation/QVDisplayFont.h"

namespace qv {

class TQVOptionalAxis : public TQVOptionalView {
public:
    using TQVOptionalView::TQVOptionalView;

    virtual TQVScaleMode GetIntScaleMode() const = 0;
    virtual void SetIntScaleMode(TQVScaleMode AValue) = 0;
    // Pixels along the axis that the scale spans.
    virtual int32_t GetDimentionLength() const = 0;
    // The zoomed width of the scale, in decades when ALogarithmic.
    virtual double GetRangeWidth(bool ALogarithmic) const = 0;
    // The extent of a tick text along the axis.
    virtual uint32_t GetMaxTextLength() const = 0;
    // The least distance between two ticks, in pixels.
    virtual uint32_t GetMinScaleLineDistance() const = 0;
    virtual TQVDisplayFont* GetFont() const = 0;

    // The automatic major step. Writes the step memory. 1.0 for an empty view, a zero or
    // unbounded range and on a decascale axis.
    double ComputeValueStep();
    // AStep doubled until ticks that far apart leave room for their texts (mtmOverride: until
    // they are more than a pixel apart). A decascale axis keeps AStep when ADecascaleExempt.
    // A zero step, or an axis with no pixels, keeps AStep.
    double ValidateStep(double AStep, TQVMajorTicksMode AMode, bool ADecascaleExempt);
    // Whether the remembered automatic step was computed for the present mode, range and size.
    bool IsValidStep() const;

    QL_CLASS_INFO()

protected:
    // The display's surface for measuring text, with the font applied; null when the display
    // has none yet, and then every text measures 0.
    TQLCanvas* GetMeasureCanvas(const TQVDisplayFont* AFont) const;
    // The plot area: the data view's rectangle, all zero without one.
    TRect GetDataViewRect() const;

    bool FValidStep = false;
    double FOldRangeWidth = 0.0;
    int32_t FOldSizeWidth = 0;
    TQVScaleMode FOldScaleMode = smLinear;
};

// The pixel size of a rectangle the way views count it: a one-pixel-wide rectangle has width 0.
inline int32_t QVRectWidth(const TRect& ARect)
{
    return ARect.Right - ARect.Left - 1 > 0 ? ARect.Right - ARect.Left - 1 : 0;
}
inline int32_t QVRectHeight(const TRect& ARect)
{
    return ARect.Bottom - ARect.Top - 1 > 0 ? ARect.Bottom - ARect.Top - 1 : 0;
}

} // namespace qv
