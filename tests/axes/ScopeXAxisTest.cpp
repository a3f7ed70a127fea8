// The scope's X axes: what the samples mean (time, frequency, X values, intensity), the
// sample range taken from the channels, the limits of the three scales and the pan limits.
#include "axes/ScopeAxisTestSupport.h"

#include <cmath>

using namespace qv;
using namespace qvtest;

namespace {

using TWindowXAxis = TWindowAxis<TQVBasicScopeXAxis>;

} // namespace

TEST(ScopeXAxis, TimeAxisPrintsTheSpanInTheUnitOfTheRate)
{
    struct TCase {
        double Rate;
        int32_t Count;
        double PrintedMax; // the last sample's time in the unit the rate gives
    };
    const TCase Cases[] = {
        {1000.0, 100, 0.099}, // seconds
        {0.0, 100, 9.9},      // no rate: 10000 samples per second, milliseconds
        {1.0e6, 1000, 0.999}, // milliseconds at a megasample
    };
    for (const TCase& C : Cases) {
        SCOPED_TRACE(testing::Message() << "rate " << C.Rate << ", " << C.Count << " samples");
        TQVScope Scope;
        TQVScopeXAxis& X = *Scope.GetXAxis();
        X.SetTicksMode(atmTime);
        ChannelData(Scope).SetSampleRate(C.Rate);
        Feed(Scope, Line(C.Count, -1.0, 1.0));
        EXPECT_TRUE(X.InTimeAxis());
        EXPECT_LIMITS(Full(X.GetDataTotal()), 0.0, C.Count - 1.0);
        EXPECT_LIMITS(Full(X.GetScaleTick()), 0.0, C.PrintedMax);
        EXPECT_LIMITS(Full(X.GetScaleTotalReal()), 0.0, C.PrintedMax);
        // Halfway along the printed scale lies halfway along the samples.
        EXPECT_NEAR(X.ScaleTickToData(C.PrintedMax / 2), (C.Count - 1) / 2.0, 1e-9);
    }
}

TEST(ScopeXAxis, FrequencyAxisRunsToHalfTheRateWhenAChannelHoldsASpectrum)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();
    ChannelData(Scope).SetSampleRate(44100.0);
    Feed(Scope, Line(257, 0.0, 1.0));
    EXPECT_FALSE(X.InFreqAxis()); // a plain stream counts samples
    EXPECT_LIMITS(Full(X.GetScaleTick()), 0.0, 256.0);

    Scope.GetChannels()->GetItem(0)->SetFrequencyDomain(true);
    EXPECT_TRUE(X.InFreqAxis());
    EXPECT_LIMITS(Full(X.GetScaleTick()), 0.0, 22.05); // kHz
    EXPECT_LIMITS(Full(X.GetDataTotal()), 0.0, 256.0);
    EXPECT_NEAR(X.ScaleToSample(22.05), 257.0, 1e-9);
    EXPECT_NEAR(X.SampleToScale(128.0), 128.0, 1e-9);
    // A unit chosen by hand.
    X.GetUnitScale()->SetAutoScale(false);
    X.GetUnitScale()->SetExponent(0);
    EXPECT_NEAR(Full(X.GetScaleTick()).Max, 22050.0, 1e-6);
    // Sample numbers asked for by hand win over the channel's domain.
    X.SetTicksMode(atmBufferSamples);
    EXPECT_FALSE(X.InFreqAxis());
    EXPECT_LIMITS(Full(X.GetScaleTick()), 0.0, 256.0);
}

TEST(ScopeXAxis, DomainsComeFromVisibleChannelsAndTimeIsNeverChosenByItself)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();
    TQVScopeChannel& A = *Scope.GetChannels()->GetItem(0);
    TQVScopeChannel& B = *Scope.GetChannels()->Add();
    EXPECT_FALSE(X.InTimeAxis() || X.InFreqAxis() || X.InXModeAxis() || X.InIntensityAxis());

    A.SetIntensityDomain(true);
    B.SetInAxisDomain(true);
    EXPECT_TRUE(X.InIntensityAxis() && X.InXModeAxis());
    EXPECT_FALSE(X.InTimeAxis());

    // A channel counts in its first domain only: frequency hides its intensity.
    A.SetFrequencyDomain(true);
    EXPECT_TRUE(X.InFreqAxis());
    EXPECT_FALSE(X.InIntensityAxis());

    B.SetVisible(false);
    EXPECT_FALSE(X.InXModeAxis());

    // Modes chosen by hand ignore the channels.
    X.SetTicksMode(atmIntensity);
    EXPECT_TRUE(X.InIntensityAxis() && !X.InFreqAxis());
    X.SetTicksMode(atmAxis);
    EXPECT_TRUE(X.InXModeAxis());
}

TEST(ScopeXAxis, SampleRateIsTheGreatestOfTheVisibleChannels)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();
    Scope.GetChannels()->Add();
    EXPECT_DOUBLE_EQ(X.GetSampleRate(), 10000.0);
    ChannelData(Scope, 0).SetSampleRate(1000.0);
    ChannelData(Scope, 1).SetSampleRate(8000.0);
    Feed(Scope, Line(10, 0, 1));
    EXPECT_DOUBLE_EQ(X.GetSampleRate(), 8000.0);
    Scope.GetChannels()->GetItem(1)->SetVisible(false);
    EXPECT_DOUBLE_EQ(X.GetSampleRate(), 1000.0);
    // A new rate reaches the axis at once, before any tick: its rate and its unit follow.
    X.SetTicksMode(atmTime);
    ChannelData(Scope, 0).SetSampleRate(2000.0);
    EXPECT_DOUBLE_EQ(X.GetSampleRate(), 2000.0);
    const std::string Before = X.GetAxisLabelText();
    ChannelData(Scope, 0).SetSampleRate(2e6);
    EXPECT_NE(X.GetAxisLabelText(), Before);
}

TEST(ScopeXAxis, SampleRangeFollowsTheChannelsFiniteXValuesAndNeverCollapses)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();

    // An empty channel: 0 to Max.DataValue - 1.
    Scope.RefreshView();
    EXPECT_LIMITS(Full(X.GetScaleTick()), 0.0, 1023.0);

    // X values of their own, with gaps and infinities that take no part.
    const double XS[] = {5.0, NaN, 12.5, Inf, -Inf, 50.0};
    const double YS[] = {1, 2, 3, 4, 5, 6};
    ChannelData(Scope).SetXYData(XS, YS, 6);
    Scope.RefreshView();
    EXPECT_EQ(X.GetSamples(), 6);
    EXPECT_DOUBLE_EQ(X.GetMinXValue(), 5.0);
    EXPECT_DOUBLE_EQ(X.GetMaxXValue(), 50.0);
    EXPECT_LIMITS(Full(X.GetDataTotal()), 5.0, 50.0);

    // Two channels: the ranges fold together, the longest count wins.
    TQVScopeChannel& Second = *Scope.GetChannels()->Add();
    const double XS2[] = {-10.0, 0.0, 20.0, 30.0, 40.0, 45.0, 47.0, 48.0};
    const double YS2[] = {0, 0, 0, 0, 0, 0, 0, 0};
    Second.GetData()->SetXYData(XS2, YS2, 8);
    Scope.RefreshView();
    EXPECT_EQ(X.GetSamples(), 8);
    EXPECT_LIMITS(Full(X.GetDataTotal()), -10.0, 50.0);

    // No channel at all: the samples in view, from 0.
    Scope.GetChannels()->Clear();
    EXPECT_LIMITS(Full(X.GetDataTotal()), 0.0, 7.0);

    // One sample: the default span of Max.DataValue samples while Max.Value lies above
    // Min.Value, else the maximum is Min.Value.
    TQVScope One;
    Feed(One, {3.0});
    EXPECT_LIMITS(Full(One.GetXAxis()->GetScaleTick()), 0.0, 1023.0);
    One.GetXAxis()->GetMax()->SetValue(0.0);
    EXPECT_DOUBLE_EQ(Full(One.GetXAxis()->GetScaleTick()).Max, 0.0);
    EXPECT_DOUBLE_EQ(Full(One.GetXAxis()->GetDataTotal()).Max, 0.0);
}

TEST(ScopeXAxis, ManualTicksFixThePrintedScaleWhileTheDataScaleFollowsTheSamples)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();
    X.GetMin()->GetTick()->SetValue(-5.0);
    X.GetMax()->GetTick()->SetValue(5.0);
    X.SetTicksMode(atmManual);
    Feed(Scope, Line(100, 0, 1));
    EXPECT_LIMITS(Full(X.GetScaleTick()), -5.0, 5.0);
    EXPECT_LIMITS(Full(X.GetDataTotal()), 0.0, 99.0);
    EXPECT_NEAR(X.ScaleTickToData(0.0), 49.5, 1e-9);
    Feed(Scope, Line(200, 0, 1));
    EXPECT_LIMITS(Full(X.GetScaleTick()), -5.0, 5.0);
    EXPECT_LIMITS(Full(X.GetDataTotal()), 0.0, 199.0);
}

TEST(ScopeXAxis, FixedLimitsAndAnOffsetMaximum)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();
    Feed(Scope, Line(100, 0, 1));
    X.GetMin()->SetAutoScale(false);
    X.GetMin()->SetValue(10.0);
    X.GetMin()->SetDataValue(10.0);
    X.GetMax()->SetAutoScale(false);
    X.GetMax()->SetMode(mamOffset);
    X.GetMax()->SetValue(30.0);
    EXPECT_LIMITS(Full(X.GetDataTotal()), 10.0, 40.0);
    EXPECT_LIMITS(Full(X.GetScaleTick()), 10.0, 40.0);
    EXPECT_LIMITS(Full(X.GetScaleTotalReal()), 10.0, 40.0);
    // The fixed limits also bound the sample range that is read.
    EXPECT_DOUBLE_EQ(X.GetMinSample(), 10.0);
    EXPECT_DOUBLE_EQ(X.GetMaxSample(), 30.0);

    // In a time axis the offset is a width of samples turned into time.
    X.SetTicksMode(atmTime);
    EXPECT_NEAR(Full(X.GetScaleTick()).Max, (30.0 + 10.0) / 10000.0 * 1000.0, 1e-9);
}

TEST(ScopeXAxis, MaxSampleWithoutAutosizeFixesTheSamplesInView)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();
    X.GetMaxSampleSettings()->SetValue(500);
    X.GetMaxSampleSettings()->SetAutosize(false);
    EXPECT_EQ(X.GetSamples(), 500);
    Feed(Scope, Line(900, 0, 1));
    EXPECT_EQ(X.GetSamples(), 500);
    EXPECT_DOUBLE_EQ(X.GetMaxSample(), 499.0);
    X.GetMaxSampleSettings()->SetAutosize(true);
    Scope.RefreshView();
    EXPECT_EQ(X.GetSamples(), 900);
}

TEST(ScopeXAxis, PanStaysInsideTheDataBouncesOffLowBoundsAndFollowsThePrintedStart)
{
    TQVScope Scope;
    TWindowXAxis X(&Scope);
    X.SetSamples(101); // 0 to 100, no channel on this axis
    X.Window(20.0, 40.0);
    EXPECT_LIMITS(Zoomed(X.GetScaleTick()), 20.0, 40.0);
    EXPECT_DOUBLE_EQ(X.Pan(10.0), 10.0);
    EXPECT_DOUBLE_EQ(X.Pan(70.0), 60.0);   // up to the end of the data
    EXPECT_DOUBLE_EQ(X.Pan(-30.0), -20.0); // down to its start

    Bound(X.GetMax()->GetRange()->GetHigh(), 50.0);
    EXPECT_DOUBLE_EQ(X.Pan(70.0), 10.0);
    // A low bound answers with the sign turned round: the pan bounces.
    Bound(X.GetMin()->GetRange()->GetLow(), 15.0);
    EXPECT_DOUBLE_EQ(X.Pan(-30.0), 5.0);
    EXPECT_DOUBLE_EQ(X.Pan(-2.0), -2.0);

    // Without atmManual a fixed printed start carries the width of the data along, and the
    // window moves with it; the data window stays.
    X.GetMax()->GetRange()->GetHigh()->SetEnabled(false);
    X.GetMin()->GetRange()->GetLow()->SetEnabled(false);
    X.GetMin()->GetTick()->SetAutoScale(false);
    X.GetMin()->GetTick()->SetValue(1000.0);
    X.InvalidateMinMaxCache(true);
    EXPECT_LIMITS(Full(X.GetScaleTick()), 1000.0, 1100.0);
    EXPECT_LIMITS(Zoomed(X.GetScaleTick()), 1020.0, 1040.0);
    EXPECT_LIMITS(Zoomed(X.GetDataTotal()), 20.0, 40.0);
}

TEST(ScopeXAxis, SnapToSampleMovesOntoTheNearestFiniteX)
{
    TQVScope Scope;
    TQVScopeXAxis& X = *Scope.GetXAxis();
    const double XS[] = {0.0, 2.0, NaN, 5.0, 9.0};
    const double YS[] = {0, 0, 0, 0, 0};
    ChannelData(Scope).SetXYData(XS, YS, 5);
    Scope.RefreshView();
    double V = 4.0;
    X.AlignValue(V);
    EXPECT_DOUBLE_EQ(V, 4.0); // off until asked for
    X.GetCursorSettings()->SetSnapToSample(true);
    for (auto [In, Out] : {std::pair{4.0, 5.0}, {3.5, 2.0}, {8.9, 9.0}, {12.0, 12.0}, {-1.0, -1.0}}) {
        V = In;
        X.AlignValue(V);
        EXPECT_DOUBLE_EQ(V, Out) << "from " << In;
    }
}
