// What the data view's mouse does to markers: the hit by precedence of groups, a press that
// clicks or starts a drag, the drag held to the X axis' range, the release.
#include "qv/QVScope.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <vector>

using namespace qv;

namespace {

struct TMouseScope {
    TMouseScope()
    {
        Scope.SetBounds(0, 0, 400, 300);
        const std::vector<double> Samples{0, 0.5, 1, 0.5, 0, -0.5, -1, -0.5, 0};
        Scope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
        Scope.RefreshView();
        Group = Groups().Add();
        Group->SetShape(msSquare);
        Marker = Group->GetMarkers()->Add();
        Marker->GetPosition()->SetX(2);
        Marker->GetPosition()->SetY(0.25);
        Paint();
    }
    void Paint()
    {
        Canvas.ClearRecords();
        Scope.PaintToCanvas(Bitmap, Canvas, false);
    }
    TQVScopeMarkerGroups& Groups() { return *Scope.GetMarkerGroups(); }
    TQVHighlightInfo& Info() { return *Scope.GetHighlightInfo(); }

    TQVScope Scope;
    TQLBitmap Bitmap{400, 300};
    TQLRecordingCanvas Canvas;
    TQVScopeMarkerGroup* Group = nullptr;
    TQVScopeMarker* Marker = nullptr;
};

} // namespace

// A free marker of a group that can drag: the press starts the drag, the ghost follows the
// mouse (X held to the axis' full range), the release moves the marker and reports it. A
// click handler that takes the press keeps the drag from starting; without mouse events
// the markers take no press.
TEST(MarkerMouse, FreeMarkerPressDragRelease)
{
    TMouseScope S;
    const TPoint P = S.Marker->GetDrawPoint();
    TQVBasicDisplayMarker* Hit = nullptr;
    EXPECT_EQ(S.Groups().HitTest(P.X, P.Y, Hit), S.Group);
    EXPECT_EQ(Hit, S.Marker);
    TQVScopeChannelMarker* ChannelDrag = nullptr;
    EXPECT_FALSE(S.Groups().MouseDownOnMarkers(mbLeft, 0, P.X, P.Y, S.Info(), ChannelDrag));

    S.Group->SetCanDrag(true);
    ASSERT_TRUE(S.Groups().MouseDownOnMarkers(mbLeft, 0, P.X, P.Y, S.Info(), ChannelDrag));
    EXPECT_EQ(S.Info().FDraggedMarker, S.Marker);
    EXPECT_TRUE(S.Group->GetGroupMouseDown());

    TQVDisplayAxis& X = *S.Scope.GetXAxis();
    S.Groups().DragMarker(S.Info(), P.X + 40, P.Y - 20);
    EXPECT_EQ(S.Info().FDraggedMarkerPosition.X, X.PixelToScale(P.X + 40));
    EXPECT_GT(S.Info().FDraggedMarkerPosition.Y, 0.25);
    S.Paint();
    // The ghost, dashed, beside the marker itself.
    size_t Dashed = 0;
    for (const TQLCanvasRecord& R : S.Canvas.Of({"Rectangle", "RectangleRect"}))
        Dashed += R.PenStyle == psDash;
    EXPECT_GE(Dashed, 1u);
    // Far beyond the view's right edge X stops at the axis' full maximum.
    S.Groups().DragMarker(S.Info(), 2000, P.Y);
    EXPECT_EQ(S.Info().FDraggedMarkerPosition.X, X.GetScaleTick().GetFull().GetMax().GetValue());

    std::vector<TQVRealPoint> Moves;
    S.Marker->SetOnDragged([&](TQLPersistent*, TQVRealPoint& AOld, TQVRealPoint& ANew) {
        Moves.push_back(AOld);
        Moves.push_back(ANew);
    });
    S.Groups().DragMarker(S.Info(), P.X + 40, P.Y);
    const TQVRealPoint Target = S.Info().FDraggedMarkerPosition;
    S.Groups().MouseUpOnMarkers(mbLeft, 0, P.X + 40, P.Y);
    EXPECT_FALSE(S.Group->GetGroupMouseDown());
    EXPECT_TRUE(S.Groups().EndMarkerDrag(S.Info()));
    EXPECT_EQ(S.Info().FDraggedMarker, nullptr);
    EXPECT_EQ(S.Marker->GetPosition()->GetX(), Target.X);
    ASSERT_EQ(Moves.size(), 2u);
    EXPECT_EQ(Moves[0].X, 2.0);
    EXPECT_EQ(Moves[1].X, Target.X);
    EXPECT_FALSE(S.Groups().EndMarkerDrag(S.Info()));

    // A handler that takes the click: no drag.
    S.Paint();
    const TPoint Q = S.Marker->GetDrawPoint();
    int32_t Clicks = 0;
    S.Groups().SetOnClick([&](TQLPersistent*, int32_t AOwner, int32_t AIndex, TQVRealPoint, bool& AHandled) {
        EXPECT_EQ(AOwner, 0);
        EXPECT_EQ(AIndex, 0);
        ++Clicks;
        AHandled = true;
    });
    EXPECT_TRUE(S.Groups().MouseDownOnMarkers(mbLeft, 0, Q.X, Q.Y, S.Info(), ChannelDrag));
    EXPECT_EQ(Clicks, 1);
    EXPECT_EQ(S.Info().FDraggedMarker, nullptr);
}

// Channel markers come before free ones: the press on a channel marker fires the channel
// marker click with the channel's index and starts its drag; the drag ends at the new
// sample position and reports it.
TEST(MarkerMouse, ChannelMarkerPressAndDrag)
{
    TMouseScope S;
    S.Group->SetCanDrag(true);
    TQVScopeChannelMarker* Marker = S.Scope.GetChannels()->GetItem(0)->GetMarkers()->AddMarkerAt(0, 4);
    S.Paint();
    const TPoint P = Marker->GetDrawPoint();
    ASSERT_GE(P.X, 0);
    std::vector<int32_t> Clicks;
    S.Groups().SetOnChannelMarkerClick([&](TQLPersistent*, int32_t AOwner, int32_t AIndex, TQVRealPoint, bool&) {
        Clicks = {AOwner, AIndex};
    });
    TQVScopeChannelMarker* Dragged = nullptr;
    ASSERT_TRUE(S.Groups().MouseDownOnMarkers(mbLeft, 0, P.X, P.Y, S.Info(), Dragged));
    EXPECT_EQ(Dragged, Marker);
    EXPECT_EQ(Clicks, (std::vector<int32_t>{0, 0}));
    EXPECT_EQ(S.Info().FDraggedMarker, nullptr);

    double Old = -1, New = -1;
    Marker->SetOnDragged([&](TQLPersistent*, double& AOld, double& ANew) {
        Old = AOld;
        New = ANew;
    });
    Marker->DragTo(6);
    EXPECT_TRUE(Marker->GetInDragging());
    Marker->EndDrag(true);
    EXPECT_FALSE(Marker->GetInDragging());
    EXPECT_EQ(Marker->GetPosition(), 6.0);
    EXPECT_EQ(Old, 4.0);
    EXPECT_EQ(New, 6.0);
}
