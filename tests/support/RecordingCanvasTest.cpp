// The recording canvas that the drawing tests rely on: state captured per call, filters,
// and the clip through saved states.
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(RecordingCanvas, EachCallKeepsTheStateOfItsMoment)
{
    TQLRecordingCanvas C;
    C.GetPen().SetColor(0xFFFF0000);
    C.MoveTo(1, 2);
    C.LineTo(5, 2);
    C.GetPen().SetColor(0xFF00FF00);
    C.SetPenWidth(3);
    C.SetPenStyle(psDash);
    C.GetBrush().SetStyle(bsClear);
    C.SetTextAngle(90);
    C.LineTo(5, 9);
    C.TextOut(7, 8, "ab");

    const auto Lines = C.Of("LineTo");
    ASSERT_EQ(Lines.size(), 2u);
    EXPECT_EQ(Lines[0].PenPos, (TPoint{1, 2}));
    EXPECT_EQ(Lines[0].PenColor, 0xFFFF0000u);
    EXPECT_EQ(Lines[0].PenWidth, 1);
    EXPECT_EQ(Lines[1].PenPos, (TPoint{5, 2}));
    EXPECT_EQ(Lines[1].PenColor, 0xFF00FF00u);
    EXPECT_EQ(Lines[1].PenWidth, 3);
    EXPECT_EQ(Lines[1].PenStyle, psDash);
    EXPECT_EQ(Lines[1].BrushStyle, bsClear);
    const auto Text = C.Of("TextOut");
    ASSERT_EQ(Text.size(), 1u);
    EXPECT_EQ(Text[0].Text, "ab");
    EXPECT_EQ(Text[0].TextAngle, 90);
    EXPECT_EQ(C.GetPenPos(), (TPoint{5, 9}));

    const auto Moves = C.Of({"MoveTo", "TextOut"});
    ASSERT_EQ(Moves.size(), 2u);
    EXPECT_EQ(Moves[0].Op, "MoveTo");
    EXPECT_EQ(Moves[1].Op, "TextOut");
    EXPECT_EQ(C.Count("LineTo"), 2u);
}

TEST(RecordingCanvas, ClipFollowsSavedStates)
{
    TQLRecordingCanvas C;
    EXPECT_FALSE(C.GetClip().has_value());
    C.SetClipRegion(TQLRegion(TRect{0, 0, 5, 5}));
    {
        TQLCanvasSave Save(C);
        C.ClearClipRegion();
        EXPECT_FALSE(C.GetClip().has_value());
    }
    ASSERT_TRUE(C.GetClip().has_value());
    EXPECT_EQ(C.GetClip()->GetRects(), (std::vector<TRect>{TRect{0, 0, 5, 5}}));
    EXPECT_EQ(C.Of("SetClipRegion")[0].Args, (std::vector<int32_t>{0, 0, 5, 5}));
    C.RestoreState(); // nothing saved: no change
    EXPECT_TRUE(C.GetClip().has_value());
}
