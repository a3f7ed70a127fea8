// The mouse on an axis strip through the display's dispatch: a drag pans a zoomed axis and
// stops at the data, the wheel zooms round the pointer; two axes tied by their zoom pins;
// the values under a pixel.
#include "axes/ScopeAxisTestSupport.h"
#include "qv/axes/QVAxisToolBar.h"
#include "qv/axes/QVZoomPin.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

using namespace qv;
using namespace qvtest;

namespace {

struct TAxisScope {
    TAxisScope()
    {
        Scope.GetLegend()->SetVisible(false); // the plot takes the whole width
        Scope.SetBounds(0, 0, 400, 300);
        Feed(Scope, Line(1001, -1, 1));
        Paint();
    }
    void Paint()
    {
        TQLBitmap Bitmap(400, 300);
        TQLRecordingCanvas Canvas;
        Scope.PaintToCanvas(Bitmap, Canvas, false);
    }
    TQVDisplayAxis& X() { return *Scope.GetXAxis(); }
    double Lo() { return X().GetScaleTick().GetZoomed().GetMin().GetValue(); }
    double Hi() { return X().GetScaleTick().GetZoomed().GetMax().GetValue(); }
    // A point in the middle of the X axis' strip, APixels along from the data view's left.
    TPoint OnStrip(int32_t APixels)
    {
        const TRect R = X().GetDrawRect();
        return TPoint{Scope.GetDataView()->GetDrawRect().Left + APixels, (R.Top + R.Bottom) / 2};
    }
    void Drag(const TPoint& AFrom, const TPoint& ATo)
    {
        Scope.MouseMove(0, float(AFrom.X), float(AFrom.Y));
        Scope.MouseDown(mbLeft, ssLeft, float(AFrom.X), float(AFrom.Y));
        Scope.MouseMove(ssLeft, float((AFrom.X + ATo.X) / 2), float(ATo.Y));
        Scope.MouseMove(ssLeft, float(ATo.X), float(ATo.Y));
        Scope.MouseUp(mbLeft, 0, float(ATo.X), float(ATo.Y));
        Paint();
    }
    TQVScope Scope;
};

} // namespace

// A drag along a zoomed X axis moves its window with the pointer by the window's width per
// view width, as one undo step; it stops at the full scale, and on an axis that is not
// zoomed it does nothing.
TEST(AxisInteraction, DragPansAZoomedAxisAndStopsAtTheData)
{
    TAxisScope S;
    S.Drag(S.OnStrip(100), S.OnStrip(50));
    EXPECT_FALSE(S.X().IsZoomed());
    EXPECT_EQ(S.Scope.GetUndoList().GetCount(), 0);

    S.X().ZoomTo(400, 600);
    S.Paint();
    const double Width = S.Hi() - S.Lo();
    const int32_t ViewWidth = QVRectWidth(S.Scope.GetDataView()->GetDrawRect());
    const int32_t UndoBefore = S.Scope.GetUndoList().GetCount();
    // Dragged 50 pixels to the left: the values move left with the pointer.
    S.Drag(S.OnStrip(100), S.OnStrip(50));
    EXPECT_NEAR(S.Lo(), 400 + 50 * Width / ViewWidth, 1e-6);
    EXPECT_NEAR(S.Hi() - S.Lo(), Width, 1e-6);
    EXPECT_EQ(S.Scope.GetUndoList().GetCount(), UndoBefore + 1);
    // Far to the right, again and again: the window stops at the data's start.
    for (int I = 0; I < 3; ++I)
        S.Drag(S.OnStrip(10), S.OnStrip(ViewWidth - 10));
    EXPECT_NEAR(S.Lo(), S.X().GetScaleTick().GetFull().GetMin().GetValue(), 1e-9);
    EXPECT_NEAR(S.Hi() - S.Lo(), Width, 1e-6);
    // With MousePan off the drag does nothing.
    S.X().GetZooming()->SetMousePan(false);
    const double Before = S.Lo();
    S.Drag(S.OnStrip(100), S.OnStrip(50));
    EXPECT_EQ(S.Lo(), Before);
}

// A wheel notch over the X axis' strip zooms that axis alone round the pointer: the value
// under the pointer stays under it, zooming in or out. A burst of notches is one undo step; with the wheel
// disabled nothing happens.
TEST(AxisInteraction, WheelOnTheStripZoomsRoundThePointer)
{
    struct TCase {
        int32_t Along; // pixels from the view's left
        bool Down;
    };
    const TCase Cases[] = {{40, false}, {200, false}, {300, true}};
    for (const TCase& C : Cases) {
        TAxisScope S;
        S.X().ZoomTo(200, 600, false);
        S.Paint();
        const TPoint P = S.OnStrip(C.Along);
        const double YLo = S.Scope.GetYAxis()->GetScaleTick().GetZoomed().GetMin().GetValue();
        SCOPED_TRACE(C.Along);
        for (int I = 0; I < 3; ++I) {
            // Where the pointer stands along the window, 0 at its start and 1 at its end, in
            // the layout of this notch; a plain X axis counts it from the view's right edge.
            const TRect View = S.Scope.GetDataView()->GetDrawRect();
            const double Along = 1.0 - double(View.Right - P.X) / S.X().GetDimentionLength();
            const double Under = S.Lo() + (S.Hi() - S.Lo()) * Along;
            if (C.Down)
                S.Scope.DoMouseWheelDown(0, P);
            else
                S.Scope.DoMouseWheelUp(0, P);
            EXPECT_NEAR(S.Lo() + (S.Hi() - S.Lo()) * Along, Under, 1e-6);
            // The new window can change the layout: the next notch measures anew.
            S.Paint();
        }
        EXPECT_TRUE(S.X().IsZoomed());
        // Three notches: 0.9 or 1.1 cubed.
        EXPECT_NEAR(S.Hi() - S.Lo(), C.Down ? 400 * 1.331 : 400 * 0.729, 1e-6);
        EXPECT_EQ(S.Scope.GetYAxis()->GetScaleTick().GetZoomed().GetMin().GetValue(), YLo);
        EXPECT_EQ(S.Scope.GetUndoList().GetCount(), 1);
    }
    TAxisScope S;
    S.X().GetZooming()->SetMouseWheelEnabled(false);
    S.Scope.DoMouseWheelUp(0, S.OnStrip(100));
    EXPECT_FALSE(S.X().IsZoomed());
}

// Two scopes whose X axes are tied: a zoom, a pan or a zoom off of either reaches the other
// without coming back; the connection tells the other side the present state; after a
// disconnection each goes its own way.
TEST(AxisInteraction, ZoomPinsTieTwoAxes)
{
    TAxisScope A, B;
    A.X().ZoomTo(100, 300);
    A.Paint();
    A.X().GetZoomPin()->Connect(*B.X().GetZoomPin());
    B.Paint();
    EXPECT_TRUE(B.X().IsZoomed());
    EXPECT_NEAR(B.Lo(), 100, 1e-9);
    EXPECT_NEAR(B.Hi(), 300, 1e-9);

    B.X().ZoomTo(200, 250);
    A.Paint();
    EXPECT_NEAR(A.Lo(), 200, 1e-9);
    EXPECT_NEAR(A.Hi(), 250, 1e-9);
    // The receiving display keeps its own undo history untouched.
    EXPECT_EQ(A.Scope.GetUndoList().GetCount(), 1);

    A.Drag(A.OnStrip(100), A.OnStrip(60));
    B.Paint();
    EXPECT_NEAR(B.Lo(), A.Lo(), 1e-9);
    EXPECT_GT(B.Lo(), 200);

    A.X().ZoomOff();
    EXPECT_FALSE(B.X().IsZoomed());

    // A pin tied to a new partner leaves the old one; the new one hears the present state.
    TAxisScope C;
    C.X().ZoomTo(10, 20);
    B.X().GetZoomPin()->Connect(*C.X().GetZoomPin());
    EXPECT_FALSE(A.X().GetZoomPin()->IsConnected());
    EXPECT_FALSE(C.X().IsZoomed());
    B.X().ZoomTo(30, 40);
    EXPECT_TRUE(C.X().IsZoomed());
    EXPECT_FALSE(A.X().IsZoomed());
    EXPECT_THROW(C.X().GetZoomPin()->Connect(*C.X().GetZoomPin()), std::invalid_argument);
}

// The values under a pixel: both axes' values inside the data view, nothing outside it.
TEST(AxisInteraction, AxisValueAtAPixel)
{
    TAxisScope S;
    const TRect View = S.Scope.GetDataView()->GetDrawRect();
    double X = -1, Y = -1;
    ASSERT_TRUE(S.Scope.GetAxisValueAt(View.Left + 100, View.Top + 20, X, Y));
    double XWant = 0, YWant = 0;
    S.X().GetValueAt(View.Left + 100, View.Top + 20, XWant);
    S.Scope.GetYAxis()->GetValueAt(View.Left + 100, View.Top + 20, YWant);
    EXPECT_EQ(X, XWant);
    EXPECT_EQ(Y, YWant);
    EXPECT_GT(Y, 0);
    X = Y = -7;
    EXPECT_FALSE(S.Scope.GetAxisValueAt(View.Left - 5, View.Top + 20, X, Y));
    EXPECT_EQ(Y, -7);

    EXPECT_EQ(S.Scope.GetPrintTitle(), "Scope");
    S.Scope.GetTitle()->SetText("");
    EXPECT_EQ(S.Scope.GetPrintTitle(), "Untitled");
}

// The axis tool bar shows while the mouse is over the strip; its buttons zoom the axis in
// and off and switch the display's mouse zoom to this axis' direction and back. A hidden
// axis' bar takes no mouse.
TEST(AxisInteraction, AxisToolBarZoomsItsAxis)
{
    TAxisScope S;
    TQVAxisToolBar& Bar = *S.X().GetToolBar();
    EXPECT_FALSE(Bar.GetAxisShown());
    const TPoint Strip = S.OnStrip(20);
    S.Scope.MouseMove(0, float(Strip.X), float(Strip.Y));
    EXPECT_TRUE(Bar.GetAxisShown());
    const double Width = S.Hi() - S.Lo();
    auto Click = [&](TQVDisplayIntToolBarButton* AButton) {
        Bar.UpdateButtons();
        const TRect R = Bar.GetButtonRect(AButton);
        ASSERT_FALSE(R.IsEmpty());
        S.Scope.MouseMove(0, float(R.Left + 8), float(R.Top + 8));
        S.Scope.MouseDown(mbLeft, 0, float(R.Left + 8), float(R.Top + 8));
        S.Scope.MouseUp(mbLeft, 0, float(R.Left + 8), float(R.Top + 8));
        S.Paint();
    };
    Click(Bar.GetZoomInButton());
    EXPECT_TRUE(S.X().IsZoomed());
    EXPECT_NEAR(S.Hi() - S.Lo(), Width / 2, 1e-6);
    EXPECT_EQ(S.Scope.GetUndoList().GetCount(), 1);
    Click(Bar.GetZoomOffButton());
    EXPECT_FALSE(S.X().IsZoomed());
    Click(Bar.GetZoomOneDirButton());
    EXPECT_EQ(S.Scope.GetZooming()->GetMode(), zmXAxis);
    Click(Bar.GetZoomOneDirButton());
    EXPECT_EQ(S.Scope.GetZooming()->GetMode(), zmBoth);

    S.X().SetVisible(false);
    S.Paint();
    EXPECT_TRUE(Bar.GetDrawRect().IsEmpty());
}
