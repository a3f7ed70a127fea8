// Cursor links: the measurement line and its text, the cases that draw nothing, the place of
// the line across the view, the shading, and a drag of the line through the data view.
#include "elements/ElementTestSupport.h"

#include <algorithm>

using namespace qv;
using namespace qvtest;

namespace {
class CursorLinks : public TElementFixture {
protected:
    TQVScopeCursorLink* Link(TQVScopeCursor* A, TQVScopeCursor* B)
    {
        TQVScopeCursorLink* L = Scope.GetCursorLinks()->Add();
        L->SetBeginCursor(A);
        L->SetEndCursor(B);
        return L;
    }
    // The measurement lines drawn in the line's colour.
    std::vector<TQLCanvasRecord> MeasureLines(TAlphaColor AColor)
    {
        std::vector<TQLCanvasRecord> Result;
        for (const TQLCanvasRecord& R : Canvas.Of("LineTo"))
            if (R.PenColor == AColor && R.PenWidth == 1 && R.PenPos.Y == R.Args[1])
                Result.push_back(R);
        return Result;
    }
};
} // namespace

TEST_F(CursorLinks, MeasureAlongXWithTheTextCentredOverTheLine)
{
    TQVScopeCursor* First = AddCursor(ckVertical, 20.0, 0.0);
    TQVScopeCursorLink* L = Link(First, AddCursor(ckVertical, 60.0, 0.0));
    EXPECT_EQ(L->GetName(), "Link1");
    const TAlphaColor Color = 0xFF123456;
    L->GetMeasurementLine()->SetColor(Color);
    L->GetMeasurementLine()->GetMeasurementLabel()->SetText("d=%V");
    Paint();
    const auto Lines = MeasureLines(Color);
    ASSERT_EQ(Lines.size(), 1u);
    const int32_t A = LineX(20), B = LineX(60);
    const int32_t C = View.Top + int32_t(std::nearbyint(View.Height() * 0.5));
    EXPECT_EQ(Lines[0].PenPos, (TPoint{A, C}));
    EXPECT_EQ(Lines[0].Args[0], B);
    const auto Texts = Canvas.Of("TextOut");
    const auto Text = std::find_if(Texts.begin(), Texts.end(), [](const auto& R) { return R.Text == "d=40"; });
    ASSERT_NE(Text, Texts.end());
    const int32_t W = int32_t(Text->Text.size()) * TQLRecordingCanvas::CharWidth;
    EXPECT_EQ(Text->Args[0], A + ((B - A) - W) / 2);
    EXPECT_EQ(Text->Args[1], C - TQLRecordingCanvas::LineHeight);

    // The place across the view: 100 at the top edge, -100 at the bottom, kept in between.
    for (const auto& [Y, Row] :
         {std::pair{100.0, View.Top}, std::pair{-100.0, View.Bottom - 1}, std::pair{250.0, View.Top}}) {
        L->GetMeasurementLine()->SetY(Y);
        Paint();
        const auto At = MeasureLines(Color);
        ASSERT_EQ(At.size(), 1u) << Y;
        EXPECT_EQ(At[0].PenPos.Y, Row) << Y;
    }
}

TEST_F(CursorLinks, NothingIsMeasuredBetweenOnePlaceOtherKindsOrAHiddenCursor)
{
    struct TCase {
        const char* Name;
        TQVDisplayCursorKind KindA, KindB;
        double XA, XB;
        bool HideB;
    };
    const TCase Cases[] = {
        {"one place", ckVertical, ckVertical, 30.0, 30.0, false},
        {"other kinds", ckVertical, ckHorizontal, 30.0, 60.0, false},
        {"hidden", ckVertical, ckVertical, 30.0, 60.0, true},
    };
    for (const TCase& T : Cases) {
        Scope.GetCursorLinks()->Clear();
        Scope.GetCursors()->Clear();
        TQVScopeCursor* A = AddCursor(T.KindA, T.XA, 20.0);
        TQVScopeCursorLink* L = Link(A, AddCursor(T.KindB, T.XB, 70.0));
        L->GetMeasurementLine()->SetColor(0xFF123456);
        L->GetSelection()->SetVisible(true);
        Scope.GetCursors()->GetItem(1)->SetVisible(!T.HideB);
        Paint();
        EXPECT_TRUE(MeasureLines(0xFF123456).empty()) << T.Name;
        EXPECT_EQ(Canvas.Count("FillRect"), 1u) << T.Name; // the background only
        TQVHighlightInfo I;
        EXPECT_FALSE(L->HitTest(I, LineX(45), View.Top + View.Height() / 2, View)) << T.Name;
    }
}

TEST_F(CursorLinks, TheSelectionShadesBetweenTheCursors)
{
    TQVScopeCursor* First = AddCursor(ckVertical, 60.0, 0.0);
    TQVScopeCursorLink* L = Link(First, AddCursor(ckVertical, 20.0, 0.0));
    L->GetSelection()->SetVisible(true);
    L->GetSelection()->GetBrush()->SetColor(0x80102030);
    Paint();
    const auto Fills = Canvas.Of("FillRect");
    const auto Shade =
        std::find_if(Fills.begin(), Fills.end(), [](const auto& R) { return R.BrushColor == 0x80102030u; });
    ASSERT_NE(Shade, Fills.end());
    EXPECT_EQ(Shade->ArgRect(), (TRect{LineX(20), View.Top, LineX(60), View.Bottom}));
}

TEST_F(CursorLinks, TheLineIsDraggedAcrossTheViewAndALinkLosingItsCursorLetsGo)
{
    TQVScopeCursor* First = AddCursor(ckVertical, 20.0, 0.0);
    TQVScopeCursorLink* L = Link(First, AddCursor(ckVertical, 60.0, 0.0));
    Paint();
    int Moves = 0;
    Scope.GetCursorLinks()->SetOnLinkMoved([&](TQLPersistent*, int32_t, TQVRealPoint, TQVRealPoint) { ++Moves; });
    const int32_t C = View.Top + int32_t(std::nearbyint(View.Height() * 0.5));
    Move(LineX(40), C + 2);
    EXPECT_EQ(Info().FHighlightedItem, L);
    EXPECT_TRUE(Info().FHMoveCursorLink);
    // A quarter of the view's height from the top is Y 50.
    const int32_t Quarter = View.Top + (View.Height() - 1) / 4;
    Drag({LineX(40), C}, {LineX(40), Quarter});
    EXPECT_EQ(Moves, 1);
    EXPECT_NEAR(L->GetMeasurementLine()->GetY(), 50.0, 0.5);

    // The cursor goes while the link is lit: the link lets go and nothing names either.
    Move(LineX(40), Quarter);
    EXPECT_EQ(Info().FHighlightedItem, L);
    Scope.GetCursors()->Delete(1);
    EXPECT_EQ(L->GetEndCursor(), nullptr);
    EXPECT_EQ(L->GetEndCursorIndex(), -1);
    EXPECT_TRUE(Scope.GetCursors()->GetItem(0)->GetCursorLinks().size() == 1u);
    Paint();
    Move(LineX(40), Quarter + 1);
    EXPECT_NE(Info().FHighlightedItem, L);
    Scope.GetCursorLinks()->Delete(0);
    EXPECT_TRUE(Scope.GetCursors()->GetItem(0)->GetCursorLinks().empty());
    EXPECT_THROW(Link(nullptr, nullptr)->SetBeginCursorIndex(5), std::out_of_range);
}
