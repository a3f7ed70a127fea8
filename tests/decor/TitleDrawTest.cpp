// What a title draws: the text centred on the whole plot, turned on the left and right, in
// the title's font, over the strip's own background when it has one.
#include "decor/TitleTestSupport.h"

#include <gtest/gtest.h>

using namespace qv;
using namespace qv::test;

namespace {

// A 400 by 301 display whose texts measure 6 pixels a character plus 1: "Scope" is 31 wide,
// so that centring shows which half of the odd pixel goes where.
struct TDrawFixture {
    TTitleDisplay D{tmOddWidth};
    TFixedStrip Strip{&D, vaLeft, 100};
    TDrawFixture()
    {
        D.SetBounds(0, 0, 400, 301);
        D.Title()->SetText("Scope");
        // The strip docks before the title: the title's strip is off the middle.
        D.GetViews().AddBefore(D.Title(), &Strip);
    }
    TQLCanvasRecord DrawOnce(TQVBasicDisplayTitle* ATitle)
    {
        D.Layout();
        D.Recorder().ClearRecords();
        ATitle->Draw(ddpFeatures, D.Recorder(), false, false);
        const auto Texts = D.Recorder().Of("TextOut");
        EXPECT_EQ(Texts.size(), 1u);
        return Texts.empty() ? TQLCanvasRecord{} : Texts.front();
    }
};

} // namespace

TEST(TitleDraw, TopTitleCentresOnThePlotNotOnItsStrip)
{
    TDrawFixture F;
    const TQLCanvasRecord Text = F.DrawOnce(F.D.Title());
    EXPECT_EQ(F.D.Title()->GetDrawRect(), (TRect{100, 0, 400, 29}));
    EXPECT_EQ(Text.Text, "Scope");
    EXPECT_EQ(Text.Args, (std::vector<int32_t>{200 - 15, 4}));
    EXPECT_EQ(Text.TextAngle, 0);
    EXPECT_EQ(Text.Font, (TQLCanvasFont{"Arial", 16, fsBold, 0xFFFFFFFF}));
    EXPECT_EQ(Text.BrushStyle, bsClear);
    EXPECT_EQ(F.D.Recorder().Count("FillRect"), 0u) << "the control's colour shows through";

    // An additional title writes 4 pixels below its own strip's top.
    TQVAdditionalDisplayTitle* Second = F.D.Title()->GetAdditionalTitles()->Add()->GetTitle();
    Second->SetText("abc");
    const TQLCanvasRecord Below = F.DrawOnce(Second);
    EXPECT_EQ(Below.Args, (std::vector<int32_t>{200 - 9, 29 + 4}));
}

TEST(TitleDraw, LeftTitleReadsUpwardRightTitleDownward)
{
    TDrawFixture F;
    F.Strip.SetAlign(vaTop);
    F.Strip.Thickness = 50;

    F.D.Title()->SetAlign(vaLeft);
    const TQLCanvasRecord Left = F.DrawOnce(F.D.Title());
    EXPECT_EQ(F.D.Title()->GetDrawRect(), (TRect{0, 50, 29, 301}));
    EXPECT_EQ(Left.TextAngle, 90);
    // The turned text runs up from its origin: the odd pixel lies below the centre.
    EXPECT_EQ(Left.Args, (std::vector<int32_t>{0 + 4, 150 + 31 - 15}));
    EXPECT_EQ(F.D.Recorder().GetTextAngle(), 0) << "views drawn later must not write turned";

    F.D.Title()->SetAlign(vaRight);
    const TQLCanvasRecord Right = F.DrawOnce(F.D.Title());
    EXPECT_EQ(F.D.Title()->GetDrawRect(), (TRect{371, 50, 400, 301}));
    EXPECT_EQ(Right.TextAngle, 270);
    EXPECT_EQ(Right.Args, (std::vector<int32_t>{400 - 4, 150 - 15}));
}

TEST(TitleDraw, OwnBackgroundFillsTheStripBeforeTheText)
{
    TDrawFixture F;
    F.D.Title()->GetBackground()->SetUseControlColor(false);
    F.D.Title()->GetBackground()->SetColor(0xFF203040);
    F.D.Title()->GetFont()->SetColor(0xFFFFFF00);
    F.D.Recorder().GetBrush().SetStyle(bsClear); // left so by whatever drew before
    F.DrawOnce(F.D.Title());
    const auto Calls = F.D.Recorder().Of({"FillRect", "TextOut"});
    ASSERT_EQ(Calls.size(), 2u);
    EXPECT_EQ(Calls[0].Op, "FillRect");
    EXPECT_EQ(Calls[0].ArgRect(), (TRect{100, 0, 400, 29}));
    EXPECT_EQ(Calls[0].BrushColor, 0xFF203040u);
    EXPECT_EQ(Calls[0].BrushStyle, bsSolid);
    EXPECT_EQ(Calls[1].Font.Color, 0xFFFFFF00u);
}
