// Marker symbols on the recording canvas: the calls each shape makes, the pixels it covers
// (plain, grown and turned), the pen and brush it uses, and the tables around the shapes.
#include "support/RecordingCanvas.h"

#include "qv/foundation/QVMarkerShapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

using namespace qv;

namespace {

constexpr int32_t CX = 50;
constexpr int32_t CY = 40;

std::vector<TQLCanvasRecord> Draw(int32_t AShape, int32_t ASize, int32_t AExtra, bool AVertical,
                                  TQLRecordingCanvas* ACanvas = nullptr)
{
    TQLRecordingCanvas Local;
    TQLRecordingCanvas& C = ACanvas ? *ACanvas : Local;
    C.ClearRecords();
    QVDisplayMarkerDrawSize(C, CX, CY, static_cast<TQVDisplayMarkerShape>(AShape), ASize, AExtra, AVertical);
    return C.GetRecords();
}

// Pixel box (inclusive on all sides) covered by the drawing. Boxes cover left..right-1;
// polygons reach their vertices; a line reaches its start and the pixel before its end,
// which the symbols only draw horizontally, vertically or at 45 degrees.
struct TExtent {
    int32_t L = INT32_MAX, T = INT32_MAX, R = INT32_MIN, B = INT32_MIN;
    void Add(int32_t X, int32_t Y) { L = std::min(L, X), T = std::min(T, Y), R = std::max(R, X), B = std::max(B, Y); }
    friend bool operator==(const TExtent&, const TExtent&) = default;
    friend std::ostream& operator<<(std::ostream& S, const TExtent& E)
    {
        return S << E.L << "," << E.T << ".." << E.R << "," << E.B;
    }
};

TExtent ExtentOf(const std::vector<TQLCanvasRecord>& ARecords)
{
    TExtent E;
    for (const TQLCanvasRecord& Rec : ARecords) {
        if (Rec.Op == "Ellipse" || Rec.Op == "EllipseRect" || Rec.Op == "Rectangle" || Rec.Op == "RectangleRect") {
            const TRect R = Rec.ArgRect();
            E.Add(R.Left, R.Top);
            E.Add(R.Right - 1, R.Bottom - 1);
        } else if (Rec.Op == "Polygon") {
            for (const TPoint& P : Rec.ArgPoints())
                E.Add(P.X, P.Y);
        } else if (Rec.Op == "LineTo") {
            const int32_t DX = Rec.Args[0] - Rec.PenPos.X;
            const int32_t DY = Rec.Args[1] - Rec.PenPos.Y;
            EXPECT_TRUE(DX == 0 || DY == 0 || std::abs(DX) == std::abs(DY)) << "slanted line";
            E.Add(Rec.PenPos.X, Rec.PenPos.Y);
            E.Add(Rec.Args[0] - (DX > 0) + (DX < 0), Rec.Args[1] - (DY > 0) + (DY < 0));
        }
    }
    return E;
}

TExtent Around(int32_t ALeft, int32_t ATop, int32_t ARight, int32_t ABottom) // offsets from the centre
{
    return TExtent{CX + ALeft, CY + ATop, CX + ARight, CY + ABottom};
}

} // namespace

TEST(MarkerShapes, CallsAndExtentsPlainGrownAndTurned)
{
    using V = std::vector<std::string>;
    const V Line{"MoveTo", "LineTo"};
    const V Two{"MoveTo", "LineTo", "MoveTo", "LineTo"};
    const V Calls[] = {{"Ellipse"},
                       {"EllipseRect"},
                       {"RectangleRect"},
                       {"Polygon"},
                       Two,
                       Two,
                       {"MoveTo", "LineTo", "MoveTo", "LineTo", "MoveTo", "LineTo", "MoveTo", "LineTo"},
                       {"Polygon"},
                       {"Polygon"},
                       {"Polygon"},
                       {"Polygon"},
                       Line,
                       Line};

    // Size 3, offsets from the centre. Triangles hang below / stand above / beside their tip.
    const TExtent Sym = Around(-3, -3, 3, 3), Dot = Around(-1, -1, 1, 1);
    const TExtent Up = Around(-3, 0, 3, 6), Down = Around(-3, -6, 3, 0);
    const TExtent Left = Around(0, -3, 6, 3), Right = Around(-6, -3, 0, 3);
    const TExtent Horz = Around(-3, 0, 3, 0), Vert = Around(0, -3, 0, 3);
    const TExtent Plain[] = {Dot, Sym, Sym, Sym, Sym, Sym, Sym, Up, Down, Left, Right, Horz, Vert};
    const TExtent Turned[] = {Dot, Sym, Sym, Sym, Sym, Sym, Sym, Left, Right, Down, Up, Vert, Horz};

    for (int32_t Shape = 0; Shape <= msVertLine; ++Shape)
        for (bool AVertical : {false, true}) {
            const auto Records = Draw(Shape, 3, 0, AVertical);
            std::vector<std::string> Ops;
            for (const TQLCanvasRecord& R : Records)
                Ops.push_back(R.Op);
            EXPECT_EQ(Ops, Calls[Shape]) << "shape " << Shape;
            TExtent E = (AVertical ? Turned : Plain)[Shape];
            EXPECT_EQ(ExtentOf(Records), E) << "shape " << Shape << " turned " << AVertical;

            // Grown by 1: one pixel more on every side, lines only along their length.
            if (E.L != E.R)
                E.L -= 1, E.R += 1;
            if (E.T != E.B)
                E.T -= 1, E.B += 1;
            EXPECT_EQ(ExtentOf(Draw(Shape, 3, 1, AVertical)), E) << "grown shape " << Shape << " turned " << AVertical;
        }
}

TEST(MarkerShapes, GeometryOfTheDetailedSymbols)
{
    // Diamond: top, left, bottom, right middles.
    EXPECT_EQ(Draw(msDiamond, 3, 0, false)[0].ArgPoints(),
              (std::vector<TPoint>{{50, 37}, {47, 40}, {50, 43}, {53, 40}}));
    // Cross: the second diagonal from the top right corner to one past the bottom left.
    auto X = Draw(msCross, 3, 0, false);
    EXPECT_EQ(X[2].Args, (std::vector<int32_t>{53, 37}));
    EXPECT_EQ(X[3].Args, (std::vector<int32_t>{46, 44}));
    // Triangles: the tip is the point itself.
    for (int32_t Shape = msTriangleUp; Shape <= msTriangleRight; ++Shape)
        for (bool Vertical : {false, true}) {
            auto T = Draw(Shape, 4, 0, Vertical);
            ASSERT_EQ(T[0].ArgPoints().size(), 3u);
            EXPECT_EQ(T[0].ArgPoints()[0], (TPoint{CX, CY})) << Shape;
        }
    // Size 0: the square is the single centre pixel.
    EXPECT_EQ(Draw(msSquare, 0, 0, false)[0].ArgRect(), (TRect{50, 40, 51, 41}));
}

TEST(MarkerShapes, UsesTheCurrentPenAndBrushAndDotFillsInPenColour)
{
    TQLRecordingCanvas C;
    C.GetPen().SetColor(0xFF112233);
    C.GetBrush().SetColor(0xFF445566);
    C.GetBrush().SetStyle(bsClear);
    for (int32_t Shape = msCircle; Shape <= msVertLine; ++Shape)
        for (const TQLCanvasRecord& R : Draw(Shape, 3, 0, false, &C))
            EXPECT_TRUE(R.PenColor == 0xFF112233u && R.BrushStyle == bsClear) << "shape " << Shape;
    const auto Dot = Draw(msDot, 3, 0, false, &C);
    EXPECT_EQ(Dot[0].BrushColor, 0xFF112233u);
    EXPECT_EQ(Dot[0].BrushStyle, bsSolid);
    EXPECT_EQ(C.GetBrush().GetColor(), 0xFF445566u) << "the brush comes back";
    EXPECT_EQ(C.GetBrush().GetStyle(), bsClear);
}

TEST(MarkerShapes, BadArgumentsAndTables)
{
    TQLRecordingCanvas C;
    try {
        QVDisplayMarkerDrawSize(C, 0, 0, msSquare, -2, 0, false);
        ADD_FAILURE() << "negative size accepted";
    } catch (const std::invalid_argument& E) {
        EXPECT_NE(std::string(E.what()).find("-2"), std::string::npos) << E.what();
    }
    EXPECT_THROW(QVDisplayMarkerDrawSize(C, 0, 0, msSquare, 3, -1, false), std::invalid_argument);
    QVDisplayMarkerDrawSize(C, 0, 0, static_cast<TQVDisplayMarkerShape>(13), 3, 0, false);
    EXPECT_TRUE(C.GetRecords().empty()) << "an unknown shape draws nothing";

    // Every points shape draws the marker shape of the same name.
    const TQLEnumInfo& Points = TQLEnumTraits<TQVScopePointsShape>::Info();
    const TQLEnumInfo& Markers = TQLEnumTraits<TQVDisplayMarkerShape>::Info();
    ASSERT_EQ(Points.Values.size(), 6u);
    for (const auto& [Value, Name] : Points.Values)
        EXPECT_EQ(*Markers.NameOf(QVMarkerShapeOf(static_cast<TQVScopePointsShape>(Value))), "ms" + Name.substr(2));
    EXPECT_THROW(QVMarkerShapeOf(static_cast<TQVScopePointsShape>(6)), std::invalid_argument);
}
