// Values to pixels and back: linear, logarithmic through zero, decascale; plain, reversed and
// on a turned display. Standard geometry: data view left 60, top 20, 400 wide, 300 high.
#include "AxisTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace qv;
using namespace qvtest;

namespace {

class AxisMapping : public TAxisFixture {};

} // namespace

TEST_F(AxisMapping, LinearXAxisAlongTheBottom)
{
    EXPECT_EQ(XAxis.GetDirection(), adToRight);
    EXPECT_FALSE(XAxis.GetIsOposite());
    EXPECT_EQ(XAxis.GetPixelStart(), 60);
    EXPECT_EQ(XAxis.GetPixelLength(), 400);

    // Across the whole length: 4 pixels a unit; ties go to the even pixel.
    EXPECT_EQ(XAxis.ScaleToPixel(0.0), 60);
    EXPECT_EQ(XAxis.ScaleToPixel(25.0), 160);
    EXPECT_EQ(XAxis.ScaleToPixel(100.0), 460);
    EXPECT_EQ(XAxis.ScaleToPixel(-10.0), 20);
    EXPECT_EQ(XAxis.ScaleToPixel(0.625), 62); // 2.5 -> 2
    EXPECT_EQ(XAxis.ScaleToPixel(0.875), 64); // 3.5 -> 4

    // Plotted values span one pixel less.
    EXPECT_EQ(XAxis.GetPosFromValue(0.0), 60);
    EXPECT_EQ(XAxis.GetPosFromValue(25.0), 160); // 99.75
    EXPECT_EQ(XAxis.GetPosFromValue(50.0), 260); // 199.5 -> 200
    EXPECT_EQ(XAxis.GetPosFromValue(100.0), 459);

    // The inverse counts from the rectangle's outer right edge over 400 pixels.
    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(260), 49.75);
    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(460), 99.75);
    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(60), -0.25);

    double Pos = -1.0;
    ASSERT_TRUE(XAxis.GetValueAt(260, 100, Pos));
    EXPECT_DOUBLE_EQ(Pos, 50.0);
    ASSERT_TRUE(XAxis.GetValueAt(460, 320, Pos));
    EXPECT_DOUBLE_EQ(Pos, 100.0);
}

TEST_F(AxisMapping, PointsOutsideTheDataViewHaveNoValue)
{
    double Pos = 123.0;
    EXPECT_FALSE(XAxis.GetValueAt(59, 100, Pos));
    EXPECT_FALSE(XAxis.GetValueAt(461, 100, Pos)); // right edge lies outside
    EXPECT_FALSE(YAxis.GetValueAt(100, 321, Pos));
    EXPECT_FALSE(YAxis.GetValueAt(100, 19, Pos));
    EXPECT_EQ(Pos, 123.0);
}

TEST_F(AxisMapping, LinearYAxisGrowsUpAndPlotsOnePixelLower)
{
    EXPECT_EQ(YAxis.GetDirection(), adToUp);
    EXPECT_FALSE(YAxis.GetIsOposite());
    EXPECT_EQ(YAxis.ScaleToPixel(100.0), 20);
    EXPECT_EQ(YAxis.ScaleToPixel(50.0), 170);
    EXPECT_EQ(YAxis.ScaleToPixel(0.0), 320);

    EXPECT_EQ(YAxis.GetPosFromValue(100.0), 21);
    EXPECT_EQ(YAxis.GetPosFromValue(50.0), 171); // 149.5 -> 150, plus 1
    EXPECT_EQ(YAxis.GetPosFromValue(0.0), 320);

    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(20), 100.0);
    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(170), 50.0);
    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(320), 0.0);

    double Pos = 0.0;
    ASSERT_TRUE(YAxis.GetValueAt(100, 170, Pos));
    EXPECT_DOUBLE_EQ(Pos, 50.0);
}

TEST_F(AxisMapping, AReversedYAxisGrowsDown)
{
    Display.ClearRecalc();
    YAxis.SetReversed(true);
    EXPECT_TRUE(Display.GetNeedsRecalc());
    EXPECT_EQ(YAxis.GetDirection(), adToDown);
    EXPECT_TRUE(YAxis.GetIsOposite());
    EXPECT_EQ(YAxis.ScaleToPixel(0.0), 20);
    EXPECT_EQ(YAxis.ScaleToPixel(25.0), 95);
    EXPECT_EQ(YAxis.ScaleToPixel(100.0), 320);
    // A reversed linear Y axis has no extra pixel.
    EXPECT_EQ(YAxis.GetPosFromValue(0.0), 20);
    EXPECT_EQ(YAxis.GetPosFromValue(100.0), 319);
    EXPECT_NEAR(YAxis.PixelToScale(95), 100.0 - 100.0 * 226.0 / 300.0, 1e-12);
    double Pos = 0.0;
    ASSERT_TRUE(YAxis.GetValueAt(100, 95, Pos));
    EXPECT_DOUBLE_EQ(Pos, 25.0);
}

TEST_F(AxisMapping, LinearXAxesIgnoreReversalWhenPlotting)
{
    XAxis.SetReversed(true);
    EXPECT_EQ(XAxis.GetDirection(), adToLeft);
    EXPECT_EQ(XAxis.ScaleToPixel(0.0), 460); // the general mapping follows reversal
    EXPECT_EQ(XAxis.GetPosFromValue(0.0), 60); // the plot mapping does not
    EXPECT_EQ(XAxis.GetPosFromValue(100.0), 459);
    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(60), 100.0);
    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(460), 0.0);
}

TEST_F(AxisMapping, OnATurnedDisplayXRunsDownAndYGrowsToTheLeft)
{
    Display.Turned = true;
    EXPECT_TRUE(XAxis.GetIsVertical());
    EXPECT_FALSE(YAxis.GetIsVertical());
    EXPECT_EQ(XAxis.GetDirection(), adToDown);
    EXPECT_EQ(YAxis.GetDirection(), adToLeft);
    EXPECT_EQ(XAxis.GetScreenAlign(), vsaLeft);
    EXPECT_EQ(YAxis.GetScreenAlign(), vsaBottom);
    EXPECT_EQ(XAxis.GetPixelStart(), 20);
    EXPECT_EQ(XAxis.GetPixelLength(), 300);

    EXPECT_EQ(XAxis.ScaleToPixel(25.0), 95);
    EXPECT_EQ(XAxis.GetPosFromValue(100.0), 319);
    EXPECT_NEAR(XAxis.PixelToScale(95), 100.0 - 100.0 * 226.0 / 300.0, 1e-12);
    double Pos = 0.0;
    ASSERT_TRUE(XAxis.GetValueAt(100, 95, Pos));
    EXPECT_DOUBLE_EQ(Pos, 25.0);

    EXPECT_EQ(YAxis.ScaleToPixel(100.0), 60);
    EXPECT_EQ(YAxis.ScaleToPixel(25.0), 360);
    EXPECT_EQ(YAxis.GetPosFromValue(25.0), 359); // 299.25, and no extra pixel across
    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(360), 25.0);
    ASSERT_TRUE(YAxis.GetValueAt(360, 100, Pos));
    EXPECT_DOUBLE_EQ(Pos, 25.0);
}

TEST_F(AxisMapping, LogarithmicYAxisPassesThroughZeroIntoNegativeValues)
{
    YAxis.Mode = smLogarithmic;
    YAxis.SetLimits(-100.0, 100.0);
    // QVLog10a(100) is 2.0043, so zero sits in the middle and 9 half-way to the top.
    EXPECT_EQ(YAxis.ScaleToPixel(100.0), 20);
    EXPECT_EQ(YAxis.ScaleToPixel(9.0), 95);
    EXPECT_EQ(YAxis.ScaleToPixel(0.0), 170);
    EXPECT_EQ(YAxis.ScaleToPixel(-9.0), 245);
    EXPECT_EQ(YAxis.ScaleToPixel(-100.0), 320);
    EXPECT_EQ(YAxis.GetPosFromValue(9.0), 95);
    EXPECT_EQ(YAxis.GetPosFromValue(0.0), 170);
    EXPECT_EQ(YAxis.GetPosFromValue(-9.0), 245);

    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(170), 0.0);
    EXPECT_NEAR(YAxis.PixelToScale(95), 9.0499, 1e-4); // the end pixels are rounded first
    EXPECT_NEAR(YAxis.PixelToScale(320), -100.0, 1e-9);

    // Decascale is logarithmic too.
    YAxis.Mode = smLogDecascale;
    EXPECT_EQ(YAxis.ScaleToPixel(9.0), 95);
    EXPECT_EQ(YAxis.ScaleToPixel(-9.0), 245);

    // The value under a point stays linear on a logarithmic axis.
    double Pos = 0.0;
    ASSERT_TRUE(YAxis.GetValueAt(100, 95, Pos));
    EXPECT_DOUBLE_EQ(Pos, 50.0);
}

TEST_F(AxisMapping, LogarithmicXAxisCountsBackFromTheRightEdge)
{
    XAxis.Mode = smLogarithmic;
    XAxis.SetLimits(0.0, 1000.0);
    EXPECT_EQ(XAxis.ScaleToPixel(0.0), 60);
    EXPECT_EQ(XAxis.ScaleToPixel(9.0), 193);
    EXPECT_EQ(XAxis.ScaleToPixel(99.0), 327);
    EXPECT_EQ(XAxis.ScaleToPixel(1000.0), 460);
    EXPECT_EQ(XAxis.GetPosFromValue(0.0), 60);
    EXPECT_EQ(XAxis.GetPosFromValue(9.0), 193);
    EXPECT_EQ(XAxis.GetPosFromValue(1000.0), 460);

    EXPECT_DOUBLE_EQ(XAxis.PixelToScale(60), 0.0);
    EXPECT_NEAR(XAxis.PixelToScale(193), 8.9459, 1e-4);
    EXPECT_NEAR(XAxis.PixelToScale(460), 1000.0, 1e-9);
}

TEST_F(AxisMapping, ALogarithmicScaleEndingAtZeroInvertsWithoutDividingByZero)
{
    YAxis.Mode = smLogarithmic;
    YAxis.SetLimits(-1000.0, 0.0);
    EXPECT_EQ(YAxis.ScaleToPixel(0.0), 20);
    EXPECT_EQ(YAxis.ScaleToPixel(-1000.0), 320);
    EXPECT_DOUBLE_EQ(YAxis.PixelToScale(20), 0.0);
    EXPECT_NEAR(YAxis.PixelToScale(170), -30.6386, 1e-4);
    EXPECT_NEAR(YAxis.PixelToScale(320), -1000.0, 1e-9);
}

TEST_F(AxisMapping, ScaleInfoGivesTheTickWalkItsOffsetAndFactor)
{
    double Offset = 0.0;
    double Scale = 0.0;
    YAxis.GetScaleInfo(Offset, Scale, 0.0, 100.0);
    EXPECT_DOUBLE_EQ(Offset, 0.0);
    EXPECT_DOUBLE_EQ(Scale, 3.0);
    // A plain X axis counts as scale-reversed: the factor turns negative.
    XAxis.GetScaleInfo(Offset, Scale, 0.0, 100.0);
    EXPECT_DOUBLE_EQ(Offset, 400.0);
    EXPECT_DOUBLE_EQ(Scale, -4.0);
    YAxis.Mode = smLogarithmic;
    YAxis.GetScaleInfo(Offset, Scale, 0.0, 999.0);
    EXPECT_DOUBLE_EQ(Offset, 0.0);
    EXPECT_DOUBLE_EQ(Scale, 100.0);
    // Equal limits: the middle of the axis and a factor of 1.
    YAxis.GetScaleInfo(Offset, Scale, 5.0, 5.0);
    EXPECT_DOUBLE_EQ(Offset, 150.0);
    EXPECT_DOUBLE_EQ(Scale, 1.0);
}

TEST_F(AxisMapping, AZeroWidthScaleNeitherDividesByZeroNorLeavesTheView)
{
    XAxis.SetLimits(50.0, 50.0);
    // The general mapping centres a window of plus and minus 1 on the value.
    EXPECT_EQ(XAxis.ScaleToPixel(50.0), 260);
    EXPECT_EQ(XAxis.ScaleToPixel(51.0), 460);
    // The plot mapping has nothing to scale by and stays in the view.
    EXPECT_EQ(XAxis.GetPosFromValue(50.0), 60);
    EXPECT_TRUE(std::isfinite(XAxis.PixelToScale(200)));
    XAxis.Mode = smLogarithmic;
    const int32_t P = XAxis.GetPosFromValue(50.0);
    EXPECT_GE(P, 60);
    EXPECT_LE(P, 460);
}

TEST_F(AxisMapping, WithoutADataViewNothingIsUnderThePointer)
{
    Display.DataView = nullptr;
    double Pos = 7.0;
    EXPECT_FALSE(XAxis.GetValueAt(0, 0, Pos));
    EXPECT_EQ(Pos, 7.0);
    EXPECT_EQ(XAxis.GetPixelLength(), 0);
    EXPECT_EQ(XAxis.ScaleToPixel(1e300), 0);
    XAxis.Mode = smLogarithmic;
    EXPECT_TRUE(std::isfinite(XAxis.PixelToScale(5)));
}

TEST_F(AxisMapping, FarValuesAreHeldToThePixelRange)
{
    // The distance is held to 32 bits, then the start is added without overflowing.
    EXPECT_EQ(XAxis.ScaleToPixel(1e300), INT32_MAX);
    EXPECT_EQ(XAxis.ScaleToPixel(-1e300), INT32_MIN + 60);
    EXPECT_EQ(YAxis.GetPosFromValue(-1e300), INT32_MAX);
}
