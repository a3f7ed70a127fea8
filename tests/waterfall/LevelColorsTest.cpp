// The level display: its colour rules, its levels and the thickness of its strip.
#include "qv/QVWaterfall.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace qv;

// Each rule at the ends of the range and in between; the bar and the picture part where one
// colour (fade against built-in) or none (built-in at 704 for an empty range) is set.
TEST(LevelColors, ValueToColorRules)
{
    struct TCase {
        const char* Name;
        bool Gray;
        std::vector<TAlphaColor> Colors;
        double Value, Max;
        TAlphaColor Picture, Bar;
    };
    const TCase Cases[] = {
        {"built-in bottom", false, {}, 0, 10, 0xFF000000, 0xFF000000},
        {"built-in top ends at blue 128", false, {}, 10, 10, 0xFFFF0080, 0xFFFF0080},
        {"built-in past the top stays there", false, {}, 30, 10, 0xFFFF0080, 0xFFFF0080},
        {"built-in first band", false, {}, 1, 1408, 0xFF000001, 0xFF000001},
        {"built-in green to yellow", false, {}, 1000, 1408, 0xFFE8FF00, 0xFFE8FF00},
        {"built-in, empty range on the bar", false, {}, 0, 0, 0xFF000000, QVLevelBuiltInColor(704)},
        {"grey rounds half to even", true, {}, 0.5, 255, 0xFF000000, 0xFF000000},
        {"grey", true, {0xFF112233}, 255, 255, 0xFFFFFFFF, 0xFFFFFFFF},
        {"grey middle", true, {}, 1.5, 3, 0xFF808080, 0xFF808080},
        {"one colour: built-in picture, faded bar", false, {0xFF0000FF}, 5, 10, 0xFF00FF3F, 0xFF000080},
        {"black to white ramp", false, {0xFF000000, 0xFFFFFFFF}, 5, 10, 0xFF808080, 0xFF808080},
        {"three colours at the top use the last pair",
         false,
         {0xFF000000, 0xFF00FF00, 0xFFFF0000},
         10,
         10,
         0xFFFF0000,
         0xFFFF0000},
        {"three colours in the first pair",
         false,
         {0xFF000000, 0xFF00FF00, 0xFFFF0000},
         2.5,
         10,
         0xFF008000,
         0xFF008000},
        {"alpha of the items is ignored", false, {0x00000000, 0x10FFFFFF}, 10, 10, 0xFFFFFFFF, 0xFFFFFFFF},
        {"NaN takes the bottom colour", false, {}, NAN, 10, 0xFF000000, 0xFF000000},
    };
    for (const TCase& C : Cases) {
        const TQVLevelColorMap Map(C.Gray, C.Colors);
        EXPECT_EQ(Map.ValueToColorGBR(C.Value, C.Max), C.Picture) << C.Name;
        EXPECT_EQ(Map.ValueToColor(C.Value, C.Max), C.Bar) << C.Name;
    }
}

TEST(LevelColors, TheLevelViewColoursWithItsListAndPicksNewColoursLeastUsed)
{
    TQVWaterfall Waterfall;
    TQVWaterfallDisplayLevelView& Levels = *Waterfall.GetLevels();
    EXPECT_EQ(Levels.ValueToColor(0, 0), QVLevelBuiltInColor(704));
    Levels.GetColors()->Add();
    Levels.GetColors()->Add();
    EXPECT_EQ(Levels.GetColors()->GetItem(0)->GetColor(), 0xFF000000u);
    EXPECT_EQ(Levels.GetColors()->GetItem(1)->GetColor(), 0xFF0000FFu);
    EXPECT_EQ(Levels.ValueToColorGBR(10, 10), 0xFF0000FFu);
    Levels.SetGrayScale(true);
    EXPECT_EQ(Levels.ValueToColorGBR(10, 10), 0xFFFFFFFFu); // the list is ignored
}

TEST(LevelColors, LevelsComeFromTheAxisUntilRowsArriveWithAutoscale)
{
    TQVWaterfall Waterfall;
    TQVLevelAxis& Axis = *Waterfall.GetLevels()->GetAxis();
    EXPECT_EQ(Waterfall.GetCurrentMinLevel(), 0.0);
    EXPECT_EQ(Waterfall.GetCurrentMaxLevel(), 1000.0);
    const double Row[] = {-3, 7};
    Waterfall.GetData()->AddData(Row, 2);
    Waterfall.UpdateIntBuffers();
    EXPECT_EQ(Waterfall.GetCurrentMinLevel(), -3.0);
    EXPECT_EQ(Waterfall.GetCurrentMaxLevel(), 7.0);
    Axis.SetAutoscale(false);
    Axis.SetMin(1);
    Axis.SetMax(2);
    EXPECT_EQ(Waterfall.GetCurrentMinLevel(), 1.0);
    EXPECT_EQ(Waterfall.GetCurrentMaxLevel(), 2.0);
    EXPECT_THROW(Axis.SetMax(NAN), std::invalid_argument);
    EXPECT_THROW(Axis.SetPrecision(19), std::out_of_range);
    EXPECT_EQ(Axis.GetMax(), 2.0);
}

// The strip: the bar, its margins, the ticks' texts and the caption.
TEST(LevelColors, StripThickness)
{
    struct TCase {
        bool AxisVisible, LabelVisible;
        int32_t Thickness;
    };
    // The recording canvas measures 6 pixels a character and 13 a line; "1000" is 24 wide.
    for (const TCase& C : {TCase{false, false, 14 + 6}, TCase{true, false, 14 + 4 + 24 + 9},
                           TCase{false, true, 14 + 4 + 13 + 2}, TCase{true, true, 14 + 4 + 24 + 9 + 13 + 2}}) {
        TQVWaterfall Waterfall;
        TQLBitmap Bitmap(300, 200);
        TQLRecordingCanvas Canvas;
        Waterfall.SetBounds(0, 0, 300, 200);
        TQVWaterfallDisplayLevelView& Levels = *Waterfall.GetLevels();
        Levels.GetAxis()->SetVisible(C.AxisVisible);
        Levels.GetLevelLabel()->SetVisible(C.LabelVisible);
        Levels.GetAxis()->SetPrecision(0);
        Levels.GetAxis()->SetFixedPrecision(true);
        Waterfall.PaintToCanvas(Bitmap, Canvas, false);
        const TRect R = Levels.GetDrawRect();
        EXPECT_EQ(R.Right - R.Left, C.Thickness) << C.AxisVisible << C.LabelVisible;
    }
}

// The track line follows the value under the mouse: over a filled column at its value's
// height, over the empty columns at the low end.
TEST(LevelColors, TheTrackLineFollowsTheValueUnderTheMouse)
{
    TQVWaterfall Waterfall;
    TQLBitmap Bitmap(300, 200);
    TQLRecordingCanvas Canvas;
    Waterfall.SetBounds(0, 0, 300, 200);
    Waterfall.GetXAxis()->SetSamples(10);
    TQVLevelAxis& Axis = *Waterfall.GetLevels()->GetAxis();
    Axis.SetAutoscale(false);
    Axis.SetMin(0);
    Axis.SetMax(100);
    const double Row[] = {100, 100};
    Waterfall.GetData()->AddData(Row, 2);
    Waterfall.PaintToCanvas(Bitmap, Canvas, false);
    const TRect View = Waterfall.GetDataView()->GetDrawRect();
    TQVWaterfallDisplayLevelView& Levels = *Waterfall.GetLevels();
    int32_t Pixel = 0;
    Waterfall.MouseMove(0, float(View.Left + 1), float(View.Top + 5));
    EXPECT_EQ(Levels.GetCurrentLevelValue(), 100.0);
    ASSERT_TRUE(Levels.GetTrackPixel(Pixel));
    EXPECT_EQ(Pixel, View.Top); // the top level at the top
    Waterfall.MouseMove(0, float(View.Right - 2), float(View.Top + 5));
    EXPECT_EQ(Levels.GetCurrentLevelValue(), 0.0);
    ASSERT_TRUE(Levels.GetTrackPixel(Pixel));
    EXPECT_EQ(Pixel, View.Bottom - 1); // the low end
}
