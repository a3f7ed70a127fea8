#pragma once
// The arithmetic of plotting a channel, over plain arrays: which samples are on screen, when
// and how they are cut down to two points per pixel column, how values become pixels, and
// how a set of pixel points is drawn in each mode. The channel strings these together and
// keeps the results between frames.
//
// Missing values: a NaN sample, or a column with no number in it, becomes the pixel
// QVMissingPixel. Drawing skips such points; a line breaks at them. No conversion to an
// integer ever sees a NaN or a value beyond the clipping bound.

#include "qv/channels/QVScopePoints.h"
#include "qv/foundation/QLTypes.h"
#include "qv/foundation/QVLog10a.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace qv {

class TQLCanvas;
class TQVBlockExtremes;

// The pixel of a value that is not there.
inline constexpr int32_t QVMissingPixel = std::numeric_limits<int32_t>::min();
// Pixels are held to plus or minus this bound, far outside any view.
inline constexpr double QVPixelClipBound = 10000000.0;
// Y pixels are clipped at QVPixelClipBound below the view only: above it they run on, so
// that a line leaving the top keeps its slope, and are held only where the integer range
// would end (with room left for the few pixels that drawing adds around a point).
inline constexpr double QVPixelLowest = -1073741824.0;

// AValue rounded to nearest (ties to even) and held to the clipping bound; NaN is missing.
// Written without branches so that whole-buffer passes vectorise.
inline int32_t QVPixelOf(double AValue)
{
    const bool Missing = !(AValue == AValue);
    double V = Missing ? 0.0 : AValue;
    V = V > QVPixelClipBound ? QVPixelClipBound : V;
    V = V < -QVPixelClipBound ? -QVPixelClipBound : V;
    // Adding and taking away 1.5 * 2^52 leaves no bits below the units: the addition rounds
    // to nearest, ties to even, in the default rounding mode, without a library call. (Strict
    // IEEE arithmetic keeps the two steps; the library is never built with fast-math.)
    constexpr double Shift = 6755399441055744.0;
    const int32_t Pixel = static_cast<int32_t>((V + Shift) - Shift);
    return Missing ? QVMissingPixel : Pixel;
}

// AValue rounded to nearest and held to ALow..AHigh; NaN gives ALow.
int32_t QVClampRound(double AValue, int32_t ALow, int32_t AHigh);

// ---- The visible part of a record ----

// How many of AWidth pixel columns the data X range AXMin..AXMax occupies in the view range
// ADMin..ADMax: AWidth when the data covers the view, 0 for a view of no width.
int32_t QVScreenUsedWidth(int32_t AWidth, double AXMin, double AXMax, double ADMin, double ADMax);

struct TQVScreenSlice {
    int32_t Start = 0; // first sample on screen
    int32_t Count = 0; // samples on screen
};

// The samples of a record of ASize samples that reach the screen. Only a ramp (X growing
// evenly with the index) is cut: to the view's range plus a margin of 4 samples before
// and 8 in all, so that the line runs out of the view's edges. A slice that will be
// downsampled keeps no margin in front.
TQVScreenSlice QVScreenSlice(int32_t ASize, bool AIsRamp, bool AXLogarithmic, int32_t AUsedWidth, double AXMin,
                             double AXMax, double ADMin, double ADMax);

// Whether a slice of ACount samples is cut down to two points per used column: only a ramp
// on a linear X axis, and only when it holds more than 2 * AUsedWidth + 8 samples.
inline bool QVIsDownsampled(bool AIsRamp, bool AXLogarithmic, int32_t AUsedWidth, int32_t ACount)
{
    return AIsRamp && !AXLogarithmic && 2 * int64_t(AUsedWidth) < int64_t(ACount) - 8;
}

// ---- Downsampling ----

// The result of cutting a slice down to columns.
struct TQVDownsampled {
    int32_t Points = 0;   // points written: two per column
    int32_t GapCount = 0; // entries written to the gap list
};

// Cuts a slice of ACount samples down to AColumns columns of two points, split by sample
// index: column i ends at sample (i + 1) * ACount / AColumns - 1 (the last column at
// ACount - 1) and begins where the column before it ended, so that neighbouring columns
// share a sample and the line runs on from one column to the next. A column of two samples
// gives them in their order; a longer one gives its smallest and then its largest value.
// NaN samples take no part; a column with no number gives two NaN, and so becomes missing.
// The caller asks for at most ACount / 2 columns, so that every column holds two samples.
//
// AOutY receives 2 * AColumns values and AOutFirst (when given) each column's first sample.
// AGaps lists, ascending, the indexes (relative to the slice) where the line is broken:
// between sample g - 1 and g. Such a break lies in the column whose samples run past g - 1
// to g, and breaks the line in front of that column: its first point's index goes to
// AOutGaps, once per column (never for the first column). AOutGaps needs room for
// min(AGapCount, AColumns) entries.
//
// When ABlocks is given, it summarises the record that AY is part of, AY being its sample
// ABlockBase: each column's extremes then come from the summary and the samples of the part
// blocks at the column's ends, with the same result as reading every sample.
TQVDownsampled QVDownsampleColumns(const double* AY, int32_t ACount, int32_t AColumns, const int32_t* AGaps,
                                   int32_t AGapCount, double* AOutY, int32_t* AOutFirst, int32_t* AOutGaps,
                                   const TQVBlockExtremes* ABlocks = nullptr, int32_t ABlockBase = 0);

// ---- Values to pixels ----

// A Y pixel: AValue rounded to nearest (ties to even), clipped at QVPixelClipBound from below
// the view and held at QVPixelLowest above it; NaN is missing.
inline int32_t QVYPixelOf(double AValue)
{
    const bool Missing = !(AValue == AValue);
    double V = Missing ? 0.0 : AValue;
    V = V > QVPixelClipBound ? QVPixelClipBound : V;
    V = V < QVPixelLowest ? QVPixelLowest : V;
    constexpr double Shift = 6755399441055744.0; // as in QVPixelOf
    const int32_t Pixel = static_cast<int32_t>((V + Shift) - Shift);
    return Missing ? QVMissingPixel : Pixel;
}

// Y: APlotBase - f(v) * AScale for each value, narrowed to a 32-bit float and made a pixel by
// QVYPixelOf; f is the identity or QVPlotLog. On a linear axis with a factor above 1 the
// largest finite values pass unscaled, as markers of "beyond the top".
void QVMapY(const double* AValues, int32_t ACount, double AScale, bool ALogarithmic, double APlotBase, int32_t* AOut);

// X: AOffset + f(v) * AScale for each value, rounded and clipped into AOut; f is the
// identity or QVPlotLog. When AReal is given it receives f(v) * ARealScale.
void QVMapX(const double* AValues, int32_t ACount, double AScale, double AOffset, bool ALogarithmic, double ARealScale,
            int32_t* AOut, double* AReal);

// Smallest and largest pixel that is not missing; false when all are missing.
bool QVPixelRange(const int32_t* APixels, int32_t ACount, int32_t& AMin, int32_t& AMax);

// ---- Drawing pixel points ----

// Points to draw and the gaps in them. X holds each point's pixel along the X axis and Y
// along the Y axis; in a vertical display (Vertical) the X axis runs down the screen, so the
// screen point is (Y, X). A gap entry g breaks the line in front of point g - IndexBase;
// entries at or below IndexBase are passed over.
struct TQVPlotPoints {
    const int32_t* X = nullptr;
    const int32_t* Y = nullptr;
    bool Vertical = false;
    int32_t Count = 0;
    const int32_t* Gaps = nullptr;
    int32_t GapCount = 0;
    int32_t IndexBase = 0;
};

// A polyline that breaks at gaps and missing points. The last point drawn gets a pixel of
// AEndColor, since a line leaves out its end; the other pieces' ends are left as drawn.
void QVPlotLine(TQLCanvas& ACanvas, const TQVPlotPoints& APoints, TAlphaColor AEndColor);
// A staircase: along the X axis, then across to each point. Gaps are crossed; missing points are
// passed over.
void QVPlotStep(TQLCanvas& ACanvas, const TQVPlotPoints& APoints, TAlphaColor AEndColor);

// The rectangle of a bar at pixel (AX, AY) in a horizontal scope (in a vertical one the
// caller passes the coordinates exchanged and AVertical). AThickness is the bar's width in
// pixels and AExtra the highlight's growth. ABase is the bar's base for csmTop and
// csmBottom, AZero the zero line for csmZero. The bar runs between its base and the point;
// the rectangle comes with its corners in order (left below right, top below bottom).
TRect QVBarRect(TQVChannelShadeMode AShade, bool AVertical, int32_t AX, int32_t AY, int32_t AThickness, int32_t AExtra,
                int32_t ABase, int32_t AZero);

} // namespace qv
