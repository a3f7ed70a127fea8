// Zoom operations of a display over its axes: proportional additional axes, zoom off, data
// limits, the limits of zooming in and out, wheel zoom, panning and the change report.
#include "display/ZoomTestSupport.h"

#include <stdexcept>

namespace qvtest {
namespace {

using TZoomOperations = TZoomFixture;

TEST_F(TZoomOperations, AdditionalAxesFollowTheMainAxesByProportion)
{
    TListedAxis ExtraX{&Display, false, 0.0, 1000.0};
    TListedAxis ExtraY{&Display, true, 0.0, 10.0};
    Display.ZoomTo(20, 60, 10, 30);
    EXPECT_NEAR(ExtraX.WindowMin(), 200.0, 1e-9);
    EXPECT_NEAR(ExtraY.WindowMax(), 3.0, 1e-9);
    // The proportion is taken of the present windows, not of the full ranges.
    Display.ZoomTo(30, 40, 10, 30);
    EXPECT_NEAR(ExtraX.WindowMin(), 300.0, 1e-9);
    EXPECT_NEAR(ExtraX.WindowMax(), 400.0, 1e-9);
}

TEST_F(TZoomOperations, AMainAxisWithoutWidthMovesTheOthersByTheirWholeWidth)
{
    X.SetLimits(5.0, 5.0);
    TListedAxis ExtraX{&Display, false, 0.0, 1000.0};
    EXPECT_NO_THROW(Display.ZoomTo(4, 6, 0, 100));
    // Pushed a whole width down, then kept from going below its data.
    EXPECT_DOUBLE_EQ(ExtraX.WindowMin(), 0.0);
    EXPECT_DOUBLE_EQ(ExtraX.WindowMax(), 1000.0);
}

TEST_F(TZoomOperations, ZoomOffRestoresTheFullRangesAndKeepsTheLastWindow)
{
    Display.ZoomTo(10, 50, 20, 80);
    Display.ZoomOff();
    EXPECT_FALSE(Display.IsZoomed());
    EXPECT_EQ(Windows(), (std::vector<double>{0, 100, 0, 100}));
    EXPECT_EQ(X.GetZoomMin(), 10.0);
    EXPECT_EQ(X.GetZoomMax(), 50.0);
    Display.UndoZoom();
    EXPECT_EQ(Windows(), (std::vector<double>{10, 50, 20, 80}));
}

// An axis whose printed scale is ten times its data scale.
class TTenfoldAxis : public TListedAxis {
public:
    using TListedAxis::TListedAxis;
    double GetScaleFullTickMax() const override { return 10.0 * TListedAxis::GetScaleFullTickMax(); }
    double GetDataZoomedMin() const override
    {
        return FZoomed ? ScaleTickToData(FZoomMin) : TListedAxis::GetDataZoomedMin();
    }
    double GetDataZoomedMax() const override
    {
        return FZoomed ? ScaleTickToData(FZoomMax) : TListedAxis::GetDataZoomedMax();
    }
};

TEST_F(TZoomOperations, ZoomToDataTakesDataUnitsAndHolds)
{
    // The tenfold axis as the main Y axis.
    Display.GetYAxes().Remove(&Y);
    TTenfoldAxis Tenfold{&Display, true, 0.0, 100.0};
    Display.ZoomToData(10, 50, 2, 4);
    EXPECT_TRUE(Display.GetHold());
    EXPECT_NEAR(X.WindowMin(), 10.0, 1e-9);
    EXPECT_NEAR(Tenfold.WindowMin(), 20.0, 1e-9) << "data 2 is printed as 20";
    EXPECT_NEAR(Tenfold.WindowMax(), 40.0, 1e-9);
    Tenfold.ZoomToData(5, 6);
    EXPECT_NEAR(Tenfold.WindowMin(), 50.0, 1e-9);

    // Without HoldOnZoom, and for ZoomBy, the picture stays live.
    Display.SetHold(false);
    Display.GetZooming()->SetHoldOnZoom(false);
    Display.ZoomTo(0, 10, 0, 10);
    Display.ZoomBy(0.5);
    EXPECT_FALSE(Display.GetHold());
}

TEST_F(TZoomOperations, ZoomingStopsAtTheWidthLimitsAndPinnedEdges)
{
    for (TListedAxis* Axis : {&X, &Y}) {
        TQVDisplayValueRange* Width = Axis->GetZooming()->GetRange();
        Bound(Width->GetLow(), 10);
        Bound(Width->GetHigh(), 100);
    }
    EXPECT_TRUE(Display.CanZoomIn());
    EXPECT_FALSE(Display.CanZoomOut()) << "the full ranges are as wide as allowed";

    Display.ZoomTo(40, 45, 40, 45);
    EXPECT_NEAR(X.WindowMin(), 37.5, 1e-9) << "widened about its centre";
    EXPECT_NEAR(X.WindowMax(), 47.5, 1e-9);
    EXPECT_FALSE(Display.CanZoomIn());
    EXPECT_TRUE(Display.CanZoomOut());
    X.ZoomIn();
    EXPECT_NEAR(X.WindowMax() - X.WindowMin(), 10.0, 1e-9);
    Y.ZoomOut();
    EXPECT_TRUE(Display.CanZoomIn()) << "through the Y axis";

    // Both edges pinned by the limits' ranges.
    Bound(X.GetMax()->GetRange()->GetLow(), 60);
    Bound(X.GetMin()->GetRange()->GetHigh(), 40);
    X.ZoomTo(30, 70);
    EXPECT_TRUE(X.GetCanZoomIn());
    X.ZoomTo(40, 60);
    EXPECT_FALSE(X.GetCanZoomIn());
}

TEST_F(TZoomOperations, EveryChangeIsReportedOnceWithItsRanges)
{
    Display.ZoomTo(10, 50, 20, 80);
    Display.ZoomBy(2.0);
    Display.MouseWheelZoom(TPoint{260, 170}, 0.9, 0.9);
    Display.UndoZoom();
    Display.RedoZoom();
    X.ZoomIn();
    Display.ZoomOff();
    ASSERT_EQ(Reports.size(), 7u);
    const TQVZoomOperation Expected[] = {zoZoom, zoZoom, zoMouseWheel, zoUndo, zoRedo, zoZoom, zoZoomOff};
    for (size_t I = 0; I < Reports.size(); ++I)
        EXPECT_EQ(Reports[I].Operation, Expected[I]) << "report " << I;
    EXPECT_EQ(Reports[0].Ranges, (TQVRealRanges{0, 0, 100, 100, 10, 20, 50, 80}));
    // ZoomBy 2 doubles both windows about their centres.
    EXPECT_EQ(Reports[1].Ranges, (TQVRealRanges{10, 20, 50, 80, -10, -10, 70, 110}));
    EXPECT_EQ(Reports[6].Ranges.XMin, 0.0);
    EXPECT_EQ(Reports[6].Ranges.YMax, 100.0);
}

TEST_F(TZoomOperations, BadFactorsAndLimitsAreRejectedBeforeAnythingChanges)
{
    Display.ZoomTo(10, 50, 20, 80);
    EXPECT_THROW(Display.ZoomBy(0.0), std::invalid_argument);
    EXPECT_THROW(Display.ZoomTo(NAN, 1, 2, 3), std::invalid_argument);
    EXPECT_THROW(Display.ZoomToData(0, INFINITY, 2, 3), std::invalid_argument);
    EXPECT_THROW(Display.MouseWheelZoom(TPoint{260, 170}, NAN, 0.9), std::invalid_argument);
    EXPECT_THROW(X.ZoomTo(NAN, 3), std::invalid_argument);
    TAxisTestDisplay Other;
    TTestAxis Stranger{&Other, false, vaTop};
    EXPECT_THROW(Display.MouseWheelZoomAxis(&Stranger, TPoint{260, 170}, 0.9), std::invalid_argument);
    EXPECT_EQ(Windows(), (std::vector<double>{10, 50, 20, 80}));
    EXPECT_EQ(Display.GetUndoList().GetCount(), 1);
    EXPECT_EQ(Reports.size(), 1u);
}

TEST_F(TZoomOperations, TheWheelKeepsTheValueUnderThePointer)
{
    // At the right end of the X axis its maximum stays, at the top of the Y axis its
    // maximum: to within a pixel (0.25 here).
    Display.MouseWheelZoom(TPoint{60 + QVRectWidth(DataView.GetDrawRect()), 20}, 0.5, 0.5);
    for (const double Value : {X.WindowMax(), Y.WindowMax(), X.WindowMin() + 50.0, Y.WindowMin() + 50.0})
        EXPECT_NEAR(Value, 100.0, 0.25);

    // One direction only; then a wheel that is switched off does nothing, not even a step.
    Display.ZoomOff();
    Display.GetZooming()->SetMode(zmXAxis);
    Display.MouseWheelZoom(TPoint{260, 170}, 0.5, 0.5);
    EXPECT_EQ(Y.WindowMax() - Y.WindowMin(), 100.0);
    EXPECT_NEAR(X.WindowMax() - X.WindowMin(), 50.0, 1e-9);
    const int Steps = Display.GetUndoList().GetCount();
    Display.GetZooming()->SetMouseWheelEnabled(false);
    Display.MouseWheelZoom(TPoint{260, 170}, 0.5, 0.5);
    EXPECT_NEAR(X.WindowMax() - X.WindowMin(), 50.0, 1e-9);
    EXPECT_EQ(Display.GetUndoList().GetCount(), Steps);

    // A wheel over one axis zooms that axis alone.
    Display.ZoomOff();
    Display.MouseWheelZoomAxis(&Y, TPoint{30, 170}, 0.5);
    EXPECT_FALSE(X.IsZoomed());
    EXPECT_NEAR(Y.WindowMax() - Y.WindowMin(), 50.0, 1e-9);
}

TEST_F(TZoomOperations, ADragPansAZoomedAxisWithinItsData)
{
    X.ZoomTo(20, 40, false);
    Reports.clear();
    const double Width = QVRectWidth(DataView.GetDrawRect());
    X.IntSaveMouseDownZoom(100, 100);
    X.MouseMoveScale(TPoint{100, 100}, TPoint{300, 100});
    EXPECT_NEAR(X.WindowMin(), 20.0 - 200 * 20.0 / Width, 1e-9) << "the window follows the pointer";
    // Each move counts from where the drag began, and stops at the start of the data.
    X.MouseMoveScale(TPoint{100, 100}, TPoint{3000, 100});
    EXPECT_DOUBLE_EQ(X.WindowMin(), 0.0);
    EXPECT_DOUBLE_EQ(X.WindowMax(), 20.0);
    ASSERT_EQ(Reports.size(), 2u);
    EXPECT_EQ(Reports[1].Operation, zoMousePan);
    // An axis that is not zoomed shows all its data and does not move.
    Y.IntSaveMouseDownZoom(100, 100);
    Y.MouseMoveScale(TPoint{100, 100}, TPoint{100, 200});
    EXPECT_FALSE(Y.IsZoomed());
}

} // namespace
} // namespace qvtest
