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
    struct TCase {
        bool Y;
        TQVScaleMode Mode;
        double Lo, Hi, Step;
        const char* Why;
    };
    const TCase Cases[] = {
        {false, smLinear, 0, 100, 10, "spacing \"100\" + 8 = 26 pixels is 6.5 units"},
        {false, smLinear, 0, 1000, 100, "\"1000\" + 8 = 32 pixels is 80 units"},
        {false, smLinear, 0, 2, 0.1, "a raw step of exactly 0.1 stays on mantissa 1"},
        {true, smLinear, 0, 100, 10, "a line height of 17, held to 20 pixels of 300"},
        {true, smLinear, 0, 33, 2.5, "a raw 2.2 lies above the logarithm of 2"},
        {true, smLinear, 0, 45, 5, "3.0"},
        {true, smLinear, 0, 22.5, 2, "1.5"},
        {true, smLinear, 100, 0, -10, "an inverted range steps down"},
        {true, smLinear, 5, 5, 1, "no width"},
        {true, smLogarithmic, 0, 1000, 2, "in decades"},
        {true, smLogDecascale, 0, 1000, 1, "always one decade"},
        // The spacing comes from the maximum's text ("1"), the room from the longer minimum
        // ("-123500000", 60 pixels + 2): 1e7 is too close for that text, 2e7 fits.
        {false, smLinear, -123456789, 1, 2e7, "the text test moves the step on"},
    };
    for (const TCase& C : Cases) {
        SCOPED_TRACE(C.Why);
        TTestAxis& Axis = C.Y ? YAxis : XAxis;
        Axis.Mode = C.Mode;
        Axis.SetLimits(C.Lo, C.Hi);
        EXPECT_NEAR(Axis.ComputeValueStep(), C.Step, std::fabs(C.Step) * 1e-12);
    }
    // Six decimals more on the minimum's text push the step on to 5e7.
    XAxis.GetFormat()->SetFixedPrecision(true);
    XAxis.GetFormat()->SetPrecision(6);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 5e7, 1e-3);
    // An empty view falls back to one.
    YAxis.Mode = smLinear;
    YAxis.SetLimits(0.0, 100.0);
    YAxis.SetDrawRect(TRect{0, 20, 1, 321});
    EXPECT_EQ(YAxis.ComputeValueStep(), 1.0);
}

TEST_F(AxisStep, TextMeasuresFollowTheOrientationAndFontAndVanishWithoutACanvas)
{
    EXPECT_EQ(XAxis.GetMaxTextLength(), 18u);        // "100"
    EXPECT_EQ(XAxis.GetMinScaleLineDistance(), 26u); // "100" + 8
    EXPECT_EQ(YAxis.GetMaxTextLength(), 13u);        // a line
    EXPECT_EQ(YAxis.GetMinScaleLineDistance(), 20u); // 13 + 4, held to 20
    YAxis.Mode = smLogDecascale;
    EXPECT_EQ(YAxis.GetMinScaleLineDistance(), 1u);
    YAxis.GetFont()->SetName("Courier");
    YAxis.GetMaxTextLength();
    EXPECT_EQ(Canvas.GetFont().Name, "Courier");

    Display.Canvas = nullptr;
    EXPECT_EQ(XAxis.GetMaxTextLength(), 0u);
    EXPECT_EQ(XAxis.GetMinScaleLineDistance(), 20u);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 5.0, 1e-12); // 20 pixels are 5 units
    // 6.5 units lie above the last mantissa: on to the next decade, though a smaller step
    // would leave room enough for texts of nothing.
    XAxis.SetLimits(0.0, 130.0);
    EXPECT_NEAR(XAxis.ComputeValueStep(), 10.0, 1e-12);
}

TEST_F(AxisStep, AGivenStepIsDoubledUntilItsTextsFit)
{
    // 4 pixels a unit, texts need 18 + 2: 1 -> 2 -> 4 -> 8 (32 pixels).
    EXPECT_DOUBLE_EQ(XAxis.ValidateStep(1.0, mtmCustom, false), 8.0);
    EXPECT_DOUBLE_EQ(XAxis.ValidateStep(25.0, mtmCustom, false), 25.0);
    // Override only insists on more than one pixel: 0.4 is 1.6 pixels, 0.8 is 3.2.
    EXPECT_DOUBLE_EQ(XAxis.ValidateStep(0.1, mtmOverride, false), 0.8);
    EXPECT_EQ(XAxis.ValidateStep(0.0, mtmCustom, false), 0.0); // cannot be doubled into anything
    XAxis.Mode = smLogDecascale;
    EXPECT_EQ(XAxis.ValidateStep(0.01, mtmCustom, true), 0.01); // a decascale axis may keep it
    // Otherwise the step is in decades: 2.004 decades over 400 pixels.
    EXPECT_DOUBLE_EQ(XAxis.ValidateStep(0.01, mtmCustom, false), 0.16);

    // GetStep follows the major tick mode.
    XAxis.Mode = smLinear;
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
    YAxis.SetDrawRect(TRect{0, 20, 60, 300});
    EXPECT_FALSE(YAxis.IsValidStep());
    YAxis.GetStep();
    YAxis.Mode = smLogarithmic;
    EXPECT_FALSE(YAxis.IsValidStep());
}
