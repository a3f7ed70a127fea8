// The plotting arithmetic on plain arrays: the screen slice and the downsample threshold,
// min/max columns, value-to-pixel mapping with its clipping, and the drawing of lines, steps
// and bars from pixel points.
#include "qv/channels/QVChannelPlot.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace qv;

namespace {
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();
} // namespace

TEST(ChannelPlotSlice, RampIsCutToTheViewWithMarginsAndOtherRecordsStayWhole)
{
    // 2000 samples at X 0..1999, view 500..999, 100 used columns: downsampled, no margin in front.
    TQVScreenSlice S = QVScreenSlice(2000, true, false, 100, 0, 1999, 500, 999);
    EXPECT_EQ(S.Start, 500);
    EXPECT_EQ(S.Count, 499 + 8);
    // 250 used columns: sample by sample, so the start moves 4 back.
    S = QVScreenSlice(2000, true, false, 250, 0, 1999, 500, 999);
    EXPECT_EQ(S.Start, 496);
    EXPECT_EQ(S.Count, 507);
    // A logarithmic axis always keeps the margin in front.
    EXPECT_EQ(QVScreenSlice(2000, true, true, 100, 0, 1999, 500, 999).Start, 496);
    // View starting before the data: from 0, ending at the view's end plus 8.
    S = QVScreenSlice(2000, true, false, 100, 0, 1999, -100, 999);
    EXPECT_EQ(S.Start, 0);
    EXPECT_EQ(S.Count, 999 + 8); // round(2000 * 999 / 1999)
    // A view ending at the data's end keeps the count at the record's end.
    S = QVScreenSlice(2000, true, false, 100, 0, 1999, 1900, 3000);
    EXPECT_EQ(S.Start + S.Count, 2000);
    // Views wholly off the data give nothing, and nothing out of range.
    S = QVScreenSlice(2000, true, false, 0, 0, 1999, 5000, 6000);
    EXPECT_EQ(S.Count, 0);
    EXPECT_LE(S.Start, 2000);
    EXPECT_EQ(QVScreenSlice(2000, true, false, 0, 0, 1999, -6000, -5000).Count, 0);
    // A record that is not a ramp is never cut, and a one-sample ramp does not divide by 0.
    S = QVScreenSlice(2000, false, false, 100, 0, 1999, 500, 999);
    EXPECT_EQ(S.Start, 0);
    EXPECT_EQ(S.Count, 2000);
    S = QVScreenSlice(1, true, false, 100, 5, 5, 0, 10);
    EXPECT_EQ(S.Count, 1);
}

TEST(ChannelPlotSlice, DownsamplingStartsOnlyAboveTwicePlusEight)
{
    EXPECT_FALSE(QVIsDownsampled(true, false, 500, 1008));
    EXPECT_TRUE(QVIsDownsampled(true, false, 500, 1009));
    EXPECT_FALSE(QVIsDownsampled(true, true, 500, 1000000)); // logarithmic X
    EXPECT_FALSE(QVIsDownsampled(false, false, 500, 1000000)); // explicit X
    // No used column: a long ramp out of the view is cut to nothing rather than drawn.
    EXPECT_TRUE(QVIsDownsampled(true, false, 0, 9));
}

TEST(ChannelPlotSlice, UsedWidthFollowsTheShareOfTheViewTheDataCovers)
{
    EXPECT_EQ(QVScreenUsedWidth(500, 0, 100, 0, 100), 500);
    EXPECT_EQ(QVScreenUsedWidth(500, -10, 200, 0, 100), 500);
    EXPECT_EQ(QVScreenUsedWidth(500, 0, 50, 0, 100), 250);
    EXPECT_EQ(QVScreenUsedWidth(500, 25, 50, 0, 100), 125);
    EXPECT_EQ(QVScreenUsedWidth(500, 200, 300, 0, 100), 0); // data right of the view
    EXPECT_EQ(QVScreenUsedWidth(500, 0, Inf, 0, 100), 500);
    EXPECT_EQ(QVScreenUsedWidth(500, -Inf, -Inf, 0, 100), 0);
}

TEST(ChannelPlotDownsample, EachColumnHoldsTheExtremesOfItsOwnSamples)
{
    // 10000 noisy samples over pixels 100..199, some pixels out of the view on both sides.
    std::mt19937 Rng(7);
    std::normal_distribution<double> Noise(0.0, 10.0);
    const int32_t N = 10000;
    std::vector<double> Y(N);
    std::vector<int32_t> X(N);
    for (int32_t j = 0; j < N; ++j) {
        Y[j] = Noise(Rng) + (j % 1500 == 0 ? 500.0 : 0.0);
        X[j] = 95 + j * 110 / N; // 95..204
    }
    std::vector<int32_t> OX(200), First(100), OG(1);
    std::vector<double> OY(200);
    const TQVDownsampled R =
        QVDownsampleMinMax(Y.data(), X.data(), N, 100, 199, nullptr, 0, OX.data(), OY.data(), First.data(), OG.data());
    ASSERT_EQ(R.Points, 200);
    EXPECT_EQ(R.GapCount, 0);
    for (int32_t k = 0; k < 100; ++k) {
        const int32_t P = OX[2 * k];
        EXPECT_EQ(P, 100 + k);
        EXPECT_EQ(OX[2 * k + 1], P);
        double Lo = Inf, Hi = -Inf;
        for (int32_t j = 0; j < N; ++j) {
            const int32_t C = std::clamp(X[j], 100, 199);
            if (C == P) {
                Lo = std::min(Lo, Y[j]);
                Hi = std::max(Hi, Y[j]);
            }
        }
        EXPECT_EQ(OY[2 * k], Lo) << "column " << P;
        EXPECT_EQ(OY[2 * k + 1], Hi) << "column " << P;
        EXPECT_EQ(X[First[k]] <= 100 ? 100 : X[First[k]], P);
    }
}

TEST(ChannelPlotDownsample, NaNTakesNoPartAndGapsBreakInFrontOfTheirColumn)
{
    //            column 0        column 1         column 2            column 3
    std::vector<double> Y{NaN, 3, 1, NaN, NaN, NaN, 7, -Inf, NaN, 2, 9, 4};
    std::vector<int32_t> X{0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3};
    const std::vector<int32_t> Gaps{4, 9}; // inside column 1, and at the start of column 3
    std::vector<int32_t> OX(8), OG(2);
    std::vector<double> OY(8);
    const TQVDownsampled R =
        QVDownsampleMinMax(Y.data(), X.data(), 12, 0, 3, Gaps.data(), 2, OX.data(), OY.data(), nullptr, OG.data());
    ASSERT_EQ(R.Points, 8);
    EXPECT_EQ(OY[0], 1);
    EXPECT_EQ(OY[1], 3);
    EXPECT_TRUE(std::isnan(OY[2]) && std::isnan(OY[3])); // nothing there: missing
    EXPECT_EQ(OY[4], -Inf);
    EXPECT_EQ(OY[5], 7);
    EXPECT_EQ(OY[6], 2);
    EXPECT_EQ(OY[7], 9);
    ASSERT_EQ(R.GapCount, 2);
    EXPECT_EQ(OG[0], 2); // first point of column 1
    EXPECT_EQ(OG[1], 6); // first point of column 3
}

TEST(ChannelPlotMapping, ValuesBecomeClippedPixelsAndNaNBecomesMissing)
{
    const std::vector<double> V{0, 25, 100, NaN, Inf, -Inf, 1e300, -1e300, DBL_MAX, -DBL_MAX};
    std::vector<int32_t> P(V.size());
    // 4 pixels per unit, base 400: 0 at 400, 100 at 0.
    QVMapY(V.data(), int32_t(V.size()), 4.0, false, 400.0, P.data());
    EXPECT_EQ(P[0], 400);
    EXPECT_EQ(P[1], 300);
    EXPECT_EQ(P[2], 0);
    EXPECT_EQ(P[3], QVMissingPixel);
    EXPECT_EQ(P[4], -10000000);
    EXPECT_EQ(P[5], 10000000);
    EXPECT_EQ(P[6], -10000000);
    EXPECT_EQ(P[7], 10000000);
    EXPECT_EQ(P[8], -10000000); // passes unscaled, still beyond the bound
    EXPECT_EQ(P[9], 10000000);
    // Logarithmic: log10(v + 1) per decade.
    const std::vector<double> L{0, 9, 99, -9};
    std::vector<int32_t> LP(L.size());
    QVMapY(L.data(), 4, 100.0, true, 400.0, LP.data());
    EXPECT_EQ(LP[0], 400);
    EXPECT_EQ(LP[1], 300);
    EXPECT_EQ(LP[2], 200);
    EXPECT_EQ(LP[3], 500);
    // X: offset plus scaled value, ties to even, with the fractional part on the side.
    const std::vector<double> X{0.5, 1.5, NaN, 1e12};
    std::vector<int32_t> XP(4);
    std::vector<double> XR(4);
    QVMapX(X.data(), 4, 1.0, 10.0, false, 2.0, XP.data(), XR.data());
    EXPECT_EQ(XP[0], 10);
    EXPECT_EQ(XP[1], 12);
    EXPECT_EQ(XP[2], QVMissingPixel);
    EXPECT_EQ(XP[3], 10000000);
    EXPECT_EQ(XR[1], 3.0);
    EXPECT_EQ(QVClampRound(NaN, -5, 5), -5);
    EXPECT_EQ(QVClampRound(1e20, -5, 5), 5);
}

namespace {

struct TPlotCase {
    std::vector<int32_t> X, Y, Gaps;
    TQVPlotPoints Points(int32_t ABase = 0, bool AVertical = false) const
    {
        TQVPlotPoints P;
        P.X = X.data();
        P.Y = Y.data();
        P.Count = int32_t(X.size());
        P.Gaps = Gaps.data();
        P.GapCount = int32_t(Gaps.size());
        P.IndexBase = ABase;
        P.Vertical = AVertical;
        return P;
    }
};

std::vector<std::string> Ops(const TQLRecordingCanvas& ACanvas)
{
    std::vector<std::string> Result;
    for (const auto& R : ACanvas.GetRecords())
        Result.push_back(R.Op + " " + std::to_string(R.Args.size() > 0 ? R.Args[0] : 0) + "," +
                         std::to_string(R.Args.size() > 1 ? R.Args[1] : 0));
    return Result;
}

} // namespace

TEST(ChannelPlotDraw, LineBreaksAtGapsAndMissingPointsWhileStepCrossesGaps)
{
    // Gap entries count from index base 100: the line breaks in front of point 2.
    const TPlotCase C{{0, 1, 2, 3, 4}, {10, 11, QVMissingPixel == 0 ? 0 : 12, 13, 14}, {100, 102}};
    TQLRecordingCanvas Canvas;
    QVPlotLine(Canvas, C.Points(100), 0xFF00FF00);
    EXPECT_EQ(Ops(Canvas), (std::vector<std::string>{"MoveTo 0,10", "LineTo 1,11", "SetPixel 1,11", "MoveTo 2,12",
                                                     "LineTo 3,13", "LineTo 4,14", "SetPixel 4,14"}));
    EXPECT_EQ(Canvas.Of("SetPixel")[0].Color, 0xFF00FF00u);

    Canvas.ClearRecords();
    QVPlotStep(Canvas, C.Points(100), 0xFF00FF00);
    EXPECT_EQ(Canvas.Of("MoveTo").size(), 1u);
    EXPECT_EQ(Ops(Canvas)[3], "LineTo 2,11"); // along, then across: the gap is crossed
    EXPECT_EQ(Ops(Canvas)[4], "LineTo 2,12");

    // A missing point breaks the line; the step passes over it.
    TPlotCase M{{0, 1, 2, 3}, {10, QVMissingPixel, 12, 13}, {}};
    Canvas.ClearRecords();
    QVPlotLine(Canvas, M.Points(), 0);
    EXPECT_EQ(Ops(Canvas),
              (std::vector<std::string>{"MoveTo 0,10", "SetPixel 0,10", "MoveTo 2,12", "LineTo 3,13", "SetPixel 3,13"}));
    Canvas.ClearRecords();
    QVPlotStep(Canvas, M.Points(), 0);
    EXPECT_EQ(Ops(Canvas), (std::vector<std::string>{"MoveTo 0,10", "LineTo 2,10", "LineTo 2,12", "LineTo 3,12",
                                                     "LineTo 3,13", "SetPixel 3,13"}));

    // A vertical display exchanges the coordinates: X runs down the screen.
    Canvas.ClearRecords();
    QVPlotLine(Canvas, TPlotCase{{5, 6}, {50, 60}, {}}.Points(0, true), 0);
    EXPECT_EQ(Ops(Canvas), (std::vector<std::string>{"MoveTo 50,5", "LineTo 60,6", "SetPixel 60,6"}));
}

TEST(ChannelPlotDraw, BarsSpanTheirWidthAroundTheSampleAndStandOnTheirBase)
{
    // Width 4: 2 left, 2 right; width 5: 2 left, 3 right. Standing on the base 401.
    EXPECT_EQ(QVBarRect(csmBottom, false, 100, 50, 4, 0, 401, 0), (TRect{98, 50, 102, 401}));
    EXPECT_EQ(QVBarRect(csmBottom, false, 100, 50, 5, 0, 401, 0), (TRect{98, 50, 103, 401}));
    // Hanging from the top 0; highlighted, the bar reaches one pixel further.
    EXPECT_EQ(QVBarRect(csmTop, false, 100, 50, 1, 1, 0, 0), (TRect{100, 0, 101, 49}));
    // On the zero line 200: above it from z + 1 up to y, below it from z down past y.
    EXPECT_EQ(QVBarRect(csmZero, false, 10, 150, 1, 0, 0, 200), (TRect{10, 150, 11, 201}));
    EXPECT_EQ(QVBarRect(csmZero, false, 10, 250, 1, 1, 0, 200), (TRect{10, 200, 11, 252}));
    // Vertical: the value runs across the screen and the test is against z - 1.
    EXPECT_EQ(QVBarRect(csmZero, true, 10, 198, 3, 0, 0, 200), (TRect{198, 9, 200, 12}));
    EXPECT_EQ(QVBarRect(csmZero, true, 10, 199, 3, 0, 0, 200), (TRect{199, 9, 200, 12}));
}
