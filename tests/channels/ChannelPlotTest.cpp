// The plotting arithmetic on plain arrays: screen slice and downsample threshold, min/max
// columns, value-to-pixel mapping with clipping, and lines, steps and bars from pixel points.
#include "qv/channels/QVChannelPlot.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <vector>

using namespace qv;

namespace {
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

std::vector<std::string> Ops(const TQLRecordingCanvas& ACanvas)
{
    std::vector<std::string> Result;
    for (const auto& R : ACanvas.GetRecords())
        Result.push_back(R.Op + " " + std::to_string(R.Args[0]) + "," + std::to_string(R.Args[1]));
    return Result;
}

TQVPlotPoints Points(const std::vector<int32_t>& AX, const std::vector<int32_t>& AY,
                     const std::vector<int32_t>& AGaps = {}, int32_t ABase = 0, bool AVertical = false)
{
    return TQVPlotPoints{AX.data(), AY.data(), AVertical, int32_t(AX.size()), AGaps.data(), int32_t(AGaps.size()),
                         ABase};
}
} // namespace

TEST(ChannelPlotSlice, RampIsCutToTheViewWithItsMarginsAndOtherRecordsStayWhole)
{
    // 2000 samples at X 0..1999, view 500..999: downsampled with 100 columns (no margin in
    // front), sample by sample with 250 (4 samples in front); 8 more samples in all.
    EXPECT_EQ(QVScreenSlice(2000, true, false, 100, 0, 1999, 500, 999).Start, 500);
    const TQVScreenSlice S = QVScreenSlice(2000, true, false, 250, 0, 1999, 500, 999);
    EXPECT_EQ(S.Start, 496);
    EXPECT_EQ(S.Count, 499 + 8);                                                   // round(2000 * 499 / 1999)
    EXPECT_EQ(QVScreenSlice(2000, true, true, 100, 0, 1999, 500, 999).Start, 496); // logarithmic X
    EXPECT_EQ(QVScreenSlice(2000, true, false, 100, 0, 1999, -100, 999).Count, 999 + 8);
    const TQVScreenSlice End = QVScreenSlice(2000, true, false, 100, 0, 1999, 1900, 3000);
    EXPECT_EQ(End.Start + End.Count, 2000);
    // Views off the data on either side: nothing, and nothing out of range.
    EXPECT_EQ(QVScreenSlice(2000, true, false, 0, 0, 1999, 5000, 6000).Count, 0);
    EXPECT_EQ(QVScreenSlice(2000, true, false, 0, 0, 1999, -6000, -5000).Count, 0);
    EXPECT_EQ(QVScreenSlice(2000, false, false, 100, 0, 1999, 500, 999).Count, 2000); // explicit X
    EXPECT_EQ(QVScreenSlice(1, true, false, 100, 5, 5, 0, 10).Count, 1);              // no X extent

    EXPECT_FALSE(QVIsDownsampled(true, false, 500, 1008));
    EXPECT_TRUE(QVIsDownsampled(true, false, 500, 1009));
    EXPECT_FALSE(QVIsDownsampled(true, true, 500, 1000000));
    EXPECT_FALSE(QVIsDownsampled(false, false, 500, 1000000));

    EXPECT_EQ(QVScreenUsedWidth(500, -10, 200, 0, 100), 500);
    EXPECT_EQ(QVScreenUsedWidth(500, 25, 50, 0, 100), 125);
    EXPECT_EQ(QVScreenUsedWidth(500, 200, 300, 0, 100), 0);
    EXPECT_EQ(QVScreenUsedWidth(500, -Inf, -Inf, 0, 100), 0);
}

TEST(ChannelPlotDownsample, ColumnsSkipNaNClampEdgesAndBreakInFrontOfGaps)
{
    // Pixels -1 and 4 lie outside the columns 0..3 and join the edge columns.
    const std::vector<double> Y{8, NaN, 3, 1, NaN, NaN, NaN, 7, -Inf, NaN, 2, 9, 4, 0};
    const std::vector<int32_t> X{-1, 0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4};
    const std::vector<int32_t> Gaps{5, 10}; // inside column 1, and at the start of column 3
    std::vector<int32_t> OX(8), OG(2), First(4);
    std::vector<double> OY(8);
    const TQVDownsampled R =
        QVDownsampleMinMax(Y.data(), X.data(), 14, 0, 3, Gaps.data(), 2, OX.data(), OY.data(), First.data(), OG.data());
    ASSERT_EQ(R.Points, 8);
    EXPECT_EQ(OX, (std::vector<int32_t>{0, 0, 1, 1, 2, 2, 3, 3}));
    EXPECT_TRUE(std::isnan(OY[2]) && std::isnan(OY[3])); // no number: missing
    OY[2] = OY[3] = 0;
    EXPECT_EQ(OY, (std::vector<double>{1, 8, 0, 0, -Inf, 7, 0, 9}));
    EXPECT_EQ(First, (std::vector<int32_t>{0, 4, 7, 10}));
    ASSERT_EQ(R.GapCount, 2);
    EXPECT_EQ(OG, (std::vector<int32_t>{2, 6}));
}

TEST(ChannelPlotDownsample, RampColumnsFromThePixelFormulaMatchSampleBySampleMapping)
{
    // Awkward mappings: fractional samples per column, offsets that put the record's ends off
    // the view, a ramp not starting at 0, a reversed axis (negative scale), columns narrower
    // than a sample, and scales that put samples exactly on rounding boundaries.
    struct TCase {
        int32_t Count;
        double X0, Scale, Offset;
        int32_t Low, High;
    };
    const TCase Cases[] = {
        {100000, 0.0, 499.0 / 99999.0, 0.0, 0, 499}, // the whole record in 500 columns
        {100003, 0.0, 0.0031, 17.25, 10, 309},       // non-integer samples per column
        {50000, 12345.0, 0.0125, -200.4, 0, 399},    // a zoomed window: both ends beyond
        {40000, 0.0, -0.01, 399.7, 0, 399},          // reversed: X runs right to left
        {30000, -7.0, 0.5, 0.0, 0, 999},             // two samples per column
        {20000, 0.0, 2.5, -1000.0, 0, 999},          // more columns than samples
        {65536, 0.0, 1.0 / 64.0, 0.5, 0, 1023},      // exact .5 boundaries (ties to even)
        {10, 0.0, 100.0, 0.0, 0, 3},                 // far off both edges after sample 0
        {1, 5.0, 1.0, 0.0, 0, 9},                    // a single sample
    };
    for (const TCase& C : Cases) {
        std::vector<double> X(size_t(C.Count)), Y(size_t(C.Count));
        for (int32_t i = 0; i < C.Count; ++i) {
            X[size_t(i)] = C.X0 + i;
            Y[size_t(i)] = std::sin(i * 0.37) * 50.0 + (i % 101 == 0 ? 80.0 : 0.0);
        }
        // NaN runs that cross column boundaries, and a record end of NaN.
        for (int32_t Start : {C.Count / 3, C.Count / 2 + 7, C.Count - 3})
            for (int32_t i = Start; i < std::min(C.Count, Start + 900); ++i)
                if (i >= 0)
                    Y[size_t(i)] = NaN;
        std::vector<int32_t> Gaps;
        for (int32_t g = 5; g < C.Count; g += 4999)
            Gaps.push_back(g);
        std::vector<int32_t> Pixels(size_t(C.Count));
        QVMapX(X.data(), C.Count, C.Scale, C.Offset, false, 0.0, Pixels.data(), nullptr);

        const size_t Room = 2 * size_t(C.High - C.Low + 1);
        std::vector<int32_t> EX(Room), EFirst(Room / 2), EGaps(Gaps.size() + 1);
        std::vector<int32_t> GX(Room), GFirst(Room / 2), GGaps(Gaps.size() + 1);
        std::vector<double> EY(Room), GY(Room);
        const TQVDownsampled E =
            QVDownsampleMinMax(Y.data(), Pixels.data(), C.Count, C.Low, C.High, Gaps.data(), int32_t(Gaps.size()),
                               EX.data(), EY.data(), EFirst.data(), EGaps.data());
        const TQVDownsampled G =
            QVDownsampleRampMinMax(Y.data(), X.data(), C.Count, C.Scale, C.Offset, C.Low, C.High, Gaps.data(),
                                   int32_t(Gaps.size()), GX.data(), GY.data(), GFirst.data(), GGaps.data());
        SCOPED_TRACE("count " + std::to_string(C.Count) + ", scale " + std::to_string(C.Scale));
        ASSERT_GT(E.Points, 0);
        ASSERT_EQ(E.Points, G.Points);
        ASSERT_EQ(E.GapCount, G.GapCount);
        for (int32_t k = 0; k < E.Points; ++k) {
            ASSERT_EQ(EX[size_t(k)], GX[size_t(k)]) << k;
            ASSERT_TRUE(EY[size_t(k)] == GY[size_t(k)] || (std::isnan(EY[size_t(k)]) && std::isnan(GY[size_t(k)])))
                << k;
            ASSERT_EQ(EFirst[size_t(k / 2)], GFirst[size_t(k / 2)]) << k;
        }
        for (int32_t k = 0; k < E.GapCount; ++k)
            ASSERT_EQ(EGaps[size_t(k)], GGaps[size_t(k)]) << k;
    }
}

TEST(ChannelPlotMapping, ValuesBecomeClippedPixelsAndNaNBecomesMissing)
{
    const std::vector<double> V{0, 25, 100, NaN, Inf, -Inf, -1e300, DBL_MAX};
    std::vector<int32_t> P(V.size());
    QVMapY(V.data(), int32_t(V.size()), 4.0, false, 400.0, P.data()); // 0 at 400, 100 at 0
    EXPECT_EQ(P, (std::vector<int32_t>{400, 300, 0, QVMissingPixel, -10000000, 10000000, 10000000, -10000000}));
    const std::vector<double> L{0, 9, 99, -9};
    std::vector<int32_t> LP(4);
    QVMapY(L.data(), 4, 100.0, true, 400.0, LP.data()); // a decade per 100 pixels
    EXPECT_EQ(LP, (std::vector<int32_t>{400, 300, 200, 500}));
    // X: offset plus scaled value, ties to even; the real position on the side.
    const std::vector<double> X{0.5, 1.5, NaN, 1e12};
    std::vector<int32_t> XP(4);
    std::vector<double> XR(4);
    QVMapX(X.data(), 4, 1.0, 10.0, false, 2.0, XP.data(), XR.data());
    EXPECT_EQ(XP, (std::vector<int32_t>{10, 12, QVMissingPixel, 10000000}));
    EXPECT_EQ(XR[1], 3.0);
    EXPECT_EQ(QVClampRound(NaN, -5, 5), -5);
}

TEST(ChannelPlotDraw, LineBreaksAtGapsAndMissingPointsWhileStepCrossesGaps)
{
    const std::vector<int32_t> X{0, 1, 2, 3}, Y{10, 11, 12, 13}, Gaps{100, 102}; // counted from 100
    TQLRecordingCanvas C;
    QVPlotLine(C, Points(X, Y, Gaps, 100), 0xFF00FF00);
    EXPECT_EQ(Ops(C), (std::vector<std::string>{"MoveTo 0,10", "LineTo 1,11", "SetPixel 1,11", "MoveTo 2,12",
                                                "LineTo 3,13", "SetPixel 3,13"}));
    EXPECT_EQ(C.Of("SetPixel")[0].Color, 0xFF00FF00u);
    C.ClearRecords();
    QVPlotStep(C, Points(X, Y, Gaps, 100), 0);
    EXPECT_EQ(Ops(C), (std::vector<std::string>{"MoveTo 0,10", "LineTo 1,10", "LineTo 1,11", "LineTo 2,11",
                                                "LineTo 2,12", "LineTo 3,12", "LineTo 3,13", "SetPixel 3,13"}));

    const std::vector<int32_t> M{10, QVMissingPixel, 12, 13};
    C.ClearRecords();
    QVPlotLine(C, Points(X, M), 0);
    EXPECT_EQ(Ops(C), (std::vector<std::string>{"MoveTo 0,10", "SetPixel 0,10", "MoveTo 2,12", "LineTo 3,13",
                                                "SetPixel 3,13"}));
    C.ClearRecords();
    QVPlotStep(C, Points(X, M), 0);
    EXPECT_EQ(Ops(C)[1], "LineTo 2,10"); // passes over the missing point
    // A vertical display exchanges the coordinates: X runs down the screen.
    C.ClearRecords();
    QVPlotLine(C, Points({5, 6}, {50, 60}, {}, 0, true), 0);
    EXPECT_EQ(Ops(C), (std::vector<std::string>{"MoveTo 50,5", "LineTo 60,6", "SetPixel 60,6"}));
}

TEST(ChannelPlotDraw, BarsSpanTheirWidthAroundTheSampleAndStandOnTheirBase)
{
    // Width 4: 2 left, 2 right; width 5: 2 left, 3 right. Standing on the base 401.
    EXPECT_EQ(QVBarRect(csmBottom, false, 100, 50, 4, 0, 401, 0), (TRect{98, 50, 102, 401}));
    EXPECT_EQ(QVBarRect(csmBottom, false, 100, 50, 5, 0, 401, 0), (TRect{98, 50, 103, 401}));
    EXPECT_EQ(QVBarRect(csmTop, false, 100, 50, 1, 1, 0, 0), (TRect{100, 0, 101, 49})); // highlighted
    // On the zero line 200: above it from z + 1 up to y, below it from z down past y.
    EXPECT_EQ(QVBarRect(csmZero, false, 10, 150, 1, 0, 0, 200), (TRect{10, 150, 11, 201}));
    EXPECT_EQ(QVBarRect(csmZero, false, 10, 250, 1, 1, 0, 200), (TRect{10, 200, 11, 252}));
    // Vertical: the value runs across the screen and the test is against z - 1.
    EXPECT_EQ(QVBarRect(csmZero, true, 10, 198, 3, 0, 0, 200), (TRect{198, 9, 200, 12}));
    EXPECT_EQ(QVBarRect(csmZero, true, 10, 199, 3, 0, 0, 200), (TRect{199, 9, 200, 12}));
}

TEST(ChannelPlotDraw, PointSymbolsMatchTheSharedMarkerShapesAndInsetTheirLines)
{
    for (TQVScopePointsShape Shape : {psCircle, psSquare, psDiamond, psPlus, psCross, psStar}) {
        TQLRecordingCanvas Mine, Shared;
        QVDrawPointSymbol(Mine, Shape, 20, 30, 3, 0);
        QVDisplayMarkerDrawSize(Shared, 20, 30, QVMarkerShapeOf(Shape), 3, 0, false);
        EXPECT_EQ(Ops(Mine), Ops(Shared)) << "shape " << int(Shape);
    }
    // Inset 1: the plus' lines stop one pixel short of the box's far edges.
    TQLRecordingCanvas C;
    QVDrawPointSymbol(C, psPlus, 20, 30, 3, 1);
    EXPECT_EQ(Ops(C), (std::vector<std::string>{"MoveTo 20,27", "LineTo 20,33", "MoveTo 17,30", "LineTo 23,30"}));
}
