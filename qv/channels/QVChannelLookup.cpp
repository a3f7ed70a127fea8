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
    const int32_t c = std::min(FXScreenDataBuffer->GetSize(), FYScreenDataBuffer->GetSize());
    const TQVDisplayAxis* XAxis = GetXAxis();
    const TQVDisplayAxis* YAxis = GetYAxis();
    if (c < 2 || !XAxis || !YAxis)
        return;
    const double* XS = FXScreenDataBuffer->Read();
    const double* YS = FYScreenDataBuffer->Read();
    const bool XLog = XAxis->GetIntScaleMode() != smLinear;
    const bool YLog = YAxis->GetIntScaleMode() != smLinear;
    const bool Vertical = GetDisplay() && GetDisplay()->GetIsVertical();
    int32_t First = 0, Last = c - 1;
    // On a long ramp only the samples around the value can cross it.
    if (!XLog && FDrawIsRamp && FScreenUsedWidth > 0 && FScreenUsedWidth < c - 8) {
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
    const double V = XLog ? QVLog10a(AValue) : AValue;
    const auto XOf = [&](int32_t i) { return XLog ? QVLog10a(XS[i]) : XS[i]; };
    TGapWalk Gaps(*FDrawGapsBuffer, FScreenStartIndex, First);
    const bool Step = FChannelMode == cmStep;
    const TRect View = ViewRectOf(GetDisplay());
    for (int32_t i = First; i < Last; ++i) {
        if (Gaps.Breaks(i))
            continue;
        const double A = XOf(i), B = XOf(i + 1);
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
        int32_t A1 = 0, C1 = 0, A2 = 0, C2 = 0;
        if (!GetScreenPixel(i, A1, C1) || !GetScreenPixel(i + 1, A2, C2))
            continue;
        // A falling segment blends its pixels from the right end toward the left one, yet
        // reports the position i + f and blends its value from sample i.
        const int32_t Along = Falling ? Interpolate(A2, A1, F) : Interpolate(A1, A2, F);
        int32_t Across;
        double YValue;
        if (Step) {
            // The tread runs flat at sample i's value.
            Across = C1;
            YValue = YS[i];
        } else {
            Across = Falling ? Interpolate(C2, C1, F) : Interpolate(C1, C2, F);
            if (YLog)
                YValue = YAxis->ScaleTickToData(
                    YAxis->GetPositionFromMouse(Across, YAxis->GetScaleTick().GetZoomed().GetMin().GetValue(),
                                                YAxis->GetScaleTick().GetZoomed().GetMax().GetValue(), View));
            else
                YValue = YS[i] + F * (YS[i + 1] - YS[i]);
        }
        if (std::isnan(YValue))
            continue;
        const TPoint P = ToScreen(Vertical, Along, Across);
        ACallback(AData, P.X, P.Y, i + F, AValue, YValue, Vertical);
    }
}

void TQVDisplayChannel::CalcHIntersections(const TQVIntersectionCallback& ACallback, void* AData, double AValue) const
{
    const int32_t c = std::min(FXScreenDataBuffer->GetSize(), FYScreenDataBuffer->GetSize());
    const TQVDisplayAxis* XAxis = GetXAxis();
    const TQVDisplayAxis* YAxis = GetYAxis();
    if (c < 2 || !XAxis || !YAxis)
        return;
    const double* XS = FXScreenDataBuffer->Read();
    const double* YS = FYScreenDataBuffer->Read();
    const bool XLog = XAxis->GetIntScaleMode() != smLinear;
    const bool YLog = YAxis->GetIntScaleMode() != smLinear;
    const bool Vertical = GetDisplay() && GetDisplay()->GetIsVertical();
    const double V = YLog ? QVLog10a(AValue) : AValue;
    const auto YOf = [&](int32_t i) { return YLog ? QVLog10a(YS[i]) : YS[i]; };
    TGapWalk Gaps(*FDrawGapsBuffer, FScreenStartIndex, 0);
    const bool Step = FChannelMode == cmStep;
    const TRect View = ViewRectOf(GetDisplay());
    for (int32_t i = 0; i < c - 1; ++i) {
        if (Gaps.Breaks(i))
            continue;
        const double A = YOf(i), B = YOf(i + 1);
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
        int32_t A1 = 0, C1 = 0, A2 = 0, C2 = 0;
        if (!GetScreenPixel(i, A1, C1) || !GetScreenPixel(i + 1, A2, C2))
            continue;
        const int32_t Across = Falling ? Interpolate(C2, C1, F) : Interpolate(C1, C2, F);
        int32_t Along;
        double XValue;
        if (Step) {
            // A step rises at the next sample: the crossing stands on that riser, unless
            // the value is the sample's own.
            Along = F == 0.0 ? A1 : A2;
            XValue = F == 0.0 ? XS[i] : XS[i + 1];
        } else {
            Along = Falling ? Interpolate(A2, A1, F) : Interpolate(A1, A2, F);
            if (XLog)
                XValue = XAxis->ScaleTickToData(
                    XAxis->GetPositionFromMouse(Along, XAxis->GetScaleTick().GetZoomed().GetMin().GetValue(),
                                                XAxis->GetScaleTick().GetZoomed().GetMax().GetValue(), View));
            else
                XValue = XS[i] + F * (XS[i + 1] - XS[i]);
        }
        if (std::isnan(XValue))
            continue;
        const TPoint P = ToScreen(Vertical, Along, Across);
        ACallback(AData, P.X, P.Y, i + F, XValue, AValue, Vertical);
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
    // How far the mouse lies, at the least, from every sample of AFrom..ATo: across, from the
    // pixels of the extremes in the block summary of the draw stage (pixels grow or fall with
    // the value), and on a ramp along too, whose X grows with the index. What lies in that box
    // is no nearer than the box, so a long range is passed over a block at a time without
    // changing what is found. AChebyshev measures the larger of the two offsets instead of
    // the straight distance. Missing samples are infinitely far.
    const bool AlongBound = FDrawIsRamp;
    // The along pixel of screen sample AIndex alone (a missing one reads as QVMissingPixel).
    const auto AlongPixel = [&](int32_t AIndex) {
        if (FScaledXStale && !FScaledMapping.XLogarithmic) {
            int32_t P = 0;
            QVMapX(FXScreenDataBuffer->Read() + AIndex, 1, FScaledMapping.XScale * FScaledMapping.XRatio,
                   FScaledMapping.XOffset, false, 0.0, &P, nullptr);
            return P;
        }
        UpdateScaledBuffers();
        return FScaledIntDrawBufferX->Read()[AIndex];
    };
    const auto BoxDistance = [&](int32_t AFrom, int32_t ATo, bool AChebyshev, double AReach) {
        double Lo = 0.0, Hi = 0.0;
        if (!GetDrawYExtremes(Start + AFrom, Start + ATo + 1, false, Lo, Hi))
            return QVNoHitDistance;
        const double Values[2] = {Lo, Hi};
        int32_t Pixels[2] = {0, 0};
        QVMapY(Values, 2, FScaledMapping.YScale, FScaledMapping.YLogarithmic, FScaledMapping.YBase, Pixels);
        if (Pixels[0] == QVMissingPixel || Pixels[1] == QVMissingPixel)
            return 0.0;
        const double DC = std::max({0, std::min(Pixels[0], Pixels[1]) - MC, MC - std::max(Pixels[0], Pixels[1])});
        // Far enough across alone: the samples' X need not be read.
        if (DC >= AReach || !AlongBound)
            return DC;
        const int32_t A0 = AlongPixel(AFrom), AN = AlongPixel(ATo);
        if (A0 == QVMissingPixel || AN == QVMissingPixel)
            return DC;
        const double DA = std::max({0, std::min(A0, AN) - MA, MA - std::max(A0, AN)});
        return AChebyshev ? std::max(DA, DC) : std::hypot(DA, DC);
    };
    // From sample AIndex, the end of the longest run of summary blocks (sixteen groups of
    // them, a group, or one) whose box lies at AReach or farther, held to ALast; -1 when
    // there is none. Called at block starts only.
    const bool Skipping = Last - First > 4 * TQVBlockExtremes::BlockSize;
    const auto SkipTo = [&](int32_t AIndex, int32_t ALast, double AReach, bool AChebyshev) {
        constexpr int32_t Group = TQVBlockExtremes::BlockSize * TQVBlockExtremes::Fanout;
        for (const int32_t Size : {16 * Group, Group, TQVBlockExtremes::BlockSize}) {
            if ((Start + AIndex) % Size != 0 && AIndex != First)
                continue;
            const int32_t End = std::min(ALast, (Start + AIndex) / Size * Size + Size - Start);
            if (End > AIndex && BoxDistance(AIndex, End, AChebyshev, AReach) >= AReach)
                return End;
        }
        return -1;
    };

    // Step 2: a point symbol or the dot of a point channel under the mouse is an exact hit.
    const bool PointsVisible = FPoints->GetVisible();
    if (FChannelMode == cmPoint || FChannelMode == cmStep || PointsVisible) {
        const int32_t P = PointsVisible ? std::max<int32_t>(int32_t(FPoints->GetSize()), 2) : 2;
        if (Inside(P))
            for (int32_t i = First; i <= Last; ++i) {
                if (Skipping && (i == First || (Start + i) % TQVBlockExtremes::BlockSize == 0)) {
                    const int32_t End = SkipTo(i, Last, P + 1.0, true);
                    if (End >= 0) {
                        i = End - 1;
                        continue;
                    }
                }
                int32_t SA = 0, SC = 0;
                if (!GetScreenPixel(i, SA, SC))
                    continue;
                if (std::abs(MA - SA) <= P && std::abs(MC - SC) <= P) {
                    AFraction = 0.0;
                    Found(SA, SC);
                    ABeginIndex = AEndIndex = i + Start;
                    return 0.0;
                }
            }
    }

    // Step 3: the line, steps or bars.
    if (!Inside(3) || c < 2)
        return QVNoHitDistance;
    double Best = QVNoHitDistance;
    const TPoint Mouse{MA, MC};
    if (FChannelMode == cmLine || FChannelMode == cmStep) {
        TGapWalk Gaps(*FDrawGapsBuffer, Start, First);
        const int32_t w = (FWidth + 1) / 2;
        int32_t A1 = 0, C1 = 0;
        bool Have1 = First <= Last && GetScreenPixel(First, A1, C1);
        for (int32_t i = First; i < Last; ++i) {
            if (Skipping && (i == First || (Start + i) % TQVBlockExtremes::BlockSize == 0)) {
                // Nothing up to the block's end lies within reach: go on from there.
                const double Reach = FChannelMode == cmLine ? std::min(Best, QVHitTolerance - w) : 3.0;
                const int32_t End = SkipTo(i, Last, Reach, FChannelMode != cmLine);
                if (End >= 0) {
                    i = End - 1;
                    Have1 = GetScreenPixel(End, A1, C1);
                    continue;
                }
            }
            int32_t A2 = 0, C2 = 0;
            const bool Have2 = GetScreenPixel(i + 1, A2, C2);
            const bool Use = Have1 && Have2 && !Gaps.Breaks(i);
            const int32_t PA1 = A1, PC1 = C1;
            Have1 = Have2;
            A1 = A2;
            C1 = C2;
            if (!Use)
                continue;
            if (FChannelMode == cmLine) {
                // Both ends more than 3 pixels to one side: too far to measure.
                if ((PA1 < MA - 3 && A2 < MA - 3) || (PA1 > MA + 3 && A2 > MA + 3) || (PC1 < MC - 3 && C2 < MC - 3) ||
                    (PC1 > MC + 3 && C2 > MC + 3))
                    continue;
                double Ratio = 0.0;
                TPoint Nearest{};
                const double D = QPDistancePointToLine(Mouse, TPoint{PA1, PC1}, TPoint{A2, C2}, Ratio, Nearest);
                // A wider line leaves less room around it.
                if (D < QVHitTolerance - w && D < Best) {
                    AFraction = Ratio;
                    Found(Nearest.X, Nearest.Y);
                    Best = std::max(D - w, 0.0);
                    ABeginIndex = i + Start;
                    AEndIndex = i + 1 + Start;
                }
                continue;
            }
            // A step: along to the next sample at this one's level, then across (the riser).
            if (std::abs(MA - A2) <= 2 && std::abs(MC - PC1) <= 2) {
                Found(A2, PC1);
                ABeginIndex = i + Start;
                AEndIndex = i + 1 + Start;
                ADirection = hddPoint;
                return 0.0;
            }
            if (std::abs(MA - A2) <= 2 && Within(MC, PC1, C2)) {
                const double D = std::abs(MA - A2);
                if (D < Best) {
                    Best = D;
                    Found(A2, MC);
                    ABeginIndex = i + Start;
                    AEndIndex = i + 1 + Start;
                    AFraction = C2 == PC1 ? 0.0 : double(MC - PC1) / double(C2 - PC1);
                    ADirection = Vertical ? hddHorizontal : hddVertical;
                }
            } else if (std::abs(MC - PC1) <= 2 && Within(MA, PA1, A2)) {
                const double D = std::abs(MC - PC1);
                if (D < Best) {
                    Best = D;
                    Found(MA, PC1);
                    ABeginIndex = i + Start;
                    AEndIndex = i + 1 + Start;
                    AFraction = A2 == PA1 ? 0.0 : double(MA - PA1) / double(A2 - PA1);
                    ADirection = Vertical ? hddVertical : hddHorizontal;
                }
            }
        }
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
            if (!GetScreenPixel(i, SA, SC))
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
