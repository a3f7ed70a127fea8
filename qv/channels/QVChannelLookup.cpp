// Value lookup on the screen stage of the last painted frame: the hit test of a channel and
// its crossings with vertical and horizontal lines. Only the control's thread runs these,
// as it alone writes the screen stage.

#include "qv/axes/QVScopeXAxis.h"
#include "qv/axes/QVScopeYAxis.h"
#include "qv/channels/QVChannelPlot.h"
#include "qv/channels/QVHitGeometry.h"
#include "qv/channels/QVScopeChannel.h"
#include "qv/component/QVDisplayComponent.h"
#include "qv/component/QVDisplayOwner.h"
#include "qv/foundation/QVBlockExtremes.h"
#include "qv/foundation/QVLog10a.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace qv {

namespace {

// The index in AGaps (ascending draw-stage indexes) of the first gap above AIndex.
int32_t FirstGapAbove(const IQVIntegerBuffer& AGaps, int32_t AIndex)
{
    const int32_t* G = AGaps.Read();
    return int32_t(std::upper_bound(G, G + AGaps.GetSize(), AIndex) - G);
}

// Walks the gaps along the segments of a slice: Breaks(i) tells whether the line is broken
// between screen samples i and i + 1. Calls must come with rising i.
class TGapWalk {
public:
    TGapWalk(const IQVIntegerBuffer& AGaps, int32_t AStart, int32_t AFirst)
        : FGaps(AGaps.Read()), FCount(AGaps.GetSize()), FStart(AStart), FNext(FirstGapAbove(AGaps, AStart + AFirst))
    {}
    bool Breaks(int32_t AIndex)
    {
        const int32_t Target = FStart + AIndex + 1;
        while (FNext < FCount && FGaps[FNext] < Target)
            ++FNext;
        return FNext < FCount && FGaps[FNext] == Target;
    }

private:
    const int32_t* FGaps;
    int32_t FCount;
    int32_t FStart;
    int32_t FNext;
};

// The data view's draw rectangle; empty without one.
TRect ViewRectOf(const TQVDisplayOwner* ADisplay)
{
    const TQVDisplayComponent* View = ADisplay ? ADisplay->GetDataView() : nullptr;
    return View ? View->GetDrawRect() : TRect{};
}

inline TPoint ToScreen(bool AVertical, int32_t AAlong, int32_t AAcross)
{
    return AVertical ? TPoint{AAcross, AAlong} : TPoint{AAlong, AAcross};
}

inline bool Within(int32_t AValue, int32_t A, int32_t B)
{
    return AValue >= std::min(A, B) && AValue <= std::max(A, B);
}

inline int32_t Interpolate(int32_t A, int32_t B, double F)
{
    return A + int32_t(std::nearbyint(F * (double(B) - A)));
}

// The pixels of the screen samples a walk looks at, in rising order. A frame that cut a long
// ramp down to its columns leaves the samples unmapped: they are then mapped here a few at a
// time, with the frame's own mapping, so that a lookup touches only the samples it reads.
class TSamplePixels {
public:
    static constexpr int32_t Batch = 16;
    // AXInts and AYInts: the filled pixel buffers, or null to map from the values.
    // ARamp: X is a ramp, which counts up by one from its first value; when its ends say so,
    // the along pixels are worked out from the index, and X is not read.
    TSamplePixels(const int32_t* AXInts, const int32_t* AYInts, const double* AXS, const double* AYS, int32_t ACount,
                  bool ARamp, double AXScale, double AXOffset, double AYScale, bool AYLogarithmic, double AYBase)
        : FXInts(AXInts), FYInts(AYInts), FXS(AXS), FYS(AYS), FCount(ACount), FXScale(AXScale), FXOffset(AXOffset),
          FYScale(AYScale), FYLogarithmic(AYLogarithmic), FYBase(AYBase)
    {
        FCounted = ARamp && ACount > 0 && AXS[0] + double(ACount - 1) == AXS[ACount - 1];
        FX0 = ACount > 0 ? AXS[0] : 0.0;
    }
    // The pixels of sample AIndex; false when one is missing (a NaN).
    bool Get(int32_t AIndex, int32_t& AAlong, int32_t& AAcross)
    {
        if (FXInts) {
            AAlong = FXInts[AIndex];
            AAcross = FYInts[AIndex];
        } else {
            if (AIndex < FBegin || AIndex >= FEnd)
                Map(AIndex);
            AAlong = FAlong[size_t(AIndex - FBegin)];
            AAcross = FAcross[size_t(AIndex - FBegin)];
        }
        return AAlong != QVMissingPixel && AAcross != QVMissingPixel;
    }
    // The along pixel of sample AIndex alone.
    int32_t Along(int32_t AIndex) const
    {
        return FXInts ? FXInts[AIndex] : QVPixelOf(FXOffset + XAt(AIndex) * FXScale);
    }
    // The across pixel of a value.
    int32_t Across(double AValue) const
    {
        int32_t P = 0;
        QVMapY(&AValue, 1, FYScale, FYLogarithmic, FYBase, &P);
        return P;
    }
    // Values that lie AReach or more pixels across from AMouse: every value at or below ALow
    // maps to one side, every value at or above AHigh to the other (the pixel is the same
    // monotonic function of the value as in QVMapY). False when samples are not mapped here, or the mapping gives no such
    // bounds: a logarithmic axis, or pixels so far out that single precision blurs them.
    bool AcrossWindow(int32_t AMouse, double AReach, double& ALow, double& AHigh) const
    {
        if (FXInts || FYLogarithmic || !(FYScale != 0.0) || !std::isfinite(FYScale) || !std::isfinite(FYBase) ||
            !(std::fabs(double(AMouse)) + AReach < 1.0e6) || !(std::fabs(FYBase) < 1.0e6))
            return false;
        // Pixels at or past the mouse + reach on one side, at or below the mouse - reach on
        // the other. A scaled value rounds to pixel K from K - 0.5 to K + 0.5; a quarter of a
        // pixel inside that covers the narrowing to single precision (an eighth of a pixel
        // at most below 2^20) and the rounding of the division below.
        const double Far = FYBase - (std::ceil(AMouse + AReach) - 0.25);
        const double Near = FYBase - (std::floor(AMouse - AReach) + 0.25);
        const double A = Far / FYScale, B = Near / FYScale;
        ALow = std::min(A, B);
        AHigh = std::max(A, B);
        return true;
    }
    // Whether samples AFrom..ATo all lie at or below ALow, or all at or above AHigh.
    bool ValuesOutside(int32_t AFrom, int32_t ATo, double ALow, double AHigh) const
    {
        const double A = FYS[AFrom], B = FYS[ATo];
        return (A <= ALow && B <= ALow) || (A >= AHigh && B >= AHigh);
    }

private:
    // X of sample AIndex: the same number as the one stored, on a ramp counted from its start.
    double XAt(int32_t AIndex) const { return FCounted ? FX0 + double(AIndex) : FXS[AIndex]; }
    void Map(int32_t AIndex)
    {
        FBegin = AIndex;
        FEnd = std::min(AIndex + Batch, FCount);
        if (FCounted)
            for (int32_t i = AIndex; i < FEnd; ++i)
                FAlong[size_t(i - AIndex)] = QVPixelOf(FXOffset + XAt(i) * FXScale);
        else
            QVMapX(FXS + AIndex, FEnd - AIndex, FXScale, FXOffset, false, 0.0, FAlong.data(), nullptr);
        QVMapY(FYS + AIndex, FEnd - AIndex, FYScale, FYLogarithmic, FYBase, FAcross.data());
    }

    const int32_t* FXInts;
    const int32_t* FYInts;
    const double* FXS;
    const double* FYS;
    int32_t FCount;
    double FXScale, FXOffset, FYScale;
    bool FYLogarithmic;
    double FYBase;
    bool FCounted = false;
    double FX0 = 0.0;
    int32_t FBegin = 0, FEnd = 0;
    std::array<int32_t, Batch> FAlong, FAcross; // filled by Map before any read
};

// The first index in AFrom..ATo at which APast holds, given that it holds from some index on
// (or at ATo at the latest). Searched outward from AGuess: a good guess costs a few probes.
template <class TPast>
int32_t FirstPastFrom(int32_t AFrom, int32_t ATo, int64_t AGuess, TPast APast)
{
    int64_t Lo = int64_t(AFrom) - 1, Hi = ATo; // APast(Lo) is false (or Lo is before AFrom), APast(Hi) true
    const int64_t G = std::clamp<int64_t>(AGuess, AFrom, ATo);
    int64_t Step = 1;
    if (APast(int32_t(G))) {
        Hi = G;
        while (Hi - Step > Lo && APast(int32_t(Hi - Step))) {
            Hi -= Step;
            Step *= 2;
        }
        Lo = std::max(Lo, Hi - Step);
    } else {
        Lo = G;
        while (Lo + Step < Hi && !APast(int32_t(Lo + Step))) {
            Lo += Step;
            Step *= 2;
        }
        Hi = std::min(Hi, Lo + Step);
    }
    while (Hi - Lo > 1) {
        const int64_t Mid = Lo + (Hi - Lo) / 2;
        if (APast(int32_t(Mid)))
            Hi = Mid;
        else
            Lo = Mid;
    }
    return int32_t(Hi);
}

// What a walk over the samples around the mouse needs in order to pass over those out of reach.
struct TNearWalk {
    const TQVDisplayChannel& Channel;
    TSamplePixels& Pixels;
    int32_t MA, MC; // the mouse along and across the X axis
    int32_t Start;  // the draw-stage index of screen sample 0
    bool Skipping;  // the range is long enough to pass over by the block summary
    bool Ramp;      // along pixels grow (or fall) with the index

    // Whether every sample of AFrom..ATo lies AReach or farther from the mouse across, by the
    // block summary's extremes, whose pixels bound the samples' (pixels grow or fall with the
    // value). Samples with no number count as out of reach.
    bool OutOfReach(int32_t AFrom, int32_t ATo, double AReach) const
    {
        // Widened to whole blocks, so that the summary answers alone and no sample is read.
        constexpr int32_t B = TQVBlockExtremes::BlockSize;
        const int64_t From = int64_t(Start) + AFrom, End = int64_t(Start) + ATo + 1;
        double Lo = 0.0, Hi = 0.0;
        if (!Channel.GetDrawYExtremes(int32_t(From / B * B),
                                      int32_t(std::min<int64_t>((End + B - 1) / B * B, INT32_MAX)), false, Lo, Hi))
            return true;
        const int32_t P0 = Pixels.Across(Lo), P1 = Pixels.Across(Hi);
        if (P0 == QVMissingPixel || P1 == QVMissingPixel)
            return false;
        return std::max({0, std::min(P0, P1) - MC, MC - std::max(P0, P1)}) >= AReach;
    }

    // From item AIndex, the end of the longest run of summary blocks (sixteen groups of them,
    // a group, or one) that lies out of reach, held to ALast; -1 when there is none. At the
    // walk's first item and after a jump every size is tried up to its next boundary.
    int32_t SkipAcross(int32_t AIndex, int32_t ALast, double AReach, bool AAnywhere) const
    {
        constexpr int32_t Group = TQVBlockExtremes::BlockSize * TQVBlockExtremes::Fanout;
        for (const int32_t Size : {16 * Group, Group, TQVBlockExtremes::BlockSize}) {
            if ((Start + AIndex) % Size != 0 && !AAnywhere)
                continue;
            const int32_t End = std::min(ALast, (Start + AIndex) / Size * Size + Size - Start);
            if (End > AIndex && OutOfReach(AIndex, End, AReach))
                return End;
        }
        return -1;
    }

    // Calls AVisit(i) for the items AFirst..ALast in rising order, an item being sample i and
    // the ASpan samples after it (a point one sample, a segment two), passing over items whose
    // samples all lie AReach() or farther from the mouse along or across; AVisit returns false
    // to end the walk. On a ramp the items within reach along form one run of indexes, found
    // by a search on the along pixels each time the reach changes; the rest is passed over by
    // the block summary, a run of blocks at a time. The items visited come in the same order
    // as in a walk over all of them, so what is found does not change.
    template <class TReach, class TVisit>
    void Walk(int32_t AFirst, int32_t ALast, int32_t ASpan, TReach AReach, TVisit AVisit)
    {
        if (ALast < AFirst)
            return;
        const int32_t Samples = ALast + ASpan + 1; // one past the last sample read
        // Along pixels turned to grow with the index, and the mouse with them.
        const int64_t Q0 = Pixels.Along(AFirst), QN = Pixels.Along(Samples - 1);
        const int64_t Sign = QN < Q0 ? -1 : 1;
        const auto Q = [&](int32_t i) { return Sign * Pixels.Along(i); };
        const int64_t Mouse = Sign * MA;
        // Samples per pixel, for the first guess of a search.
        const double PerPixel = QN == Q0 ? 0.0 : double(Samples - 1 - AFirst) / double(Sign * (QN - Q0));
        const auto Guess = [&](double APixel) { return int64_t(AFirst + (APixel - double(Sign * Q0)) * PerPixel); };
        double Known = -1.0; // the reach the along run was found for
        int32_t Stop = ALast + 1;
        bool Anywhere = true;
        // Value bounds of the reach across, for passing over single items out of reach
        // without mapping their samples.
        double Windowed = -1.0, Low = 0.0, High = 0.0;
        bool Window = false;
        for (int32_t i = AFirst; i <= ALast;) {
            const double Reach = AReach();
            if (!(Reach > 0.0))
                return;
            if (Ramp && Reach != Known) {
                Known = Reach;
                // The first sample less than the reach before the mouse: the items before the
                // one that ends there lie out of reach. From the item that starts at or past
                // the reach after the mouse on, every item does.
                const int32_t Near = FirstPastFrom(i + ASpan, Samples, Guess(double(Mouse) - Reach), [&](int32_t j) {
                    return j >= Samples || double(Mouse - Q(j)) < Reach;
                });
                if (Near - ASpan > i) {
                    i = Near - ASpan;
                    Anywhere = true;
                }
                Stop = FirstPastFrom(i, ALast + 1, Guess(double(Mouse) + Reach),
                                     [&](int32_t j) { return j > ALast || double(Q(j) - Mouse) >= Reach; });
            }
            if (i >= Stop)
                return;
            if (Skipping && (Anywhere || (Start + i) % TQVBlockExtremes::BlockSize == 0)) {
                const int32_t End = SkipAcross(i, Stop - 1 + ASpan, Reach, Anywhere);
                // A run passed over ends on a boundary of its size: from there the sizes
                // aligned to it are tried.
                Anywhere = false;
                if (End >= 0) {
                    i = End;
                    continue;
                }
            }
            if (Skipping) {
                if (Reach != Windowed) {
                    Windowed = Reach;
                    Window = Pixels.AcrossWindow(MC, Reach, Low, High);
                }
                if (Window) {
                    // Up to the next block boundary, where the summary is asked again.
                    constexpr int32_t B = TQVBlockExtremes::BlockSize;
                    const int32_t Limit = int32_t(std::min<int64_t>(Stop, (int64_t(Start) + i) / B * B + B - Start));
                    int32_t j = i;
                    while (j < Limit && Pixels.ValuesOutside(j, j + ASpan, Low, High))
                        ++j;
                    if (j > i) {
                        i = j;
                        continue;
                    }
                }
            }
            if (!AVisit(i))
                return;
            ++i;
        }
    }
};

} // namespace

// ---- Base channel ----

double TQVDisplayChannel::HitTest(int32_t /*X*/, int32_t /*Y*/, TPoint& /*APoint*/,
                                  TQVHitDetectDirection& /*ADirection*/, double& /*AFraction*/,
                                  int32_t& /*ABeginIndex*/, int32_t& /*AEndIndex*/)
{
    return QVNoHitDistance;
}

bool TQVDisplayChannel::GetScreenPixel(int32_t AIndex, int32_t& AAlong, int32_t& AAcross) const
{
    UpdateScaledBuffers();
    AAlong = FScaledIntDrawBufferX->Read()[AIndex];
    AAcross = FScaledIntDrawBufferY->Read()[AIndex];
    return AAlong != QVMissingPixel && AAcross != QVMissingPixel;
}

void TQVDisplayChannel::CalcVIntersections(const TQVIntersectionCallback& ACallback, void* AData, double AValue) const
{
    CalcIntersections(ACallback, AData, AValue, true);
}

void TQVDisplayChannel::CalcHIntersections(const TQVIntersectionCallback& ACallback, void* AData, double AValue) const
{
    CalcIntersections(ACallback, AData, AValue, false);
}

void TQVDisplayChannel::CalcIntersections(const TQVIntersectionCallback& ACallback, void* AData, double AValue,
                                          bool AVerticalLine) const
{
    const int32_t c = std::min(FXScreenDataBuffer->GetSize(), FYScreenDataBuffer->GetSize());
    const TQVDisplayAxis* XAxis = GetXAxis();
    const TQVDisplayAxis* YAxis = GetYAxis();
    if (c < 2 || !XAxis || !YAxis)
        return;
    const double* XS = FXScreenDataBuffer->Read();
    const double* YS = FYScreenDataBuffer->Read();
    const bool XLog = XAxis->GetIntScaleMode() != smLinear;
    int32_t First = 0, Last = c - 1;
    // On a long ramp only the samples around an X value can cross a vertical line there. A
    // value of Y can lie anywhere in the record: a horizontal line looks at every segment.
    if (AVerticalLine && !XLog && FDrawIsRamp && FScreenUsedWidth > 0 && FScreenUsedWidth < c - 8) {
        const double X0 = XS[0], XN = XS[c - 1];
        if (XN > X0) {
            const double R = std::max((XN - X0) * 2.0 / FScreenUsedWidth, 2.0);
            const double Lo = std::trunc((AValue - X0 - R) * (c - 8) / (XN - X0)) - 2.0;
            const double Hi = std::nearbyint((AValue - X0 + R) * (c + 8) / (XN - X0)) + 2.0;
            if (!(Lo < double(c)) || !(Hi >= 0.0))
                return;
            First = int32_t(std::max(0.0, Lo));
            Last = int32_t(std::min(double(Last), Hi));
            // A ramp's X grows with the index: only the segments from the last sample below
            // the value to the last one at it can cross it, and a search finds them.
            if (First < Last && XS[First] <= XS[Last]) {
                const double* K = std::lower_bound(XS + First, XS + Last + 1, AValue);
                const double* U = std::upper_bound(K, XS + Last + 1, AValue);
                const int32_t NewFirst = std::max(First, int32_t(K - XS) - 1);
                Last = std::min(Last, int32_t(U - XS));
                First = NewFirst;
            }
        }
    }
    // The key is the axis whose values are compared with AValue: X for a vertical line, Y for
    // a horizontal one; the other axis gives the value reported at the crossing. Pixels are
    // kept along and across the X axis, as the screen stage holds them.
    const double* Key = AVerticalLine ? XS : YS;
    const double* Other = AVerticalLine ? YS : XS;
    const TQVDisplayAxis* OtherAxis = AVerticalLine ? YAxis : XAxis;
    const bool YLog = YAxis->GetIntScaleMode() != smLinear;
    const bool KeyLog = AVerticalLine ? XLog : YLog;
    const bool OtherLog = AVerticalLine ? YLog : XLog;
    const bool Vertical = GetDisplay() && GetDisplay()->GetIsVertical();
    const double V = KeyLog ? QVLog10a(AValue) : AValue;
    const auto KeyOf = [&](int32_t i) { return KeyLog ? QVLog10a(Key[i]) : Key[i]; };
    TGapWalk Gaps(*FDrawGapsBuffer, FScreenStartIndex, First);
    const bool Step = FChannelMode == cmStep;
    const TRect View = ViewRectOf(GetDisplay());
    for (int32_t i = First; i < Last; ++i) {
        if (Gaps.Breaks(i))
            continue;
        const double A = KeyOf(i), B = KeyOf(i + 1);
        double F;
        bool Falling = false;
        if (A == V)
            F = 0.0;
        else if (A < V && B > V)
            F = (V - A) / (B - A);
        else if (A > V && B < V) {
            F = (V - B) / (A - B);
            Falling = true;
        } else
            continue;
        int32_t Along1 = 0, Across1 = 0, Along2 = 0, Across2 = 0;
        if (!GetScreenPixel(i, Along1, Across1) || !GetScreenPixel(i + 1, Along2, Across2))
            continue;
        const int32_t K1 = AVerticalLine ? Along1 : Across1, K2 = AVerticalLine ? Along2 : Across2;
        const int32_t O1 = AVerticalLine ? Across1 : Along1, O2 = AVerticalLine ? Across2 : Along2;
        // A falling segment blends its pixels from the right end toward the left one, yet
        // reports the position i + f and blends its value from sample i.
        const int32_t KeyPixel = Falling ? Interpolate(K2, K1, F) : Interpolate(K1, K2, F);
        int32_t OtherPixel;
        double OtherValue;
        if (Step) {
            // The tread runs flat at sample i's value, and rises at the next sample: a
            // horizontal line crosses on that riser, unless the value is the sample's own.
            const bool Riser = !AVerticalLine && F != 0.0;
            OtherPixel = Riser ? O2 : O1;
            OtherValue = Other[Riser ? i + 1 : i];
        } else {
            OtherPixel = Falling ? Interpolate(O2, O1, F) : Interpolate(O1, O2, F);
            if (OtherLog)
                OtherValue = OtherAxis->ScaleTickToData(OtherAxis->GetPositionFromMouse(
                    OtherPixel, OtherAxis->GetScaleTick().GetZoomed().GetMin().GetValue(),
                    OtherAxis->GetScaleTick().GetZoomed().GetMax().GetValue(), View));
            else
                OtherValue = Other[i] + F * (Other[i + 1] - Other[i]);
        }
        if (std::isnan(OtherValue))
            continue;
        const TPoint P =
            AVerticalLine ? ToScreen(Vertical, KeyPixel, OtherPixel) : ToScreen(Vertical, OtherPixel, KeyPixel);
        if (AVerticalLine)
            ACallback(AData, P.X, P.Y, i + F, AValue, OtherValue, Vertical);
        else
            ACallback(AData, P.X, P.Y, i + F, OtherValue, AValue, Vertical);
    }
}

TQVScopeRealPoints TQVDisplayChannel::GetYPointsAtValue(double XValue) const
{
    TQVScopeRealPoints Result;
    CalcVIntersections([](void* AData, int32_t, int32_t, double, double, double AYValue,
                          bool) { static_cast<TQVScopeRealPoints*>(AData)->push_back(AYValue); },
                       &Result, XValue);
    return Result;
}

TQVScopeRealPoints TQVDisplayChannel::GetXPointsAtValue(double YValue) const
{
    TQVScopeRealPoints Result;
    CalcHIntersections([](void* AData, int32_t, int32_t, double, double AXValue, double,
                          bool) { static_cast<TQVScopeRealPoints*>(AData)->push_back(AXValue); },
                       &Result, YValue);
    return Result;
}

// ---- Scope channel ----

bool TQVScopeChannel::GetScreenPixel(int32_t AIndex, int32_t& AAlong, int32_t& AAcross) const
{
    // Only a ramp on a linear X axis is downsampled, so a single sample maps as QVMapX and
    // QVMapY map the whole slice.
    if ((FScaledXStale || FScaledYStale) && !FScaledMapping.XLogarithmic) {
        const TScaledMapping& M = FScaledMapping;
        const double Scale = M.XScale * M.XRatio;
        QVMapX(FXScreenDataBuffer->Read() + AIndex, 1, Scale, M.XOffset, false, 0.0, &AAlong, nullptr);
        QVMapY(FYScreenDataBuffer->Read() + AIndex, 1, M.YScale, M.YLogarithmic, M.YBase, &AAcross);
        return AAlong != QVMissingPixel && AAcross != QVMissingPixel;
    }
    return TQVDisplayChannel::GetScreenPixel(AIndex, AAlong, AAcross);
}

double TQVScopeChannel::HitTest(int32_t X, int32_t Y, TPoint& APoint, TQVHitDetectDirection& ADirection,
                                double& AFraction, int32_t& ABeginIndex, int32_t& AEndIndex)
{
    const int32_t c = std::min(FXScreenDataBuffer->GetSize(), FYScreenDataBuffer->GetSize());
    if (c == 0 || (FXDrawMinValue == -1 && FXDrawMaxValue == -1))
        return QVNoHitDistance;
    const bool Vertical = GetDisplay() && GetDisplay()->GetIsVertical();
    // The mouse along and across the X axis.
    const int32_t MA = Vertical ? Y : X;
    const int32_t MC = Vertical ? X : Y;
    const int32_t Start = FScreenStartIndex;

    // Step 1: the samples tested. On a long ramp only those around the mouse's column.
    int32_t First = 0, Last = c - 1;
    if (!FCurrentXLogarithmic && FDrawIsRamp && FScreenUsedWidth > 0 && FScreenUsedWidth < c - 8) {
        const int64_t W = FScreenUsedWidth;
        const int64_t R = std::max<int64_t>(2 * W / (c - 8), 2);
        const int64_t O = int64_t(MA) + FCurrentXDataOffset - GetDisplayOffset();
        // The lower bound scales by c - 8 and the upper by c + 8, which widens the range.
        First = int32_t(std::clamp<int64_t>((O - R) * (c - 8) / W - 4, 0, c));
        Last = int32_t(std::clamp<int64_t>((O + R) * (c + 8) / W + 4, -1, c - 1));
    }
    const auto Inside = [&](int32_t AGrow) {
        return MA >= FXDrawMinValue - AGrow && MA <= FXDrawMaxValue + AGrow && MC >= FYDrawMinValue - AGrow &&
               MC <= FYDrawMaxValue + AGrow;
    };
    const auto Found = [&](int32_t AAlong, int32_t AAcross) { APoint = ToScreen(Vertical, AAlong, AAcross); };
    ADirection = hddBoth;
    // A frame that cut a long ramp to its columns left the samples unmapped (see
    // UpdateScaledBuffers): they are mapped as the walk reaches them.
    const TScaledMapping& M = FScaledMapping;
    const bool MapHere = (FScaledXStale || FScaledYStale) && !M.XLogarithmic;
    if (!MapHere)
        UpdateScaledBuffers();
    const double* XS = FXScreenDataBuffer->Read();
    TSamplePixels Pixels(MapHere ? nullptr : FScaledIntDrawBufferX->Read(),
                         MapHere ? nullptr : FScaledIntDrawBufferY->Read(), XS, FYScreenDataBuffer->Read(), c,
                         FDrawIsRamp, M.XScale * M.XRatio, M.XOffset, M.YScale, M.YLogarithmic, M.YBase);
    const bool Skipping = Last - First > 4 * TQVBlockExtremes::BlockSize;
    // A ramp's X counts up, so its along pixels grow or fall with the index.
    const bool Ramp = Skipping && FDrawIsRamp && !FCurrentXLogarithmic && Pixels.Along(First) != QVMissingPixel &&
                      Pixels.Along(Last) != QVMissingPixel;
    TNearWalk Near{*this, Pixels, MA, MC, Start, Skipping, Ramp};

    // Step 2: a point symbol or the dot of a point channel under the mouse is an exact hit.
    const bool PointsVisible = FPoints->GetVisible();
    if (FChannelMode == cmPoint || FChannelMode == cmStep || PointsVisible) {
        const int32_t P = PointsVisible ? std::max<int32_t>(int32_t(FPoints->GetSize()), 2) : 2;
        bool Hit = false;
        if (Inside(P))
            Near.Walk(
                First, Last, 0, [&] { return P + 1.0; },
                [&](int32_t i) {
                    int32_t SA = 0, SC = 0;
                    if (!Pixels.Get(i, SA, SC) || std::abs(MA - SA) > P || std::abs(MC - SC) > P)
                        return true;
                    AFraction = 0.0;
                    Found(SA, SC);
                    ABeginIndex = AEndIndex = i + Start;
                    Hit = true;
                    return false;
                });
        if (Hit)
            return 0.0;
    }

    // Step 3: the line, steps or bars.
    if (!Inside(3) || c < 2)
        return QVNoHitDistance;
    double Best = QVNoHitDistance;
    const TPoint Mouse{MA, MC};
    if (FChannelMode == cmLine) {
        TGapWalk Gaps(*FDrawGapsBuffer, Start, First);
        const int32_t w = (FWidth + 1) / 2;
        // A wider line leaves less room around it.
        const double Tolerance = QVHitTolerance - w;
        Near.Walk(
            First, Last - 1, 1, [&] { return std::min(Best, Tolerance); },
            [&](int32_t i) {
                int32_t A1 = 0, C1 = 0, A2 = 0, C2 = 0;
                if (!Pixels.Get(i, A1, C1) || !Pixels.Get(i + 1, A2, C2) || Gaps.Breaks(i))
                    return true;
                // Both ends more than 3 pixels to one side: too far to measure.
                if ((A1 < MA - 3 && A2 < MA - 3) || (A1 > MA + 3 && A2 > MA + 3) || (C1 < MC - 3 && C2 < MC - 3) ||
                    (C1 > MC + 3 && C2 > MC + 3))
                    return true;
                double Ratio = 0.0;
                TPoint Nearest{};
                const double D = QPDistancePointToLine(Mouse, TPoint{A1, C1}, TPoint{A2, C2}, Ratio, Nearest);
                if (D < Tolerance && D < Best) {
                    AFraction = Ratio;
                    Found(Nearest.X, Nearest.Y);
                    Best = std::max(D - w, 0.0);
                    ABeginIndex = i + Start;
                    AEndIndex = i + 1 + Start;
                }
                return true;
            });
    } else if (FChannelMode == cmStep) {
        TGapWalk Gaps(*FDrawGapsBuffer, Start, First);
        bool Corner = false;
        // Every rule below asks for the mouse within 2 pixels both ways of the step's box.
        Near.Walk(
            First, Last - 1, 1, [] { return 3.0; },
            [&](int32_t i) {
                int32_t A1 = 0, C1 = 0, A2 = 0, C2 = 0;
                if (!Pixels.Get(i, A1, C1) || !Pixels.Get(i + 1, A2, C2) || Gaps.Breaks(i))
                    return true;
                // Along to the next sample at this one's level, then across (the riser).
                if (std::abs(MA - A2) <= 2 && std::abs(MC - C1) <= 2) {
                    Found(A2, C1);
                    ABeginIndex = i + Start;
                    AEndIndex = i + 1 + Start;
                    ADirection = hddPoint;
                    Corner = true;
                    return false;
                }
                // A strip beside the riser or the tread, nearer than the best so far.
                const auto Strip = [&](int32_t ADistance, int32_t AAlong, int32_t AAcross, double AFractionAt,
                                       TQVHitDetectDirection ADirectionAt) {
                    if (ADistance < Best) {
                        Best = ADistance;
                        Found(AAlong, AAcross);
                        ABeginIndex = i + Start;
                        AEndIndex = i + 1 + Start;
                        AFraction = AFractionAt;
                        ADirection = ADirectionAt;
                    }
                };
                if (std::abs(MA - A2) <= 2 && Within(MC, C1, C2))
                    Strip(std::abs(MA - A2), A2, MC, C2 == C1 ? 0.0 : double(MC - C1) / double(C2 - C1),
                          Vertical ? hddHorizontal : hddVertical);
                else if (std::abs(MC - C1) <= 2 && Within(MA, A1, A2))
                    Strip(std::abs(MC - C1), MA, C1, A2 == A1 ? 0.0 : double(MA - A1) / double(A2 - A1),
                          Vertical ? hddVertical : hddHorizontal);
                return true;
            });
        if (Corner)
            return 0.0;
    } else if (FChannelMode == cmBar) {
        const TRect View = ViewRectOf(GetDisplay());
        const TQVDisplayAxis* YAxis = GetPlotYAxis();
        const bool Reversed = YAxis && YAxis->GetIsReversedDirect();
        const int32_t Low = Vertical ? View.Left : View.Top;
        const int32_t High = (Vertical ? View.Right : View.Bottom - 1) + 1;
        int32_t Base = 0;
        if (FShadeMode == csmTop)
            Base = Reversed ? High : Low;
        else if (FShadeMode == csmBottom)
            Base = Reversed ? Low : High;
        const int32_t Far = Vertical ? View.Right : View.Bottom - 1;
        const int32_t Zero = Far - QVClampRound(FCurrentYOffset, -int32_t(QVPixelClipBound), int32_t(QVPixelClipBound));
        for (int32_t i = First; i <= Last; ++i) {
            int32_t SA = 0, SC = 0;
            if (!Pixels.Get(i, SA, SC))
                continue;
            const TRect R = QVBarRect(FShadeMode, Vertical, SA, SC, FWidth, 0, Base, Zero);
            if (X < R.Left || X >= R.Right || Y < R.Top || Y >= R.Bottom)
                continue;
            Found(SA, MC);
            const double Divisor = Vertical ? double(SC) - Zero + 1.0 : double(SC) - Zero;
            AFraction = Divisor == 0.0 ? 0.0 : (double(SC) - MC) / Divisor;
            ABeginIndex = AEndIndex = i + Start;
            return 0.0;
        }
    }
    return Best;
}

} // namespace qv
