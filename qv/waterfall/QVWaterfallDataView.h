#pragma once
// The picture of a waterfall. It does not draw through the canvas: it keeps a private image
// of exactly one pixel per sample of the history, colours only the rows that are new, and
// resamples the visible span of that image, nearest neighbour, straight into the target
// bitmap. Once the history is full the image scrolls without moving a pixel: it is a ring of
// row slots whose origin turns by the rows that left, and the resampling reads through the
// origin. A refresh therefore costs in proportion to the new rows and the view's size, not
// to the history's length.
//
// The image: 32-bit pixels (blue, green, red, alpha in memory), one slot of N pixels (padded
// to a multiple of 4) for each of the S rows (XAxis.Samples), sample j at pixel j of its
// slot, so that a row is coloured by one sequential run. Row r lies in slot r, or S-1-r with
// XAxis.Reversed; slot p is stored at p + origin modulo S. Seen as a picture, slots are the
// columns and sample 0 the bottom line (Vertical: slots are lines and samples columns).
//
// The view also turns a pixel or a scale value back into a sample, and runs the mouse in
// the picture: a box drag zooms (a drag under 5 pixels is a click), a drag in pan mode pans.

#include "qv/component/QVDisplayView.h"
#include "qv/foundation/QLBitmap.h"
#include "qv/foundation/QVBuffers.h"
#include "qv/waterfall/QVLevelColors.h"
#include "qv/waterfall/QVWaterfallResampler.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace qv {

class TQVWaterfallOwner;
class TQVWaterfallBuffers;
class TQPRealBufferList;

// The lookup answers outside the data.
inline constexpr double CQVNoWaterfallValue = -100000.0;

class TQVBasicWaterfallDataView : public TQVDisplayView {
public:
    TQVBasicWaterfallDataView(TQVDisplayOwner* ADisplay, TQVWaterfallOwner* AWaterfall);
    ~TQVBasicWaterfallDataView() override;

    // ---- The image ----
    // Sizes the image and colours the whole history.
    void Repopulate();
    // Colours the rows from AStartIndex to the last.
    virtual void Populate(int32_t AStartIndex);
    // Colours rows AStartIndex.. of ABufferList with the levels AMin..AMax (on the QVLog10a
    // scale when ALogarithmic). NaN samples take the bottom colour; values beyond the levels,
    // infinities included, the colour of the nearer end. With AMerge each colour byte keeps
    // the greater of the old and new value.
    void PopulateOne(int32_t AStartIndex, double AMin, double AMax, bool ALogarithmic,
                     const TQPRealBufferList& ABufferList, const TQVLevelColorMap& AColors, bool AMerge);
    // Whether the whole image must be coloured anew: the levels, the scale mode or a forced
    // redraw changed since the last colouring.
    virtual bool TestSetNeedsRedraw();
    // Brings the image up to date and resamples its visible span into ABitmap.
    void DirectDraw(TQLBitmap& ABitmap);
    // The image as it stands, for inspection; empty before the first draw with rows.
    const std::vector<uint32_t>& GetImage() const { return FImage; }
    int32_t GetImageStride() const { return FStride; }
    // The pixel of the image at a column and line as if the ring had not turned.
    uint32_t GetImagePixel(int32_t AColumn, int32_t ALine) const;
    bool HasImage() const { return !FImage.empty(); }
    // The next draw treats every row as new (a clear).
    void ResetBufferFill() { FOldBufferFill = 0; }
    const TQVNearestResampler& GetResampler() const { return FResampler; }

    // ---- Lookup ----
    // The sample under a control pixel; AMinValue over the columns not yet filled (AFound
    // false), CQVNoWaterfallValue outside the rows or samples (AFound true).
    double GetValueAtInt(double AMinValue, int32_t AX, int32_t AY, bool& AFound) const;
    // The sample at axis scale values.
    double GetValueAtScale(double AMinValue, double AXValue, double AYValue) const;
    // The row at an X scale value; null outside the data.
    std::shared_ptr<IQVRealBuffer> GetBufferAtXScale(double AValue) const;
    // Sample Round(position) of every row, oldest first, at a Y scale value; empty outside.
    std::shared_ptr<IQVRealBuffer> GetBufferAtYScale(double AValue) const;
    bool GetMouseAfterLastBuffer() const { return FMouseAfterLastBuffer; }

    // ---- Mouse ----
    // A left press with Zooming.MouseZoom: the picture is frozen while the box is dragged.
    bool InMouseZooming() const;
    const TPoint& GetCurrentMousePoint() const { return FCurrentMousePoint; }
    const TPoint& GetHighlightedPoint() const { return FHighlightedPoint; }
    bool GetIsHighlighted() const { return FIsHighlighted; }
    void MouseDown(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside,
                   bool& AHandled) override;
    void MouseMove(TShiftState AShift, int32_t AX, int32_t AY, bool& AHandled) override;
    void MouseUp(TMouseButton AButton, TShiftState AShift, int32_t AX, int32_t AY, bool AMouseInside) override;
    void MouseLeave() override;
    void MouseLeaveView() override;
    // The box zoom that ends at (AX, AY).
    void MouseZoom(int32_t AX, int32_t AY);
    // Follows the value under the mouse for the hit point; repaints when it moved.
    void HitTests();
    virtual bool GetCurrentMouseValue() { return false; }
    void DrawMouseSelction(TQLCanvas& ACanvas) override;

    QL_CLASS_INFO()

protected:
    // Pixel geometry of the image for the present S, N and Vertical.
    void ImageGeometry(int32_t& ASlots, int32_t& AStride) const;
    void FillEmpty(int32_t ACount);
    // The physical slot of logical slot ASlot in a ring of ASlots.
    int32_t Physical(int32_t ASlot, int32_t ASlots) const;

    TQVWaterfallOwner* FBasicWaterfall;
    std::vector<uint32_t> FImage;
    int32_t FStride = 0;     // pixels a line
    int32_t FBufferSize = 0; // bytes
    mutable bool FMouseAfterLastBuffer = false;
    TPoint FHighlightedPoint{0, 0};
    bool FIsHighlighted = false;
    int32_t FOldBufferFill = 0;
    int32_t FOrigin = 0; // the physical slot of logical slot 0
    bool FViewMouseMoved = false;
    bool FLeftMouseItemDown = false;
    TQVNearestResampler FResampler;
};

class TQVWaterfallDataView : public TQVBasicWaterfallDataView {
public:
    using TQVBasicWaterfallDataView::TQVBasicWaterfallDataView;

    // The sample under a control pixel; the found flag is dropped.
    double GetIntValueAt(int32_t AX, int32_t AY) const override;
    // The same for a pixel relative to the view.
    double GetValueAt(int32_t AX, int32_t AY) const;
    double GetMinValue() const override;
    double GetMaxValue() const override;
    // Looks up the value under the mouse into GetCurrentMouseValueResult: whether one was found.
    bool GetCurrentMouseValue() override;
    double GetCurrentMouseValueResult() const { return FCurrentMouseValue; }
    void Populate(int32_t AStartIndex) override;

    QL_CLASS_INFO()

private:
    double FCurrentMouseValue = 0.0;
};

} // namespace qv
