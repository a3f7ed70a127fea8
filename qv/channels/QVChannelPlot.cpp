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

namespace {

// The common part of both cuts: runs of samples that share a column, as ARunEnd finds them
// (ARunEnd(First, Column) gives the run's column and returns the index after its last sample),
// each reduced to its extremes by AReduce(First, End, Lo, Hi) (false when it has no number),
// with the gaps that fall in front of or inside it.
template <class TRunEnd, class TReduce>
TQVDownsampled DownsampleRuns(int32_t ACount, int32_t ALowPixel, int32_t AHighPixel, const int32_t* AGaps,
                              int32_t AGapCount, int32_t* AOutX, double* AOutY, int32_t* AOutFirst, int32_t* AOutGaps,
                              TRunEnd ARunEnd, TReduce AReduce)
{
    TQVDownsampled Result;
    if (ACount <= 0 || AHighPixel < ALowPixel)
        return Result;
    // Samples that come back to a column already passed (X not monotone) cannot get more
    // columns than there is room for: the last slot takes all that remain.
    const int64_t Capacity = int64_t(AHighPixel) - ALowPixel + 1;
    int32_t NextGap = 0;
    int32_t j = 0;
    while (j < ACount) {
        const int32_t First = j;
        int32_t Column = 0;
        j = ARunEnd(First, Column);
        if (Result.Points / 2 + 1 >= Capacity)
            j = ACount;
        // NaN samples take no part; a column with no number becomes missing.
        double Lo = 0.0, Hi = 0.0;
        if (!AReduce(First, j, Lo, Hi))
            Lo = Hi = std::numeric_limits<double>::quiet_NaN();

        // Gaps inside the column, or between it and the previous one, break in front of it.
        while (NextGap < AGapCount && AGaps[NextGap] < First)
            ++NextGap;
        if (NextGap < AGapCount && AGaps[NextGap] < j) {
            if (First > 0)
                AOutGaps[Result.GapCount++] = Result.Points;
            while (NextGap < AGapCount && AGaps[NextGap] < j)
                ++NextGap;
        }
        const int32_t k = Result.Points;
        AOutX[k] = AOutX[k + 1] = Column;
        AOutY[k] = Lo;
        AOutY[k + 1] = Hi;
        if (AOutFirst)
            AOutFirst[k / 2] = First;
        Result.Points += 2;
    }
    return Result;
}

// The first index in AFrom..ATo for which APast holds, given that it holds for ATo and, past
// some point, for every later index. Searched outward from the guess AGuess, so that a good
// guess costs a few probes and a bad one a logarithmic number.
template <class TPast>
int32_t FirstPast(int32_t AFrom, int32_t ATo, int32_t AGuess, TPast APast)
{
    int32_t Lo, Hi; // APast(Lo) is false or Lo == AFrom - 1; APast(Hi) is true
    const int32_t G = std::clamp(AGuess, AFrom, ATo);
    if (APast(G)) {
        Hi = G;
        Lo = G - 1;
        int32_t Step = 1;
        while (Lo >= AFrom && APast(Lo)) {
            Hi = Lo;
            Lo = std::max(AFrom - 1, Lo - Step);
            Step *= 2;
        }
    } else {
        Lo = G;
        Hi = G + 1;
        int32_t Step = 1;
        while (Hi < ATo && !APast(Hi)) {
            Lo = Hi;
            Step *= 2;
            Hi = int32_t(std::min<int64_t>(ATo, int64_t(Hi) + Step));
        }
    }
    while (Hi - Lo > 1) {
        const int32_t Mid = Lo + (Hi - Lo) / 2;
        if (APast(Mid))
            Hi = Mid;
        else
            Lo = Mid;
    }
    return Hi;
}

} // namespace

TQVDownsampled QVDownsampleMinMax(const double* AY, const int32_t* AXPixels, int32_t ACount, int32_t ALowPixel,
                                  int32_t AHighPixel, const int32_t* AGaps, int32_t AGapCount, int32_t* AOutX,
                                  double* AOutY, int32_t* AOutFirst, int32_t* AOutGaps)
{
    const auto ColumnOf = [ALowPixel, AHighPixel](int32_t APixel) {
        // A missing pixel (the most negative integer) lands in the low column.
        return APixel < ALowPixel ? ALowPixel : (APixel > AHighPixel ? AHighPixel : APixel);
    };
    return DownsampleRuns(
        ACount, ALowPixel, AHighPixel, AGaps, AGapCount, AOutX, AOutY, AOutFirst, AOutGaps,
        [&](int32_t AFirst, int32_t& AColumn) {
            // Samples come column after column: the column's end is searched
            // for outward from the next sample, a few compares however many
            // samples it holds.
            const int32_t K = ColumnOf(AXPixels[AFirst]);
            AColumn = K;
            return FirstPast(AFirst + 1, ACount, AFirst + 1,
                             [&](int32_t i) { return i >= ACount || ColumnOf(AXPixels[i]) != K; });
        },
        [AY](int32_t AFirst, int32_t AEnd, double& ALo, double& AHi) {
            return QVArrayMinMax(AY + AFirst, size_t(AEnd - AFirst), ALo, AHi);
        });
}

TQVDownsampled QVDownsampleRampMinMax(const double* AY, const double* AX, int32_t ACount, double AScale, double AOffset,
                                      int32_t ALowPixel, int32_t AHighPixel, const int32_t* AGaps, int32_t AGapCount,
                                      int32_t* AOutX, double* AOutY, int32_t* AOutFirst, int32_t* AOutGaps,
                                      const TQVBlockExtremes* ABlocks, int32_t ABlockBase)
{
    if (ACount <= 0)
        return {};
    // The column of sample i, exactly as QVMapX and QVDownsampleMinMax give it.
    const auto ColumnAt = [=](int32_t i) {
        const int32_t P = QVPixelOf(AOffset + AX[i] * AScale);
        return P < ALowPixel ? ALowPixel : (P > AHighPixel ? AHighPixel : P);
    };
    // The pixel of sample i is close to the line through the ends: P0 + i * Slope. A run of
    // column K ends where that line crosses the next rounding boundary, K + 1/2 going right
    // or K - 1/2 going left; the exact end is then found by probing around the estimate.
    const double P0 = AOffset + AX[0] * AScale;
    const double Slope = ACount > 1 ? (AX[ACount - 1] - AX[0]) * AScale / double(ACount - 1) : 0.0;
    const auto Reduce = [=](int32_t AFirst, int32_t AEnd, double& ALo, double& AHi) {
        if (ABlocks)
            return ABlocks->MinMax(AY - ABlockBase, ABlockBase + AFirst, ABlockBase + AEnd, false, ALo, AHi);
        return QVArrayMinMax(AY + AFirst, size_t(AEnd - AFirst), ALo, AHi);
    };
    return DownsampleRuns(
        ACount, ALowPixel, AHighPixel, AGaps, AGapCount, AOutX, AOutY, AOutFirst, AOutGaps,
        [&](int32_t AFirst, int32_t& AColumn) {
            const int32_t K = ColumnAt(AFirst);
            AColumn = K;
            const double Edge = Slope < 0.0 ? K - 0.5 : K + 0.5;
            const double At = std::ceil((Edge - P0) / Slope);
            int32_t Guess = AFirst + 1;
            if (At > AFirst && At < ACount) // false for NaN and for no slope
                Guess = int32_t(At);
            else if (At >= ACount)
                Guess = ACount;
            // The next column's edge lies about as far on: its samples, X and summary are
            // fetched while this column is worked out, since on a long record they are far
            // apart in memory and nowhere in the cache.
            if (ABlocks && Guess > AFirst + 1) {
                const int64_t Next = int64_t(Guess) + (Guess - AFirst);
                if (Next < ACount) {
#if defined(__GNUC__) || defined(__clang__)
                    __builtin_prefetch(AX + Next);
#endif
                    ABlocks->Prefetch(AY - ABlockBase, ABlockBase + int32_t(Next));
                }
            }
            return FirstPast(AFirst + 1, ACount, Guess, [&](int32_t i) { return i >= ACount || ColumnAt(i) != K; });
        },
        Reduce);
}

void QVMapY(const double* AValues, int32_t ACount, double AScale, bool ALogarithmic, double APlotBase, int32_t* AOut)
{
    // Narrowing through a float costs precision only on views millions of pixels tall; the
    // bound check comes before the conversion so that it never sees an unrepresentable value.
    const auto Pixel = [APlotBase](double AScaled) {
        const float Narrow = static_cast<float>(APlotBase - AScaled);
        return QVPixelOf(static_cast<double>(Narrow));
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
    bool Open = false; // a piece is being drawn and its last point is the pen position
    for (int32_t i = 0; i < APoints.Count; ++i) {
        const bool Break = i > 0 && Gaps.BreaksAt(i);
        if (IsMissing(APoints, i)) {
            if (Open)
                ACanvas.SetPixel(ACanvas.GetPenPos().X, ACanvas.GetPenPos().Y, AEndColor);
            Open = false;
            continue;
        }
        const TPoint P = ScreenPoint(APoints.Vertical, APoints.X[i], APoints.Y[i]);
        if (Open && !Break) {
            ACanvas.LineTo(P.X, P.Y);
        } else {
            if (Open)
                ACanvas.SetPixel(ACanvas.GetPenPos().X, ACanvas.GetPenPos().Y, AEndColor);
            ACanvas.MoveTo(P.X, P.Y);
            Open = true;
        }
    }
    if (Open)
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
