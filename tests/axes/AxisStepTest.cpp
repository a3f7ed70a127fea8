// The major step: the automatic choice of 1, 2, 2.5 or 5 times a power of ten, given steps
// doubled until they fit, and the memory that says whether the last automatic step holds.
// Text metrics of the recording canvas: 6 pixels a character, 13 pixels high.
#include "AxisTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace qv;
using namespace qvtest;

namespace {

class AxisStep : public TAxisFixture {};

} // namespace

TEST_F(AxisStep, TheAutomaticStepRoundsTheSmallestSpacingUpToTheNextMantissa)
{
    // 100 over 400 pixels, texts "0" and "100": spacing 26 pixels is 6.5 units -> 10.
    EXPECT_NEAR(XAxis.ComputeValueStep(), 10.0, 1e-12);
    // 1000 over 400, spacing "1000" + 8 = 32 pixels is 80 units -> 100.
    XAxis.SetLimits(0.0, 1000.0);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 100.0, 1e-12);
    // A raw step of exactly 0.1 (20 pixels of 2 over 400) stays on mantissa 1.
    XAxis.SetLimits(0.0, 2.0);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 0.1, 1e-15);
    // A vertical axis spaces by the line height: 17, held to 20 pixels of 300 -> 6.67 -> 10.
    EXPECT_NEAR(YAxis.ComputeValueStep(), 10.0, 1e-12);
    // 2.5: a raw 2.2 lies above the logarithm of 2.
    YAxis.SetLimits(0.0, 33.0); // 20 pixels of 300 is 2.2 units
    EXPECT_NEAR(YAxis.ComputeValueStep(), 2.5, 1e-12);
    YAxis.SetLimits(0.0, 45.0); // 3.0 -> 5
    EXPECT_NEAR(YAxis.ComputeValueStep(), 5.0, 1e-12);
    YAxis.SetLimits(0.0, 22.5); // 1.5 -> 2
    EXPECT_NEAR(YAxis.ComputeValueStep(), 2.0, 1e-12);
}

TEST_F(AxisStep, TheTextTestMovesTheStepOnWhenTheTextsAreLonger)
{
    // The spacing comes from the maximum's text ("1"), the room from the longer minimum
    // ("-123500000", 60 pixels + 2): the spacing alone asks for 1e7, too close for that
    // text; 2e7 fits.
    XAxis.SetLimits(-123456789.0, 1.0);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 2e7, 1e-3);
    // Six decimals more on the minimum's text push the step on to 5e7.
    XAxis.GetFormat()->SetFixedPrecision(true);
    XAxis.GetFormat()->SetPrecision(6);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 5e7, 1e-3);
}

TEST_F(AxisStep, ALogarithmicStepIsInDecadesAndADecascaleStepIsOne)
{
    YAxis.Mode = smLogarithmic;
    YAxis.SetLimits(0.0, 1000.0);
    EXPECT_NEAR(YAxis.ComputeValueStep(), 2.0, 1e-12);
    YAxis.Mode = smLogDecascale;
    EXPECT_EQ(YAxis.GetMinScaleLineDistance(), 1u);
    EXPECT_EQ(YAxis.ComputeValueStep(), 1.0);
}

TEST_F(AxisStep, FallsBackToOneForAnEmptyViewOrRange)
{
    YAxis.SetLimits(5.0, 5.0);
    EXPECT_EQ(YAxis.ComputeValueStep(), 1.0);
    YAxis.SetLimits(0.0, 100.0);
    YAxis.SetDrawRect(TRect{0, 20, 1, 321}); // no width
    EXPECT_EQ(YAxis.ComputeValueStep(), 1.0);
}

TEST_F(AxisStep, AnInvertedRangeGivesANegativeStep)
{
    YAxis.SetLimits(100.0, 0.0);
    EXPECT_NEAR(YAxis.ComputeValueStep(), -10.0, 1e-12);
}

TEST_F(AxisStep, WithoutACanvasTextsMeasureNothingAndTheSpacingRuleStillHolds)
{
    Display.Canvas = nullptr;
    EXPECT_EQ(XAxis.GetMaxTextLength(), 0u);
    EXPECT_EQ(XAxis.GetMinScaleLineDistance(), 20u);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 5.0, 1e-12); // 20 pixels are 5 units
    // 6.5 units lie above the last mantissa: on to the next decade, though a smaller step
    // would leave room enough for texts of nothing.
    XAxis.SetLimits(0.0, 130.0);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 10.0, 1e-12);
}

TEST_F(AxisStep, TextMeasuresFollowTheOrientation)
{
    EXPECT_EQ(XAxis.GetMaxTextLength(), 18u);          // "100"
    EXPECT_EQ(XAxis.GetMinScaleLineDistance(), 26u);   // "100" + 8
    EXPECT_EQ(YAxis.GetMaxTextLength(), 13u);          // a line
    EXPECT_EQ(YAxis.GetMinScaleLineDistance(), 20u);   // 13 + 4, held to 20
    // The measures use the axis font.
    YAxis.GetFont()->SetName("Courier");
    YAxis.GetMaxTextLength();
    EXPECT_EQ(Canvas.GetFont().Name, "Courier");
}

TEST_F(AxisStep, AGivenStepIsDoubledUntilItsTextsFit)
{
    // 4 pixels a unit, texts need 18 + 2: 1 -> 2 -> 4 -> 8 (32 pixels).
    EXPECT_DOUBLE_EQ(XAxis.ValidateStep(1.0, mtmCustom, false), 8.0);
    EXPECT_DOUBLE_EQ(XAxis.ValidateStep(25.0, mtmCustom, false), 25.0);
    // Override only insists on more than one pixel: 0.4 is 1.6 pixels, 0.8 is 3.2.
    EXPECT_DOUBLE_EQ(XAxis.ValidateStep(0.1, mtmOverride, false), 0.8);
    // A step of 0 cannot be doubled into anything.
    EXPECT_EQ(XAxis.ValidateStep(0.0, mtmCustom, false), 0.0);
    // A decascale axis may keep its step.
    XAxis.Mode = smLogDecascale;
    EXPECT_EQ(XAxis.ValidateStep(0.01, mtmCustom, true), 0.01);
    // Otherwise the step is in decades: 2.004 decades over 400 pixels.
    EXPECT_DOUBLE_EQ(XAxis.ValidateStep(0.01, mtmCustom, false), 0.16);
}

TEST_F(AxisStep, GetStepFollowsTheMajorTickMode)
{
    EXPECT_NEAR(XAxis.GetStep(), 10.0, 1e-12);
    XAxis.GetMajorTicks()->SetMode(mtmCustom);
    XAxis.GetMajorTicks()->SetStep(3.0);
    EXPECT_DOUBLE_EQ(XAxis.GetStep(), 6.0); // 12 pixels too close, 24 fit
    XAxis.GetMajorTicks()->SetMode(mtmOverride);
    EXPECT_DOUBLE_EQ(XAxis.GetStep(), 3.0);
}

TEST_F(AxisStep, TheRememberedStepHoldsUntilModeRangeOrSizeChange)
{
    EXPECT_FALSE(YAxis.IsValidStep());
    YAxis.GetStep();
    EXPECT_TRUE(YAxis.IsValidStep());
    YAxis.SetLimits(0.0, 200.0);
    EXPECT_FALSE(YAxis.IsValidStep());
    YAxis.GetStep();
    EXPECT_TRUE(YAxis.IsValidStep());
    YAxis.SetDrawRect(TRect{0, 20, 60, 300});
    EXPECT_FALSE(YAxis.IsValidStep());
    YAxis.GetStep();
    YAxis.Mode = smLogarithmic;
    EXPECT_FALSE(YAxis.IsValidStep());
}
