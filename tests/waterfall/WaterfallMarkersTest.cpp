// Waterfall markers: relative groups ride with the rows that leave the picture, markers are
// drawn where their axes put them, and a group is hit on its markers and on its line.
#include "WaterfallTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

using namespace qv;

namespace {

struct TFixture : TWaterfallSurface {
    explicit TFixture(int32_t ASamples = 10) : TWaterfallSurface(ASamples) {}
    void AddRows(int32_t ACount)
    {
        for (int32_t I = 0; I < ACount; ++I)
            Add(std::vector<double>(16, 1.0));
    }
    TQVWaterfallMarker* AddMarker(TQVWaterfallMarkerGroup& AGroup, double AX, double AY)
    {
        TQVWaterfallMarker* Marker = AGroup.GetMarkers()->Add();
        Marker->GetPosition()->SetX(AX);
        Marker->GetPosition()->SetY(AY);
        return Marker;
    }
};

} // namespace

// Once the history is full, the rows that leave lower a relative marker's X by as many, and
// a marker whose X falls below 0 goes; absolute markers stay.
TEST(WaterfallMarkers, RelativeMarkersRideWithTheRows)
{
    struct TCase {
        TQVWaterfallMarkerMode Mode;
        double X;
        int32_t NewRows; // after a full history of 10
        int32_t Count;
        double ExpectedX;
    };
    const TCase Cases[] = {{mmRelative, 3, 4, 0, 0}, {mmRelative, 4, 4, 1, 0},   {mmRelative, 8.5, 1, 1, 7.5},
                           {mmRelative, 8, 0, 1, 8}, {mmAbsolute, 3, 4, 1, 3.0}, {mmRelative, 9, 25, 0, 0}};
    for (const TCase& C : Cases) {
        TFixture F;
        TQVWaterfallMarkerGroup& Group = *F.Waterfall.GetMarkerGroups()->Add();
        Group.SetMode(C.Mode);
        F.AddMarker(Group, C.X, 5);
        F.AddRows(10);
        F.Paint();
        F.AddRows(C.NewRows);
        F.Paint();
        ASSERT_EQ(Group.GetMarkers()->GetCount(), C.Count) << C.Mode << " " << C.X << " " << C.NewRows;
        if (C.Count > 0) {
            EXPECT_EQ(Group.GetMarkers()->GetItem(0)->GetPosition()->GetX(), C.ExpectedX) << C.Mode << " " << C.X;
        }
    }
}

// A group is hit on a marker (distance 0, that marker), else by its distance to the line
// between two drawn markers; a lone marker has no line.
TEST(WaterfallMarkers, AGroupIsHitOnItsMarkersAndOnItsLine)
{
    TFixture F;
    F.AddRows(10);
    TQVWaterfallMarkerGroup& Pair = *F.Waterfall.GetMarkerGroups()->Add();
    TQVWaterfallMarker* A = F.AddMarker(Pair, 2, 4);
    TQVWaterfallMarker* B = F.AddMarker(Pair, 8, 10);
    TQVWaterfallMarkerGroup& Lone = *F.Waterfall.GetMarkerGroups()->Add();
    TQVWaterfallMarker* C = F.AddMarker(Lone, 5, 12);
    Pair.GetLine()->SetVisible(true);
    F.Paint();
    // Each marker stands where the axes put its position.
    for (TQVWaterfallMarker* M : {A, B, C}) {
        TPoint P;
        ASSERT_TRUE(M->GetPixel(M->GetPosition()->GetPoint(), P));
        EXPECT_EQ(M->GetDrawPoint(), P);
    }
    const TPoint PA = A->GetDrawPoint(), PB = B->GetDrawPoint(), PC = C->GetDrawPoint();
    const TPoint Middle{(PA.X + PB.X) / 2, (PA.Y + PB.Y) / 2};
    struct TCase {
        const char* Name;
        TQVWaterfallMarkerGroup* Group;
        TPoint At;
        bool OnMarker;
        double MaxDistance, MinDistance;
    };
    const TCase Cases[] = {{"on a marker", &Pair, PB, true, 0, 0},
                           {"on the line", &Pair, Middle, false, 1.5, 0},
                           {"off the line", &Pair, TPoint{Middle.X, Middle.Y - 40}, false, 10000, 3},
                           {"lone marker", &Lone, TPoint{PC.X + 20, PC.Y}, false, 10000, 10000}};
    for (const TCase& T : Cases) {
        TQVBasicDisplayMarker* Hit = nullptr;
        const double Distance = T.Group->HitTest(T.At.X, T.At.Y, Hit);
        EXPECT_EQ(Hit != nullptr, T.OnMarker) << T.Name;
        EXPECT_LE(Distance, T.MaxDistance) << T.Name;
        EXPECT_GE(Distance, T.MinDistance) << T.Name;
    }
    // Over the line the mouse lights the group.
    F.Waterfall.MouseMove(0, Middle.X, Middle.Y);
    EXPECT_EQ(F.Waterfall.GetHighlightInfo()->FHighlightedItem, &Pair);
}

// A press on a marker fires OnClick; a handler that takes it stops the drag, otherwise a
// draggable group's marker follows the mouse and lands where it is let go.
TEST(WaterfallMarkers, AClickOnAMarkerFiresOnClickOrDragsIt)
{
    for (const bool Handle : {true, false}) {
        TFixture F;
        F.AddRows(10);
        TQVWaterfallMarkerGroup& Group = *F.Waterfall.GetMarkerGroups()->Add();
        Group.SetCanDrag(true);
        TQVWaterfallMarker* Marker = F.AddMarker(Group, 5, 8);
        int32_t Clicks = 0;
        F.Waterfall.GetMarkerGroups()->SetOnClick(
            [&](TQLPersistent*, int32_t AGroup, int32_t AMarker, TQVRealPoint AValue, bool& Handled) {
                ++Clicks;
                EXPECT_EQ(AGroup, 0);
                EXPECT_EQ(AMarker, 0);
                EXPECT_EQ(AValue.X, 5.0);
                Handled = Handle;
            });
        F.Paint();
        const TPoint P = Marker->GetDrawPoint();
        const TQVDisplayAxis& XAxis = *F.Waterfall.GetXAxis();
        const TPoint To{XAxis.ScaleToPixel(7.0), P.Y};
        F.Waterfall.MouseDown(mbLeft, 0, P.X, P.Y);
        F.Waterfall.MouseMove(0, To.X, To.Y);
        F.Waterfall.MouseUp(mbLeft, 0, To.X, To.Y);
        EXPECT_EQ(Clicks, 1) << Handle;
        EXPECT_NEAR(Marker->GetPosition()->GetX(), Handle ? 5.0 : 7.0, 0.2) << Handle;
        EXPECT_EQ(F.Waterfall.GetHighlightInfo()->FDraggedMarker, nullptr) << Handle;
    }
}
