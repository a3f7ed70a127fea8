// Where a channel lies on the last painted frame: the hit test by mode, the search over the
// channels, and the crossings with vertical and horizontal lines, also through the C handle
// interface.
#include "channels/PlotTestSupport.h"
#include "qv/channels/QVChannelLookupC.h"
#include "qv/channels/QVHitGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>

using namespace qv;
using namespace qvtest;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

class ChannelLookup : public TPlotFixture {
protected:
    // The screen pixel of draw-stage sample AIndex of the last frame.
    TPoint PixelOf(int32_t AIndex, int32_t AChannel = 0)
    {
        TQVScopeChannel* C = Channel(AChannel);
        const int32_t i = AIndex - C->GetScreenStartIndex();
        return TPoint{C->GetScaledIntDrawBufferX()->GetItem(i), C->GetScaledIntDrawBufferY()->GetItem(i)};
    }
    double Hit(int32_t AX, int32_t AY, int32_t AChannel = 0)
    {
        Direction = hddBoth;
        return Channel(AChannel)->HitTest(AX, AY, Point, Direction, Fraction, Begin, End);
    }
    void XY(const std::vector<double>& AX, const std::vector<double>& AY, bool ASeparate = false)
    {
        Channel()->GetData()->AddXYData(AX.data(), AY.data(), uint32_t(AX.size()), ASeparate);
        Scope.PopulateDrawBuffers();
    }

    TPoint Point{};
    TQVHitDetectDirection Direction = hddBoth;
    double Fraction = -1.0;
    int32_t Begin = -1, End = -1;
};

} // namespace

TEST(HitGeometry, DistanceToSegmentAndEllipseOutline)
{
    struct TCase {
        TPoint P, A, B;
        double Distance, Ratio;
        TPoint Nearest;
    };
    const TCase Cases[] = {
        {{5, 3}, {0, 0}, {10, 0}, 3.0, 0.5, {5, 0}},   // above the middle
        {{-4, 3}, {0, 0}, {10, 0}, 5.0, 0.0, {0, 0}},  // beyond the first end
        {{13, 4}, {0, 0}, {10, 0}, 5.0, 1.0, {10, 0}}, // beyond the second end
        {{2, 2}, {1, 1}, {1, 1}, std::sqrt(2.0), 0.0, {1, 1}},
    };
    for (const TCase& C : Cases) {
        double Ratio = -1.0;
        TPoint Nearest{};
        EXPECT_DOUBLE_EQ(QPDistancePointToLine(C.P, C.A, C.B, Ratio, Nearest), C.Distance);
        EXPECT_DOUBLE_EQ(Ratio, C.Ratio);
        EXPECT_EQ(Nearest, C.Nearest);
    }
    // A circle of radius 10 round (10, 10): along the ray, inside and outside; the centre
    // answers with the smaller semi-axis.
    const TRect Box{0, 0, 20, 20};
    struct TEllipseCase {
        TPoint P;
        double Distance;
    };
    for (const TEllipseCase& C : {TEllipseCase{{10, 10}, 10.0}, TEllipseCase{{16, 10}, 4.0},
                                  TEllipseCase{{10, 25}, 5.0}, TEllipseCase{{13, 14}, 5.0}}) {
        TPoint Nearest{};
        EXPECT_NEAR(QPDistancePointToEllipse(C.P, Box, Nearest), C.Distance, 1e-9) << C.P.X << "," << C.P.Y;
        EXPECT_EQ(Nearest, (TPoint{10, 10}));
    }
}

TEST_F(ChannelLookup, LineHitHasLessRoomForWiderLinesAndNoneBeforeAPaint)
{
    Ramp({50, 50, 50, 50, 50});
    EXPECT_EQ(Hit(250, 200), QVNoHitDistance); // nothing painted yet
    struct TCase {
        int32_t Width, Offset;
        double Distance;
    };
    // The distance less half the width is stored; at 3 - (Width + 1) / 2 pixels the line
    // is missed, and from Width 5 on only its points can be hit.
    const TCase Cases[] = {{1, 0, 0.0},
                           {1, 1, 0.0},
                           {1, 2, QVNoHitDistance},
                           {3, 0, 0.0},
                           {3, 1, QVNoHitDistance},
                           {5, 0, QVNoHitDistance}};
    for (const TCase& C : Cases) {
        Channel()->SetWidth(C.Width);
        Draw();
        const TPoint P = PixelOf(2);
        const int32_t MidX = (PixelOf(2).X + PixelOf(3).X) / 2;
        EXPECT_EQ(Hit(MidX, P.Y + C.Offset), C.Distance) << "width " << C.Width << " offset " << C.Offset;
        if (C.Distance == 0.0) {
            EXPECT_EQ(Begin, 2);
            EXPECT_EQ(End, 3);
            EXPECT_EQ(Point, (TPoint{MidX, P.Y}));
            EXPECT_NEAR(Fraction, 0.5, 0.05);
        }
    }
    // With points shown the sample itself is hit, whatever the width.
    Channel()->GetPoints()->SetVisible(true);
    Draw();
    EXPECT_EQ(Hit(PixelOf(1).X + 2, PixelOf(1).Y - 2), 0.0);
    EXPECT_EQ(Begin, 1);
    EXPECT_EQ(End, 1);
}

TEST_F(ChannelLookup, StepsHitTheirCornerRiserAndTreadAndBarsTheirRectangle)
{
    Channel()->SetChannelMode(cmStep);
    Ramp({20, 20, 80, 80});
    Draw();
    const TPoint A = PixelOf(1), B = PixelOf(2);
    struct TCase {
        TPoint Mouse;
        double Distance;
        TQVHitDetectDirection Direction;
        TPoint Point;
    };
    const int32_t Mid = (A.Y + B.Y) / 2;
    const TCase Cases[] = {
        {{B.X + 1, A.Y - 1}, 0.0, hddPoint, {B.X, A.Y}},                          // the corner
        {{B.X - 1, Mid}, 1.0, hddVertical, {B.X, Mid}},                           // the riser
        {{(A.X + B.X) / 2, A.Y + 2}, 2.0, hddHorizontal, {(A.X + B.X) / 2, A.Y}}, // the tread
    };
    for (const TCase& C : Cases) {
        EXPECT_EQ(Hit(C.Mouse.X, C.Mouse.Y), C.Distance) << C.Mouse.X << "," << C.Mouse.Y;
        EXPECT_EQ(Direction, C.Direction);
        EXPECT_EQ(Point, C.Point);
        EXPECT_EQ(Begin, 1);
        EXPECT_EQ(End, 2);
    }

    Channel()->SetChannelMode(cmBar);
    Channel()->SetWidth(5);
    Draw();
    const TPoint Top = PixelOf(2);
    const int32_t Zero = Rect.Bottom - 1; // Y 0 at the view's bottom row
    EXPECT_EQ(Hit(Top.X + 2, (Top.Y + Zero) / 2), 0.0);
    EXPECT_EQ(Begin, 2);
    EXPECT_EQ(End, 2);
    EXPECT_NEAR(Fraction, 0.5, 0.02);
    EXPECT_EQ(Hit(Top.X + 3, (Top.Y + Zero) / 2), QVNoHitDistance); // beside the bar
}

TEST_F(ChannelLookup, ALongRampIsSearchedAroundTheMouseOnly)
{
    std::vector<double> Y(200000);
    for (size_t i = 0; i < Y.size(); ++i)
        Y[i] = 50.0 + 40.0 * std::sin(double(i) / 20000.0);
    Ramp(Y);
    Draw();
    const int32_t Sample = 123456;
    const TPoint P = PixelOf(Sample);
    EXPECT_LT(Hit(P.X, P.Y), 3.0);
    // The hit lies in the mouse's column: 200000 samples over 500 columns.
    EXPECT_NEAR(Begin, Sample, 800);
    // A crossing is found among them: between two samples, and on one.
    const auto Crossing = Channel()->GetYPointsAtValue(Sample + 0.25);
    ASSERT_EQ(Crossing.size(), 1u);
    EXPECT_DOUBLE_EQ(Crossing[0], Y[Sample] + 0.25 * (Y[Sample + 1] - Y[Sample]));
    EXPECT_EQ(Channel()->GetYPointsAtValue(double(Sample)), TQVScopeRealPoints{Y[Sample]});

    // A lone spike inside a block of a long record is found, not passed over with the
    // block: its tip is hit on the segments into and out of it.
    Channel()->GetData()->Clear();
    std::vector<double> Flat(200000, 20.0);
    Flat[150001] = 90.0;
    Ramp(Flat);
    Draw();
    const TPoint Tip = PixelOf(150001);
    EXPECT_EQ(Hit(Tip.X, Tip.Y), 0.0);
    EXPECT_TRUE(Begin == 150000 || Begin == 150001) << Begin;
    EXPECT_EQ(End, Begin + 1);
    EXPECT_EQ(Hit(Tip.X, Tip.Y - 4), QVNoHitDistance);
}

namespace {
// What a hit test answers.
struct THit {
    double D = QVNoHitDistance;
    TPoint P{};
    TQVHitDetectDirection Dir = hddBoth;
    double Fraction = 0.0;
    int32_t Begin = -1, End = -1;
    bool operator==(const THit& A) const
    {
        return D == A.D && (D == QVNoHitDistance || (P.X == A.P.X && P.Y == A.P.Y && Dir == A.Dir &&
                                                     Fraction == A.Fraction && Begin == A.Begin && End == A.End));
    }
};
std::ostream& operator<<(std::ostream& AOut, const THit& A)
{
    return AOut << A.D << " at (" << A.P.X << "," << A.P.Y << ") dir " << int(A.Dir) << " f " << A.Fraction << " "
                << A.Begin << ".." << A.End;
}

// The rules of each mode on a walk over every sample near the mouse, first to last, from the
// pixels of all samples: the hit the long ramp's shortcuts must come to.
// AWidth: the columns used; AColumn: the mouse's column counted from the data's first one.
THit PlainHit(const std::vector<int32_t>& AX, const std::vector<int32_t>& AY, const std::vector<bool>& ABreak,
              TQVScopeChannelMode AMode, int32_t AWidth, int32_t APoints, int32_t AUsedWidth, int32_t AColumn,
              int32_t MX, int32_t MY)
{
    THit H;
    const auto Have = [&](size_t i) { return AX[i] != QVMissingPixel && AY[i] != QVMissingPixel; };
    // The samples of the columns around the mouse's, counted as a long ramp's hit test counts
    // them (c - 8 below, c + 8 above).
    const int64_t c = int64_t(AX.size()), W = AUsedWidth;
    const size_t First = size_t(std::max<int64_t>((AColumn - 2) * (c - 8) / W - 4, 0));
    const size_t Last = size_t(std::min<int64_t>((AColumn + 2) * (c + 8) / W + 4, c - 1)) + 1;
    if (APoints > 0 || AMode == cmStep)
        for (size_t i = First; i < Last; ++i)
            if (Have(i) && std::abs(MX - AX[i]) <= std::max(APoints, 2) && std::abs(MY - AY[i]) <= std::max(APoints, 2))
                return {0.0, {AX[i], AY[i]}, hddBoth, 0.0, int32_t(i), int32_t(i)};
    const int32_t w = (AWidth + 1) / 2;
    for (size_t i = First; i + 1 < Last; ++i) {
        if (!Have(i) || !Have(i + 1) || ABreak[i])
            continue;
        const TPoint A{AX[i], AY[i]}, B{AX[i + 1], AY[i + 1]};
        if (AMode == cmLine) {
            double F = 0.0;
            TPoint N{};
            const double D = QPDistancePointToLine(TPoint{MX, MY}, A, B, F, N);
            if (D < 3.0 - w && D < H.D)
                H = {std::max(D - w, 0.0), N, hddBoth, F, int32_t(i), int32_t(i + 1)};
        } else if (std::abs(MX - B.X) <= 2 && std::abs(MY - A.Y) <= 2) {
            return {0.0, {B.X, A.Y}, hddPoint, H.Fraction, int32_t(i), int32_t(i + 1)};
        } else if (std::abs(MX - B.X) <= 2 && MY >= std::min(A.Y, B.Y) && MY <= std::max(A.Y, B.Y)) {
            if (std::abs(MX - B.X) < H.D)
                H = {double(std::abs(MX - B.X)),
                     {B.X, MY},
                     hddVertical,
                     B.Y == A.Y ? 0.0 : double(MY - A.Y) / double(B.Y - A.Y),
                     int32_t(i),
                     int32_t(i + 1)};
        } else if (std::abs(MY - A.Y) <= 2 && MX >= std::min(A.X, B.X) && MX <= std::max(A.X, B.X)) {
            if (std::abs(MY - A.Y) < H.D)
                H = {double(std::abs(MY - A.Y)),
                     {MX, A.Y},
                     hddHorizontal,
                     B.X == A.X ? 0.0 : double(MX - A.X) / double(B.X - A.X),
                     int32_t(i),
                     int32_t(i + 1)};
        }
    }
    return H;
}
} // namespace

TEST_F(ChannelLookup, ALongRampFindsWhatAWalkOverEverySampleFinds)
{
    // Four runs with gaps between them, noise of a few pixels on a slow wave, NaN samples
    // alone and in a run, a lone spike: 400 samples a column.
    Scope.SetSizeLimit(1000000);
    std::vector<double> Y(200000);
    for (size_t i = 0; i < Y.size(); ++i)
        Y[i] = 50.0 + 30.0 * std::sin(double(i) / 9000.0) + 0.6 * std::sin(double(i) * 0.37);
    std::fill(Y.begin() + 30000, Y.begin() + 30900, NaN);
    Y[77777] = NaN;
    Y[150001] = 95.0;
    for (size_t Part = 0; Part < 4; ++Part)
        Channel()->GetData()->AddYData(Y.data() + Part * 50000, 50000, Part > 0);
    Scope.PopulateDrawBuffers();

    struct TCase {
        const char* Name;
        TQVScopeChannelMode Mode;
        int32_t Width;
        int32_t Points; // symbol size when shown, else 0
    };
    const TCase Cases[] = {{"line", cmLine, 1, 0},
                           {"wide line", cmLine, 3, 0},
                           {"step", cmStep, 1, 0},
                           {"line with points", cmLine, 1, 4}};
    for (const TCase& C : Cases) {
        Channel()->SetChannelMode(C.Mode);
        Channel()->SetWidth(C.Width);
        Channel()->GetPoints()->SetVisible(C.Points > 0);
        Channel()->GetPoints()->SetSize(uint32_t(C.Points));
        Draw();
        // Mice on, beside and off a column's lowest or highest pixel, every few columns.
        std::vector<TPoint> Mice;
        const TPoints Columns = Plotted();
        for (size_t k = 0; k < Columns.size(); k += 5)
            for (const int32_t dy : {-3, -1, 0, 1, 2, 5})
                if (Columns[k].second != QVMissingPixel)
                    Mice.push_back(TPoint{Columns[k].first + int32_t(k / 5 % 3) - 1, Columns[k].second + dy});
        // First from the frame as painted, which leaves the long ramp's samples unmapped.
        std::vector<THit> Found;
        for (const TPoint& M : Mice) {
            THit H;
            H.D = Channel()->HitTest(M.X, M.Y, H.P, H.Dir, H.Fraction, H.Begin, H.End);
            Found.push_back(H);
        }
        const IQVIntegerBuffer& PX = *Channel()->GetScaledIntDrawBufferX();
        const IQVIntegerBuffer& PY = *Channel()->GetScaledIntDrawBufferY();
        const std::vector<int32_t> AX(PX.Read(), PX.Read() + PX.GetSize()), AY(PY.Read(), PY.Read() + PY.GetSize());
        std::vector<bool> Breaks(AX.size(), false);
        const IQVIntegerBuffer& G = *Channel()->GetDrawGapsBuffer();
        for (int32_t k = 0; k < G.GetSize(); ++k)
            if (G.GetItem(k) >= 1 && size_t(G.GetItem(k)) <= Breaks.size())
                Breaks[size_t(G.GetItem(k) - 1)] = true;
        int32_t Hits = 0;
        for (size_t m = 0; m < Mice.size(); ++m) {
            const THit Plain = PlainHit(AX, AY, Breaks, C.Mode, C.Width, C.Points, Channel()->GetScreenUsedWidth(),
                                        Mice[m].X - Channel()->GetDisplayOffset(), Mice[m].X, Mice[m].Y);
            ASSERT_EQ(Found[m], Plain) << C.Name << " mouse " << Mice[m].X << "," << Mice[m].Y;
            // The pixels mapped now give the same.
            THit Again;
            Again.D =
                Channel()->HitTest(Mice[m].X, Mice[m].Y, Again.P, Again.Dir, Again.Fraction, Again.Begin, Again.End);
            ASSERT_EQ(Again, Plain) << C.Name << " mouse " << Mice[m].X << "," << Mice[m].Y;
            Hits += Plain.D < QVHitTolerance;
        }
        EXPECT_GT(Hits, 0) << C.Name;
        EXPECT_LT(Hits, int32_t(Mice.size())) << C.Name;
    }
}

namespace {
// A channel at a set distance, for the search over a collection.
class TDistanceChannel : public TQVScopeChannel {
public:
    using TQVScopeChannel::TQVScopeChannel;
    double HitTest(int32_t, int32_t, TPoint& APoint, TQVHitDetectDirection&, double&, int32_t& ABegin,
                   int32_t&) override
    {
        ++Asked;
        APoint = TPoint{GetIndex(), 0};
        ABegin = GetIndex();
        return Distance;
    }
    double Distance = QVNoHitDistance;
    int Asked = 0;
};
} // namespace

TEST(ChannelSearch, NearestBelowThreeWinsLaterOnATieAndADirectHitStops)
{
    struct TCase {
        std::vector<double> Distances;
        bool Hit;
        int32_t Index;
        int32_t Asked; // channels asked, from the last
    };
    const TCase Cases[] = {
        {{3.0}, false, 0, 1},                 // exactly 3 pixels is a miss
        {{2.0, 2.0, 2.5}, true, 1, 3},        // a tie: the later channel stays
        {{1.0, 0.0, 0.0, 2.0}, true, 2, 2},   // 0 ends the walk
        {{QVNoHitDistance, 2.9}, true, 1, 2}, // just below 3
    };
    for (const TCase& C : Cases) {
        TQVScope Scope;
        TQVDisplayChannels<TDistanceChannel> Channels(nullptr, Scope.GetLock(), &Scope);
        for (double D : C.Distances)
            Channels.Add()->Distance = D;
        int32_t Index = -1, Begin = -1, End = -1;
        TPoint Point{};
        TQVHitDetectDirection Direction = hddPoint;
        double Fraction = 0.0;
        EXPECT_EQ(Channels.HitTest(1, 1, Index, Point, Direction, Fraction, Begin, End), C.Hit);
        EXPECT_EQ(Index, C.Index);
        int32_t Asked = 0;
        for (TDistanceChannel* Channel : Channels)
            Asked += Channel->Asked;
        EXPECT_EQ(Asked, C.Asked);
    }
}

TEST_F(ChannelLookup, CrossingsHonourGapsSamplesFallingSegmentsStepsAndNaN)
{
    struct TCase {
        const char* Name;
        std::vector<double> X, Y;
        TQVScopeChannelMode Mode;
        double Value;
        std::vector<double> Expected;
    };
    const TCase Cases[] = {
        {"rising", {0, 1, 2, 3}, {10, 20, 30, 40}, cmLine, 2.5, {35}},
        {"on a sample: once", {0, 1, 2, 3}, {10, 20, 30, 40}, cmLine, 1.0, {20}},
        {"the last sample ends no segment", {0, 1, 2, 3}, {10, 20, 30, 40}, cmLine, 3.0, {}},
        // A falling segment blends Y from its left sample by the fraction measured from
        // its right end.
        {"falling", {3, 2, 1, 0}, {0, 10, 20, 30}, cmLine, 2.25, {2.5}},
        {"step", {0, 1, 2, 3}, {10, 20, 30, 40}, cmStep, 1.5, {20}},
        {"NaN end", {0, 1, 2, 3}, {10, NaN, 30, 40}, cmLine, 0.5, {}},
        {"back and forth", {0, 2, 0}, {0, 20, 40}, cmLine, 1.0, {10, 30}},
    };
    for (const TCase& C : Cases) {
        Channel()->GetData()->Clear();
        Channel()->SetChannelMode(C.Mode);
        SetXRange(0, 3);
        XY(C.X, C.Y);
        Draw();
        EXPECT_EQ(Channel()->GetYPointsAtValue(C.Value), C.Expected) << C.Name;
    }
    // A gap: nothing is reported across it. (With a size limit XY blocks append.)
    Scope.SetSizeLimit(100);
    Channel()->GetData()->Clear();
    Channel()->SetChannelMode(cmLine);
    XY({0, 1}, {10, 20});
    XY({2, 3}, {30, 40}, true);
    Draw();
    EXPECT_EQ(Channel()->GetYPointsAtValue(1.5), TQVScopeRealPoints{});
    EXPECT_EQ(Channel()->GetYPointsAtValue(2.5), TQVScopeRealPoints{35});
    // Horizontal lines: the X where Y is crossed; a step crosses on its riser.
    EXPECT_EQ(Channel()->GetXPointsAtValue(15.0), TQVScopeRealPoints{0.5});
    Channel()->SetChannelMode(cmStep);
    Draw();
    EXPECT_EQ(Channel()->GetXPointsAtValue(35.0), TQVScopeRealPoints{3.0});
}

TEST_F(ChannelLookup, EmptyAndSingleSampleChannelsAndTheCHandles)
{
    EXPECT_TRUE(Channel()->GetYPointsAtValue(0.0).empty());
    Ramp({5});
    Draw();
    EXPECT_TRUE(Channel()->GetYPointsAtValue(0.0).empty());
    EXPECT_EQ(Hit(PixelOf(0).X + 10, PixelOf(0).Y), QVNoHitDistance);

    Channel()->GetData()->Clear();
    Ramp({20, 40, 10});
    Draw();
    // The crossing pixel lies on the line between the samples.
    std::vector<TPoint> Pixels;
    Channel()->CalcVIntersections(
        [&](void*, int32_t AX, int32_t AY, double, double, double, bool) {
            Pixels.push_back({AX, AY});
        },
        nullptr, 1.5);
    ASSERT_EQ(Pixels.size(), 1u);
    EXPECT_EQ(Pixels[0].X, PixelOf(1).X + int32_t(std::nearbyint((PixelOf(2).X - PixelOf(1).X) * 0.5)));

    QVRealArrayHandle A = NET_GetXPointsAtValue(Channel(), 30.0);
    ASSERT_NE(A, nullptr);
    ASSERT_EQ(NET_GetArrayLength(A), 2);
    double Out[3] = {0, 0, -1};
    EXPECT_EQ(NET_PopulateArray(A, Out, 3), 2);
    EXPECT_EQ(Out[0], NET_GetArray(A)[0]);
    EXPECT_EQ(Out[2], -1.0);
    NET_DestroyArray(A);
    // A null handle or channel is tolerated everywhere.
    QVRealArrayHandle E = NET_GetXPointsAtValue(nullptr, 1.0);
    EXPECT_EQ(NET_GetArrayLength(E), 0);
    EXPECT_EQ(NET_GetArray(E), nullptr);
    NET_DestroyArray(E);
    EXPECT_EQ(NET_GetArrayLength(nullptr), 0);
    EXPECT_EQ(NET_PopulateArray(nullptr, Out, 3), 0);
    NET_DestroyArray(nullptr);
}

TEST_F(ChannelLookup, ATurnedScopeFindsTheChannelWithItsCoordinatesExchanged)
{
    Scope.SetVertical(true);
    Channel()->GetPoints()->SetVisible(true);
    Ramp({10, 60, 30});
    Draw();
    // The pixel buffers hold (along, across): on screen that is (across, along).
    const TPoint P = PixelOf(1);
    EXPECT_EQ(Hit(P.Y, P.X), 0.0);
    EXPECT_EQ(Point, (TPoint{P.Y, P.X}));
    EXPECT_EQ(Begin, 1);
    std::vector<TPoint> Crossings;
    Channel()->CalcVIntersections(
        [&](void*, int32_t AX, int32_t AY, double, double, double, bool AVertical) {
            Crossings.push_back(AVertical ? TPoint{AX, AY} : TPoint{});
        },
        nullptr, 1.0);
    ASSERT_EQ(Crossings.size(), 1u);
    EXPECT_EQ(Crossings[0], (TPoint{P.Y, P.X}));
}
