// The plotting arithmetic on plain arrays: screen slice and downsample threshold, min/max
// columns split by sample index, value-to-pixel mapping with clipping, and lines, steps and bars from pixel points.
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

TEST(ChannelPlotDownsample, ColumnsSplitBySampleIndexShareTheirEndsAndBreakInFrontOfGaps)
{
    // Column i runs from the end of column i - 1 to (i + 1) * count / columns - 1, so a
    // column's extremes include the sample it shares with the one before. A two-sample column
    // gives its samples in order; NaN takes no part, and a column with no number is missing.
    struct TCase {
        std::vector<double> Y;
        int32_t Columns;
        std::vector<int32_t> Gaps;
        std::vector<double> Points;
        std::vector<int32_t> First, PointGaps;
    };
    const TCase Cases[] = {
        // Column 1 is 2..5, and its top is the shared sample 2 (9), not sample 4 (7).
        {{5, 1, 9, 3, 7, 2, 8, 4, 6, 0}, 3, {}, {1, 9, 2, 9, 0, 8}, {0, 2, 5}, {}},
        // Column 0 holds samples 0 and 1: 9 then 1, in their order.
        {{9, 1, 4, 6, 2}, 2, {}, {9, 1, 1, 6}, {0, 1}, {}},
        {{NaN, NaN, NaN, 3, NaN, -Inf}, 2, {}, {NaN, NaN, -Inf, 3}, {0, 2}, {}},
        // Breaks inside column 0 (none to record), twice in column 1, and at column 2's end.
        {{5, 1, 9, 3, 7, 2, 8, 4, 6, 0}, 3, {2, 3, 5, 9}, {1, 9, 2, 9, 0, 8}, {0, 2, 5}, {2, 4}},
    };
    for (const TCase& C : Cases) {
        const int32_t Count = int32_t(C.Y.size());
        std::vector<double> OY(2 * size_t(C.Columns));
        std::vector<int32_t> First(size_t(C.Columns)), OG(C.Gaps.size() + 1);
        const TQVDownsampled R = QVDownsampleColumns(C.Y.data(), Count, C.Columns, C.Gaps.data(),
                                                     int32_t(C.Gaps.size()), OY.data(), First.data(), OG.data());
        SCOPED_TRACE("count " + std::to_string(Count) + ", gaps " + std::to_string(C.Gaps.size()));
        ASSERT_EQ(R.Points, 2 * C.Columns);
        for (size_t k = 0; k < OY.size(); ++k)
            EXPECT_TRUE(OY[k] == C.Points[k] || (std::isnan(OY[k]) && std::isnan(C.Points[k]))) << k << ": " << OY[k];
        EXPECT_EQ(First, C.First);
        EXPECT_EQ(std::vector<int32_t>(OG.begin(), OG.begin() + R.GapCount), C.PointGaps);
    }
}

TEST(ChannelPlotMapping, ValuesBecomeClippedPixelsAndNaNBecomesMissing)
{
    const std::vector<double> V{0, 25, 100, NaN, Inf, -Inf, -1e300, DBL_MAX};
    std::vector<int32_t> P(V.size());
    QVMapY(V.data(), int32_t(V.size()), 4.0, false, 400.0, P.data()); // 0 at 400, 100 at 0
    // Clipped below the view only: above it a pixel runs on to the integer range's end.
    EXPECT_EQ(P, (std::vector<int32_t>{400, 300, 0, QVMissingPixel, int32_t(QVPixelLowest), 10000000, 10000000,
                                       int32_t(QVPixelLowest)}));
    const std::vector<double> High{2e7, 536870912.0};
    std::vector<int32_t> HP(2);
    QVMapY(High.data(), 2, 1.0, false, 0.0, HP.data());
    EXPECT_EQ(HP, (std::vector<int32_t>{-20000000, -536870912}));
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
    // The end pixel is set once, after the last point, not at the end of every piece.
    EXPECT_EQ(Ops(C),
              (std::vector<std::string>{"MoveTo 0,10", "LineTo 1,11", "MoveTo 2,12", "LineTo 3,13", "SetPixel 3,13"}));
    EXPECT_EQ(C.Of("SetPixel")[0].Color, 0xFF00FF00u);
    C.ClearRecords();
    QVPlotStep(C, Points(X, Y, Gaps, 100), 0);
    EXPECT_EQ(Ops(C), (std::vector<std::string>{"MoveTo 0,10", "LineTo 1,10", "LineTo 1,11", "LineTo 2,11",
                                                "LineTo 2,12", "LineTo 3,12", "LineTo 3,13", "SetPixel 3,13"}));

    const std::vector<int32_t> M{10, QVMissingPixel, 12, 13};
    C.ClearRecords();
    QVPlotLine(C, Points(X, M), 0);
    EXPECT_EQ(Ops(C), (std::vector<std::string>{"MoveTo 0,10", "MoveTo 2,12", "LineTo 3,13", "SetPixel 3,13"}));
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
