// Zooming and panning on a scope with additional axes.
#include "qv/QVScope.h"
#include "qv/display/QVDataChart.h"

#include <gtest/gtest.h>

namespace qvtest {
namespace {

using namespace qv;

double WindowMin(const TQVDisplayAxis* AAxis)
{
    return AAxis->GetScaleTick().GetZoomed().GetMin().GetValue();
}
double WindowMax(const TQVDisplayAxis* AAxis)
{
    return AAxis->GetScaleTick().GetZoomed().GetMax().GetValue();
}

class TChartZoom : public ::testing::Test {
protected:
    TChartZoom()
    {
        Extra = Scope.GetYAxis()->GetAdditionalAxes()->Add()->GetAxis();
        Scope.GetYAxis()->ZoomTo(0, 10, false);
        Extra->ZoomTo(0, 100, false);
    }

    TQVScope Scope;
    TQVBasicScopeYAxis* Extra = nullptr;
};

TEST_F(TChartZoom, AnAdditionalYAxisFollowsTheMainOneAndComesBackOnUndo)
{
    const double XMin = WindowMin(Scope.GetXAxis());
    const double XMax = WindowMax(Scope.GetXAxis());
    Scope.ZoomTo(XMin, XMax, 20, 60);
    EXPECT_DOUBLE_EQ(WindowMin(Scope.GetYAxis()), 20.0);
    EXPECT_DOUBLE_EQ(WindowMax(Scope.GetYAxis()), 60.0);
    EXPECT_DOUBLE_EQ(WindowMin(Extra), 200.0);
    EXPECT_DOUBLE_EQ(WindowMax(Extra), 600.0);
    EXPECT_TRUE(Scope.GetHold());

    Scope.UndoZoom();
    EXPECT_DOUBLE_EQ(WindowMax(Scope.GetYAxis()), 10.0);
    EXPECT_DOUBLE_EQ(WindowMax(Extra), 100.0);
    EXPECT_EQ(Scope.GetYMaxZoom(), 10.0);

    Scope.ZoomOff();
    EXPECT_FALSE(Scope.IsZoomed());
    EXPECT_FALSE(Extra->IsZoomed());
}

TEST_F(TChartZoom, APanIsCappedByTheAxisWithTheLeastRoom)
{
    Extra->GetMax()->GetRange()->GetHigh()->SetValue(150);
    Extra->GetMax()->GetRange()->GetHigh()->SetEnabled(true);
    double X = 0.0;
    double Y = 10.0;
    Scope.AdjustOffsets(X, Y);
    // The additional axis may move 50 of its 100, which is 5 of the main axis' 10.
    EXPECT_DOUBLE_EQ(Y, 5.0);

    Y = 2.0;
    Scope.AdjustOffsets(X, Y);
    EXPECT_DOUBLE_EQ(Y, 2.0) << "within every limit nothing changes";

    // An X axis that is not zoomed shows all its data: there is nowhere to pan to.
    X = 5.0;
    Scope.AdjustOffsets(X, Y);
    EXPECT_EQ(X, 0.0);
}

TEST_F(TChartZoom, DraggingTheYAxisDownMovesItsValuesUpFreeOfItsFullScale)
{
    Scope.SetBounds(0, 0, 640, 400);
    Scope.RecalculateViewRects();
    const TRect View = Scope.GetDataView()->GetDrawRect();
    const int32_t Height = QVRectHeight(View);
    TQVScopeYAxis* Y = Scope.GetYAxis();
    Y->IntSaveMouseDownZoom(View.Left + 5, View.Top + 5);
    Y->MouseMoveScale(TPoint{View.Left + 5, View.Top}, TPoint{View.Left + 5, View.Top + Height});
    EXPECT_NEAR(WindowMin(Y), 10.0, 1e-9); // by the window's width
    EXPECT_NEAR(WindowMax(Y), 20.0, 1e-9);
    Y->MouseMoveScale(TPoint{View.Left + 5, View.Top}, TPoint{View.Left + 5, View.Top + 100 * Height});
    EXPECT_NEAR(WindowMin(Y), 1000.0, 1e-6);
}

} // namespace
} // namespace qvtest
