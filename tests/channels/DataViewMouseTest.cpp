// The data view under the mouse: a left drag zooms to its box (or pans in pan mode), a small
// drag zooms nothing, the zoom mode limits the axes, and the data stays frozen while the box
// is dragged.
#include "qv/QVScope.h"
#include "qv/axes/QVDisplayAxisZoomSettings.h"
#include "qv/channels/QVScopeDataView.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <vector>

using namespace qv;

namespace {

struct TMouseScope {
    TMouseScope()
    {
        Scope.SetBounds(0, 0, 500, 400);
        Scope.GetYAxis()->GetAutoScaling()->SetEnabled(false);
        Scope.SetOnZoomChanged([this](TQLPersistent*, TQVZoomOperation, TQVRealRanges) { ++Changes; });
        Paint();
        View = Scope.GetScopeDataView()->GetDrawRect();
    }
    void Paint()
    {
        TQLBitmap Bitmap(500, 400);
        TQLRecordingCanvas Canvas;
        Scope.PaintToCanvas(Bitmap, Canvas, false);
    }
    void Drag(TPoint AFrom, TPoint ATo)
    {
        Scope.MouseMove({}, float(AFrom.X), float(AFrom.Y));
        Scope.MouseDown(mbLeft, {}, float(AFrom.X), float(AFrom.Y));
        Scope.MouseMove({}, float(ATo.X), float(ATo.Y));
        Scope.MouseUp(mbLeft, {}, float(ATo.X), float(ATo.Y));
    }
    double XMin() const { return Scope.GetXAxis()->GetScaleTick().GetZoomed().GetMin().GetValue(); }
    double XMax() const { return Scope.GetXAxis()->GetScaleTick().GetZoomed().GetMax().GetValue(); }
    double YMin() const { return Scope.GetYAxis()->GetScaleTick().GetZoomed().GetMin().GetValue(); }
    double YMax() const { return Scope.GetYAxis()->GetScaleTick().GetZoomed().GetMax().GetValue(); }

    TQVScope Scope;
    TRect View;
    int Changes = 0;
};

} // namespace

TEST(DataViewMouse, ADragZoomsToItsBoxUndoesAndIgnoresDragsUnderFivePixels)
{
    TMouseScope M;
    const double X0 = M.XMin(), X1 = M.XMax(), Y0 = M.YMin(), Y1 = M.YMax();
    const double W = M.View.Right - M.View.Left, H = M.View.Bottom - M.View.Top;
    // Under five pixels both ways: nothing; five in one way is a zoom.
    const TPoint P{M.View.Left + 50, M.View.Top + 50};
    M.Drag(P, TPoint{P.X + 4, P.Y + 4});
    EXPECT_EQ(M.Changes, 0);
    EXPECT_EQ(M.XMin(), X0);
    M.Drag(P, TPoint{P.X + 5, P.Y + 1});
    EXPECT_GE(M.Changes, 1);
    EXPECT_GT(M.XMin(), X0);
    M.Scope.UndoZoom();
    EXPECT_DOUBLE_EQ(M.XMin(), X0);
    // The left quarter across, the upper half down: the box becomes the window.
    const TPoint From{M.View.Left + int32_t(W / 4), M.View.Top};
    const TPoint To{M.View.Left + int32_t(W / 2), M.View.Top + int32_t(H / 2)};
    M.Drag(From, To);
    const double DX = (X1 - X0) / W;
    EXPECT_NEAR(M.XMin(), X0 + DX * (From.X - M.View.Left), 1e-9 * (X1 - X0));
    EXPECT_NEAR(M.XMax(), X1 + DX * (To.X - M.View.Right + 1), 1e-9 * (X1 - X0));
    EXPECT_LT(M.YMin(), M.YMax());
    EXPECT_GT(M.YMin(), Y0);
    EXPECT_NEAR(M.YMax(), Y1, 1e-9);
    ASSERT_TRUE(M.Scope.CanUndoZoom());
    M.Scope.UndoZoom();
    EXPECT_DOUBLE_EQ(M.XMin(), X0);
    EXPECT_DOUBLE_EQ(M.XMax(), X1);
}

TEST(DataViewMouse, XModeLeavesYAloneAndAPanReportsOnlyWhenTheMouseMoved)
{
    TMouseScope M;
    M.Scope.GetZooming()->SetMode(zmXAxis);
    const double Y0 = M.YMin(), Y1 = M.YMax(), X0 = M.XMin();
    M.Drag(TPoint{M.View.Left + 40, M.View.Top + 40}, TPoint{M.View.Left + 140, M.View.Top + 140});
    EXPECT_GT(M.XMin(), X0);
    EXPECT_EQ(M.YMin(), Y0);
    EXPECT_EQ(M.YMax(), Y1);

    M.Scope.ZoomTo(100, 200, -0.5, 0.5);
    const int Before = M.Changes;
    M.Scope.SetNavigateMode(nmPan);
    const TPoint P{M.View.Left + 100, M.View.Top + 100};
    M.Scope.MouseDown(mbLeft, {}, float(P.X), float(P.Y));
    M.Scope.MouseUp(mbLeft, {}, float(P.X), float(P.Y));
    EXPECT_EQ(M.Changes, Before);
    const double X1 = M.XMin();
    M.Drag(P, TPoint{P.X - 40, P.Y});
    EXPECT_GT(M.Changes, Before);
    EXPECT_GT(M.XMin(), X1); // dragging to the left shows later samples
}

TEST(DataViewMouse, TheDataStaysFrozenWhileAZoomBoxIsDragged)
{
    TMouseScope M;
    TQVChannelData& Data = *M.Scope.GetChannels()->GetItem(0)->GetData();
    const std::vector<double> Block(100, 0.5);
    const TPoint P{M.View.Left + 20, M.View.Top + 20};
    M.Scope.MouseMove({}, float(P.X), float(P.Y));
    M.Scope.MouseDown(mbLeft, {}, float(P.X), float(P.Y));
    ASSERT_TRUE(M.Scope.GetScopeDataView()->InMouseZooming());
    Data.AddYData(Block.data(), 100);
    M.Scope.RefreshView();
    EXPECT_EQ(Data.GetDrawSize(), 0);
    M.Scope.MouseUp(mbLeft, {}, float(P.X), float(P.Y));
    M.Scope.RefreshView();
    EXPECT_EQ(Data.GetDrawSize(), 100);
}
