// A scope channel plotted end to end: from samples handed over to the draw stage, through
// the axes, to pixel points and drawing calls.
#include "channels/PlotTestSupport.h"

#include <cmath>
#include <limits>
#include <random>

using namespace qv;
using namespace qvtest;

namespace {
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

std::vector<double> Noise(int32_t ACount, unsigned ASeed)
{
    std::mt19937 Rng(ASeed);
    std::normal_distribution<double> D(50.0, 8.0);
    std::vector<double> Y(static_cast<size_t>(ACount));
    for (double& V : Y)
        V = D(Rng);
    return Y;
}
} // namespace

TEST_F(TPlotFixture, MillionSampleRampPlotsTwoPointsPerColumnWithTheExtremesOfEachColumn)
{
    const int32_t N = 1000000;
    std::vector<double> Y = Noise(N, 3);
    // A few spikes well beyond the noise, so that the extremes are not alike column to column.
    for (int32_t j = 1234; j < N; j += 7919)
        Y[size_t(j)] += (j % 2 ? 40.0 : -40.0);
    Ramp(Y, 0);
    XY(Seq(0.0, N), Y, 1);
    SetXRange(0.0, N - 1);

    Draw(0);
    EXPECT_EQ(Channel(0)->GetDownsampledIntDrawBufferY()->GetSize(), 1000);
    EXPECT_EQ(Canvas.Of("LineTo").size(), 999u);
    Draw(1);
    EXPECT_EQ(Channel(1)->GetDownsampledIntDrawBufferY()->GetSize(), N); // explicit X: sample by sample

    // Column by column, the two points are the highest and lowest pixel that the samples
    // drawn one by one reach.
    const auto Down = ColumnExtents(Plotted(0));
    const auto Full = ColumnExtents(Plotted(1));
    ASSERT_EQ(Down.size(), 500u);
    EXPECT_EQ(Down, Full);
}

TEST_F(TPlotFixture, DownsamplingBeginsOneSampleAboveTwiceTheUsedWidthPlusEight)
{
    // The view is exactly the data: 500 used columns, the whole record on screen.
    Ramp(Noise(1008, 1));
    SetXRange(0.0, 1007.0);
    Draw();
    EXPECT_EQ(Channel()->GetDownsampledIntDrawBufferY()->GetSize(), 1008);
    EXPECT_EQ(Channel()->GetDownsampledIntDrawBufferY(), Channel()->GetScaledIntDrawBufferY());

    Ramp(std::vector<double>{50.0});
    SetXRange(0.0, 1008.0);
    Draw();
    EXPECT_LE(Channel()->GetDownsampledIntDrawBufferY()->GetSize(), 1000);
    EXPECT_EQ(Channel()->GetScaledIntDrawBufferY()->GetSize(), 1009);
}

TEST_F(TPlotFixture, LogarithmicXAxisAndExplicitXAreNeverDownsampled)
{
    const int32_t N = 100000;
    Ramp(Noise(N, 2));
    SetXRange(0.0, N - 1);
    XAxis().SetScaleMode(smLogarithmic);
    Draw();
    EXPECT_EQ(Channel()->GetDownsampledIntDrawBufferY()->GetSize(), N);
    // The pixels follow log10(x + 1): x 0 at the left edge, the decades evenly spaced.
    const auto& X = *Channel()->GetDownsampledIntDrawBufferX();
    EXPECT_LE(std::abs(X.GetItem(0) - Rect.Left), 1);
    const int32_t D1 = X.GetItem(9) - X.GetItem(0), D2 = X.GetItem(99) - X.GetItem(9);
    EXPECT_NEAR(D1, D2, 1);
    EXPECT_LE(std::abs(X.GetItem(N - 1) - (Rect.Right - 1)), 1);
}

TEST_F(TPlotFixture, FrameWithoutChangeReusesItsPixelsAndChangesRecomputeThem)
{
    Ramp(Noise(200000, 4));
    SetXRange(0.0, 199999.0);
    std::vector<bool> WasChanged;
    Channel()->SetOnChannelDraw([&](TQLPersistent*, int32_t AIndex, const double* AData, int32_t ASize, bool AChanged) {
        EXPECT_EQ(AIndex, 0);
        EXPECT_EQ(ASize, Channel()->GetYDrawDataBuffer()->GetSize());
        EXPECT_NE(AData, nullptr);
        EXPECT_TRUE(Scope.GetInDraw());
        WasChanged.push_back(AChanged);
    });
    Draw();
    const auto First = Channel()->GetDownsampledIntDrawBufferY();
    const auto Points = Plotted();
    Draw();
    EXPECT_EQ(Channel()->GetDownsampledIntDrawBufferY(), First) << "a frame without change computed anew";
    EXPECT_EQ(Plotted(), Points);
    EXPECT_EQ(WasChanged, (std::vector<bool>{true, false}));
    EXPECT_FALSE(Scope.GetInDraw());

    // Forgetting the cache, zooming, moving the view and new data each recompute.
    Channel()->InvalidateChannel();
    Draw();
    EXPECT_NE(Channel()->GetDownsampledIntDrawBufferY(), First);
    EXPECT_EQ(Plotted(), Points);
    auto Last = Channel()->GetDownsampledIntDrawBufferY();
    SetXRange(0.0, 99999.0);
    Draw();
    EXPECT_NE(Channel()->GetDownsampledIntDrawBufferY(), Last);
    EXPECT_NE(Plotted(), Points);
    Last = Channel()->GetDownsampledIntDrawBufferY();
    const auto Zoomed = Plotted();
    Rect = TRect{0, 10, 500, 410};
    Draw();
    EXPECT_NE(Channel()->GetDownsampledIntDrawBufferY(), Last);
    EXPECT_EQ(Plotted()[0].second, Zoomed[0].second + 10);
    Last = Channel()->GetDownsampledIntDrawBufferY();
    Channel()->GetData()->AddYPoint(50.0);
    Hand();
    Draw();
    EXPECT_NE(Channel()->GetDownsampledIntDrawBufferY(), Last);
}

TEST_F(TPlotFixture, ZoomedRampIsCutToTheViewAndAShortRecordUsesPartOfTheWidth)
{
    Ramp(Noise(100000, 5));
    SetXRange(50000.0, 59999.0);
    Draw();
    EXPECT_EQ(Channel()->GetScreenStartIndex(), 50000);
    EXPECT_EQ(Channel()->GetXScreenDataBuffer()->GetItem(0), 50000.0);
    EXPECT_EQ(Channel()->GetYScreenDataBuffer()->GetSize(), 9999 + 8); // round(100000 * 9999 / 99999)
    EXPECT_EQ(ColumnExtents(Plotted()).size(), 500u);

    // 100 samples over an axis of 0..199: half the view, sample by sample.
    Ramp(Noise(100, 6), 1);
    SetXRange(0.0, 199.0);
    Draw(1);
    EXPECT_EQ(Channel(1)->GetScreenUsedWidth(), 249);
    for (const auto& [X, Y] : Plotted(1))
        EXPECT_LT(X, 250);
}

TEST_F(TPlotFixture, GapsBreakALineAndAreCrossedByASteps)
{
    Ramp(Noise(50, 7));
    Ramp(Noise(50, 8), 0, true); // a separate block: the line is broken at sample 50
    SetXRange(0.0, 99.0);
    Draw();
    ASSERT_EQ(Canvas.Of("MoveTo").size(), 2u);
    const auto Points = Plotted();
    EXPECT_EQ(Canvas.Of("MoveTo")[1].Args, (std::vector<int32_t>{Points[50].first, Points[50].second}));
    Channel()->SetChannelMode(cmStep);
    Draw();
    EXPECT_EQ(Canvas.Of("MoveTo").size(), 1u);
    EXPECT_EQ(Canvas.Of("LineTo").size(), 2u * 99);

    // Downsampled, the gap still breaks the line, in front of the column holding it.
    Channel()->SetChannelMode(cmLine);
    Ramp(Noise(100000, 9), 1);
    Ramp(Noise(100000, 10), 1, true);
    SetXRange(0.0, 199999.0);
    Draw(1);
    ASSERT_EQ(Canvas.Of("MoveTo").size(), 2u);
    EXPECT_EQ(Canvas.Of("MoveTo")[1].Args[0], Rect.Left + 250);
}

TEST_F(TPlotFixture, NaNAndInfiniteSamplesNeitherCrashNorTakePartInColumns)
{
    std::vector<double> Y(20, 50.0);
    Y[5] = NaN;
    Y[10] = Inf;
    Y[11] = -Inf;
    Ramp(Y);
    SetXRange(0.0, 19.0);
    Draw();
    const auto P = Plotted();
    EXPECT_EQ(P[5].second, QVMissingPixel);
    EXPECT_EQ(P[10].second, -10000000);
    EXPECT_EQ(P[11].second, 10000000);
    EXPECT_EQ(Canvas.Of("MoveTo").size(), 2u); // broken at the NaN

    // Downsampled: a NaN never becomes a column's extreme, an all-NaN stretch is missing.
    std::vector<double> Long(100000, 50.0);
    for (int32_t j = 0; j < 100000; j += 3)
        Long[size_t(j)] = NaN;
    for (int32_t j = 60000; j < 70000; ++j)
        Long[size_t(j)] = NaN;
    Ramp(Long, 1);
    SetXRange(0.0, 99999.0);
    Draw(1);
    int32_t Missing = 0;
    for (const auto& [X, Yp] : Plotted(1)) {
        if (Yp == QVMissingPixel)
            ++Missing;
        else
            EXPECT_EQ(Yp, 200);
    }
    EXPECT_GT(Missing, 40);
    EXPECT_EQ(Canvas.Of("MoveTo").size(), 2u);

    // Only NaN, and NaN X from an explicit-X record: nothing drawn, nothing raised.
    XY({NaN, NaN, 3.0}, {NaN, NaN, NaN}, 2);
    Draw(2);
    EXPECT_TRUE(Canvas.Of("LineTo").empty());
}

TEST_F(TPlotFixture, FlatAxisRangeAndEmptyChannelsDrawWithoutFault)
{
    Draw(); // no data at all
    EXPECT_TRUE(Canvas.GetRecords().empty());
    Ramp({10.0, 20.0, 30.0});
    SetXRange(1.0, 1.0); // widened to 0..2
    Draw();
    const auto P = Plotted();
    ASSERT_EQ(P.size(), 3u);
    // The scale 1..1 becomes 0..2 on the real scale's width of 0: -1..1. X 1 is its end.
    EXPECT_EQ(P[1].first, Rect.Right - 1);
    EXPECT_NEAR(P[0].first, Rect.Right / 2, 2);
    EXPECT_EQ(P[2].first - P[1].first, P[1].first - P[0].first);
    Channel()->SetVisible(false);
    Draw();
    EXPECT_TRUE(Canvas.GetRecords().empty());
}

TEST_F(TPlotFixture, BarsFollowWidthShadeAndTheSampleDrawEvent)
{
    Ramp({25.0, 50.0, 75.0, 100.0});
    SetXRange(0.0, 3.0);
    Channel()->SetChannelMode(cmBar);
    Channel()->SetShadeMode(csmBottom);
    Channel()->SetWidth(5);
    int Calls = 0;
    Channel()->SetOnSampleDraw([&](TQLPersistent*, double AX, double AY, TQLCanvas&, bool, bool& ADefault) {
        ++Calls;
        if (AX == 2.0) {
            EXPECT_EQ(AY, 75.0);
            ADefault = false;
        }
    });
    Draw();
    EXPECT_EQ(Calls, 4);
    const auto Bars = Canvas.Of("Rectangle");
    ASSERT_EQ(Bars.size(), 3u); // the third was left to the handler
    const auto P = Plotted();
    EXPECT_EQ(Bars[0].ArgRect(), (TRect{P[0].first - 2, 300, P[0].first + 3, 401}));
    EXPECT_EQ(Bars[0].PenWidth, 1);
    EXPECT_EQ(Bars[0].BrushColor, Channel()->GetColor());
    // On the zero line of a -100..100 axis, a bar below zero hangs down from it.
    Channel()->SetOnSampleDraw({});
    Channel()->SetShadeMode(csmZero);
    Channel()->SetWidth(4);
    SetYRange(-100.0, 100.0);
    Ramp({-50.0}, 0);
    Draw();
    const auto Down = Canvas.Of("Rectangle").back().ArgRect();
    EXPECT_EQ(Down.Top, 200);
    EXPECT_EQ(Down.Bottom, 301);
    EXPECT_EQ(Down.Right - Down.Left, 4);
}

TEST_F(TPlotFixture, PointsSymbolsAndLegendUseTheChannelsLook)
{
    Ramp({50.0, 50.0});
    SetXRange(0.0, 1.0);
    Channel()->SetChannelMode(cmPoint);
    Draw();
    ASSERT_EQ(Canvas.Of("SetPixel").size(), 2u);
    EXPECT_EQ(Canvas.Of("SetPixel")[0].Color, Channel()->GetColor());

    TQVScopePoints* Points = Channel()->GetPoints();
    Points->SetVisible(true);
    Points->SetShape(psSquare);
    Points->SetSize(2);
    Draw();
    EXPECT_TRUE(Canvas.Of("SetPixel").empty());
    const auto Squares = Canvas.Of("RectangleRect");
    ASSERT_EQ(Squares.size(), 2u);
    const auto P = Plotted();
    EXPECT_EQ(Squares[0].ArgRect(), (TRect{P[0].first - 2, 198, P[0].first + 3, 203}));
    Points->SetUseChannelColor(false);
    Points->GetPen()->SetColor(0xFF123456);
    Draw();
    EXPECT_EQ(Canvas.Of("RectangleRect")[0].PenColor, 0xFF123456u);

    Canvas.ClearRecords();
    Channel()->SetChannelMode(cmLine);
    Points->SetShape(psPlus);
    EXPECT_TRUE(Channel()->CustomLegendDraw(Canvas, 10, 20));
    ASSERT_EQ(Canvas.Of("RectangleRect").size(), 1u);
    EXPECT_EQ(Canvas.Of("RectangleRect")[0].ArgRect(), (TRect{10, 19, 23, 22}));
    ASSERT_EQ(Canvas.Of("LineTo").size(), 2u); // the plus, centred on (16, 20)
    EXPECT_EQ(Canvas.Of("MoveTo")[0].Args, (std::vector<int32_t>{16, 17}));
}

TEST_F(TPlotFixture, VerticalDisplayRunsXDownTheScreen)
{
    Scope.SetVertical(true);
    Ramp({0.0, 100.0});
    SetXRange(0.0, 1.0);
    SetYRange(0.0, 100.0);
    Draw();
    const auto Lines = Canvas.Of("LineTo");
    ASSERT_EQ(Lines.size(), 1u);
    // X 0 at the top, X 1 at the bottom; Y across the screen.
    EXPECT_LT(Lines[0].PenPos.Y, Lines[0].Args[1]);
    EXPECT_NE(Lines[0].PenPos.X, Lines[0].Args[0]);
}

TEST(ScopeChannelSettings, PlotSettingsAreCheckedCopiedAndStored)
{
    TTestScope Scope;
    TQVScopeChannel* A = Scope.GetChannels()->GetItem(0);
    TQVScopeChannel* B = Scope.GetChannels()->Add();
    A->SetWidth(0);
    EXPECT_EQ(A->GetWidth(), 1);
    A->SetWidth(5000);
    EXPECT_EQ(A->GetWidth(), 2000);
    ExpectError([&] { A->SetChannelMode(static_cast<TQVScopeChannelMode>(9)); }, "9");
    ExpectError([&] { A->SetShadeMode(static_cast<TQVChannelShadeMode>(7)); }, "7");
    ExpectError([&] { A->GetPoints()->SetShape(static_cast<TQVScopePointsShape>(6)); }, "6");
    ExpectError([&] { A->SetStrokeDash(static_cast<TQVStrokeDash>(5)); }, "5");
    EXPECT_EQ(A->GetChannelMode(), cmLine);

    int Notified = 0;
    Scope.SetOnInvalidate([&] { ++Notified; });
    A->GetPoints()->GetBrush()->SetColor(0xFF00FF00);
    EXPECT_GT(Notified, 0) << "a change of the symbols' brush must reach the display";

    A->SetChannelMode(cmBar);
    A->SetShadeMode(csmTop);
    A->SetStrokeDash(sdDot);
    A->GetPoints()->SetVisible(true);
    A->GetPoints()->SetSize(7);
    B->Assign(A);
    EXPECT_EQ(B->GetChannelMode(), cmBar);
    EXPECT_EQ(B->GetShadeMode(), csmTop);
    EXPECT_EQ(B->GetStrokeDash(), sdDot);
    EXPECT_TRUE(B->GetPoints()->GetVisible());
    EXPECT_EQ(B->GetPoints()->GetSize(), 7u);
    EXPECT_EQ(B->GetPoints()->GetBrush()->GetColor(), 0xFF00FF00u);
    EXPECT_NE(B->GetPoints(), A->GetPoints());
}

TEST_F(TPlotFixture, SampleRateChangesTheRealScaleButNotThePicture)
{
    Ramp(Noise(100000, 12));
    Draw();
    const auto Samples = Plotted();
    const double SampleMax = XAxis().GetScaleTotalReal().GetFull().GetMax().GetValue();
    Channel()->GetData()->SetSampleRate(1000.0);
    XAxis().SetTicksMode(atmTime);
    XAxis().InvalidateMinMaxCache(true);
    Draw();
    // The real scale now counts seconds; the data scale still counts samples.
    EXPECT_NE(XAxis().GetScaleTotalReal().GetFull().GetMax().GetValue(), SampleMax);
    EXPECT_EQ(XAxis().GetDataTotal().GetFull().GetMax().GetValue(), 99999.0);
    EXPECT_EQ(Plotted(), Samples);
    EXPECT_NEAR(Channel()->GetScaledRealDrawBufferX()->GetItem(99999) -
                    Channel()->GetScaledRealDrawBufferX()->GetItem(0),
                XAxis().GetScaleTotalReal().GetFull().GetMax().GetValue(), 1e-6);
}

TEST_F(TPlotFixture, DisplayOffsetAndWidthFollowTheDataViewAndTheTurn)
{
    View.SetDrawRect(TRect{30, 20, 530, 420});
    EXPECT_EQ(Channel()->GetDisplayOffset(), 30);
    EXPECT_EQ(Channel()->GetDisplayWidth(), 500);
    Scope.SetVertical(true);
    EXPECT_EQ(Channel()->GetDisplayOffset(), 20);
    EXPECT_EQ(Channel()->GetDisplayWidth(), 400);
}
