// The three scales of an axis: cached limits computed once per invalidation, the zoomed
// printed and real limits, conversions between the scales, and the bounds of the zoom window.
#include "AxisTestSupport.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using namespace qv;
using namespace qvtest;

namespace {

class AxisLimits : public TAxisFixture {
protected:
    using P = std::pair<double, double>;
    P Correct(double AMin, double AMax) { return XAxis.Correct(AMin, AMax); }
};

// Printed and real scales that differ from the data scale, as on a scope X axis showing time.
class TScaledAxis : public TTestAxis {
public:
    using TTestAxis::TTestAxis;
    double GetScaleFullTickMin() const override { return TickLo; }
    double GetScaleFullTickMax() const override { return TickHi; }
    double GetScaleFullRealMin() const override { return RealLo; }
    double GetScaleFullRealMax() const override { return RealHi; }
    void ScaleMinChange(double ADelta) override { MinMoves.push_back(ADelta); }
    void ScaleMaxChange(double ADelta) override { MaxMoves.push_back(ADelta); }

    double TickLo = 1000.0;
    double TickHi = 2000.0;
    double RealLo = -1.0;
    double RealHi = 1.0;
    std::vector<double> MinMoves;
    std::vector<double> MaxMoves;
};

} // namespace

TEST_F(AxisLimits, EachLimitIsComputedOncePerInvalidation)
{
    // A frame: many values mapped both ways.
    auto Frame = [this] {
        for (int I = 0; I < 1000; ++I) {
            XAxis.ScaleToPixel(I * 0.1);
            XAxis.GetPosFromValue(I * 0.1);
            XAxis.PixelToScale(60 + I % 400);
            XAxis.DataToScaleTick(I);
        }
    };
    auto Counts = [this] {
        const TLimitCalls& C = XAxis.Calls;
        return std::vector<int>{C.DataFullMin,   C.DataFullMax,        C.DataZoomedMin,
                                C.DataZoomedMax, C.ScaleZoomedTickMin, C.ScaleZoomedTickMax};
    };
    Frame();
    EXPECT_EQ(Counts(), (std::vector<int>{1, 1, 1, 1, 1, 1}));
    XAxis.InvalidateMinMaxCache(false); // a zoom keeps the full data limits
    Frame();
    EXPECT_EQ(Counts(), (std::vector<int>{1, 1, 2, 2, 2, 2}));
    XAxis.InvalidateMinMaxCache(true); // new data recomputes everything, once
    Frame();
    EXPECT_EQ(Counts(), (std::vector<int>{2, 2, 3, 3, 3, 3}));
}

TEST_F(AxisLimits, AChangedLimitSettingRecomputesTheLimitsAndTheLayout)
{
    XAxis.UseBaseFullMin = true;
    EXPECT_EQ(XAxis.GetDataTotal().GetFull().GetMin().GetValue(), 0.0); // follows the data: 0 here
    Display.ClearRecalc();
    XAxis.GetMin()->SetDataValue(-5.0); // still follows the data until autoscale is off
    XAxis.GetMin()->SetAutoScale(false);
    EXPECT_TRUE(Display.GetNeedsRecalc());
    EXPECT_EQ(XAxis.GetScaleTotalReal().GetFull().GetMin().GetValue(), -5.0);
    EXPECT_EQ(XAxis.ScaleToPixel(-5.0), 60);
    const int Before = XAxis.Calls.DataFullMin; // a bound of the zoom range is a change too
    XAxis.GetMax()->GetRange()->GetHigh()->SetValue(3.0);
    XAxis.ScaleToPixel(1.0);
    EXPECT_EQ(XAxis.Calls.DataFullMin, Before + 1);
}

TEST_F(AxisLimits, TheZoomedDataWindowIsCarriedOntoThePrintedAndRealScalesAndReportsMoves)
{
    TScaledAxis Axis(&Display, false, vaTop);
    Axis.ZoomWindow(20.0, 60.0);
    EXPECT_DOUBLE_EQ(Axis.GetScaleTick().GetZoomed().GetMin().GetValue(), 1200.0);
    EXPECT_DOUBLE_EQ(Axis.GetScaleTick().GetZoomed().GetMax().GetValue(), 1600.0);
    // The real pair scales the width only: no offsets.
    EXPECT_DOUBLE_EQ(Axis.GetScaleTotalReal().GetZoomed().GetMin().GetValue(), 0.4);
    EXPECT_DOUBLE_EQ(Axis.GetScaleTotalReal().GetZoomed().GetMax().GetValue(), 1.2);
    EXPECT_DOUBLE_EQ(Axis.GetScaleZoomedTickRange(), 400.0);
    EXPECT_EQ(Axis.ScaleToPixel(1400.0), 260) << "pixels run on the printed scale";
    // The zoomed printed limits report how far they moved.
    Axis.ZoomWindow(30.0, 60.0);
    Axis.ScaleToPixel(0.0);
    EXPECT_EQ(Axis.MinMoves, (std::vector<double>{1200.0, 100.0}));
    EXPECT_EQ(Axis.MaxMoves, (std::vector<double>{1600.0, 0.0}));
}

TEST_F(AxisLimits, ConversionsBetweenTheScalesAndDegenerateRangesNeverDivideByZero)
{
    TScaledAxis Axis(&Display, false, vaTop); // data 0..100, printed 1000..2000, real -1..1
    EXPECT_DOUBLE_EQ(Axis.ScaleTickToData(1500.0), 50.0);
    EXPECT_DOUBLE_EQ(Axis.DataToScaleTick(50.0), 1500.0);
    EXPECT_DOUBLE_EQ(Axis.ScaleRealToScaleTick(0.0), 1500.0);
    EXPECT_DOUBLE_EQ(Axis.ScaleRealToData(0.5), 75.0);
    EXPECT_DOUBLE_EQ(Axis.ScaleTickToDataNoOffset(100.0), 10.0);

    // A source range without width hands the value back.
    TScaledAxis Flat(&Display, false, vaTop);
    Flat.TickHi = Flat.TickLo;
    Flat.RealHi = Flat.RealLo;
    EXPECT_EQ(Flat.ScaleTickToData(7.0), 7.0);
    EXPECT_EQ(Flat.ScaleRealToScaleTick(7.0), 7.0);
    Flat.SetLimits(3.0, 3.0);
    EXPECT_EQ(Flat.DataToScaleTickNoOffset(7.0), 7.0);

    // A zoomed data range of no width counts as 1.
    Axis.SetLimits(50.0, 50.0);
    Axis.ZoomWindow(50.5, 51.0);
    EXPECT_DOUBLE_EQ(Axis.GetScaleTick().GetZoomed().GetMin().GetValue(), 1500.0);
    EXPECT_DOUBLE_EQ(Axis.GetScaleTotalReal().GetZoomed().GetMin().GetValue(), 101.0);
    // Unbounded: the printed window collapses to a small constant.
    Axis.SetLimits(0.0, std::numeric_limits<double>::infinity());
    EXPECT_EQ(Axis.GetScaleTick().GetZoomed().GetMax().GetValue(), 0.00001);
    EXPECT_EQ(Axis.ScaleToPixel(0.00001), 260); // a window of plus and minus 1 round it
    // An unbounded range has no automatic step, and its ticks still end.
    YAxis.SetLimits(0.0, std::numeric_limits<double>::infinity());
    EXPECT_EQ(YAxis.GetStep(), 1.0);
    YAxis.DrawTicks(Canvas, true, true);
    EXPECT_LE(Canvas.Count("LineTo"), 2u);
}

TEST_F(AxisLimits, TheZoomWindowIsBroughtInsideTheEdgeRangesInOrder)
{
    TQVAxisValue* Min = XAxis.GetMin();
    TQVMaxAxisValue* Max = XAxis.GetMax();

    // Nothing enabled: nothing moves.
    EXPECT_EQ(Correct(-5.0, 500.0), (P{-5.0, 500.0}));

    Bound(Min->GetRange()->GetHigh(), 10.0);
    EXPECT_EQ(Correct(15.0, 25.0), (P{10.0, 20.0})); // shifted down, width kept
    EXPECT_EQ(Correct(10.0, 25.0), (P{10.0, 25.0})); // at the bound: strict test
    Min->GetRange()->GetHigh()->SetEnabled(false);

    Min->GetRange()->GetLow()->SetEnabled(true); // low bound 0
    EXPECT_EQ(Correct(-5.0, 5.0), (P{0.0, 10.0}));
    Bound(Max->GetRange()->GetHigh(), 8.0);
    EXPECT_EQ(Correct(-5.0, 5.0), (P{0.0, 8.0})); // no room above: the window shrinks
    Min->GetRange()->GetLow()->SetEnabled(false);

    Max->GetRange()->GetHigh()->SetValue(100.0);
    EXPECT_EQ(Correct(95.0, 105.0), (P{90.0, 100.0}));
    Max->GetRange()->GetHigh()->SetEnabled(false);

    Bound(Max->GetRange()->GetLow(), 50.0);
    EXPECT_EQ(Correct(30.0, 40.0), (P{40.0, 50.0}));
    Bound(Min->GetRange()->GetHigh(), 35.0);
    EXPECT_EQ(Correct(30.0, 40.0), (P{35.0, 50.0})); // the minimum is held back to its bound
}

TEST_F(AxisLimits, TheWindowWidthRulesRunLastAndMayPushAnEdgeBackOut)
{
    TQVDisplayValueRange Width(nullptr, &Display, true);
    XAxis.ZoomWidth = &Width;

    Bound(Width.GetLow(), 10.0);
    EXPECT_EQ(Correct(20.0, 24.0), (P{17.0, 27.0})); // about the centre
    EXPECT_EQ(Correct(20.0, 30.0), (P{20.0, 30.0}));
    Bound(Width.GetHigh(), 15.0);
    EXPECT_EQ(Correct(0.0, 20.0), (P{2.5, 17.5}));

    XAxis.GetMin()->GetRange()->GetLow()->SetEnabled(true); // low bound 0
    EXPECT_EQ(Correct(0.0, 4.0), (P{-3.0, 7.0}));
}
