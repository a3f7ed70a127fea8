// The scope's Y axes: autoscaling over frames with history, margin and hysteresis, the
// zoomed limits, pan limits and snapping.
#include "axes/ScopeAxisTestSupport.h"

#include <cmath>
#include <stdexcept>

using namespace qv;
using namespace qvtest;

namespace {

using TWindowYAxis = TWindowAxis<TQVBasicScopeYAxis>;

// One frame: new data, a refresh tick, and the limits the frame draws with.
TLimits Frame(TQVScope& AScope, const std::vector<double>& AValues)
{
    Feed(AScope, AValues);
    return Zoomed(AScope.GetYAxis()->GetDataTotal());
}

} // namespace

TEST(ScopeYAxis, ScaleGrowsAtOnceAndShrinksOnlyPastTheThreshold)
{
    TQVScope Scope;
    Scope.GetYAxis()->GetAutoScaling()->SetMaxHistory(1);
    // A tenth of the span beyond the data at each edge (Space 20 half per cent).
    EXPECT_LIMITS(Frame(Scope, Line(101, 0, 10)), -1.0, 11.0);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 0.0, 10.0);
    EXPECT_LIMITS(Frame(Scope, Line(101, 0, 20)), -2.0, 22.0);
    // Both edges would move in by less than the threshold: they hold.
    EXPECT_LIMITS(Frame(Scope, Line(101, 0, 19.6)), -2.0, 22.0);
    // The top moves in well past it and follows; the bottom's move stays inside it.
    EXPECT_LIMITS(Frame(Scope, Line(101, 0, 15)), -2.0, 16.5);
    EXPECT_DOUBLE_EQ(Scope.GetYAxis()->GetHeldMax(), 16.5);
}

TEST(ScopeYAxis, OldExtremesLeaveTheHistoryAfterMaxHistoryFrames)
{
    TQVScope Scope;
    TQVScopeYAxis& Y = *Scope.GetYAxis();
    Y.GetAutoScaling()->SetMaxHistory(3);
    EXPECT_LIMITS(Frame(Scope, Line(50, 0, 100)), -10.0, 110.0);
    EXPECT_DOUBLE_EQ(Frame(Scope, Line(50, 0, 10)).Max, 110.0);
    EXPECT_DOUBLE_EQ(Frame(Scope, Line(50, 0, 10)).Max, 110.0);
    EXPECT_EQ(Y.GetValBufSize(), 3u);
    EXPECT_DOUBLE_EQ(Frame(Scope, Line(50, 0, 10)).Max, 11.0);
    EXPECT_EQ(Y.GetValBufSize(), 3u);
    EXPECT_EQ(Y.GetValBufIndex(), 1u);

    // Forgetting the history: the next frame alone decides.
    Frame(Scope, Line(50, 0, 100));
    Scope.InvalidateHistory();
    EXPECT_EQ(Y.GetValBufSize(), 0u);
    EXPECT_DOUBLE_EQ(Frame(Scope, Line(50, -3, 3)).Min, -3.6);
}

TEST(ScopeYAxis, WithoutMarginAndThresholdTheScaleIsTheDataItself)
{
    TQVScope Scope;
    TQVScopeAutoScaling& A = *Scope.GetYAxis()->GetAutoScaling();
    for (TQVScopeAutoScalingSpace* S : {A.GetSpaceAbove(), A.GetSpaceBelow()}) {
        S->SetSpace(0);
        S->SetThreshold(0);
    }
    A.SetMaxHistory(1);
    EXPECT_LIMITS(Frame(Scope, Line(10, -4, 7)), -4.0, 7.0);

    // No history at all: the limits follow the current frame.
    A.SetMaxHistory(0);
    EXPECT_LIMITS(Frame(Scope, Line(10, 1, 2)), 1.0, 2.0);
    EXPECT_EQ(Scope.GetYAxis()->GetValBufSize(), 1u); // left as it was
}

TEST(ScopeYAxis, NonFiniteFlatSingleSampleAndMissingDataKeepAFiniteWindow)
{
    TQVScope Scope;
    TQVScopeYAxis& Y = *Scope.GetYAxis();
    Y.GetAutoScaling()->SetMaxHistory(1);
    // Gaps and infinities take no part.
    EXPECT_LIMITS(Frame(Scope, {0.0, NaN, 10.0, Inf, -Inf, 5.0}), -1.0, 11.0);
    EXPECT_LIMITS(Full(Y.GetDataTotal()), 0.0, 10.0);
    EXPECT_TRUE(std::isfinite(Full(Scope.GetXAxis()->GetScaleTick()).Max));
    // A flat signal gets a window one unit wide round it.
    Frame(Scope, std::vector<double>(20, 5.0));
    EXPECT_LIMITS(Full(Y.GetDataTotal()), 4.5, 5.5);
    EXPECT_LIMITS(Zoomed(Y.GetDataTotal()), 4.4, 5.6);

    // One sample takes no part: the limits fall back to Min.Value and Max.Value.
    TQVScope Single;
    Frame(Single, {3.0});
    EXPECT_LIMITS(Full(Single.GetYAxis()->GetDataTotal()), -1.0, 1.0);
    EXPECT_LIMITS(Zoomed(Single.GetYAxis()->GetDataTotal()), -1.2, 1.2);

    // Nor does a channel of gaps only, nor a missing channel.
    TQVScope Gaps;
    Frame(Gaps, {NaN, NaN, NaN});
    EXPECT_LIMITS(Full(Gaps.GetYAxis()->GetDataTotal()), -1.0, 1.0);
    TQVScope Empty;
    Empty.GetChannels()->Clear();
    Empty.RefreshView();
    EXPECT_LIMITS(Full(Empty.GetYAxis()->GetDataTotal()), -1.0, 1.0);
    // Only equal settings close the window; it opens by half a unit each way.
    Empty.GetYAxis()->GetMin()->SetValue(0.0);
    EXPECT_LIMITS(Full(Empty.GetYAxis()->GetDataTotal()), 0.0, 1.0);
    Empty.GetYAxis()->GetMin()->SetValue(1.0);
    EXPECT_LIMITS(Full(Empty.GetYAxis()->GetDataTotal()), 0.5, 1.5);
}

TEST(ScopeYAxis, AutoscalingReadsOnlyTheSamplesTheXAxisShows)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();
    Feed(Scope, Line(100, 0, 99)); // each sample is its index
    X.GetMin()->SetAutoScale(false);
    X.GetMin()->SetValue(50.0);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 50.0, 99.0);
    X.GetMax()->SetAutoScale(false);
    X.GetMax()->SetValue(60.0);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 50.0, 60.0);

    // With autoscaling off the limits are the settings.
    Scope.GetYAxis()->GetAutoScaling()->SetEnabled(false);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), -1.0, 1.0);
}

TEST(ScopeYAxis, KeptExtremesFollowNewDataOfTheSameSizeAndEveryNewVisibleRange)
{
    TQVScope Scope;
    Scope.GetYAxis()->GetAutoScaling()->SetMaxHistory(1);
    TQVScopeXAxis& X = *Scope.GetXAxis();
    Feed(Scope, Line(1000, 0, 999));
    X.GetMin()->SetAutoScale(false);
    X.GetMin()->SetValue(100.0);
    X.GetMax()->SetAutoScale(false);
    X.GetMax()->SetValue(200.0);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 100.0, 200.0);
    // New samples of the same count, possibly into the same buffer: read anew.
    Feed(Scope, Line(1000, 1000, 1999));
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 1100.0, 1200.0);
    // Another visible range, and back: each read for its own range.
    X.GetMax()->SetValue(500.0);
    Scope.GetYAxis()->InvalidateMinMaxCache(true);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 1100.0, 1500.0);
    X.GetMax()->SetValue(200.0);
    Scope.GetYAxis()->InvalidateMinMaxCache(true);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 1100.0, 1200.0);
    // A second channel's samples count, and leave again when it is hidden.
    if (Scope.GetChannels()->GetCount() < 2)
        Scope.GetChannels()->Add();
    Feed(Scope, Line(1000, -5000, -4001), 1);
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), -4900.0, 1200.0);
    Scope.GetChannels()->GetItem(1)->SetVisible(false);
    Scope.RefreshView();
    EXPECT_LIMITS(Full(Scope.GetYAxis()->GetDataTotal()), 1100.0, 1200.0);
}

TEST(ScopeYAxis, HistorySizeChangesNeverReadOutsideTheHistory)
{
    TQVScope Scope;
    TQVScopeAutoScaling& A = *Scope.GetYAxis()->GetAutoScaling();
    for (int I = 0; I < 5; ++I)
        Frame(Scope, Line(10, -I, I));
    A.SetMaxHistory(2);
    EXPECT_EQ(A.GetMinValuesBuffer().GetSize(), 2);
    const TLimits L = Zoomed(Scope.GetYAxis()->GetDataTotal());
    EXPECT_TRUE(std::isfinite(L.Min) && std::isfinite(L.Max));
    for (int I = 0; I < 3; ++I)
        Frame(Scope, Line(10, -1, 1));
    EXPECT_EQ(Scope.GetYAxis()->GetValBufIndex(), 1u);
    EXPECT_THROW(A.SetMaxHistory(0xFFFFFFFFu), std::out_of_range);
    EXPECT_EQ(A.GetMaxHistory(), 2u);
}

TEST(ScopeYAxis, AZoomedAxisIgnoresAutoscalingKeepsToItsRangesAndPansBeyondTheData)
{
    TQVScope Scope;
    TWindowYAxis Y(&Scope);
    Y.Window(-5.0, 5.0);
    EXPECT_LIMITS(Zoomed(Y.GetDataTotal()), -5.0, 5.0);
    EXPECT_DOUBLE_EQ(Y.GetHeldMin(), 0.0);
    Bound(Y.GetMin()->GetRange()->GetLow(), -3.0);
    Bound(Y.GetMax()->GetRange()->GetHigh(), 4.0);
    Y.InvalidateMinMaxCache(false);
    EXPECT_LIMITS(Zoomed(Y.GetDataTotal()), -3.0, 4.0);

    // A pan may leave the data but bounces off low bounds.
    Y.GetMin()->GetRange()->GetLow()->SetEnabled(false);
    Y.GetMax()->GetRange()->GetHigh()->SetEnabled(false);
    Y.Window(0.0, 10.0);
    EXPECT_DOUBLE_EQ(Y.Pan(100.0), 100.0);
    EXPECT_DOUBLE_EQ(Y.Pan(-100.0), -100.0);
    Bound(Y.GetMax()->GetRange()->GetHigh(), 12.0);
    EXPECT_DOUBLE_EQ(Y.Pan(5.0), 2.0);
    Bound(Y.GetMin()->GetRange()->GetLow(), -1.0);
    EXPECT_DOUBLE_EQ(Y.Pan(-3.0), 1.0);
}

TEST(ScopeYAxis, SnapToSampleTakesTheNearestValueOfEachChannelInTurn)
{
    TQVScope Scope;
    TQVScopeYAxis& Y = *Scope.GetYAxis();
    Y.GetCursorSettings()->SetSnapToSample(true);
    Feed(Scope, {0.0, 2.0, NaN, 5.0, 9.0});
    for (auto [In, Out] : {std::pair{4.0, 5.0}, {3.5, 2.0}, {0.1, 0.0}, {9.5, 9.5}}) {
        double V = In;
        Y.AlignValue(V);
        EXPECT_DOUBLE_EQ(V, Out) << "from " << In;
    }
    // A second channel works on what the first left.
    Feed(Scope, {4.0, 4.9, 10.0}, Scope.GetChannels()->Add()->GetIndex());
    double V = 4.2;
    Y.AlignValue(V); // 5.0 from the first channel, then 4.9 from the second
    EXPECT_DOUBLE_EQ(V, 4.9);
}
