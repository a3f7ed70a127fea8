// The scope's one draw order, seen on a recording canvas: background first, then the docked
// views, the data view's border and grid, the channels clipped to the view, and the focus
// frame last; printing leaves the screen state alone.
#include "qv/QVScope.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVScopeDataView.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

using namespace qv;

namespace {

struct TPaintedScope {
    TPaintedScope()
    {
        Scope.SetBounds(0, 0, 400, 300);
        Bitmap.SetSize(400, 300);
        // The legend's swatches are rectangles too; the order of the rest is what counts here.
        Scope.GetLegend()->SetVisible(false);
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
        auto It = std::find_if(R.begin(), R.end(), [&](const TQLCanvasRecord& C) {
            return C.Op == AOp && (AText.empty() || C.Text == AText);
        });
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
    // The whole picture is filled first, in the control's colour, clipped to the region.
    const ptrdiff_t Fill = P.IndexOf("FillRect");
    ASSERT_GE(Fill, 0);
    EXPECT_EQ(R[size_t(Fill)].ArgRect(), (TRect{0, 0, 400, 300}));
    EXPECT_EQ(R[size_t(Fill)].BrushColor, P.Scope.GetColor());
    EXPECT_LT(P.IndexOf("SetClipRegion"), Fill);

    const ptrdiff_t Title = P.IndexOf("TextOut", "Scope");
    const ptrdiff_t Border = P.IndexOf("RectangleRect");
    EXPECT_LT(Fill, Title);
    EXPECT_LT(Title, Border);
    // The border frames the data view, which lies below the title.
    const TRect View = P.Scope.GetScopeDataView()->GetDrawRect();
    EXPECT_EQ(R[size_t(Border)].ArgRect(), View);
    EXPECT_EQ(R[size_t(Border)].PenColor, 0xFF008000u);
    EXPECT_GT(View.Top, 0);
}

TEST(ScopeDrawOrder, FocusFrameComesLastAndPrintingLeavesTheScreenStateAlone)
{
    TPaintedScope P;
    P.Scope.SetFocused(true);
    P.Scope.InvalidateRecalc();
    P.Paint(true);
    EXPECT_EQ(P.Canvas.Count("DrawFocusRect"), 0u);
    EXPECT_TRUE(P.Scope.GetNeedsRecalc()); // the screen's layout is still due
    P.Paint();
    EXPECT_FALSE(P.Scope.GetNeedsRecalc());
    ASSERT_EQ(P.Canvas.Count("DrawFocusRect"), 1u);
    EXPECT_EQ(P.Canvas.GetRecords().back().Op, "DrawFocusRect");
    EXPECT_EQ(P.Canvas.GetRecords().back().ArgRect(), (TRect{0, 0, 400, 300}));
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
            if (ARecords[i].Op == "Rectangle" &&
                ARecords[i].ArgRect() == (TRect{Hit.X - 2, Hit.Y - 2, Hit.X + 3, Hit.Y + 3}))
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

namespace {
// A family that writes down when it was called, and where the canvas's record stood then.
struct TLoggingFamily : IQVScopeElementFamily {
    TLoggingFamily(TQVScopeElementKind AKind, std::vector<std::string>& ALog, const TQLRecordingCanvas& ACanvas)
        : Kind(AKind), Log(ALog), Canvas(ACanvas)
    {}
    void DrawElements(TQVDisplayDrawPart APart, TQLCanvas&, const TRect& AClip, bool) override
    {
        static const char* Names[] = {"links",  "zones",   "ellipses", "markers", "chlinks",
                                      "labels", "cursors", "external", "toolbar"};
        static const char* Parts[] = {"bg", "fg", "feat", "text"};
        Log.push_back(std::string(Names[Kind]) + "/" + Parts[APart]);
        Clip = AClip;
        At.push_back(Canvas.GetRecords().size());
    }
    TQVScopeElementKind Kind;
    std::vector<std::string>& Log;
    const TQLRecordingCanvas& Canvas;
    TRect Clip;
    std::vector<size_t> At;
};
} // namespace

TEST(ScopeDrawOrder, ElementFamiliesDrawAtTheirPlacesAroundTheGridAndTheChannels)
{
    TPaintedScope P;
    const std::vector<double> Samples{0.1, 0.5, -0.3, 0.2};
    P.Scope.GetChannels()->GetItem(0)->GetData()->SetYData(Samples.data(), 4);
    P.Scope.RefreshView();
    std::vector<std::string> Log;
    std::vector<std::unique_ptr<TLoggingFamily>> Families;
    for (int K = 0; K < QVScopeElementKindCount; ++K) {
        Families.push_back(std::make_unique<TLoggingFamily>(TQVScopeElementKind(K), Log, P.Canvas));
        P.Scope.GetElementFamilies().Set(TQVScopeElementKind(K), Families.back().get());
    }
    P.Paint();
    const std::vector<std::string> Expected{"external/fg", "links/bg",    "zones/bg",   "ellipses/bg",   "markers/bg",
                                            "zones/fg",    "ellipses/fg", "chlinks/fg", "markers/fg",    "labels/fg",
                                            "cursors/fg",  "links/feat",  "zones/feat", "ellipses/feat", "toolbar/fg"};
    EXPECT_EQ(Log, Expected);
    // Hosted elements cover the whole control, over the background fill and under the rest;
    // the tool bar comes after everything in the plot and stays out of prints.
    EXPECT_EQ(Families[ekExternalElements]->Clip, (TRect{0, 0, P.Scope.GetPlotWidth(), P.Scope.GetPlotHeight()}));
    EXPECT_GT(ptrdiff_t(Families[ekExternalElements]->At[0]), P.IndexOf("FillRect"));
    EXPECT_GE(Families[ekToolBar]->At[0], Families[ekEllipses]->At.back());

    // Backgrounds come before the title and the grid; channel links before the channel's
    // line, markers after it.
    const ptrdiff_t Title = P.IndexOf("TextOut", "Scope");
    ptrdiff_t Line = -1;
    const auto& R = P.Canvas.GetRecords();
    for (size_t i = 0; i < R.size(); ++i)
        if (R[i].Op == "LineTo" && R[i].PenColor == P.Scope.GetChannels()->GetItem(0)->GetColor())
            Line = ptrdiff_t(i);
    ASSERT_GE(Title, 0);
    ASSERT_GE(Line, 0);
    EXPECT_LE(ptrdiff_t(Families[ekZones]->At[0]), Title);
    EXPECT_LE(ptrdiff_t(Families[ekChannelLinks]->At[0]), Line);
    EXPECT_GT(ptrdiff_t(Families[ekMarkerGroups]->At[1]), Line);
    // Elements clip at the data view less its bottom row.
    TRect Clip = P.Scope.GetScopeDataView()->GetDrawRect();
    Clip.Bottom -= 1;
    EXPECT_EQ(Families[ekCursors]->Clip, Clip);

    Log.clear();
    P.Paint(true);
    EXPECT_EQ(std::count(Log.begin(), Log.end(), "toolbar/fg"), 0);

    // An empty place draws nothing and changes nothing else.
    P.Scope.GetElementFamilies().Set(ekZones, nullptr);
    Log.clear();
    P.Paint();
    EXPECT_EQ(std::count_if(Log.begin(), Log.end(), [](const std::string& S) { return S.rfind("zones", 0) == 0; }), 0);
    EXPECT_EQ(Log.size(), Expected.size() - 3);
}
