// The numeric tick texts on their own: every scale that an axis may show, walked with every
// step an axis may choose, must give texts that tell neighbours apart, say the value they
// stand for, and carry no digit beyond what the step needs.
#include "qv/axes/QVScaleTickText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

using namespace qv;

namespace {

struct TScale {
    double Min;
    double Max;
};

// Tiny, huge, negative, crossing zero, far from zero, not starting on a round value.
const std::vector<TScale> CScales = {
    {0.0, 1.0},         {0.0, 100.0},      {-1.0, 1.0},         {-250.0, -10.0},   {0.0, 1e-9},
    {-3e-12, 7e-12},    {1e12, 1e12 + 5e9}, {0.0, 7.3e15},       {-4e20, 9e20},     {1000.0, 1000.001},
    {-0.0375, 0.0115},  {12.7, 13.9},      {0.0, 3e-300},       {-1e300, 1e300},   {99999.0, 100001.0},
    {-7.5, 0.0},        {0.0, 0.3},        {-123456.0, 789012.0}};

// The steps an automatic walk chooses: 1, 2, 2.5 and 5 times a power of ten, from a
// thousandth of the scale to half of it.
std::vector<double> NiceSteps(double ARange)
{
    std::vector<double> Steps;
    const int Top = static_cast<int>(std::floor(std::log10(ARange)));
    for (int Decade = Top - 4; Decade <= Top; ++Decade)
        for (double Mantissa : {1.0, 2.0, 2.5, 5.0}) {
            const double Step = Mantissa * std::pow(10.0, Decade);
            if (Step >= ARange / 1000.0 && Step <= ARange / 2.0)
                Steps.push_back(Step);
        }
    return Steps;
}

// The decimals a step itself needs: 0.25 needs 2, 50 needs 0.
int DecimalsOf(double AStep)
{
    for (int N = 0; N < 400; ++N) {
        const double Scaled = AStep * std::pow(10.0, N);
        if (std::fabs(Scaled - std::round(Scaled)) <= 1e-6 * Scaled)
            return N;
    }
    return 400;
}

int DecimalsIn(const std::string& AText)
{
    const size_t Point = AText.find('.');
    return Point == std::string::npos ? 0 : static_cast<int>(AText.size() - Point - 1);
}

// The ticks of a walk from the first multiple of the step inside the scale, accumulated by
// addition as a walk does, so that they carry its rounding noise.
std::vector<double> Walk(const TScale& AScale, double AStep)
{
    std::vector<double> Ticks;
    double Value = std::ceil(AScale.Min / AStep) * AStep;
    for (int I = 0; Value <= AScale.Max && I < 2000; ++I, Value += AStep)
        Ticks.push_back(Value);
    return Ticks;
}

} // namespace

TEST(ScaleTickText, NeighbouringTicksOfEveryScaleAndStepReadApartAndTrue)
{
    for (const bool Scientific : {false, true}) {
        for (const TScale& Scale : CScales) {
            const double Range = Scale.Max - Scale.Min;
            for (const double Step : NiceSteps(Range)) {
                const std::vector<double> Ticks = Walk(Scale, Step);
                ASSERT_GE(Ticks.size(), 2u);
                std::string Previous;
                for (const double Tick : Ticks) {
                    SCOPED_TRACE(::testing::Message() << "scale " << Scale.Min << ".." << Scale.Max << " step "
                                                      << Step << " tick " << Tick << " sci " << Scientific);
                    const std::string Text = QVGetScaleTickText(Tick, Scale.Min, Scale.Max, false, 3, Scientific);
                    EXPECT_NE(Text, Previous);
                    Previous = Text;
                    // The text reads back as the tick, to a thousandth of the scale; a tick
                    // that is zero but for the walk's noise reads "0".
                    char* End = nullptr;
                    const double Back = std::strtod(Text.c_str(), &End);
                    EXPECT_EQ(*End, '\0') << Text;
                    EXPECT_LE(std::fabs(Back - Tick), Range / 2000.0 * (1.0 + 1e-9)) << Text;
                    if (std::fabs(Tick) < Step / 2.0) {
                        EXPECT_EQ(Text, "0");
                    }
                    EXPECT_FALSE(Text[0] == '-' && Back == 0.0) << Text;
                    if (!Scientific) {
                        // Plain decimals, no trailing zero, and on steps that an axis of up
                        // to 250 ticks takes, no more decimals than the step has.
                        EXPECT_EQ(Text.find_first_not_of("-0123456789."), std::string::npos) << Text;
                        if (Step >= Range / 250.0) {
                            EXPECT_LE(DecimalsIn(Text), DecimalsOf(Step)) << Text;
                        }
                        if (Text.find('.') != std::string::npos) {
                            EXPECT_NE(Text.back(), '0') << Text;
                        }
                    }
                }
            }
        }
    }
}

TEST(ScaleTickText, PlainFormWritesEveryDigitOfHugeAndTinyValues)
{
    EXPECT_EQ(QVGetScaleTickText(2e15, 0.0, 1e16, false, 3, false), "2000000000000000");
    EXPECT_EQ(QVGetScaleTickText(1500.0, 0.0, 5000.0, false, 3, false), "1500");
    EXPECT_EQ(QVGetScaleTickText(2.5e-9, 0.0, 1e-8, false, 3, false), "0.0000000025");
    EXPECT_EQ(QVGetScaleTickText(-0.75, -1.0, 1.0, false, 3, false), "-0.75");
    // A value far from a narrow scale keeps its integer digits and the scale's decimals.
    EXPECT_EQ(QVGetScaleTickText(1000.0005, 1000.0, 1000.001, false, 3, false), "1000.0005");
    // More precision shows more of a value that is not on a round tick.
    EXPECT_EQ(QVGetScaleTickText(3.14159265, 0.0, 10.0, false, 3, false), "3.14");
    EXPECT_EQ(QVGetScaleTickText(3.14159265, 0.0, 10.0, false, 6, false), "3.14159");
    // Huge values carry zeros where a double has no digits left, not its binary noise.
    EXPECT_EQ(QVGetScaleTickText(2e297, -1e300, 1e300, false, 3, false), "2" + std::string(297, '0'));
    EXPECT_EQ(QVGetScaleTickText(1e300, 0.0, 1.0, true, 2, false), "1" + std::string(300, '0') + ".00");
    EXPECT_EQ(QVGetScaleTickText(123456789.0, 0.0, 1e9, false, 3, false), "123000000");
    // A value below the resolution but not half of it away from zero is one unit of it.
    EXPECT_EQ(QVGetScaleTickText(0.0006, -1.0, 1.0, false, 3, false), "0.001");
    EXPECT_EQ(QVGetScaleTickText(-0.0006, -1.0, 1.0, false, 3, true), "-1E-3");
    // No more digits than a double carries.
    const std::string Big = QVGetScaleTickText(123456789012345.0, 0.0, 1e-6, false, 3, false);
    EXPECT_LE(Big.size(), 18u) << Big;
}

TEST(ScaleTickText, ScientificFormWritesMantissaAndBareExponent)
{
    EXPECT_EQ(QVGetScaleTickText(2.5e-6, 0.0, 1e-5, false, 3, true), "2.5E-6");
    EXPECT_EQ(QVGetScaleTickText(1000.0, 0.0, 5000.0, false, 3, true), "1E3");
    EXPECT_EQ(QVGetScaleTickText(-45000.0, -1e5, 1e5, false, 3, true), "-4.5E4");
    EXPECT_EQ(QVGetScaleTickText(0.0, -1.0, 1.0, false, 3, true), "0");
    // Noise below the scale's resolution is zero, not a tiny number.
    EXPECT_EQ(QVGetScaleTickText(5.5e-17, -1.0, 1.0, false, 3, true), "0");
    // The fixed form keeps exactly the precision in the mantissa.
    EXPECT_EQ(QVGetScaleTickText(1500.0, 0.0, 5000.0, true, 3, true), "1.500E3");
    EXPECT_EQ(QVGetScaleTickText(0.0, 0.0, 1.0, true, 2, true), "0.00E0");
}

TEST(ScaleTickText, FixedPrecisionKeepsExactlyItsDecimals)
{
    EXPECT_EQ(QVGetScaleTickText(1.5, 0.0, 1000.0, true, 3, false), "1.500");
    EXPECT_EQ(QVGetScaleTickText(1.26, 0.0, 0.001, true, 1, false), "1.3");
    EXPECT_EQ(QVGetScaleTickText(12.0, 0.0, 100.0, true, 0, false), "12");
    // A value that rounds to zero has no sign.
    EXPECT_EQ(QVGetScaleTickText(-0.0001, -1.0, 1.0, true, 2, false), "0.00");
    EXPECT_EQ(QVGetScaleTickText(-0.0, -1.0, 1.0, false, 3, false), "0");
    // Beyond 18 decimals the precision stops at 18.
    EXPECT_EQ(DecimalsIn(QVGetScaleTickText(0.5, 0.0, 1.0, true, 40, false)), 18);
    EXPECT_EQ(QVGetDecimalPoints(1.0, 1.0, 40, true), 18);
    EXPECT_EQ(QVGetDecimalPoints(1.0, 1.0, -1, true), 0);
}

TEST(ScaleTickText, DecimalPointsFollowTheScaleWidth)
{
    EXPECT_EQ(QVGetDecimalPoints(0.0, 1.0, 3, false), 3);
    EXPECT_EQ(QVGetDecimalPoints(0.0, 9.99, 3, false), 3);
    EXPECT_EQ(QVGetDecimalPoints(0.0, 10.0, 3, false), 2);
    EXPECT_EQ(QVGetDecimalPoints(0.0, 5000.0, 3, false), 0);
    EXPECT_EQ(QVGetDecimalPoints(0.0, 0.002, 3, false), 6);
    // A negative width counts by its size; more precision adds decimals, less keeps three.
    EXPECT_EQ(QVGetDecimalPoints(0.0, -0.002, 3, false), 6);
    EXPECT_EQ(QVGetDecimalPoints(0.0, 1.0, 6, false), 6);
    EXPECT_EQ(QVGetDecimalPoints(0.0, 1.0, 0, false), 3);
}

TEST(ScaleTickText, DegenerateInputGivesTextNotFailure)
{
    EXPECT_EQ(QVGetScaleTickText(std::nan(""), 0.0, 1.0, false, 3, false), "NaN");
    EXPECT_EQ(QVGetScaleTickText(HUGE_VAL, 0.0, 1.0, false, 3, true), "INF");
    EXPECT_EQ(QVGetScaleTickText(-HUGE_VAL, 0.0, 1.0, true, 3, false), "-INF");
    // A scale of no width, an unbounded one and one of NaN limits measure by the value.
    EXPECT_EQ(QVGetScaleTickText(5.0, 5.0, 5.0, false, 3, false), "5");
    EXPECT_EQ(QVGetScaleTickText(0.25, 0.0, HUGE_VAL, false, 3, false), "0.25");
    EXPECT_EQ(QVGetScaleTickText(0.25, std::nan(""), 1.0, false, 3, false), "0.25");
    EXPECT_EQ(QVGetScaleTickText(0.0, 0.0, 0.0, false, 3, false), "0");
    // The extremes of a double print in full without overrunning anything.
    EXPECT_EQ(QVGetScaleTickText(1.7e308, -1.7e308, 1.7e308, false, 3, false).size(), 309u);
    EXPECT_EQ(QVGetScaleTickText(-1.7e308, 0.0, 1e-320, false, 18, false).size(), 310u);
    const std::string Tiniest = QVGetScaleTickText(4.9e-324, 0.0, 1e-323, false, 3, true);
    EXPECT_EQ(Tiniest.rfind("4.94", 0), 0u) << Tiniest;
    EXPECT_EQ(Tiniest.substr(Tiniest.size() - 5), "E-324") << Tiniest;
}
