// A scope channel plotted end to end: samples handed over to the draw stage, mapped through
// the scope's axes to pixel points, and drawn.
#include "channels/PlotTestSupport.h"
#include "qv/channels/QVDisplayHighlighting.h"
#include "qv/channels/QVHighlightInfo.h"

#include <cmath>
#include <limits>
#include <random>
#include <string>

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

TEST_F(TPlotFixture, DownsampledFrameFillsOneColumnPerPixelAndTheScaledPixelsOfSampleBySample)
{
    // Channel 0 is a ramp and is downsampled; channel 1 has the same samples with explicit X
    // and is plotted sample by sample, so its scaled buffers are filled as it draws. The
    // scaled pixels of the downsampled frame are worked out when asked for, as if plotted one
    // by one; its columns take one pixel each, joined into one line.
    const int32_t N = 200000;
    std::vector<double> Y = Noise(N, 11);
    for (int32_t j = 0; j < N; j += 977)
        Y[size_t(j)] = NaN;
    Ramp(Y, 0);
    Channel(1)->GetData()->AddXYData(Seq(0.0, N).data(), Y.data(), N);
    Scope.PopulateDrawBuffers();
    const auto Compare = [&](const char* AWhat, bool AWholeRecord) {
        SCOPED_TRACE(AWhat);
        Draw(1);
        ASSERT_EQ(Plotted(1).size(), size_t(N));
        Draw(0);
        ASSERT_LT(Plotted(0).size(), 1001u);
        if (AWholeRecord) {
            EXPECT_EQ(Canvas.Of("LineTo").size(), Plotted(0).size() - 1);
            EXPECT_EQ(ColumnExtents(Plotted(0)).size(), 500u);
        }
        const int32_t Start = Channel(0)->GetScreenStartIndex();
        const auto& X0 = *Channel(0)->GetScaledIntDrawBufferX();
        const auto& Y0 = *Channel(0)->GetScaledIntDrawBufferY();
        const auto& R0 = *Channel(0)->GetScaledRealDrawBufferX();
        const auto& X1 = *Channel(1)->GetScaledIntDrawBufferX();
        const auto& Y1 = *Channel(1)->GetScaledIntDrawBufferY();
        const auto& R1 = *Channel(1)->GetScaledRealDrawBufferX();
        const int32_t c = Channel(0)->GetYScreenDataBuffer()->GetSize();
        ASSERT_GT(c, 1000);
        ASSERT_EQ(X0.GetSize(), c);
        ASSERT_EQ(Y0.GetSize(), c);
        ASSERT_EQ(R0.GetSize(), c);
        for (int32_t i = 0; i < c; ++i) {
            ASSERT_EQ(X0.GetItem(i), X1.GetItem(Start + i)) << i;
            ASSERT_EQ(Y0.GetItem(i), Y1.GetItem(Start + i)) << i;
            ASSERT_EQ(R0.GetItem(i), R1.GetItem(Start + i)) << i;
        }
    };
    Compare("whole record", true);
    XAxis().SetReversed(true); // the columns come right to left
    Compare("reversed X", true);
    EXPECT_GT(Plotted(0).front().first, Plotted(0).back().first);
    XAxis().SetReversed(false);
    SetXRange(20000.5, 70000.0);
    Compare("zoomed", false);
    SetYRange(20.0, 80.0); // only Y moves
    Compare("new Y range", false);
    XAxis().SetReversed(true);
    Compare("zoomed and reversed X", false);
}

TEST_F(TPlotFixture, ColumnsFromTheKeptSummaryEqualColumnsReadFromEverySample)
{
    // Samples reach the draw stage with the summary kept as they arrived: blocks through a
    // ring that drops old samples (or none), with gaps, NaN runs and infinities, and frames
    // between the blocks at several zooms. Every downsampled frame's columns must be those
    // found by reading every sample of the screen slice with the same split, value for value.
    struct TCase {
        uint32_t Limit;
        int32_t Block;
        double From, To; // X window as fractions of the record; From > To leaves X automatic
    };
    const TCase Cases[] = {
        {0, 5000, 1, 0},           {0, 4093, 0.1, 0.3},           {30000, 4096, 1, 0},      {30000, 777, 0.37, 1.4},
        {50000, 12345, -0.2, 0.6}, {8192, 100, 0.0, 0.99},        {70001, 9999, 0.5, 0.53}, {25000, 40000, 0.25, 0.75},
        {0, 250000, 1, 0},         {1500000, 300000, 0.05, 0.95}, // columns of several groups
    };
    const auto Check = [&](const std::string& AWhere) {
        TQVScopeChannel& C = *Channel();
        if (C.GetDownsampledRealY().empty())
            return;
        const IQVRealBuffer& Y = *C.GetYScreenDataBuffer();
        const int32_t c = Y.GetSize(), Start = C.GetScreenStartIndex();
        std::vector<int32_t> Gaps;
        for (int32_t g : Ints(*C.GetDrawGapsBuffer()))
            if (g > Start && g < Start + c)
                Gaps.push_back(g - Start);
        const int32_t Columns = C.GetScreenUsedWidth();
        std::vector<int32_t> OG(Gaps.size() + 1);
        std::vector<double> OY(2 * size_t(Columns));
        const TQVDownsampled R =
            QVDownsampleColumns(Y.Read(), c, Columns, Gaps.data(), int32_t(Gaps.size()), OY.data(), nullptr, OG.data());
        ASSERT_EQ(size_t(R.Points), C.GetDownsampledRealY().size()) << AWhere;
        for (int32_t k = 0; k < R.Points; ++k) {
            const double Got = C.GetDownsampledRealY()[size_t(k)];
            ASSERT_TRUE(Got == OY[size_t(k)] || (Got != Got && OY[size_t(k)] != OY[size_t(k)])) << AWhere << k;
        }
        std::vector<int32_t> Expected(OG.begin(), OG.begin() + R.GapCount);
        for (int32_t& g : Expected)
            g += Start;
        ASSERT_EQ(Expected, Ints(*C.GetDownsampledGapsBuffer())) << AWhere;
    };
    int32_t Frames = 0;
    for (const TCase& T : Cases) {
        Scope.SetSizeLimit(T.Limit);
        Channel()->GetData()->Clear();
        std::vector<double> Block = Noise(T.Block, unsigned(T.Block));
        for (int32_t b = 0; b < 12; ++b) {
            for (int32_t i = 0; i < T.Block; ++i) // a NaN run and lone infinities move along
                Block[size_t(i)] = (i + 31 * b) % 4000 < 300 ? NaN : 50.0 + 30.0 * std::sin(i * 0.001 * (b + 1));
            Block[size_t((b * 997) % T.Block)] = b % 2 ? Inf : -Inf;
            Ramp(Block, 0, b % 4 == 3);
            if (b % 3 != 2)
                continue;
            const auto& X = *Channel()->GetXDrawDataBuffer();
            const double X0 = X.GetItem(0), Span = X.GetItem(X.GetSize() - 1) - X0;
            if (T.From < T.To)
                SetXRange(X0 + T.From * Span, X0 + T.To * Span);
            Draw();
            Check("limit " + std::to_string(T.Limit) + " block " + std::to_string(b) + ": ");
            Frames += !Channel()->GetDownsampledRealY().empty();
        }
    }
    EXPECT_GT(Frames, 20) << "most frames were downsampled";
}

TEST_F(TPlotFixture, DownsamplingBeginsOneSampleAboveTwiceTheUsedWidthPlusEight)
{
    Ramp(Noise(1008, 1)); // X follows the data: the whole record fills the 500 columns
    Draw();
    EXPECT_EQ(Plotted().size(), 1008u);
    EXPECT_EQ(Channel()->GetDownsampledIntDrawBufferY(), Channel()->GetScaledIntDrawBufferY());
    Ramp({50.0});
    Draw();
    EXPECT_LE(Plotted().size(), 1000u);
    EXPECT_EQ(Channel()->GetScaledIntDrawBufferY()->GetSize(), 1009);

    // A logarithmic X axis plots a long ramp sample by sample, a decade per equal width.
    Ramp(Noise(100000 - 1009, 2));
    XAxis().SetScaleMode(smLogarithmic);
    Draw();
    const auto P = Plotted();
    ASSERT_EQ(P.size(), 100000u);
    EXPECT_NEAR(P[9].first - P[0].first, P[99].first - P[9].first, 1);
    EXPECT_NEAR(P[99999].first, Rect.Right - 1, 1);
}

TEST_F(TPlotFixture, FrameWithoutChangeReusesItsPixelsAndChangesRecomputeThem)
{
    Ramp(Noise(200000, 4));
    std::vector<bool> WasChanged;
    Channel()->SetOnChannelDraw([&](TQLPersistent*, int32_t AIndex, const double* AData, int32_t ASize, bool AChanged) {
        EXPECT_TRUE(AIndex == 0 && AData && ASize == Channel()->GetYDrawDataBuffer()->GetSize());
        EXPECT_TRUE(Scope.GetInDraw());
        WasChanged.push_back(AChanged);
    });
    Draw();
    auto Last = Channel()->GetDownsampledIntDrawBufferY();
    const auto Points = Plotted();
    Draw();
    EXPECT_EQ(Channel()->GetDownsampledIntDrawBufferY(), Last) << "a frame without change computed anew";
    EXPECT_EQ(WasChanged, (std::vector<bool>{true, false}));
    EXPECT_FALSE(Scope.GetInDraw());

    // Forgetting the cache, zooming, moving the view and new data each recompute.
    const auto Recomputed = [&] {
        Draw();
        const bool New = Channel()->GetDownsampledIntDrawBufferY() != Last;
        Last = Channel()->GetDownsampledIntDrawBufferY();
        return New;
    };
    Channel()->InvalidateChannel();
    EXPECT_TRUE(Recomputed());
    EXPECT_EQ(Plotted(), Points);
    SetXRange(0.0, 99999.0);
    EXPECT_TRUE(Recomputed());
    const auto Zoomed = Plotted();
    EXPECT_NE(Zoomed, Points);
    Rect = TRect{0, 10, 500, 410};
    EXPECT_TRUE(Recomputed());
    EXPECT_EQ(Plotted()[0].second, Zoomed[0].second + 10);
    Scope.GetYAxis()->SetReversed(true); // the same limits, turned round
    EXPECT_TRUE(Recomputed());
    Channel()->GetData()->AddYPoint(50.0);
    Scope.PopulateDrawBuffers();
    EXPECT_TRUE(Recomputed());
}

TEST_F(TPlotFixture, ZoomedRampIsCutToTheViewAndAShortRecordUsesPartOfTheWidth)
{
    Ramp(Noise(100000, 5));
    SetXRange(50000.0, 59999.0);
    Draw();
    EXPECT_EQ(Channel()->GetScreenStartIndex(), 50000);
    EXPECT_EQ(Channel()->GetYScreenDataBuffer()->GetSize(), 9999 + 8); // round(100000 * 9999 / 99999)
    EXPECT_EQ(ColumnExtents(Plotted()).size(), 500u);

    Ramp(Noise(100, 6), 1); // 100 samples on an axis of 0..199: half the view
    SetXRange(0.0, 199.0);
    Draw(1);
    EXPECT_EQ(Channel(1)->GetScreenUsedWidth(), 249);
    for (const auto& [X, Y] : Plotted(1))
        EXPECT_LT(X, 250);
}

TEST_F(TPlotFixture, GapsBreakALineAlsoWhenDownsampledAndAreCrossedByASteps)
{
    Ramp(Noise(50, 7));
    Ramp(Noise(50, 8), 0, true); // a separate block: broken in front of sample 50
    Draw();
    const auto P = Plotted();
    ASSERT_EQ(Canvas.Of("MoveTo").size(), 2u);
    EXPECT_EQ(Canvas.Of("MoveTo")[1].Args, (std::vector<int32_t>{P[50].first, P[50].second}));
    Channel()->SetChannelMode(cmStep);
    Draw();
    EXPECT_EQ(Canvas.Of("MoveTo").size(), 1u);

    Ramp(Noise(100000, 9), 1);
    Ramp(Noise(100000, 10), 1, true);
    Draw(1);
    ASSERT_EQ(Canvas.Of("MoveTo").size(), 2u);
    EXPECT_EQ(Canvas.Of("MoveTo")[1].Args[0], Rect.Left + 250);
}

TEST_F(TPlotFixture, NaNAndInfiniteSamplesNeitherCrashNorTakePartInColumns)
{
    Draw(); // no data at all
    EXPECT_TRUE(Canvas.GetRecords().empty());
    std::vector<double> Y(20, 50.0);
    Y[5] = NaN;
    Y[10] = Inf;
    Y[11] = -Inf;
    Ramp(Y);
    Draw();
    const auto P = Plotted();
    EXPECT_EQ(P[5].second, QVMissingPixel);
    EXPECT_EQ(P[10].second, int32_t(QVPixelLowest));
    EXPECT_EQ(P[11].second, 10000000);
    EXPECT_EQ(Canvas.Of("MoveTo").size(), 2u); // broken at the NaN

    // Downsampled: a NaN is never a column's extreme; an all-NaN stretch is missing.
    std::vector<double> Long(100000, 50.0);
    for (int32_t j = 0; j < 100000; j += 3)
        Long[size_t(j)] = NaN;
    std::fill(Long.begin() + 60000, Long.begin() + 70000, NaN);
    Ramp(Long, 1);
    Draw(1);
    int32_t Missing = 0;
    for (const auto& [X, Yp] : Plotted(1)) {
        Missing += Yp == QVMissingPixel ? 1 : 0;
        EXPECT_TRUE(Yp == QVMissingPixel || Yp == 200) << Yp;
    }
    EXPECT_GT(Missing, 40);
    EXPECT_EQ(Canvas.Of("MoveTo").size(), 2u);

    // NaN X and Y from an explicit-X record: nothing drawn, nothing raised.
    const std::vector<double> NX{NaN, NaN, 3}, NY{NaN, NaN, NaN};
    Channel(2)->GetData()->AddXYData(NX.data(), NY.data(), 3);
    Scope.PopulateDrawBuffers();
    Draw(2);
    EXPECT_TRUE(Canvas.Of("LineTo").empty());
    // Cleared, a channel keeps no points of its last frame.
    Channel(1)->GetData()->Clear();
    Scope.PopulateDrawBuffers();
    EXPECT_TRUE(Plotted(1).empty());
}

TEST_F(TPlotFixture, UnboundedAxesAndEmptyViewsDrawWithoutFault)
{
    Ramp(Noise(5000, 13));
    const std::vector<std::pair<double, double>> Ranges{{-Inf, Inf}, {-1e308, 1e308}, {5.0, 5.0}, {0.0, 1e-300}};
    for (const auto& [Lo, Hi] : Ranges) {
        SetYRange(Lo, Hi);
        SetXRange(Lo, Hi);
        for (TQVScopeChannelMode Mode : {cmLine, cmStep, cmBar, cmPoint}) {
            Channel()->SetChannelMode(Mode);
            Draw();
            for (const auto& [X, Y] : Plotted()) {
                EXPECT_TRUE(X == QVMissingPixel || std::abs(X) <= 10000000) << Lo << ".." << Hi;
                EXPECT_TRUE(Y == QVMissingPixel || (Y >= QVPixelLowest && Y <= 10000000)) << Lo << ".." << Hi;
            }
        }
    }
    Rect = TRect{10, 10, 5, 5}; // no size at all
    Draw();
}

TEST_F(TPlotFixture, BarsFollowWidthShadeAndTheSampleDrawEvent)
{
    Ramp({25.0, 50.0, 75.0, 100.0});
    Channel()->SetChannelMode(cmBar);
    Channel()->SetShadeMode(csmBottom);
    Channel()->SetWidth(5);
    int Calls = 0;
    Channel()->SetOnSampleDraw([&](TQLPersistent*, double AX, double AY, TQLCanvas&, bool, bool& ADefault) {
        ++Calls;
        ADefault = !(AX == 2.0 && AY == 75.0); // leaves out the third bar
    });
    Draw();
    EXPECT_EQ(Calls, 4);
    const auto Bars = Canvas.Of("Rectangle");
    ASSERT_EQ(Bars.size(), 3u);
    const int32_t X = Plotted()[0].first;
    EXPECT_EQ(Bars[0].ArgRect(), (TRect{X - 2, 300, X + 3, 401}));
    EXPECT_EQ(Bars[0].BrushColor, Channel()->GetColor());
    // On the zero line of a -100..100 axis, a bar below zero hangs down from it.
    Channel()->SetOnSampleDraw({});
    Channel()->SetShadeMode(csmZero);
    SetYRange(-100.0, 100.0);
    Draw();
    EXPECT_EQ(Canvas.Of("Rectangle")[0].ArgRect().Top, Plotted()[0].second);
    EXPECT_EQ(Canvas.Of("Rectangle")[0].ArgRect().Bottom, 201); // from the zero line 200 + 1
}

TEST_F(TPlotFixture, PointsSymbolsAndLegendUseTheChannelsLook)
{
    Ramp({50.0, 50.0});
    Channel()->SetChannelMode(cmPoint);
    Draw();
    ASSERT_EQ(Canvas.Of("SetPixel").size(), 2u);
    TQVScopePoints* Points = Channel()->GetPoints();
    Points->SetVisible(true);
    Points->SetShape(psSquare);
    Points->SetSize(2);
    Points->SetUseChannelColor(false);
    Points->GetPen()->SetColor(0xFF123456);
    Draw();
    EXPECT_TRUE(Canvas.Of("SetPixel").empty());
    ASSERT_EQ(Canvas.Of("RectangleRect").size(), 2u);
    const int32_t X = Plotted()[0].first;
    EXPECT_EQ(Canvas.Of("RectangleRect")[0].ArgRect(), (TRect{X - 2, 198, X + 3, 203}));
    EXPECT_EQ(Canvas.Of("RectangleRect")[0].PenColor, 0xFF123456u);

    Canvas.ClearRecords();
    Channel()->SetChannelMode(cmLine);
    Points->SetShape(psPlus);
    EXPECT_TRUE(Channel()->CustomLegendDraw(Canvas, 10, 20));
    EXPECT_EQ(Canvas.Of("RectangleRect").at(0).ArgRect(), (TRect{10, 19, 23, 22}));
    EXPECT_EQ(Canvas.Of("MoveTo").at(0).Args, (std::vector<int32_t>{16, 17})); // the plus round (16, 20)
}

TEST_F(TPlotFixture, ChannelUnderTheMouseIsLitUnderItsLineExceptInPrint)
{
    Ramp({10.0, 20.0});
    Channel()->SetWidth(3);
    TQVChannelItemHighlighting* Lit = static_cast<TQVDataDisplayHighlighting*>(Scope.GetHighlighting())->GetChannels();
    Lit->SetHiglightFromMouse(true);
    Scope.GetHighlightInfo()->FHighlightedItem = Channel();
    Draw();
    const auto Lines = Canvas.Of("LineTo");
    ASSERT_EQ(Lines.size(), 2u);
    EXPECT_EQ(Lines[0].PenColor, Lit->GetColor());
    EXPECT_EQ(Lines[0].PenWidth, 5);
    EXPECT_EQ(Lines[1].PenColor, Channel()->GetColor());
    EXPECT_EQ(Lines[1].PenWidth, 3);
    Canvas.ClearRecords();
    Channel()->Draw(Canvas, Rect, true); // printing
    EXPECT_EQ(Canvas.Of("LineTo").size(), 1u);
    Lit->SetHiglightFromMouse(false);
    Draw();
    EXPECT_EQ(Canvas.Of("LineTo").size(), 1u);
}

TEST_F(TPlotFixture, SampleRateChangesTheRealScaleButNotThePicture)
{
    Ramp(Noise(100000, 12));
    Draw();
    const auto Samples = Plotted();
    Channel()->GetData()->SetSampleRate(1000.0);
    XAxis().SetTicksMode(atmTime);
    XAxis().InvalidateMinMaxCache(true);
    Draw();
    const double Seconds = XAxis().GetScaleTotalReal().GetFull().GetMax().GetValue();
    EXPECT_NEAR(Seconds, 100.0, 0.01);
    EXPECT_EQ(Plotted(), Samples);
    const auto& Real = *Channel()->GetScaledRealDrawBufferX();
    EXPECT_NEAR(Real.GetItem(99999) - Real.GetItem(0), Seconds, 1e-6);
}

TEST_F(TPlotFixture, VerticalDisplayRunsXDownTheScreen)
{
    Scope.SetVertical(true);
    EXPECT_EQ(Channel()->GetDisplayWidth(), 400);
    Ramp({0.0, 100.0});
    Draw();
    const auto Lines = Canvas.Of("LineTo");
    ASSERT_EQ(Lines.size(), 1u);
    EXPECT_LT(Lines[0].PenPos.Y, Lines[0].Args[1]); // X 0 above X 1
    EXPECT_GT(Lines[0].PenPos.X, Lines[0].Args[0]); // turned a quarter: Y grows to the left
}

TEST(ScopeChannelSettings, PlotSettingsAreCheckedCopiedAndNotified)
{
    TTestScope Scope;
    TQVScopeChannel* A = Scope.GetChannels()->GetItem(0);
    TQVScopeChannel* B = Scope.GetChannels()->Add();
    for (auto [Given, Kept] : {std::pair{-4, 1}, {0, 1}, {2000, 2000}, {5000, 2000}}) {
        A->SetWidth(Given);
        EXPECT_EQ(A->GetWidth(), Kept) << Given;
    }
    ExpectError([&] { A->SetChannelMode(static_cast<TQVScopeChannelMode>(9)); }, "9");
    ExpectError([&] { A->SetShadeMode(static_cast<TQVChannelShadeMode>(7)); }, "7");
    ExpectError([&] { A->GetPoints()->SetShape(static_cast<TQVScopePointsShape>(6)); }, "6");
    ExpectError([&] { A->SetStrokeDash(static_cast<TQVStrokeDash>(5)); }, "5");
    int Notified = 0;
    Scope.SetOnInvalidate([&] { ++Notified; });
    A->GetPoints()->GetBrush()->SetColor(0xFF00FF00);
    EXPECT_GT(Notified, 0) << "a change of the symbols' brush must reach the display";

    A->SetChannelMode(cmBar);
    A->SetShadeMode(csmTop);
    A->SetStrokeDash(sdDot);
    A->GetPoints()->SetSize(7);
    B->Assign(A);
    EXPECT_EQ(B->GetChannelMode(), cmBar);
    EXPECT_EQ(B->GetShadeMode(), csmTop);
    EXPECT_EQ(B->GetStrokeDash(), sdDot);
    EXPECT_EQ(B->GetPoints()->GetSize(), 7u);
    EXPECT_EQ(B->GetPoints()->GetBrush()->GetColor(), 0xFF00FF00u);
    EXPECT_NE(B->GetPoints(), A->GetPoints());
}
