#include "qv/channels/QVChannelPlot.h"

#include "qv/foundation/QLCanvas.h"
#include "qv/foundation/QVArrayOps.h"
#include "qv/foundation/QVBlockExtremes.h"

#include <algorithm>
#include <cfloat>

namespace qv {

int32_t QVClampRound(double AValue, int32_t ALow, int32_t AHigh)
{
    if (!(AValue == AValue) || AValue <= ALow)
        return ALow;
    if (AValue >= AHigh)
        return AHigh;
    return static_cast<int32_t>(std::nearbyint(AValue));
}

int32_t QVScreenUsedWidth(int32_t AWidth, double AXMin, double AXMax, double ADMin, double ADMax)
{
    if (!(AXMax < ADMax || ADMin < AXMin))
        return AWidth;
    if (ADMax == ADMin)
        return 0;
    const double Used = AWidth * (std::min(AXMax, ADMax) - std::max(AXMin, ADMin)) / (ADMax - ADMin);
    return QVClampRound(Used, 0, std::max(AWidth, 0));
}

TQVScreenSlice QVScreenSlice(int32_t ASize, bool AIsRamp, bool AXLogarithmic, int32_t AUsedWidth, double AXMin,
                             double AXMax, double ADMin, double ADMax)
{
    TQVScreenSlice Slice{0, ASize};
    if (!AIsRamp || ASize <= 0)
        return Slice;
    // Counts are worked out in 64 bits and held well inside the 32-bit range before the
    // margins are added; a view far off the data gives a negative count, which ends at 0.
    constexpr int32_t Bound = 1 << 30;
    const double Extent = AXMax - AXMin;
    int64_t Start = 0;
    int64_t Count = ASize;
    if (!(ADMin > AXMin)) {
        if (ADMax < AXMax)
            Count = QVClampRound(ASize * (ADMax - AXMin) / Extent, -Bound, Bound);
    } else {
        // Truncated toward zero; a view far right of the data starts beyond its end.
        const double At = ASize * (ADMin - AXMin) / Extent;
        Start = At >= Bound || !(At == At) ? Bound : static_cast<int64_t>(At);
        if (!(AXMax > ADMax))
            Count = ASize - Start;
        else
            Count = QVClampRound(ASize * (ADMax - ADMin) / Extent, -Bound, Bound);
    }
    if (AXLogarithmic || !(Count - 8 > 2 * int64_t(AUsedWidth)))
        Start = std::max<int64_t>(Start - 4, 0);
    Count += 8;
    Slice.Start = static_cast<int32_t>(std::min<int64_t>(Start, ASize));
    Slice.Count = static_cast<int32_t>(std::clamp<int64_t>(Count, 0, int64_t(ASize) - Slice.Start));
    return Slice;
}

TQVDownsampled QVDownsampleColumns(const double* AY, int32_t ACount, int32_t AColumns, const int32_t* AGaps,
                                   int32_t AGapCount, double* AOutY, int32_t* AOutFirst, int32_t* AOutGaps,
                                   const TQVBlockExtremes* ABlocks, int32_t ABlockBase)
{
    TQVDownsampled Result;
    if (ACount <= 0 || AColumns <= 0)
        return Result;
    // The end of column i, in 64 bits: (i + 1) * ACount passes 2^31 on long records.
    const auto EndOf = [=](int32_t i) {
        return i == AColumns - 1 ? ACount - 1 : int32_t(int64_t(i + 1) * ACount / AColumns - 1);
    };
    int32_t NextGap = 0;
    int32_t b = 0;
    for (int32_t i = 0; i < AColumns; ++i) {
        // A column of fewer than two samples (more columns asked for than the samples allow)
        // still gets its two points, from the samples it has.
        const int32_t e = std::max(EndOf(i), b);
        if (ABlocks && i + 1 < AColumns) {
            // The next column's end is far from this one's on a long record: its samples and
            // summary entries are fetched while this column is worked out.
            const int32_t Next = EndOf(i + 1);
#if defined(__GNUC__) || defined(__clang__)
            __builtin_prefetch(AY + Next);
#endif
            ABlocks->Prefetch(AY - ABlockBase, ABlockBase + Next);
        }
        double Lo, Hi;
        if (e - b <= 1) {
            Lo = AY[b];
            Hi = AY[e];
        } else {
            const bool Found = ABlocks
                                   ? ABlocks->MinMax(AY - ABlockBase, ABlockBase + b, ABlockBase + e + 1, false, Lo, Hi)
                                   : QVArrayMinMax(AY + b, size_t(e - b + 1), Lo, Hi);
            if (!Found)
                Lo = Hi = std::numeric_limits<double>::quiet_NaN();
        }
        // A break between samples g - 1 and g with b < g <= e lies inside this column.
        while (NextGap < AGapCount && AGaps[NextGap] <= b)
            ++NextGap;
        if (NextGap < AGapCount && AGaps[NextGap] <= e) {
            if (i > 0)
                AOutGaps[Result.GapCount++] = Result.Points;
            while (NextGap < AGapCount && AGaps[NextGap] <= e)
                ++NextGap;
        }
        AOutY[Result.Points] = Lo;
        AOutY[Result.Points + 1] = Hi;
        if (AOutFirst)
            AOutFirst[i] = b;
        Result.Points += 2;
        b = e;
    }
    return Result;
}

void QVMapY(const double* AValues, int32_t ACount, double AScale, bool ALogarithmic, double APlotBase, int32_t* AOut)
{
    // Narrowing through a float costs precision only on views millions of pixels tall; the
    // bound check comes before the conversion so that it never sees an unrepresentable value.
    const auto Pixel = [APlotBase](double AScaled) {
        const float Narrow = static_cast<float>(APlotBase - AScaled);
        return QVYPixelOf(static_cast<double>(Narrow));
    };
    if (ALogarithmic) {
        for (int32_t i = 0; i < ACount; ++i)
            AOut[i] = Pixel(QVLog10a(AValues[i]) * AScale);
    } else if (AScale <= 1.0) {
        for (int32_t i = 0; i < ACount; ++i)
            AOut[i] = Pixel(AValues[i] * AScale);
    } else {
        for (int32_t i = 0; i < ACount; ++i) {
            const double V = AValues[i];
            AOut[i] = Pixel(V == DBL_MAX || V == -DBL_MAX ? V : V * AScale);
        }
    }
}

void QVMapX(const double* AValues, int32_t ACount, double AScale, double AOffset, bool ALogarithmic, double ARealScale,
            int32_t* AOut, double* AReal)
{
    for (int32_t i = 0; i < ACount; ++i) {
        const double V = ALogarithmic ? QVLog10a(AValues[i]) : AValues[i];
        AOut[i] = QVPixelOf(AOffset + V * AScale);
        if (AReal)
            AReal[i] = V * ARealScale;
    }
}

bool QVPixelRange(const int32_t* APixels, int32_t ACount, int32_t& AMin, int32_t& AMax)
{
    int32_t Lo = std::numeric_limits<int32_t>::max();
    int32_t Hi = std::numeric_limits<int32_t>::min();
    for (int32_t i = 0; i < ACount; ++i) {
        const int32_t P = APixels[i];
        if (P == QVMissingPixel)
            continue;
        Lo = std::min(Lo, P);
        Hi = std::max(Hi, P);
    }
    if (Lo > Hi)
        return false;
    AMin = Lo;
    AMax = Hi;
    return true;
}

namespace {

// Walks the gap list along the points.
class TGapWalk {
public:
    explicit TGapWalk(const TQVPlotPoints& APoints) : FPoints(APoints)
    {
        while (FNext < FPoints.GapCount && FPoints.Gaps[FNext] <= FPoints.IndexBase)
            ++FNext;
    }
    // Whether the line breaks in front of point AIndex; moves past the gap when it does.
    bool BreaksAt(int32_t AIndex)
    {
        if (FNext >= FPoints.GapCount || FPoints.Gaps[FNext] != int64_t(AIndex) + FPoints.IndexBase)
            return false;
        ++FNext;
        return true;
    }

private:
    const TQVPlotPoints& FPoints;
    int32_t FNext = 0;
};

inline bool IsMissing(const TQVPlotPoints& P, int32_t i)
{
    return P.X[i] == QVMissingPixel || P.Y[i] == QVMissingPixel;
}

// The screen point of an X axis pixel and a Y axis pixel.
inline TPoint ScreenPoint(bool AVertical, int32_t AX, int32_t AY)
{
    return AVertical ? TPoint{AY, AX} : TPoint{AX, AY};
}

} // namespace

void QVPlotLine(TQLCanvas& ACanvas, const TQVPlotPoints& APoints, TAlphaColor AEndColor)
{
    TGapWalk Gaps(APoints);
    bool Open = false;  // a piece is being drawn and its last point is the pen position
    bool Drawn = false; // some point was reached
    for (int32_t i = 0; i < APoints.Count; ++i) {
        const bool Break = i > 0 && Gaps.BreaksAt(i);
        if (IsMissing(APoints, i)) {
            Open = false;
            continue;
        }
        const TPoint P = ScreenPoint(APoints.Vertical, APoints.X[i], APoints.Y[i]);
        if (Open && !Break)
            ACanvas.LineTo(P.X, P.Y);
        else
            ACanvas.MoveTo(P.X, P.Y);
        Open = Drawn = true;
    }
    // Once, on the last point reached: a line leaves out its end.
    if (Drawn)
        ACanvas.SetPixel(ACanvas.GetPenPos().X, ACanvas.GetPenPos().Y, AEndColor);
}

void QVPlotStep(TQLCanvas& ACanvas, const TQVPlotPoints& APoints, TAlphaColor AEndColor)
{
    bool Started = false;
    int32_t PrevY = 0;
    for (int32_t i = 0; i < APoints.Count; ++i) {
        if (IsMissing(APoints, i))
            continue;
        const int32_t X = APoints.X[i];
        const int32_t Y = APoints.Y[i];
        const bool V = APoints.Vertical;
        if (!Started) {
            const TPoint P = ScreenPoint(V, X, Y);
            ACanvas.MoveTo(P.X, P.Y);
            Started = true;
        } else {
            const TPoint Corner = ScreenPoint(V, X, PrevY);
            const TPoint P = ScreenPoint(V, X, Y);
            ACanvas.LineTo(Corner.X, Corner.Y);
            ACanvas.LineTo(P.X, P.Y);
        }
        PrevY = Y;
    }
    if (Started)
        ACanvas.SetPixel(ACanvas.GetPenPos().X, ACanvas.GetPenPos().Y, AEndColor);
}

TRect QVBarRect(TQVChannelShadeMode AShade, bool AVertical, int32_t AX, int32_t AY, int32_t AThickness, int32_t AExtra,
                int32_t ABase, int32_t AZero)
{
    const int32_t From = AX - AThickness / 2;
    const int32_t To = AX + AThickness - AThickness / 2;
    int32_t V0, V1;
    if (AShade != csmZero) {
        V0 = ABase;
        V1 = AY - AExtra;
    } else if (AVertical ? AY < AZero - 1 : AY < AZero) {
        V0 = AVertical ? AZero : AZero + 1;
        V1 = AY - AExtra;
    } else {
        V0 = AVertical ? AZero - 1 : AZero;
        V1 = AY + AExtra + 1;
    }
    // The surface wants its corners in order: the bar runs from the lower to the higher value.
    if (V1 < V0)
        std::swap(V0, V1);
    return AVertical ? TRect{V0, From, V1, To} : TRect{From, V0, To, V1};
}

} // namespace qv
