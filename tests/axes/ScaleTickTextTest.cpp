// The numeric tick texts on their own: every scale an axis may show, walked with every step
// an axis may choose, must give texts that tell neighbours apart, read back as their value and
// carry no digit the step does not need; then the exact forms of the corner cases.
#include "qv/axes/QVScaleTickText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

using namespace qv;

namespace {

// The decimals a step itself needs: 0.25 needs 2, 50 needs 0.
int DecimalsOf(double AStep)
{
    for (int N = 0;; ++N) {
        const double Scaled = AStep * std::pow(10.0, N);
        if (std::fabs(Scaled - std::round(Scaled)) <= 1e-6 * Scaled)
            return N;
    }
}

int DecimalsIn(const std::string& AText)
{
    const size_t Point = AText.find('.');
    return Point == std::string::npos ? 0 : static_cast<int>(AText.size() - Point - 1);
}

} // namespace

TEST(ScaleTickText, NeighbouringTicksOfEveryScaleAndStepReadApartAndTrue)
{
    // Tiny, huge, negative, crossing zero, far from zero, off round values, at the extremes.
    const std::vector<std::pair<double, double>> Scales = {
        {0, 1},           {-1, 1},     {-250, -10},     {0, 1e-9},        {-3e-12, 7e-12},
        {1e12, 1.005e12}, {0, 7.3e15}, {-4e20, 9e20},   {1000, 1000.001}, {-0.0375, 0.0115},
        {12.7, 13.9},     {0, 3e-300}, {-1e300, 1e300}, {99999, 100001},  {-123456, 789012}};
    for (const bool Scientific : {false, true})
        for (const auto& [Min, Max] : Scales) {
            const double Range = Max - Min;
            // The steps of an automatic walk: 1, 2, 2.5, 5 times a power of ten, from a
            // thousandth of the scale to half of it; ticks accumulate as a walk adds them.
            for (int Decade = static_cast<int>(std::floor(std::log10(Range))) - 4; Decade <= 300; ++Decade)
                for (const double Mantissa : {1.0, 2.0, 2.5, 5.0}) {
                    const double Step = Mantissa * std::pow(10.0, Decade);
                    if (Step < Range / 1000.0 || Step > Range / 2.0)
                        continue;
                    std::string Previous;
                    for (double Tick = std::ceil(Min / Step) * Step; Tick <= Max; Tick += Step) {
                        SCOPED_TRACE(::testing::Message() << Min << ".." << Max << " step " << Step << " at " << Tick
                                                          << (Scientific ? " sci" : ""));
                        const std::string Text = QVGetScaleTickText(Tick, Min, Max, false, 3, Scientific);
                        EXPECT_NE(Text, Previous);
                        Previous = Text;
                        char* End = nullptr;
                        const double Back = std::strtod(Text.c_str(), &End);
                        EXPECT_EQ(*End, '\0');
                        EXPECT_LE(std::fabs(Back - Tick), Range / 2000.0 * (1.0 + 1e-9)) << Text;
                        EXPECT_FALSE(Text[0] == '-' && Back == 0.0) << Text;
                        if (std::fabs(Tick) < Step / 2.0) {
                            EXPECT_EQ(Text, "0");
                        }
                        if (Scientific)
                            continue;
                        // Plain digits, no trailing zero, and on the steps of an axis of up
                        // to 250 ticks no more decimals than the step has.
                        EXPECT_EQ(Text.find_first_not_of("-0123456789."), std::string::npos) << Text;
                        EXPECT_FALSE(Text.find('.') != std::string::npos && Text.back() == '0') << Text;
                        if (Step >= Range / 250.0) {
                            EXPECT_LE(DecimalsIn(Text), DecimalsOf(Step)) << Text;
                        }
                    }
                }
        }
}

TEST(ScaleTickText, ExactFormsOfPlainScientificFixedAndDegenerateInput)
{
    struct TCase {
        double Value, Min, Max;
        bool Fixed;
        uint32_t Precision;
        bool Scientific;
        std::string Text;
    };
    const std::string Zeros297(297, '0');
    const std::vector<TCase> Cases = {
        {2e15, 0, 1e16, false, 3, false, "2000000000000000"},
        {2.5e-9, 0, 1e-8, false, 3, false, "0.0000000025"},
        {1000.0005, 1000, 1000.001, false, 3, false, "1000.0005"},
        {3.14159265, 0, 10, false, 6, false, "3.14159"}, // more precision, more digits
        {123456789, 0, 1e9, false, 3, false, "123000000"},
        {2e297, -1e300, 1e300, false, 3, false, "2" + Zeros297}, // no binary noise
        {0.0006, -1, 1, false, 3, false, "0.001"},               // below the resolution
        {-0.0, -1, 1, false, 3, false, "0"},
        {2.5e-6, 0, 1e-5, false, 3, true, "2.5E-6"},
        {5.5e-17, -1, 1, false, 3, true, "0"}, // a walk's noise is zero
        {1500, 0, 5000, true, 3, true, "1.500E3"},
        {1.5, 0, 1000, true, 3, false, "1.500"},
        {-0.0001, -1, 1, true, 2, false, "0.00"},
        {0.5, 0, 1, true, 40, false, "0." + std::string(1, '5') + std::string(17, '0')}, // 18 at most
        {std::nan(""), 0, 1, false, 3, false, "NaN"},
        {HUGE_VAL, 0, 1, false, 3, true, "INF"},
        {-HUGE_VAL, 0, 1, true, 3, false, "-INF"},
        {5, 5, 5, false, 3, false, "5"},              // no width: the value's size
        {0.25, 0, HUGE_VAL, false, 3, false, "0.25"}, // unbounded
    };
    for (const TCase& C : Cases)
        EXPECT_EQ(QVGetScaleTickText(C.Value, C.Min, C.Max, C.Fixed, C.Precision, C.Scientific), C.Text)
            << C.Value << " on " << C.Min << ".." << C.Max;
    // The extremes of a double print in full.
    EXPECT_EQ(QVGetScaleTickText(-1.7e308, 0.0, 1e-320, false, 18, false).size(), 310u);

    // Decimals follow the scale's width; the fixed form keeps its precision within 0..18.
    EXPECT_EQ(QVGetDecimalPoints(0.0, 9.99, 3, false), 3);
    EXPECT_EQ(QVGetDecimalPoints(0.0, 10.0, 3, false), 2);
    EXPECT_EQ(QVGetDecimalPoints(0.0, -0.002, 3, false), 6);
    EXPECT_EQ(QVGetDecimalPoints(0.0, 1.0, 0, false), 3);
    EXPECT_EQ(QVGetDecimalPoints(1.0, 1.0, -1, true), 0);
}
