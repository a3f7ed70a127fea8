// The scope's one draw order, seen on a recording canvas: background first, then the docked
// views, the data view's border and grid, the channels clipped to the view, and the focus
// frame last; printing leaves the screen state alone.
#include "qv/QVScope.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVScopeDataView.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace qv;

namespace {

struct TPaintedScope {
    TPaintedScope()
    {
        Scope.SetBounds(0, 0, 400, 300);
        Bitmap.SetSize(400, 300);
    }
    void Paint(bool APrinting = false)
    {
        Canvas.ClearRecords();
        Scope.PaintToCanvas(Bitmap, Canvas, APrinting);
    }
    // The position of the first record of AOp whose text or rectangle matches, or -1.
    ptrdiff_t IndexOf(const std::string& AOp, const std::string& AText = {}) const
    {
        const auto& R = Canvas.GetRecords();
        auto It = std::find_if(R.begin(), R.end(),
                               [&](const TQLCanvasRecord& C) { return C.Op == AOp && (AText.empty() || C.Text == AText); });
        return It == R.end() ? -1 : It - R.begin();
    }

    TQVScope Scope;
    TQLBitmap Bitmap;
    TQLRecordingCanvas Canvas;
};

} // namespace

TEST(ScopeDrawOrder, BackgroundThenTitleThenTheDataViewsBorder)
{
    TPaintedScope P;
    P.Paint();
    const auto& R = P.Canvas.GetRecords();
    ASSERT_FALSE(R.empty());
    // The whole picture is filled first, in the control's colour, clipped to the region.
    const ptrdiff_t Fill = P.IndexOf("FillRect");
    ASSERT_GE(Fill, 0);
    EXPECT_EQ(R[size_t(Fill)].ArgRect(), (TRect{0, 0, 400, 300}));
    EXPECT_EQ(R[size_t(Fill)].BrushColor, P.Scope.GetColor());
    EXPECT_LT(P.IndexOf("SetClipRegion"), Fill);

    const ptrdiff_t Title = P.IndexOf("TextOut", "Scope");
    const ptrdiff_t Border = P.IndexOf("RectangleRect");
    ASSERT_GE(Title, 0);
    ASSERT_GE(Border, 0);
    EXPECT_LT(Fill, Title);
    EXPECT_LT(Title, Border);
    // The border frames the data view, which lies below the title.
    const TRect View = P.Scope.GetScopeDataView()->GetDrawRect();
    EXPECT_EQ(R[size_t(Border)].ArgRect(), View);
    EXPECT_EQ(R[size_t(Border)].PenColor, 0xFF008000u);
    EXPECT_GT(View.Top, 0);
}

TEST(ScopeDrawOrder, FocusFrameComesLastAndNeverWhenPrinting)
{
    TPaintedScope P;
    P.Scope.SetFocused(true);
    P.Paint();
    ASSERT_EQ(P.Canvas.Count("DrawFocusRect"), 1u);
    EXPECT_EQ(P.Canvas.GetRecords().back().Op, "DrawFocusRect");
    EXPECT_EQ(P.Canvas.GetRecords().back().ArgRect(), (TRect{0, 0, 400, 300}));

    P.Paint(true);
    EXPECT_EQ(P.Canvas.Count("DrawFocusRect"), 0u);
}

TEST(ScopeDrawOrder, PrintingLeavesTheRecalculationDueAndTheScreenPaintClearsIt)
{
    TPaintedScope P;
    P.Scope.InvalidateRecalc();
    ASSERT_TRUE(P.Scope.GetNeedsRecalc());
    P.Paint(true);
    EXPECT_TRUE(P.Scope.GetNeedsRecalc());
    P.Paint();
    EXPECT_FALSE(P.Scope.GetNeedsRecalc());
}

TEST(ScopeDrawOrder, HiddenBorderAndOwnBackgroundColour)
{
    TPaintedScope P;
    TQVScopeDataView& View = *P.Scope.GetScopeDataView();
    View.GetBorder()->SetVisible(false);
    View.GetBackground()->SetUseControlColor(false);
    View.GetBackground()->SetColor(0xFF102030);
    P.Paint();
    EXPECT_EQ(P.Canvas.Count("RectangleRect"), 0u);
    const auto Fills = P.Canvas.Of("FillRect");
    ASSERT_EQ(Fills.size(), 2u);
    EXPECT_EQ(Fills[1].ArgRect(), View.GetDrawRect());
    EXPECT_EQ(Fills[1].BrushColor, 0xFF102030u);
}

TEST(ScopeDrawOrder, GridLinesCrossTheViewWithABrighterZeroLine)
{
    TPaintedScope P;
    P.Paint();
    const TRect View = P.Scope.GetScopeDataView()->GetDrawRect();
    // Both walks of an axis begin at zero, so the zero line may be drawn twice at one place.
    int Horizontal = 0, Vertical = 0;
    std::set<int32_t> Zero;
    for (const TQLCanvasRecord& R : P.Canvas.Of("LineTo")) {
        const bool AcrossX = R.PenPos.X == View.Left && R.Args[0] == View.Right - 1 && R.Args[1] == R.PenPos.Y;
        const bool AcrossY = R.PenPos.Y == View.Top && R.Args[1] == View.Bottom - 1 && R.Args[0] == R.PenPos.X;
        Horizontal += AcrossX;
        Vertical += AcrossY;
        if (AcrossX && R.PenColor == 0xFF008000u) {
            Zero.insert(R.PenPos.Y);
            // The default Y range is -1 to 1: zero lies in the middle of the view.
            EXPECT_NEAR(R.PenPos.Y, (View.Top + View.Bottom) / 2, 1);
        }
    }
    EXPECT_GE(Horizontal, 3);
    EXPECT_GE(Vertical, 3);
    EXPECT_EQ(Zero.size(), 1u);

    // Hidden lines are not drawn; the zero line stays on its own.
    P.Scope.GetYAxis()->GetDataView()->GetLines()->SetVisible(false);
    P.Scope.GetXAxis()->GetDataView()->GetLines()->SetVisible(false);
    P.Paint();
    std::set<int32_t> Remaining;
    for (const TQLCanvasRecord& R : P.Canvas.Of("LineTo"))
        if (R.PenPos.X == View.Left && R.Args[0] == View.Right - 1)
            Remaining.insert(R.PenPos.Y);
    EXPECT_EQ(Remaining, Zero);
}

TEST(ScopeDrawOrder, TheHitMarkOfTheChannelUnderTheMouseComesAfterTheChannelsAndNotInPrint)
{
    TPaintedScope P;
    const std::vector<double> Samples{0.1, 0.5, -0.3, 0.2};
    TQVScopeChannel* Channel = P.Scope.GetChannels()->GetItem(0);
    Channel->GetData()->SetYData(Samples.data(), uint32_t(Samples.size()));
    P.Scope.RefreshView();
    P.Scope.GetHighlighting()->GetMouseHitPoint()->SetEnabled(true);
    TQVScopeDataView& View = *P.Scope.GetScopeDataView();
    P.Paint();
    const TPoint Hit{(View.GetDrawRect().Left + View.GetDrawRect().Right) / 2, 120};
    View.GetHighlightInfo().FHighlightedItem = Channel;
    View.SetHighlightedChannel(Channel, Hit);

    auto MarkAt = [&](const std::vector<TQLCanvasRecord>& ARecords) {
        for (size_t i = 0; i < ARecords.size(); ++i)
            if (ARecords[i].Op == "Rectangle" && ARecords[i].ArgRect() == (TRect{Hit.X - 2, Hit.Y - 2, Hit.X + 3, Hit.Y + 3}))
                return ptrdiff_t(i);
        return ptrdiff_t(-1);
    };
    P.Paint();
    const auto& R = P.Canvas.GetRecords();
    const ptrdiff_t Mark = MarkAt(R);
    ASSERT_GE(Mark, 0);
    EXPECT_EQ(R[size_t(Mark)].PenColor, Channel->GetColor());
    // Every line of the channel lies under the mark.
    for (size_t i = size_t(Mark); i < R.size(); ++i)
        EXPECT_FALSE(R[i].Op == "LineTo" && R[i].PenColor == Channel->GetColor()) << i;

    P.Paint(true);
    EXPECT_LT(MarkAt(P.Canvas.GetRecords()), 0);
}
