// Plotting of a scope channel: from the draw stage to pixels, cached across frames, and the
// drawing of those pixels in the channel's mode.

#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelMouseHitPoint.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/channels/QVScopeChannelMarker.h"
#include "qv/channels/QVScopeOwner.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QVArrayOps.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

namespace qv {

namespace {

// Equal, counting two NaN as equal, so that a record without numbers does not look changed
// on every frame.
inline bool Same(double A, double B)
{
    return A == B || (A != A && B != B);
}

// Clears the scope's in-draw flag also when a user handler throws.
class TInDrawScope {
public:
    explicit TInDrawScope(TQVScopeOwner* AScope) : FScope(AScope)
    {
        if (FScope)
            FScope->SetInDraw(true);
    }
    ~TInDrawScope()
    {
        if (FScope)
            FScope->SetInDraw(false);
    }
    TInDrawScope(const TInDrawScope&) = delete;
    TInDrawScope& operator=(const TInDrawScope&) = delete;

private:
    TQVScopeOwner* FScope;
};

// ACount samples of a draw-stage buffer from AStart on, as a buffer of their own. The
// channel's buffers give a view of their samples that holds the memory under it, so that a
// zoom into a long record costs no copy of the samples on screen; others are copied.
std::shared_ptr<IQVRealBuffer> SliceOf(const std::shared_ptr<IQVRealBuffer>& ABuffer, int32_t AStart, int32_t ACount)
{
    if (const auto* Own = dynamic_cast<const TQVChannelBuffer*>(ABuffer.get())) {
        std::shared_ptr<TQVChannelBuffer> Shared = Own->Share(false);
        const double* Data = Shared->Read() + AStart;
        return std::make_shared<TQVForeignRealBuffer>(Data, ACount, std::move(Shared));
    }
    return std::make_shared<TQVRealBuffer>(ABuffer->Read() + AStart, ACount);
}

// The width of a scale's full range, for the ratio of two scales.
inline double FullSpan(const TQVLimitCachedMinMaxValue& AScale)
{
    return AScale.GetFull().GetMax().GetValue() - AScale.GetFull().GetMin().GetValue();
}

} // namespace

void TQVScopeChannel::SetShadeMode(TQVChannelShadeMode AValue)
{
    if (AValue > csmBottom)
        throw std::invalid_argument("TQVScopeChannel: invalid shade mode " + std::to_string(int(AValue)));
    Set(FShadeMode, AValue);
}

TQVDisplayAxis* TQVScopeChannel::GetPlotXAxis() const
{
    return GetXAxis();
}

TQVDisplayAxis* TQVScopeChannel::GetPlotYAxis() const
{
    return GetYAxis();
}

void TQVScopeChannel::InvalidateChannel()
{
    FCurrentDataSize = FCurrentDownsampledDataSize = FCurrentWidth = FCurrentHeight = -1;
    FCurrentXBegin = FCurrentYBegin = FCurrentXDataOffset = -1;
    FXDrawMinValue = FXDrawMaxValue = FYDrawMinValue = FYDrawMaxValue = -1;
    FCurrentXMin = FCurrentXMax = FCurrentYMin = FCurrentYMax = -1.0;
    FCurrentAxisXMin = FCurrentAxisXMax = FCurrentAxisYMin = FCurrentAxisYMax = -1.0;
    FCurrentXOffset = FCurrentXScale = FCurrentXRatio = FCurrentYOffset = FCurrentYScale = -1.0;
}

void TQVScopeChannel::Draw(TQLCanvas& ACanvas, const TRect& ARect, bool Printing)
{
    // A frame that plots nothing draws no marker either: none stays hit where it was.
    for (TQVScopeChannelMarker* Marker : *FMarkers)
        Marker->ClearDrawData();
    DrawCall(&TQVScopeChannel::ChannelDataDraw, ACanvas, 0xFF000000, ARect, Printing);
    ACanvas.SetPenWidth(1);
}

void TQVScopeChannel::ZoneDraw(TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect, bool Printing)
{
    DrawCall(&TQVScopeChannel::ChannelDataZoneDraw, ACanvas, AColor, ARect, Printing);
}

void TQVScopeChannel::DrawCall(TQVChannelDrawProc ADrawProc, TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect,
                               bool Printing)
{
    const IQVRealBuffer& XDraw = *FXDrawDataBuffer;
    const IQVRealBuffer& YDraw = *FYDrawDataBuffer;
    // X and Y have the same size after every hand-over; the smaller one rules if not.
    const int32_t n = std::min(YDraw.GetSize(), XDraw.GetSize());
    TQVDisplayAxis* XAxis = GetPlotXAxis();
    TQVDisplayAxis* YAxis = GetPlotYAxis();
    if (!GetVisible() || n == 0 || !XAxis || !YAxis)
        return;

    // The scale: the X axis' zoomed window in real units (a flat one opened by 1 on each
    // side) and in data units, and the mapping of both axes.
    double smin = XAxis->GetScaleTotalReal().GetZoomed().GetMin().GetValue();
    double smax = XAxis->GetScaleTotalReal().GetZoomed().GetMax().GetValue();
    if (smin == smax) {
        smin -= 1.0;
        smax += 1.0;
    }
    const double dmin = XAxis->ScaleRealToData(smin);
    const double dmax = XAxis->ScaleRealToData(smax);
    double xoff = 0.0, xscale = 0.0;
    XAxis->GetScaleInfo(xoff, xscale, smin, smax);
    xscale = 0.0 - xscale;
    const double ymax = YAxis->GetDataTotal().GetZoomed().GetMax().GetValue();
    const double ymin = YAxis->GetDataTotal().GetZoomed().GetMin().GetValue();
    double yoff = 0.0, yscale = 0.0;
    YAxis->GetScaleInfo(yoff, yscale, ymin, ymax);
    const bool ylog = YAxis->GetIntScaleMode() != smLinear;
    const bool xlog = XAxis->GetIntScaleMode() != smLinear;
    const bool vertical = GetDisplay() && GetDisplay()->GetIsVertical();
    // A rectangle given the wrong way round has no size.
    const int32_t w = std::max(0, vertical ? ARect.Bottom - ARect.Top : ARect.Right - ARect.Left);
    const int32_t h = std::max(0, vertical ? ARect.Right - ARect.Left : ARect.Bottom - ARect.Top);
    const int32_t xb = vertical ? ARect.Top : ARect.Left;
    const int32_t yb = vertical ? ARect.Left : ARect.Top;
    FScreenUsedWidth = w;

    // The user's look at the data, inside painting.
    if (FOnChannelDraw) {
        TInDrawScope InDraw(FOwner);
        FOnChannelDraw(this, GetIndex(), YDraw.Read(), n, GetDataChanged());
    }

    // The extents of the data, looked at only when the data is new or the cache that holds
    // them was forgotten. A ramp counts up evenly: its ends are its X extremes. The Y extent
    // comes after the screen stage is computed (which such a frame always does), from the
    // columns when they cover the whole record.
    const bool DataChanged = GetDataChanged();
    const bool Rescan = DataChanged || FCurrentDataSize != n;
    double xmin = FCurrentXMin, xmax = FCurrentXMax;
    if (Rescan) {
        const double* XR = XDraw.Read();
        const bool Ordered = FDrawIsRamp && XR[0] == XR[0] && XR[n - 1] == XR[n - 1] && XR[0] <= XR[n - 1];
        if (Ordered) {
            xmin = XR[0];
            xmax = XR[n - 1];
        } else if (!QVArrayMinMax(XR, size_t(n), xmin, xmax)) {
            xmin = xmax = std::numeric_limits<double>::quiet_NaN();
        }
    }

    // The columns the data occupies, the samples on screen, and whether they are cut down.
    const bool IsRamp = FDrawIsRamp;
    FScreenUsedWidth = QVScreenUsedWidth(w, xmin, xmax, dmin, dmax);
    const TQVScreenSlice Slice = QVScreenSlice(n, IsRamp, xlog, FScreenUsedWidth, xmin, xmax, dmin, dmax);
    FScreenStartIndex = Slice.Start;
    const int32_t c = Slice.Count;
    const bool Downsampled = QVIsDownsampled(IsRamp, xlog, FScreenUsedWidth, c);
    const int32_t d = Downsampled ? 2 * FScreenUsedWidth : std::max(c, 0);

    // What changed since the last computation. Besides the limits, the mapping
    // itself is compared (offsets, factors, the turn): reversing an axis or turning the
    // display keeps every limit and still moves every pixel.
    const double DataSpan = FullSpan(XAxis->GetDataTotal());
    const double ratio = DataSpan == 0.0 ? 1.0 : FullSpan(XAxis->GetScaleTotalReal()) / DataSpan;
    const bool xchanged =
        !(n == FCurrentDataSize && d == FCurrentDownsampledDataSize && w == FCurrentWidth && xb == FCurrentXBegin &&
          Same(xmin, FCurrentXMin) && Same(xmax, FCurrentXMax) && Same(smin, FCurrentAxisXMin) &&
          Same(smax, FCurrentAxisXMax) && xlog == FCurrentXLogarithmic && Same(xoff, FCurrentXOffset) &&
          Same(xscale, FCurrentXScale) && Same(ratio, FCurrentXRatio) && vertical == FCurrentVertical);
    const bool ychanged =
        !(n == FCurrentDataSize && d == FCurrentDownsampledDataSize && h == FCurrentHeight && yb == FCurrentYBegin &&
          !Rescan && Same(ymin, FCurrentAxisYMin) && Same(ymax, FCurrentAxisYMax) && ylog == FCurrentYLogarithmic &&
          Same(yoff, FCurrentYOffset) && Same(yscale, FCurrentYScale) && vertical == FCurrentVertical);
    FCurrentXLogarithmic = xlog;
    FCurrentYLogarithmic = ylog;

    double ymin2 = FCurrentYMin, ymax2 = FCurrentYMax;
    if (DataChanged || xchanged || ychanged) {
        ClearDataChanged();

        // The screen slice: the draw stage itself when it is all on screen.
        if (c == n) {
            FXScreenDataBuffer = FXDrawDataBuffer;
            FYScreenDataBuffer = FYDrawDataBuffer;
        } else {
            FXScreenDataBuffer = SliceOf(FXDrawDataBuffer, FScreenStartIndex, c);
            FYScreenDataBuffer = SliceOf(FYDrawDataBuffer, FScreenStartIndex, c);
        }
        const double* XS = FXScreenDataBuffer->Read();

        // Recomputation.
        double span = smax - smin;
        if (span == 0.0)
            span = 1.0;
        const double Columns1 = std::max(w - 1, 1);

        if (DataChanged || xchanged) {
            XAxis->InvalidateMinMaxCache(false);
            // Pixel = value * scale + xb - offset, with the offset lowered by the view's width
            // so that the scale's minimum lands on the view's first column.
            const double LoweredOffset = xoff - (w - 1);
            FScaledMapping.XLogarithmic = xlog;
            FScaledMapping.XScale = xscale;
            FScaledMapping.XRatio = ratio;
            FScaledMapping.XBegin = xb;
            FScaledMapping.XLowered = LoweredOffset;
            FScaledMapping.XOffset = xb - LoweredOffset;
            FScaledMapping.XPerColumn = span / Columns1;
            FScaledXStale = true;
            FCurrentXDataOffset = std::min(0, QVClampRound(LoweredOffset, -int32_t(QVPixelClipBound), 0));
        }

        // Y side.
        YAxis->InvalidateMinMaxCache(false);
        const double PlotBase = vertical ? ARect.Right - yoff - 1.0 : ARect.Bottom - yoff;
        FScaledMapping.YLogarithmic = ylog;
        FScaledMapping.YScale = yscale;
        FScaledMapping.YBase = PlotBase;
        FScaledYStale = true;
        if (!Downsampled) {
            // Every sample is plotted: its pixels are the points.
            UpdateScaledBuffers();
            FDownsampledIntDrawBufferX = FScaledIntDrawBufferX;
            FDownsampledIntDrawBufferY = FScaledIntDrawBufferY;
            FDownsampledGapsBuffer = FDrawGapsBuffer;
            FDownsampledRealX.clear();
            FDownsampledRealY.clear();
        } else {
            // The gaps inside the slice, relative to it.
            std::vector<int32_t> Gaps;
            const int32_t* G = FDrawGapsBuffer->Read();
            for (int32_t k = 0, Count = FDrawGapsBuffer->GetSize(); k < Count; ++k)
                if (G[k] > FScreenStartIndex && G[k] < FScreenStartIndex + c)
                    Gaps.push_back(G[k] - FScreenStartIndex);
            // Two points for each used pixel column, the slice split evenly by sample index.
            // The columns run along the X axis one pixel apart from the first one: the
            // data's first pixel when the data starts inside the view, else the view's edge
            // (the right one on a reversed axis).
            const int32_t Columns = FScreenUsedWidth;
            const int32_t Last = xb + std::max(w, 1) - 1;
            const double Scale = FScaledMapping.XScale * FScaledMapping.XRatio;
            const int32_t Step = Scale < 0.0 ? -1 : 1;
            int32_t FirstColumn = Step > 0 ? xb : Last;
            if (FScreenStartIndex == 0) {
                const int32_t P = QVPixelOf(FScaledMapping.XOffset + XS[0] * Scale);
                if (P != QVMissingPixel)
                    FirstColumn = std::clamp(P, xb, Last);
            }
            std::vector<int32_t> First(static_cast<size_t>(Columns));
            std::vector<int32_t> ColumnGaps(std::min<size_t>(Gaps.size(), size_t(Columns)) + 1);
            FDownsampledRealY.resize(size_t(2) * Columns);
            const TQVDownsampled Cut = QVDownsampleColumns(YDraw.Read() + FScreenStartIndex, c, Columns, Gaps.data(),
                                                           int32_t(Gaps.size()), FDownsampledRealY.data(), First.data(),
                                                           ColumnGaps.data(), &DrawYBlocks(), FScreenStartIndex);
            std::vector<int32_t> DX(size_t(Cut.Points));
            for (int32_t k = 0; k < Cut.Points; ++k)
                DX[size_t(k)] = FirstColumn + Step * (k / 2);
            FDownsampledRealY.resize(size_t(Cut.Points));
            FDownsampledRealX.resize(size_t(Cut.Points));
            for (int32_t k = 0; k < Cut.Points; ++k)
                FDownsampledRealX[size_t(k)] = XS[First[size_t(k / 2)]];
            FDownsampledIntDrawBufferX = std::make_shared<TQVIntegerBuffer>(DX.data(), Cut.Points);
            FDownsampledIntDrawBufferY = std::make_shared<TQVIntegerBuffer>(uint32_t(Cut.Points));
            QVMapY(FDownsampledRealY.data(), Cut.Points, yscale, ylog, PlotBase, FDownsampledIntDrawBufferY->Write());
            // Gap entries count points from the slice's start, as the plain gap list does.
            auto DG = std::make_shared<TQVIntegerBuffer>(uint32_t(Cut.GapCount));
            int32_t* DGW = DG->Write();
            for (int32_t k = 0; k < Cut.GapCount; ++k)
                DGW[k] = ColumnGaps[size_t(k)] + FScreenStartIndex;
            FDownsampledGapsBuffer = std::move(DG);
        }
        // The Y extent of the record: from the columns when they cover all of it.
        if (Rescan) {
            const bool Found = Downsampled && c == n
                                   ? QVArrayMinMax(FDownsampledRealY.data(), FDownsampledRealY.size(), ymin2, ymax2)
                                   : GetDrawYExtremes(0, n, false, ymin2, ymax2);
            if (!Found)
                ymin2 = ymax2 = std::numeric_limits<double>::quiet_NaN();
        }

        FCurrentDownsampledDataSize = d;
        FCurrentDataSize = n;
        FCurrentWidth = w;
        FCurrentHeight = h;
        FCurrentXBegin = xb;
        FCurrentYBegin = yb;
        FCurrentXMin = xmin;
        FCurrentXMax = xmax;
        FCurrentYMin = ymin2;
        FCurrentYMax = ymax2;
        FCurrentAxisXMin = smin;
        FCurrentAxisXMax = smax;
        FCurrentAxisYMin = ymin;
        FCurrentAxisYMax = ymax;
        FCurrentXOffset = xoff;
        FCurrentXScale = xscale;
        FCurrentXRatio = ratio;
        FCurrentYOffset = yoff;
        FCurrentYScale = yscale;
        FCurrentVertical = vertical;
        FDownsampled = Downsampled;
        if (!QVPixelRange(FDownsampledIntDrawBufferX->Read(), FDownsampledIntDrawBufferX->GetSize(), FXDrawMinValue,
                          FXDrawMaxValue))
            FXDrawMinValue = FXDrawMaxValue = -1;
        if (!QVPixelRange(FDownsampledIntDrawBufferY->Read(), FDownsampledIntDrawBufferY->GetSize(), FYDrawMinValue,
                          FYDrawMaxValue))
            FYDrawMinValue = FYDrawMaxValue = -1;
    }

    // The plot.
    (this->*ADrawProc)(ACanvas, AColor, ARect, yoff, FYScreenDataBuffer->Read(), FXScreenDataBuffer->Read(),
                       FYScreenDataBuffer->GetSize(), *FDownsampledIntDrawBufferX, *FDownsampledIntDrawBufferY,
                       Printing);
}

const TQVBlockExtremes& TQVScopeChannel::DrawYBlocks() const
{
    const IQVRealBuffer& Y = *FYDrawDataBuffer;
    if (FYBlocksValid && FYBlocksGeneration == FDrawGeneration && FYBlocksData == Y.Read() && FYBlocksSource &&
        FYBlocksSource->GetCount() == Y.GetSize())
        return *FYBlocksSource;
    // The summary that came with the samples from the data stage, when there is one for
    // exactly these samples; else one made here with a read of the record.
    const auto* Own = dynamic_cast<const TQVChannelBuffer*>(&Y);
    const TQVBlockExtremes* Kept = Own ? Own->GetExtremes() : nullptr;
    if (Kept && Kept->GetCount() == Y.GetSize()) {
        FYBlocksSource = Kept;
    } else {
        FYBlocks.Build(Y.Read(), Y.GetSize());
        FYBlocksSource = &FYBlocks;
    }
    FYBlocksGeneration = FDrawGeneration;
    FYBlocksData = Y.Read();
    FYBlocksValid = true;
    return *FYBlocksSource;
}

bool TQVScopeChannel::GetDrawYExtremes(int32_t AFirst, int32_t AEnd, bool AFinite, double& ALo, double& AHi) const
{
    return DrawYBlocks().MinMax(FYDrawDataBuffer->Read(), AFirst, AEnd, AFinite, ALo, AHi);
}

void TQVScopeChannel::UpdateScaledBuffers() const
{
    if (FScaledXStale)
        FillScaledX();
    if (FScaledYStale)
        FillScaledY();
}

void TQVScopeChannel::FillScaledX() const
{
    const TScaledMapping& M = FScaledMapping;
    const int32_t c = FXScreenDataBuffer->GetSize();
    const double* XS = FXScreenDataBuffer->Read();
    FScaledIntDrawBufferX->Resize(c, false);
    // Filled anew; a buffer nobody else holds is reused rather than reallocated.
    if (FScaledRealDrawBufferX.use_count() == 1)
        FScaledRealDrawBufferX->Resize(c, false);
    else
        FScaledRealDrawBufferX = std::make_shared<TQVRealBuffer>(uint32_t(c));
    int32_t* XInts = FScaledIntDrawBufferX->Write();
    double* XReal = FScaledRealDrawBufferX->Write();
    if (!M.XLogarithmic) {
        const double Scale = M.XScale * M.XRatio;
        QVMapX(XS, c, Scale, M.XOffset, false, Scale * M.XPerColumn, XInts, XReal);
    } else {
        const double RealScale = M.XScale * M.XPerColumn;
        for (int32_t i = 0; i < c; ++i) {
            XReal[i] = QVLog10a(XS[i]) * RealScale;
            XInts[i] = QVPixelOf(QVLog10a(XS[i] * M.XRatio) * M.XScale + M.XBegin - M.XLowered);
        }
    }
    FScaledXStale = false;
}

void TQVScopeChannel::FillScaledY() const
{
    const TScaledMapping& M = FScaledMapping;
    const int32_t c = FYScreenDataBuffer->GetSize();
    FScaledIntDrawBufferY->Resize(c, false);
    QVMapY(FYScreenDataBuffer->Read(), c, M.YScale, M.YLogarithmic, M.YBase, FScaledIntDrawBufferY->Write());
    FScaledYStale = false;
}

void TQVScopeChannel::ChannelDataDraw(TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect, double AYOffset,
                                      const double* AYData, const double* AXData, int32_t /*ASize*/,
                                      const IQVIntegerBuffer& /*AXInts*/, const IQVIntegerBuffer& /*AYInts*/,
                                      bool Printing)
{
    // The highlighted pass lies under the plain one.
    if (GetPlotHighlighted(Printing))
        PlotChannelData(ACanvas, AColor, true, false, ARect, AYOffset, AYData, AXData);
    PlotChannelData(ACanvas, AColor, false, false, ARect, AYOffset, AYData, AXData);
    DrawMarkers(ACanvas, ARect, Printing);
}

void TQVScopeChannel::ChannelDataZoneDraw(TQLCanvas& ACanvas, TAlphaColor AColor, const TRect& ARect, double AYOffset,
                                          const double* AYData, const double* AXData, int32_t /*ASize*/,
                                          const IQVIntegerBuffer& /*AXInts*/, const IQVIntegerBuffer& /*AYInts*/,
                                          bool Printing)
{
    if (GetPlotHighlighted(Printing))
        PlotChannelData(ACanvas, AColor, true, true, ARect, AYOffset, AYData, AXData);
    PlotChannelData(ACanvas, AColor, false, true, ARect, AYOffset, AYData, AXData);
}

void TQVScopeChannel::PointValues(int32_t AIndex, const double* AYData, const double* AXData, double& AXValue,
                                  double& AYValue) const
{
    if (FDownsampled) {
        AXValue = FDownsampledRealX[size_t(AIndex)];
        AYValue = FDownsampledRealY[size_t(AIndex)];
    } else {
        AXValue = AXData[AIndex];
        AYValue = AYData[AIndex];
    }
}

void TQVScopeChannel::PlotChannelData(TQLCanvas& ACanvas, TAlphaColor AColor, bool AHighlighted, bool AZoneDraw,
                                      const TRect& ARect, double AYOffset, const double* AYData, const double* AXData)
{
    const IQVIntegerBuffer& PX = *FDownsampledIntDrawBufferX;
    const IQVIntegerBuffer& PY = *FDownsampledIntDrawBufferY;
    const int32_t m = std::min(PX.GetSize(), PY.GetSize());
    const bool vertical = GetDisplay() && GetDisplay()->GetIsVertical();

    TQLCanvasSave Save(ACanvas);
    TAlphaColor Color = FColor;
    int32_t PenWidth = FWidth;
    if (AZoneDraw) {
        Color = AColor;
        PenWidth = FWidth + (AHighlighted ? 4 : 2);
    } else if (AHighlighted) {
        Color = GetPlotHighlightColor();
        PenWidth = FWidth + 2;
    }
    ACanvas.GetPen().SetColor(Color);
    ACanvas.GetBrush().SetColor(Color);
    ACanvas.SetPenWidth(PenWidth);
    ACanvas.SetPenStyle(QVPenStyleOf(FStrokeDash));

    TQVPlotPoints Points;
    Points.X = PX.Read();
    Points.Y = PY.Read();
    Points.Vertical = vertical;
    Points.Count = m;
    Points.Gaps = FDownsampledGapsBuffer->Read();
    Points.GapCount = FDownsampledGapsBuffer->GetSize();
    Points.IndexBase = FScreenStartIndex;

    switch (FChannelMode) {
    case cmLine:
        ACanvas.GetBrush().SetStyle(bsClear);
        QVPlotLine(ACanvas, Points, FColor);
        break;
    case cmStep: QVPlotStep(ACanvas, Points, FColor); break;
    case cmBar: PlotBars(ACanvas, AHighlighted, ARect, AYOffset, AYData, AXData, Points.X, Points.Y, m); break;
    case cmPoint:
        if (!FPoints->GetVisible()) {
            for (int32_t i = 0; i < m; ++i) {
                if (Points.X[i] == QVMissingPixel || Points.Y[i] == QVMissingPixel)
                    continue;
                const int32_t SX = vertical ? Points.Y[i] : Points.X[i];
                const int32_t SY = vertical ? Points.X[i] : Points.Y[i];
                if (AHighlighted) {
                    ACanvas.SetPenWidth(1);
                    ACanvas.Rectangle(SX - 1, SY - 1, SX + 2, SY + 2);
                } else {
                    ACanvas.SetPixel(SX, SY, FColor);
                }
            }
        }
        break;
    }
    if (HasSymbols())
        PlotSymbols(ACanvas, AColor, AHighlighted, AZoneDraw, Points.X, Points.Y, m, AYData, AXData);
}

bool TQVScopeChannel::HasSymbols() const
{
    return FPoints->GetVisible() ||
           std::any_of(FHighlightZonesList.begin(), FHighlightZonesList.end(),
                       [](const IQVChannelZoneLink* L) { return L->GetZonePoints().GetVisible(); });
}

void TQVScopeChannel::PlotBars(TQLCanvas& ACanvas, bool AHighlighted, const TRect& ARect, double AYOffset,
                               const double* AYData, const double* AXData, const int32_t* AX, const int32_t* AY,
                               int32_t ACount)
{
    ACanvas.SetPenWidth(1);
    ACanvas.GetBrush().SetStyle(bsSolid);
    const bool vertical = GetDisplay() && GetDisplay()->GetIsVertical();
    const TQVDisplayAxis* YAxis = GetPlotYAxis();
    const bool Reversed = YAxis && YAxis->GetIsReversedDirect();
    const int32_t Thickness = FWidth + (AHighlighted ? 2 : 0);
    const int32_t Extra = AHighlighted ? 1 : 0;
    const int32_t Low = vertical ? ARect.Left : ARect.Top;
    const int32_t High = (vertical ? ARect.Right : ARect.Bottom) + 1;
    int32_t Base = 0;
    if (FShadeMode == csmTop)
        Base = Reversed ? High : Low;
    else if (FShadeMode == csmBottom)
        Base = Reversed ? Low : High;
    const int32_t Far = vertical ? ARect.Right : ARect.Bottom;
    const int32_t Zero = Far - QVClampRound(AYOffset, -int32_t(QVPixelClipBound), int32_t(QVPixelClipBound));

    for (int32_t i = 0; i < ACount; ++i) {
        if (AX[i] == QVMissingPixel || AY[i] == QVMissingPixel)
            continue;
        bool DefaultDraw = true;
        if (FOnSampleDraw) {
            double XValue = 0.0, YValue = 0.0;
            PointValues(i, AYData, AXData, XValue, YValue);
            FOnSampleDraw(this, XValue, YValue, ACanvas, AHighlighted, DefaultDraw);
        }
        if (!DefaultDraw)
            continue;
        const TRect R = QVBarRect(FShadeMode, vertical, AX[i], AY[i], Thickness, Extra, Base, Zero);
        ACanvas.Rectangle(R.Left, R.Top, R.Right, R.Bottom);
    }
}

void TQVScopeChannel::PlotSymbols(TQLCanvas& ACanvas, TAlphaColor AColor, bool AHighlighted, bool AZoneDraw,
                                  const int32_t* AX, const int32_t* AY, int32_t ACount, const double* AYData,
                                  const double* AXData)
{
    ACanvas.SetPenWidth(1);
    TQLCanvasSave Save(ACanvas);
    // The highlight and zone passes draw every symbol in their one colour; the plain pass in
    // the look of the symbols at hand (the channel's colour, or their own pen and brush).
    const bool OnePass = AZoneDraw || AHighlighted;
    const uint8_t LineStyle = ACanvas.GetPen().GetStyle();
    if (OnePass) {
        const TAlphaColor Color = AZoneDraw ? AColor : GetPlotHighlightColor();
        ACanvas.GetPen().SetColor(Color);
        ACanvas.GetBrush().SetColor(Color);
        ACanvas.GetBrush().SetStyle(bsSolid);
    }
    const auto ApplyLook = [&](const TQVScopePoints& S) {
        if (OnePass) {
            // A highlighted symbol of lines only takes a wider pen to show round the plain one.
            const TQVScopePointsShape Shape = S.GetShape();
            const bool LineShape = Shape == psPlus || Shape == psCross || Shape == psStar;
            ACanvas.SetPenWidth(AHighlighted && LineShape ? 1 + (AZoneDraw ? 4 : 2) : 1);
        } else if (S.GetUseChannelColor()) {
            ACanvas.SetPenStyle(LineStyle);
            ACanvas.SetPenWidth(1);
            ACanvas.GetPen().SetColor(FColor);
            ACanvas.GetBrush().SetColor(FColor);
            ACanvas.GetBrush().SetStyle(bsSolid);
        } else {
            ACanvas.ApplyPen(*S.GetPen());
            ACanvas.ApplyBrush(*S.GetBrush());
        }
    };
    const int32_t Inset = (AZoneDraw ? 1 : 0) + (AHighlighted ? 1 : 0);
    const int32_t Grow = (AHighlighted ? 1 : 0) + (AZoneDraw ? 1 : 0);
    const bool vertical = GetDisplay() && GetDisplay()->GetIsVertical();
    const TQVScopePoints* Applied = FPoints.get();
    ApplyLook(*Applied);
    for (int32_t i = 0; i < ACount; ++i) {
        if (AX[i] == QVMissingPixel || AY[i] == QVMissingPixel)
            continue;
        // A sample inside a listed zone takes that zone's symbols; the zone that joined last
        // wins where zones overlap.
        const TQVScopePoints* S = FPoints.get();
        if (!FHighlightZonesList.empty()) {
            double XValue = 0.0, YValue = 0.0;
            PointValues(i, AYData, AXData, XValue, YValue);
            for (auto L = FHighlightZonesList.rbegin(); L != FHighlightZonesList.rend(); ++L)
                if ((*L)->GetZonePoints().GetVisible() && (*L)->HoldsSample(XValue, YValue)) {
                    S = &(*L)->GetZonePoints();
                    break;
                }
        }
        if (!S->GetVisible())
            continue;
        if (S != Applied) {
            ApplyLook(*S);
            Applied = S;
        }
        QVDrawPointSymbol(ACanvas, S->GetShape(), vertical ? AY[i] : AX[i], vertical ? AX[i] : AY[i],
                          int32_t(S->GetSize()) + Grow, Inset);
    }
}

bool TQVScopeChannel::CustomLegendDraw(TQLCanvas& ACanvas, int32_t AX, int32_t AY)
{
    TQLCanvasSave Save(ACanvas);
    ACanvas.SetPenStyle(psSolid);
    const auto Solid = [&](TAlphaColor AColor) {
        ACanvas.GetPen().SetColor(AColor);
        ACanvas.GetBrush().SetColor(AColor);
        ACanvas.GetBrush().SetStyle(bsSolid);
    };
    if (FChannelMode != cmPoint) {
        Solid(FColor);
        ACanvas.RectangleRect(TRect{AX, AY - 1, AX + 13, AY + 2});
    }
    const TQVScopePoints& S = *FPoints;
    if (S.GetVisible()) {
        if (S.GetUseChannelColor()) {
            Solid(FColor);
        } else {
            ACanvas.ApplyPen(*S.GetPen());
            ACanvas.ApplyBrush(*S.GetBrush());
        }
        ACanvas.SetPenWidth(1);
        QVDrawPointSymbolRect(ACanvas, S.GetShape(), TRect{AX + 3, AY - 3, AX + 10, AY + 4}, 0);
    } else if (FChannelMode == cmPoint) {
        Solid(FColor);
        ACanvas.EllipseRect(TRect{AX + 5, AY - 1, AX + 8, AY + 2});
    }
    return true;
}

void TQVScopeChannel::DrawHitPoint(TQLCanvas& ACanvas, const TPoint& APoint, const TQVChannelMouseHitPoint& AHitPoint)
{
    ACanvas.SetPenStyle(psSolid);
    TQVDisplayOwner* Display = GetDisplay();
    if (!Display || !AHitPoint.GetEnabled())
        return;
    ACanvas.GetBrush().SetColor(Display->GetColor());
    ACanvas.GetBrush().SetStyle(bsSolid);
    ACanvas.GetPen().SetColor(AHitPoint.GetUseChannelColor() ? FColor : AHitPoint.GetColor());
    Display->DrawHitTest(ACanvas, APoint, AHitPoint);
}

} // namespace qv
