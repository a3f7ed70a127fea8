// Values to pixels and back: linear, logarithmic through zero, decascale; plain, reversed and
// on a turned display. Standard geometry: data view left 60, top 20, 400 wide, 300 high.
#include "AxisTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace qv;
using namespace qvtest;

namespace {

class AxisMapping : public TAxisFixture {
protected:
    // Value -> pixel by the general mapping and the plot mapping; NoPlot skips the latter.
    struct TPoint2 {
        double Value;
        int32_t Pixel, Plot;
    };
    static constexpr int32_t NoPlot = INT32_MIN;
    void ExpectPixels(const TTestAxis& AAxis, std::initializer_list<TPoint2> APoints)
    {
        for (const TPoint2& P : APoints) {
            EXPECT_EQ(AAxis.ScaleToPixel(P.Value), P.Pixel) << P.Value;
            if (P.Plot != NoPlot) {
                EXPECT_EQ(AAxis.GetPosFromValue(P.Value), P.Plot) << P.Value;
            }
        }
    }
    double ValueAt(const TTestAxis& AAxis, int32_t AX, int32_t AY)
    {
        double Pos = -12345.0;
        EXPECT_TRUE(AAxis.GetValueAt(AX, AY, Pos)) << AX << "," << AY;
        return Pos;
    }
};

} // namespace

TEST_F(AxisMapping, LinearAxesPlainReversedAndTurned)
{
    // X: 4 pixels a unit, ties to the even pixel; plotted values span one pixel less.
    EXPECT_EQ(XAxis.GetDirection(), adToRight);
    EXPECT_EQ(XAxis.GetPixelStart(), 60);
    EXPECT_EQ(XAxis.GetPixelLength(), 400);
    ExpectPixels(XAxis, {{0.0, 60, 60},
                         {25.0, 160, 160},
                         {50.0, 260, 260},
                         {100.0, 460, 459},
                         {-10.0, 20, NoPlot},
                         {0.625, 62, NoPlot},
                         {0.875, 64, NoPlot}});
    // The inverse counts from the rectangle's outer right edge over 400 pixels.
    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(260), 49.75);
    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(60), -0.25);
    EXPECT_DOUBLE_EQ(ValueAt(XAxis, 260, 100), 50.0);
    EXPECT_DOUBLE_EQ(ValueAt(XAxis, 460, 320), 100.0);

    // Y grows up and plots one pixel lower.
    EXPECT_EQ(YAxis.GetDirection(), adToUp);
    ExpectPixels(YAxis, {{100.0, 20, 21}, {50.0, 170, 171}, {0.0, 320, 320}});
    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(170), 50.0);
    EXPECT_DOUBLE_EQ(ValueAt(YAxis, 100, 170), 50.0);

    // Points outside the data view have no value and leave the output alone.
    double Pos = 123.0;
    EXPECT_FALSE(XAxis.GetValueAt(59, 100, Pos));
    EXPECT_FALSE(XAxis.GetValueAt(461, 100, Pos)); // the right edge lies outside
    EXPECT_FALSE(YAxis.GetValueAt(100, 321, Pos));
    EXPECT_FALSE(YAxis.GetValueAt(100, 19, Pos));
    EXPECT_EQ(Pos, 123.0);

    // Reversed Y grows down, with no extra pixel, and asks for a new layout.
    Display.ClearRecalc();
    YAxis.SetReversed(true);
    EXPECT_TRUE(Display.GetNeedsRecalc());
    EXPECT_EQ(YAxis.GetDirection(), adToDown);
    EXPECT_TRUE(YAxis.GetIsOposite());
    ExpectPixels(YAxis, {{0.0, 20, 20}, {25.0, 95, NoPlot}, {100.0, 320, 319}});
    EXPECT_NEAR(YAxis.PixelToScale(95), 100.0 - 100.0 * 226.0 / 300.0, 1e-12);
    EXPECT_DOUBLE_EQ(ValueAt(YAxis, 100, 95), 25.0);
    YAxis.SetReversed(false);

    // A reversed linear X axis: the general mapping follows, the plot mapping does not.
    XAxis.SetReversed(true);
    EXPECT_EQ(XAxis.GetDirection(), adToLeft);
    ExpectPixels(XAxis, {{0.0, 460, 60}, {100.0, 60, 459}});
    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(60), 100.0);
    XAxis.SetReversed(false);

    // Turned: X runs down the left, Y grows to the left along the bottom.
    Display.Turned = true;
    EXPECT_EQ(XAxis.GetDirection(), adToDown);
    EXPECT_EQ(YAxis.GetDirection(), adToLeft);
    EXPECT_EQ(XAxis.GetScreenAlign(), vsaLeft);
    EXPECT_EQ(XAxis.GetPixelStart(), 20);
    EXPECT_EQ(XAxis.GetPixelLength(), 300);
    ExpectPixels(XAxis, {{25.0, 95, NoPlot}});
    EXPECT_EQ(XAxis.GetPosFromValue(100.0), 319);
    EXPECT_DOUBLE_EQ(ValueAt(XAxis, 100, 95), 25.0);
    ExpectPixels(YAxis, {{100.0, 60, NoPlot}, {25.0, 360, 359}}); // 299.25, no extra pixel across
    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(360), 25.0);
    EXPECT_DOUBLE_EQ(ValueAt(YAxis, 360, 100), 25.0);
}

TEST_F(AxisMapping, LogarithmicAxesPassThroughZeroAndInvertAtTheEnds)
{
    // QVLog10a(100) is 2.0043, so zero sits in the middle and 9 half-way to the top.
    YAxis.Mode = smLogarithmic;
    YAxis.SetLimits(-100.0, 100.0);
    ExpectPixels(YAxis, {{100.0, 20, NoPlot}, {9.0, 95, 95}, {0.0, 170, 170}, {-9.0, 245, 245}, {-100.0, 320, NoPlot}});
    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(170), 0.0);
    EXPECT_NEAR(YAxis.PixelToScale(95), 9.0499, 1e-4); // the end pixels are rounded first
    EXPECT_NEAR(YAxis.PixelToScale(320), -100.0, 1e-9);
    // The value under a point stays linear on a logarithmic axis.
    EXPECT_DOUBLE_EQ(ValueAt(YAxis, 100, 95), 50.0);
    YAxis.Mode = smLogDecascale; // logarithmic too
    ExpectPixels(YAxis, {{9.0, 95, NoPlot}, {-9.0, 245, NoPlot}});

    // X counts back from the right edge.
    XAxis.Mode = smLogarithmic;
    XAxis.SetLimits(0.0, 1000.0);
    ExpectPixels(XAxis, {{0.0, 60, 60}, {9.0, 193, 193}, {99.0, 327, NoPlot}, {1000.0, 460, 460}});
    EXPECT_NEAR(XAxis.PixelToScale(193), 8.9459, 1e-4);
    EXPECT_NEAR(XAxis.PixelToScale(460), 1000.0, 1e-9);

    // A scale ending at zero inverts without dividing by zero.
    YAxis.Mode = smLogarithmic;
    YAxis.SetLimits(-1000.0, 0.0);
    ExpectPixels(YAxis, {{0.0, 20, NoPlot}, {-1000.0, 320, NoPlot}});
    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(20), 0.0);
    EXPECT_NEAR(YAxis.PixelToScale(170), -30.6386, 1e-4);
}

TEST_F(AxisMapping, ScaleInfoGivesTheTickWalkItsOffsetAndFactor)
{
    struct TCase {
        TTestAxis* Axis;
        TQVScaleMode Mode;
        double Lo, Hi, Offset, Scale;
    };
    // A plain X axis counts as scale-reversed: its factor is negative. Equal limits: the
    // middle of the axis and a factor of 1.
    const TCase Cases[] = {{&YAxis, smLinear, 0, 100, 0, 3},
                           {&XAxis, smLinear, 0, 100, 400, -4},
                           {&YAxis, smLogarithmic, 0, 999, 0, 100},
                           {&YAxis, smLogarithmic, 5, 5, 150, 1}};
    for (const TCase& C : Cases) {
        C.Axis->Mode = C.Mode;
        double Offset = 0.0, Scale = 0.0;
        C.Axis->GetScaleInfo(Offset, Scale, C.Lo, C.Hi);
        EXPECT_DOUBLE_EQ(Offset, C.Offset) << C.Lo << ".." << C.Hi;
        EXPECT_DOUBLE_EQ(Scale, C.Scale) << C.Lo << ".." << C.Hi;
    }
}

TEST_F(AxisMapping, DegenerateScalesAndFarValuesStayFiniteAndInRange)
{
    // No width: the general mapping centres a window of plus and minus 1 on the value; the
    // plot mapping has nothing to scale by and stays in the view.
    XAxis.SetLimits(50.0, 50.0);
    ExpectPixels(XAxis, {{50.0, 260, 60}, {51.0, 460, NoPlot}});
    EXPECT_TRUE(std::isfinite(XAxis.PixelToScale(200)));
    XAxis.Mode = smLogarithmic;
    EXPECT_GE(XAxis.GetPosFromValue(50.0), 60);
    EXPECT_LE(XAxis.GetPosFromValue(50.0), 460);
    XAxis.Mode = smLinear;
    XAxis.SetLimits(0.0, 100.0);

    // Far values: the distance is held to 32 bits, then the start added without overflow.
    EXPECT_EQ(XAxis.ScaleToPixel(1e300), INT32_MAX);
    EXPECT_EQ(XAxis.ScaleToPixel(-1e300), INT32_MIN + 60);
    EXPECT_EQ(YAxis.GetPosFromValue(-1e300), INT32_MAX);

    // Without a data view nothing is under the pointer and nothing divides by zero.
    Display.DataView = nullptr;
    double Pos = 7.0;
    EXPECT_FALSE(XAxis.GetValueAt(0, 0, Pos));
    EXPECT_EQ(Pos, 7.0);
    EXPECT_EQ(XAxis.GetPixelLength(), 0);
    EXPECT_EQ(XAxis.ScaleToPixel(1e300), 0);
    XAxis.Mode = smLogarithmic;
    EXPECT_TRUE(std::isfinite(XAxis.PixelToScale(5)));
}
