// Docking of views: strips in list order, the client view with the reserved offsets, views
// that do not fit, and the list operations that reorder views.
#include "qv/component/QVDisplayView.h"
#include "qv/decor/QVDisplayTitle.h"
#include "qv/display/QVDataDisplay.h"
#include "qv/display/QVScope.h"
#include "qv/foundation/QLCollection.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

using namespace qv;

namespace {

class TLayoutDisplay : public TQVDataDisplay {
public:
    // The layouts here are of the test's own views only.
    TLayoutDisplay() { GetViews().Remove(GetTitle()); }
    bool PopulateDrawBuffers() override { return false; }
    void Layout()
    {
        SetNeedsRecalc();
        RecalculateViewRects();
        FNeedsRecalc = false;
    }
};

// A strip of a fixed thickness with optional end reservations.
class TStrip : public TQVOptionalView {
public:
    TStrip(TQVDataDisplay* ADisplay, TQVViewAlign AAlign, int32_t AThickness, int32_t ABegin = 0, int32_t AEnd = 0)
        : TQVOptionalView(ADisplay, AAlign), Thickness(AThickness), Begin(ABegin), End(AEnd)
    {}
    TSize GetAutoSize() const override { return TSize{Thickness, Thickness}; }
    int32_t GetDefaultOffsetBegin() const override { return Begin; }
    int32_t GetDefaultOffsetEnd() const override { return End; }
    int32_t Thickness, Begin, End;
};

class TClient : public TQVCustomColorDisplayView {
public:
    using TQVCustomColorDisplayView::TQVCustomColorDisplayView;
};

} // namespace

TEST(ViewLayout, StripsDockInListOrderAndTheClientTakesTheRest)
{
    TLayoutDisplay D;
    D.SetBounds(0, 0, 400, 300);
    TStrip Title(&D, vaTop, 20);
    TStrip Legend(&D, vaRight, 50);
    TStrip YAxis(&D, vaLeft, 40, 5, 6);
    TStrip XAxis(&D, vaBottom, 30, 7, 12);
    TClient Data(&D);
    D.Layout();
    EXPECT_EQ(Title.GetDrawRect(), (TRect{0, 0, 400, 20})); // first: spans the whole edge
    EXPECT_EQ(Legend.GetDrawRect(), (TRect{350, 20, 400, 300}));
    EXPECT_EQ(YAxis.GetDrawRect(), (TRect{0, 20, 40, 300}));
    EXPECT_EQ(XAxis.GetDrawRect(), (TRect{40, 270, 350, 300}));
    // The client keeps clear of the reservations: left 7 (below 40 anyway), top 20 vs 5,
    // bottom min(270, 300 - 6), right min(350, 400 - 12).
    EXPECT_EQ(Data.GetDrawRect(), (TRect{40, 20, 350, 270}));
    EXPECT_EQ(Data.GetWidth(), 309);
    EXPECT_EQ(Data.GetHeight(), 249);
}

TEST(ViewLayout, ReservationsNarrowTheClientAndTheLargerOneCounts)
{
    TLayoutDisplay D;
    D.SetBounds(0, 0, 200, 100);
    TStrip A(&D, vaBottom, 10, 10, 3);
    TStrip B(&D, vaTop, 10, 20, 30);
    TClient Data(&D);
    D.Layout();
    // Horizontal strips reserve left and right: max(10, 20) and max(3, 30).
    EXPECT_EQ(Data.GetDrawRect(), (TRect{20, 10, 170, 90}));
}

TEST(ViewLayout, StripsBeyondAnInvertedAreaVanishAndTheClientRestartsAtTheOrigin)
{
    TLayoutDisplay D;
    D.SetBounds(0, 0, 30, 20);
    TStrip Left(&D, vaLeft, 40); // wider than the control: the running area inverts
    TStrip Top(&D, vaTop, 10);
    TStrip Bottom(&D, vaBottom, 10);
    TClient Data(&D);
    D.Layout();
    EXPECT_TRUE(Left.IsVisible());
    EXPECT_FALSE(Top.IsVisible());
    EXPECT_FALSE(Bottom.IsVisible());
    EXPECT_EQ(Top.GetDrawRect(), (TRect{}));
    // Strips that no longer fit take nothing off the area; an invisible client reads its
    // left and top as zero, so it starts from the origin.
    EXPECT_EQ(Data.GetDrawRect(), (TRect{0, 0, 30, 20}));

    // A scope too small for its strips: the Y axis after the inverted area is not laid out.
    TQVScope Scope;
    Scope.SetBounds(0, 0, 60, 60);
    TQLBitmap Bitmap(60, 60);
    TQLRecordingCanvas Canvas;
    Scope.PaintToCanvas(Bitmap, Canvas, false);
    EXPECT_FALSE(Scope.GetYAxis()->IsVisible());
    EXPECT_EQ(Scope.GetYAxis()->GetDrawRect(), (TRect{}));
}

TEST(ViewLayout, HiddenLateAndResizedStrips)
{
    TLayoutDisplay D;
    D.SetBounds(0, 0, 100, 100);
    TStrip Legend(&D, vaLeft, 30);
    TClient Data(&D);
    TStrip Late(&D, vaLeft, 10);
    // A hidden optional view takes no strip but still gets a layout rectangle; a view after
    // the client docks over it.
    Legend.SetVisible(false);
    D.Layout();
    EXPECT_EQ(Legend.GetLayoutRect(), (TRect{0, 0, 100, 100}));
    EXPECT_EQ(Legend.GetDrawRect(), (TRect{}));
    EXPECT_EQ(Data.GetDrawRect(), (TRect{0, 0, 100, 100}));
    EXPECT_EQ(Late.GetDrawRect(), (TRect{0, 0, 10, 100}));

    // Without a recalculation due the rectangles stay.
    Late.Thickness = 30;
    D.RecalculateViewRects();
    EXPECT_EQ(Late.GetDrawRect(), (TRect{0, 0, 10, 100}));
    D.Layout();
    EXPECT_EQ(Late.GetDrawRect(), (TRect{0, 0, 30, 100}));

    // A fixed size replaces the automatic thickness and asks for a layout.
    Late.GetViewSize()->SetAutoSize(false);
    Late.GetViewSize()->SetSize(25);
    EXPECT_TRUE(D.GetNeedsRecalc());
    Late.SetAlign(vaRight);
    D.Layout();
    EXPECT_EQ(Late.GetDrawRect(), (TRect{75, 0, 100, 100}));
}

TEST(ViewList, ReorderingOperations)
{
    TLayoutDisplay D;
    TClient A(&D), B(&D), C(&D);
    TQVDisplayViews& Views = D.GetViews();
    auto Order = [&] {
        std::string S;
        for (TQVDisplayView* V : Views)
            S += V == &A ? 'A' : V == &B ? 'B' : 'C';
        return S;
    };
    EXPECT_EQ(Order(), "ABC");
    Views.Reassign(&C); // already last: no move
    Views.Reassign(&A);
    EXPECT_EQ(Order(), "BCA");
    EXPECT_EQ(Views.AddAfter(&A, &B), 2); // after the last view: appended
    EXPECT_EQ(Order(), "CAB");
    EXPECT_EQ(Views.AddAfter(&C, &B), 1);
    EXPECT_EQ(Order(), "CBA");
    EXPECT_EQ(Views.AddBefore(&C, &A), 0);
    EXPECT_EQ(Order(), "ACB");
    EXPECT_THROW(Views.GetItem(3), EQLListError);
}

TEST(ViewList, AFreedViewLeavesTheList)
{
    TLayoutDisplay D;
    auto View = std::make_unique<TClient>(&D);
    EXPECT_EQ(D.GetViews().GetCount(), 1);
    View.reset();
    EXPECT_EQ(D.GetViews().GetCount(), 0);
}
