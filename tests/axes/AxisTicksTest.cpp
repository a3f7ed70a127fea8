// The tick walks and the strip's drawing: positions and counts of major and minor ticks on
// linear, logarithmic and decascale axes, start values, custom steps and the stop conditions.
// Standard geometry: data view left 60, top 20, 400 wide, 300 high; X strip below it from
// y 321, Y strip left of it up to x 60. Recording canvas: 6 pixels a character, 13 high.
#include "AxisTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using namespace qv;
using namespace qvtest;

namespace {

class AxisTicks : public TAxisFixture {
protected:
    // Walks AAxis with the tick log as its function, the way the strip walks it.
    TTickLog Walk(TTestAxis& AAxis, bool ADrawAll = true, bool ADecascaleAll = false)
    {
        TTickLog Log;
        const TQVAxisTickProc Proc = Log.Proc();
        AAxis.DrawTickLines(Proc, Proc, true, Canvas, ADrawAll, ADecascaleAll);
        return Log;
    }
};

std::vector<int32_t> Every(int32_t AFrom, int32_t ATo, int32_t AStep)
{
    std::vector<int32_t> Result;
    for (int32_t P = AFrom; AStep > 0 ? P <= ATo : P >= ATo; P += AStep)
        Result.push_back(P);
    return Result;
}

// Major tick lines of a strip, told apart from minor ones by their length.
std::vector<int32_t> LineAt(const TQLRecordingCanvas& ACanvas, int32_t ALength, bool AVertical)
{
    std::vector<int32_t> Result;
    for (const TDrawnLine& L : DrawnLines(ACanvas)) {
        const int32_t Length = AVertical ? L.To.X - L.From.X : L.To.Y - L.From.Y;
        if (Length == ALength)
            Result.push_back(AVertical ? L.From.Y : L.From.X);
    }
    return Result;
}

// Tick values accumulate the step, so they are compared to a tolerance.
void ExpectValues(const std::vector<double>& AActual, const std::vector<double>& AExpected)
{
    ASSERT_EQ(AActual.size(), AExpected.size());
    for (size_t I = 0; I < AActual.size(); ++I)
        EXPECT_NEAR(AActual[I], AExpected[I], 1e-9) << "tick " << I;
}

} // namespace

TEST_F(AxisTicks, LinearXAxisDrawsLinesTextsAndMinorTicksBelowTheData)
{
    XAxis.GetMinorTicks()->SetCount(4);
    XAxis.GetFont()->SetColor(0xFF00FF00);
    XAxis.DrawTicks(Canvas, true, false);

    const std::vector<TDrawnLine> Lines = DrawnLines(Canvas);
    ASSERT_FALSE(Lines.empty());
    // The base line, 3 + 2 pixels below the strip's top, along the whole data view.
    EXPECT_EQ(Lines[0].From, (TPoint{60, 326}));
    EXPECT_EQ(Lines[0].To, (TPoint{461, 326}));
    // Every 10 units (40 pixels): 7 pixels long from the base line.
    EXPECT_EQ(LineAt(Canvas, 7, false), Every(60, 460, 40));
    // Four minor ticks split each interval in five, 5 pixels long.
    std::vector<int32_t> Minor;
    for (int32_t Major = 60; Major < 460; Major += 40)
        for (int32_t K = 1; K <= 4; ++K)
            Minor.push_back(Major + 8 * K);
    EXPECT_EQ(LineAt(Canvas, 5, false), Minor);

    // Texts centred under the major ticks, 11 below the base, before their lines.
    const auto Texts = Canvas.Of("TextOut");
    ASSERT_EQ(Texts.size(), 11u);
    for (size_t I : {size_t(0), size_t(5)})
        EXPECT_EQ(Texts[I].Args, (std::vector<int32_t>{I == 0 ? 57 : 254, 335})) << Texts[I].Text;
    EXPECT_EQ(Texts[10].Text, "100");
    EXPECT_EQ(Texts[10].Args, (std::vector<int32_t>{451, 335}));
    EXPECT_EQ(Texts[10].Font.Color, 0xFF00FF00u);
    EXPECT_EQ(Texts[10].BrushStyle, bsClear);
    EXPECT_EQ(Canvas.GetRecords()[2].Op, "TextOut");
    EXPECT_EQ(Lines[1].To, (TPoint{60, 333}));
    EXPECT_EQ(Canvas.Of("LineTo")[1].PenColor, 0xFFFFFFFFu);
}

TEST_F(AxisTicks, LogarithmicYAxisStepsByTheDecadeAndThinsOutCloseTicks)
{
    YAxis.Mode = smLogarithmic;
    YAxis.SetLimits(0.0, 1000.0);
    YAxis.DrawTicks(Canvas, true, true);
    // The step is 2 in the first decade (0 to 9), 20 in the next, 200 in the next; ticks
    // closer than a text height (13) to the last drawn one are left out.
    const std::vector<int32_t> Expected{320, 272, 250, 236, 216, 171, 149, 135, 115, 71, 49, 35};
    EXPECT_EQ(LineAt(Canvas, 6, true), Expected);
    const auto Texts = Canvas.Of("TextOut");
    ASSERT_EQ(Texts.size(), Expected.size());
    const std::vector<std::string> Values{"0", "2", "4", "6", "10", "30", "50", "70", "110", "310", "510", "710"};
    for (size_t I = 0; I < Texts.size(); ++I) {
        EXPECT_EQ(Texts[I].Text, Values[I]);
        // Right-aligned 10 pixels left of the strip's inner edge, centred on the line.
        EXPECT_EQ(Texts[I].Args[0], 57 - 6 * static_cast<int32_t>(Values[I].size()) - 10);
        EXPECT_EQ(Texts[I].Args[1], Expected[I] - 6);
    }
    // The base line runs down the strip's inner edge.
    EXPECT_EQ(DrawnLines(Canvas)[0].From, (TPoint{55, 20}));
    EXPECT_EQ(DrawnLines(Canvas)[0].To, (TPoint{55, 321}));
}

TEST_F(AxisTicks, DecascaleAxisMarksEveryMultipleOfEachDecade)
{
    YAxis.Mode = smLogDecascale;
    YAxis.SetLimits(0.0, 1000.0);
    // Texts keep their distance unless every line is asked for.
    TTickLog Thin = Walk(YAxis);
    EXPECT_EQ(Thin.MajorValues(),
              (std::vector<double>{0, 1, 2, 4, 6, 9, 20, 30, 50, 70, 100, 200, 300, 500, 700, 1000}));
    EXPECT_EQ(Thin.Positions(false),
              (std::vector<int32_t>{320, 290, 272, 250, 236, 220, 188, 171, 149, 135, 120, 90, 72, 50, 35, 20}));
    TTickLog All = Walk(YAxis, true, true);
    std::vector<double> Multiples{0};
    for (double Decade : {1.0, 10.0, 100.0})
        for (int K = 1; K <= 9; ++K)
            Multiples.push_back(K * Decade);
    Multiples.push_back(1000.0);
    EXPECT_EQ(All.MajorValues(), Multiples);
}

TEST_F(AxisTicks, ARangeAcrossZeroWalksDownFromZeroThenUp)
{
    YAxis.SetLimits(-50.0, 50.0);
    YAxis.GetMinorTicks()->SetCount(1);
    TTickLog Log = Walk(YAxis);
    // Both walks begin at zero, so zero comes twice.
    EXPECT_EQ(Log.Positions(false), (std::vector<int32_t>{170, 200, 230, 260, 290, 320, 170, 140, 110, 80, 50, 20}));
    EXPECT_EQ(Log.Positions(true), (std::vector<int32_t>{185, 215, 245, 275, 305, 155, 125, 95, 65, 35}));
    for (const TTickLog::TTick& T : Log.Ticks)
        EXPECT_EQ(T.Zero, !T.Minor && T.Position == 170) << T.Value;
    // Minor ticks of the walk up carry the last value of the walk down.
    EXPECT_NEAR(Log.Ticks.back().Value, -70.0, 1e-9);
    // Without DrawAll each walk stops at its first tick.
    EXPECT_EQ(Walk(YAxis, false).Positions(false), (std::vector<int32_t>{170, 170}));
}

TEST_F(AxisTicks, AGivenStartBeginsTheWalkUpThereAndTheWalkDownAtItsMirror)
{
    YAxis.SetLimits(-50.0, 50.0);
    YAxis.GetMajorTicks()->GetStartFrom()->SetMode(mtmCustom);
    YAxis.GetMajorTicks()->GetStartFrom()->SetStartFrom(3.0);
    TTickLog Log = Walk(YAxis);
    ExpectValues(Log.MajorValues(), {-3, -13, -23, -33, -43, 3, 13, 23, 33, 43});
    EXPECT_EQ(Log.Positions(false), (std::vector<int32_t>{179, 209, 239, 269, 299, 161, 131, 101, 71, 41}));
}

TEST_F(AxisTicks, TicksNoFartherApartThanTheTextLengthAreLeftOut)
{
    // Straight from value to pixel (not from the end): 60 + 1.8 v, so a step of 10 is exactly
    // one text length of 18; only every other tick is more than that from the last one drawn.
    TTickLog Log;
    XAxis.DownTickLines(&XAxis, Log.Proc(), false, Canvas, 18, true, 0.0, 100.0, 60.0, -1.8, false);
    EXPECT_EQ(Log.Positions(false), (std::vector<int32_t>{60, 96, 132, 168, 204, 240}));
    ExpectValues(Log.MajorValues(), {0, 20, 40, 60, 80, 100});
}

TEST_F(AxisTicks, ACustomStepHandlerSkipsOrStretchesOneTickOrEndsTheWalk)
{
    YAxis.SetLimits(-50.0, 50.0);
    YAxis.GetMinorTicks()->SetCount(1);
    std::vector<double> Asked;
    YAxis.SetOnCustomStep([&](TQLPersistent* ASender, double AValue, double& AStep, bool& ADraw) {
        EXPECT_EQ(ASender, &YAxis);
        EXPECT_NEAR(AStep, 10.0, 1e-12);
        Asked.push_back(AValue);
        if (std::abs(AValue - 20.0) < 1e-9)
            ADraw = false;
    });
    TTickLog Log = Walk(YAxis);
    EXPECT_EQ(Log.Positions(false), (std::vector<int32_t>{170, 200, 230, 260, 290, 320, 170, 140, 80, 50, 20}));
    // The minor ticks on both sides of the skipped one stay.
    EXPECT_EQ(Log.Positions(true), (std::vector<int32_t>{185, 215, 245, 275, 305, 155, 125, 95, 65, 35}));
    EXPECT_EQ(Asked.size(), 14u); // 0 to -60 and 0 to 60

    // A changed step holds for one tick; a zero step ends the walk.
    XAxis.SetOnCustomStep([](TQLPersistent*, double AValue, double& AStep, bool&) {
        if (AValue == 0.0)
            AStep = 30.0;
    });
    EXPECT_EQ(Walk(XAxis).Positions(false), (std::vector<int32_t>{60, 180, 220, 260, 300, 340, 380, 420, 460}));

    XAxis.SetOnCustomStep([](TQLPersistent*, double AValue, double& AStep, bool&) {
        if (std::abs(AValue - 30.0) < 1e-9)
            AStep = 0.0;
    });
    EXPECT_EQ(Walk(XAxis).Positions(false), (std::vector<int32_t>{60, 100, 140, 180}));
}

TEST_F(AxisTicks, AGivenStepIsDrawnWithTextRoomUnlessItOverrides)
{
    XAxis.GetMajorTicks()->SetMode(mtmCustom);
    XAxis.GetMajorTicks()->SetStep(1.0);
    EXPECT_EQ(Walk(XAxis).Positions(false), Every(60, 444, 32)); // doubled to 8
    XAxis.GetMajorTicks()->SetMode(mtmOverride);
    const TTickLog Dense = Walk(XAxis);
    EXPECT_EQ(Dense.Positions(false), Every(60, 460, 4)); // every unit, a pixel apart suffices
}

TEST_F(AxisTicks, AReversedYAxisAndATurnedXAxisWalkDownwards)
{
    YAxis.SetReversed(true);
    const TTickLog Reversed = Walk(YAxis);
    EXPECT_EQ(Reversed.Positions(false), Every(20, 320, 30));
    EXPECT_NEAR(Reversed.MajorValues().back(), 100.0, 1e-9);

    // On a turned display the X axis' ticks run down its left strip.
    Display.Turned = true;
    XAxis.SetDrawRect(TRect{0, 20, 60, 321});
    XAxis.DrawTicks(Canvas, true, true);
    EXPECT_EQ(LineAt(Canvas, 6, true), Every(20, 320, 30)); // 0 at the top
    const auto Texts = Canvas.Of("TextOut");
    ASSERT_EQ(Texts.size(), 11u);
    EXPECT_EQ(Texts[0].Text, "0");
    EXPECT_EQ(Texts[0].Args, (std::vector<int32_t>{41, 14}));
}

TEST_F(AxisTicks, AWalkFarFromItsStartEndsAfterItsIterationLimit)
{
    // The walk up counts whole steps from zero in 32 bits: from 1e12 it starts far below the
    // range and gives up after its iteration limit instead of walking forever.
    YAxis.SetLimits(1e12, 1e12 + 100.0);
    EXPECT_TRUE(Walk(YAxis).Ticks.empty());
    // From a given start of 0, a range N steps of 10 away is walked to: the ticks it reaches
    // within 100000 steps are drawn, and none beyond.
    YAxis.GetMajorTicks()->GetStartFrom()->SetMode(mtmCustom);
    YAxis.GetMajorTicks()->GetStartFrom()->SetStartFrom(0.0);
    const struct {
        double Steps;
        size_t Ticks;
    } Cases[] = {{99980.0, 11}, {99995.0, 6}, {100001.0, 0}, {100010.0, 0}, {1e7, 0}};
    for (const auto& C : Cases) {
        YAxis.SetLimits(C.Steps * 10.0, C.Steps * 10.0 + 100.0);
        EXPECT_EQ(Walk(YAxis).MajorValues().size(), C.Ticks) << C.Steps;
    }
    // A range too wide for a step falls back to a step of 1, which moves no pixel: each walk
    // draws its zero tick and then walks to its limit.
    YAxis.GetMajorTicks()->GetStartFrom()->SetMode(mtmAuto);
    YAxis.SetLimits(-8e307, 2e35);
    EXPECT_EQ(Walk(YAxis).Positions(false), (std::vector<int32_t>{320, 320}));
}

TEST_F(AxisTicks, TheTrackLineFollowsTheMouseOverTheDataView)
{
    Display.DoMouseEnter();
    Display.MouseMove(0, 100.0f, 150.0f);
    XAxis.DrawMouseMarker(Canvas, 20);
    YAxis.DrawMouseMarker(Canvas, 20);
    const std::vector<TDrawnLine> Lines = DrawnLines(Canvas);
    ASSERT_EQ(Lines.size(), 2u);
    EXPECT_EQ(Lines[0].From, (TPoint{100, 326}));
    EXPECT_EQ(Lines[0].To, (TPoint{100, 341}));
    EXPECT_EQ(Lines[1].To, (TPoint{56, 150}));
    EXPECT_EQ(Canvas.Of("LineTo")[0].PenColor, 0xFFFF0000u);

    // Over the axis strip itself, outside the data view: no line.
    Canvas.ClearRecords();
    Display.MouseMove(0, 100.0f, 340.0f);
    XAxis.DrawMouseMarker(Canvas, 20);
    EXPECT_EQ(Canvas.Count("LineTo"), 0u);

    Display.DoMouseLeave();
    EXPECT_FALSE(XAxis.GetMouseIsIn());
}
