// Cursors: names and colours of new cursors, the 5-pixel target of the hit test, the line
// held dashed at the view's edge, the clamped read-back, and drags through the data view.
#include "elements/ElementTestSupport.h"

#include <algorithm>

using namespace qv;
using namespace qvtest;

namespace {
class Cursors : public TElementFixture {};
} // namespace

TEST_F(Cursors, NewCursorsAreNamedByCountAndTakeTheLeastUsedColour)
{
    const TAlphaColor Expected[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF};
    for (int i = 0; i < 3; ++i) {
        TQVScopeCursor* C = Scope.GetCursors()->Add();
        EXPECT_EQ(C->GetName(), "Cursor" + std::to_string(i + 1));
        EXPECT_EQ(C->GetColor(), Expected[i]);
    }
    // A deleted cursor's colour is the least used again; the name follows the count.
    Scope.GetCursors()->Delete(0);
    TQVScopeCursor* C = Scope.GetCursors()->Add();
    EXPECT_EQ(C->GetColor(), 0xFFFF0000u);
    EXPECT_EQ(C->GetName(), "Cursor3");
}

TEST_F(Cursors, HitWithinTwoPixelsOfALineThatCanBeDragged)
{
    struct TCase {
        TQVDisplayCursorKind Kind;
        bool CanDrag;
        int32_t DX, DY; // from the crossing of the lines at (50, 50)
        bool Hit, V, H;
    };
    const TCase Cases[] = {
        {ckVertical, true, 2, 30, true, true, false},    {ckVertical, true, -2, 0, true, true, false},
        {ckVertical, true, 3, 0, false, false, false},   {ckVertical, false, 0, 0, false, false, false},
        {ckHorizontal, true, 40, -2, true, false, true}, {ckHorizontal, true, 0, 3, false, false, false},
        {ckBoth, true, 1, 1, true, true, true},          {ckBoth, true, 1, 20, true, true, false},
    };
    for (const TCase& C : Cases) {
        Scope.GetCursors()->Clear();
        TQVScopeCursor* Cursor = AddCursor(C.Kind, 50.0, 50.0);
        Cursor->SetCanDrag(C.CanDrag);
        TQVHighlightInfo I;
        EXPECT_EQ(Cursor->HitTest(I, LineX(50) + C.DX, LineY(50) + C.DY, View), C.Hit)
            << int(C.Kind) << " " << C.DX << "," << C.DY;
        EXPECT_EQ(I.FVMoveCursor, C.V);
        EXPECT_EQ(I.FHMoveCursor, C.H);
    }
}

TEST_F(Cursors, OutsideTheViewALineIsHeldDashedAtTheEdgeOnlyWhenAskedAndReadsBackClamped)
{
    TQVScopeCursor* C = AddCursor(ckVertical, 250.0, 0.0);
    C->GetPosition()->SetX(250.0);
    // Beyond the data the position reads back at its end; the stored value stays.
    EXPECT_EQ(C->GetPosition()->GetX(), 100.0);
    Scope.SetDesigning(true);
    EXPECT_EQ(C->GetPosition()->GetX(), 250.0);
    Scope.SetDesigning(false);

    Scope.GetXAxis()->GetMin()->SetAutoScale(false);
    Scope.GetXAxis()->GetMax()->SetAutoScale(false);
    Scope.ZoomTo(0.0, 50.0, 0.0, 100.0, false);
    C->GetPosition()->SetX(80.0); // right of the zoomed window
    struct TCase {
        bool Stay;
        bool Dashed;
    };
    for (const TCase& T : {TCase{true, true}, TCase{false, false}}) {
        Scope.SetCursorsStayInView(T.Stay);
        Paint();
        View = Scope.GetScopeDataView()->GetDrawRect();
        bool Found = false;
        for (const TQLCanvasRecord& R : Canvas.Of("LineTo"))
            if (R.PenColor == C->GetColor() && R.Args[0] == R.PenPos.X) {
                Found = true;
                EXPECT_EQ(R.PenStyle == psDash, T.Dashed);
                if (T.Stay)
                    EXPECT_EQ(R.Args[0], View.Right - 1);
                else
                    EXPECT_GE(R.Args[0], View.Right);
            }
        EXPECT_TRUE(Found) << T.Stay;
        // The held line is still the cursor's target.
        TQVHighlightInfo I;
        EXPECT_EQ(C->HitTest(I, View.Right - 1, View.Top + 20, View), T.Stay);
    }
}

TEST_F(Cursors, ADragMovesTheLineReportsOnceAndLeavesNoGhostBehind)
{
    TQVScopeCursor* C = AddCursor(ckVertical, 20.0, 50.0);
    Paint();
    int Moves = 0;
    TQVRealPoint From{}, To{};
    Scope.GetCursors()->SetOnCursorMoved([&](TQLPersistent*, int32_t AIndex, TQVRealPoint AOld, TQVRealPoint ANew) {
        ++Moves;
        EXPECT_EQ(AIndex, 0);
        From = AOld;
        To = ANew;
    });
    const int32_t Y = View.Top + 100;
    // A press and release in place changes nothing and reports nothing.
    Drag({LineX(20), Y}, {LineX(20), Y});
    EXPECT_EQ(Moves, 0);
    EXPECT_EQ(C->GetPosition()->GetX(), 20.0);

    // Off the view and back: the cursor lands where the button goes up.
    Move(LineX(20), Y);
    EXPECT_EQ(Info().FHighlightedItem, C);
    Scope.MouseDown(mbLeft, {}, float(LineX(20)), float(Y));
    EXPECT_EQ(Info().FDraggedCursor, C);
    Move(View.Right + 40, Y);
    EXPECT_EQ(Info().FHighlightedItem, nullptr); // nothing lights while dragging
    Move(LineX(70), Y);
    Paint();
    // The ghost follows the mouse in the trail colour, with the difference beside it.
    bool Ghost = false;
    for (const TQLCanvasRecord& R : Canvas.Of("LineTo"))
        Ghost |=
            R.PenStyle == psDash && R.PenColor == Scope.GetTrails()->GetColor() && std::abs(R.Args[0] - LineX(70)) <= 1;
    EXPECT_TRUE(Ghost);
    EXPECT_EQ(Canvas.Of("TextOut").empty(), false);
    Scope.MouseUp(mbLeft, {}, float(LineX(70)), float(Y));
    EXPECT_EQ(Moves, 1);
    EXPECT_NEAR(C->GetPosition()->GetX(), 70.0, 0.5); // within a pixel
    EXPECT_EQ(From.X, 20.0);
    EXPECT_EQ(To.X, C->GetPosition()->GetX());
    EXPECT_EQ(Info().FDraggedCursor, nullptr);
}

TEST_F(Cursors, CrossingsWithLinkedChannelsAreMarkedAndLabelledAndHoverLightsTheLine)
{
    TQVScopeCursor* C = AddCursor(ckVertical, 50.0, 0.0);
    TQVDisplayCursorChannelLink* Mark = C->GetChannels()->Add();
    Mark->SetChannel(Scope.GetChannels()->GetItem(0));
    Mark->SetShape(msSquare);
    Mark->GetChannelLabel()->SetVisible(true);
    Mark->GetChannelLabel()->SetText("at %Y");
    Paint();
    // The ramp holds Y = X: the cursor at 50 crosses it on sample 50, marked in the channel's
    // colour.
    const TQVScopeChannel* Channel = Scope.GetChannels()->GetItem(0);
    const auto MarksOf = [&] {
        std::vector<TQLCanvasRecord> Result;
        for (const TQLCanvasRecord& R : Canvas.Of("RectangleRect"))
            if (R.PenColor == Channel->GetColor())
                Result.push_back(R);
        return Result;
    };
    const auto Squares = MarksOf();
    const auto Square = Squares.begin();
    ASSERT_NE(Square, Squares.end());
    const TRect Box = Square->ArgRect();
    EXPECT_EQ((Box.Left + Box.Right - 1) / 2, Channel->GetScaledIntDrawBufferX()->GetItem(50));
    EXPECT_EQ(Box.Right - Box.Left, 7);
    const auto Texts = Canvas.Of("TextOut");
    EXPECT_NE(std::find_if(Texts.begin(), Texts.end(), [](const auto& R) { return R.Text.rfind("at 50", 0) == 0; }),
              Texts.end());
    // A channel on no link of the cursor is not marked; a hidden channel neither.
    Scope.GetChannels()->GetItem(0)->SetVisible(false);
    Paint();
    EXPECT_TRUE(MarksOf().empty());

    // Under the mouse the line gets a 3-pixel halo in the highlight colour beneath it.
    Move(LineX(50), View.Top + 50);
    Paint();
    const auto Lines = Canvas.Of("LineTo");
    EXPECT_NE(std::find_if(Lines.begin(), Lines.end(),
                           [&](const auto& R) {
                               return R.PenWidth == 3 && R.Args[0] == LineX(50) &&
                                      R.PenColor == Scope.GetHighlighting()->GetCursors()->GetColor();
                           }),
              Lines.end());
}

TEST_F(Cursors, InATurnedScopeAVerticalCursorRunsAcrossTheScreen)
{
    Scope.SetVertical(true);
    Paint();
    View = Scope.GetScopeDataView()->GetDrawRect();
    TQVScopeCursor* C = AddCursor(ckVertical, 50.0, 0.0);
    C->SetColor(0xFF123456);
    Paint();
    // X runs down the screen: the line is a row.
    const auto Lines = Canvas.Of("LineTo");
    const auto Row =
        std::find_if(Lines.begin(), Lines.end(), [&](const auto& R) { return R.PenColor == C->GetColor(); });
    ASSERT_NE(Row, Lines.end());
    EXPECT_EQ(Row->PenPos.Y, Row->Args[1]);
    const int32_t Y = Row->Args[1];
    TQVHighlightInfo I;
    EXPECT_TRUE(C->HitTest(I, View.Left + 30, Y + 2, View));
    EXPECT_TRUE(I.FVMoveCursor);
    EXPECT_FALSE(C->HitTest(I, View.Left + 30, Y + 3, View));
}
