// The canvas over QPainter, checked pixel by pixel on TQLBitmap images: line end pixels,
// box coverage, dashes, rotated text, clipping, state saving, images, and that the inner-loop
// operations do not allocate.
#include "AllocationCounter.h"

#include <qv/qt/QLQtCanvas.h>

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace qv;

namespace {

constexpr uint32_t Red = 0xFFFF0000;
constexpr uint32_t Green = 0xFF00FF00;
constexpr uint32_t Blue = 0xFF0000FF;
constexpr uint32_t White = 0xFFFFFFFF;

using TPixelSet = std::set<std::pair<int32_t, int32_t>>; // (x, y)

// Pixels that differ from ABackground.
TPixelSet Painted(const TQLBitmap& ABitmap, uint32_t ABackground = 0)
{
    TPixelSet Result;
    for (int32_t Y = 0; Y < ABitmap.GetHeight(); ++Y)
        for (int32_t X = 0; X < ABitmap.GetWidth(); ++X)
            if (ABitmap.GetPixel(X, Y) != ABackground)
                Result.insert({X, Y});
    return Result;
}

// Smallest box holding every painted pixel, right and bottom outside.
TRect Bounds(const TPixelSet& APixels)
{
    TRect R{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    for (const auto& [X, Y] : APixels)
        R = TRect{std::min(R.Left, X), std::min(R.Top, Y), std::max(R.Right, X + 1), std::max(R.Bottom, Y + 1)};
    return APixels.empty() ? TRect{} : R;
}

TPixelSet BoxPixels(const TRect& ABox)
{
    TPixelSet Result;
    for (int32_t Y = ABox.Top; Y < ABox.Bottom; ++Y)
        for (int32_t X = ABox.Left; X < ABox.Right; ++X)
            Result.insert({X, Y});
    return Result;
}

// The outermost ring of a box, AWidth pixels thick.
TPixelSet FramePixels(const TRect& ABox, int32_t AWidth)
{
    TPixelSet Result = BoxPixels(ABox);
    for (const auto& P :
         BoxPixels(TRect{ABox.Left + AWidth, ABox.Top + AWidth, ABox.Right - AWidth, ABox.Bottom - AWidth}))
        Result.erase(P);
    return Result;
}

// A bitmap and a canvas drawing into it, with the pen in red and the brush clear (or solid
// in ABrush when one is given).
struct TSurface {
    TQLBitmap Bitmap;
    TQLQtCanvas Canvas;

    explicit TSurface(int32_t AWidth = 32, int32_t AHeight = 24, uint32_t ABackground = 0, uint32_t ABrush = 0)
        : Bitmap(AWidth, AHeight), Canvas(Bitmap)
    {
        Bitmap.Fill(ABackground);
        Canvas.GetPen().SetColor(Red);
        Canvas.GetBrush().SetStyle(ABrush ? bsSolid : bsClear);
        if (ABrush)
            Canvas.GetBrush().SetColor(ABrush);
    }
    void Line(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1)
    {
        Canvas.MoveTo(AX0, AY0);
        Canvas.LineTo(AX1, AY1);
    }
};

TPixelSet Row(int32_t AY, int32_t AFrom, int32_t ATo)
{
    return BoxPixels(TRect{AFrom, AY, ATo + 1, AY + 1});
}
TPixelSet Column(int32_t AX, int32_t AFrom, int32_t ATo)
{
    return BoxPixels(TRect{AX, AFrom, AX + 1, ATo + 1});
}

} // namespace

TEST(QtCanvasLine, LinesLeaveOutTheEndPixelInTheirOwnDirection)
{
    struct TCase {
        int32_t X0, Y0, X1, Y1;
        TPixelSet Expected;
    };
    const TCase Cases[] = {
        {2, 5, 9, 5, Row(5, 2, 8)},    // right
        {9, 5, 2, 5, Row(5, 3, 9)},    // left
        {4, 1, 4, 6, Column(4, 1, 5)}, // down
        {4, 6, 4, 1, Column(4, 2, 6)}, // up
        {6, 1, 1, 6, {{6, 1}, {5, 2}, {4, 3}, {3, 4}, {2, 5}}},
        // Shallow: y = x / 4 rounded, a half going away from the start.
        {0, 0, 8, 2, {{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 2}, {7, 2}}},
        {3, 3, 3, 3, {}}, // zero length
    };
    for (const TCase& C : Cases) {
        TSurface S;
        S.Line(C.X0, C.Y0, C.X1, C.Y1);
        EXPECT_EQ(Painted(S.Bitmap), C.Expected) << C.X0 << "," << C.Y0 << " -> " << C.X1 << "," << C.Y1;
        EXPECT_EQ(S.Canvas.GetPenPos(), (TPoint{C.X1, C.Y1}));
    }

    // Far-off end points draw the visible part; a clear pen draws nothing, even wide.
    TSurface S(20, 20);
    S.Line(-10000000, 4, 10000000, 4);
    S.Canvas.SetPenStyle(psClear);
    S.Canvas.SetPenWidth(3);
    S.Line(0, 10, 19, 10);
    EXPECT_EQ(Painted(S.Bitmap), Row(4, 0, 19));
}

TEST(QtCanvasLine, PolylineDrawsEachJointOnceAndPenChangesTakeEffect)
{
    TSurface S;
    S.Canvas.GetPen().SetColor(0x80FF0000); // translucent: a pixel drawn twice would be darker
    S.Canvas.MoveTo(0, 0);
    S.Canvas.LineTo(5, 0);
    S.Canvas.LineTo(5, 5);
    S.Canvas.LineTo(0, 10);
    TPixelSet Expected = Row(0, 0, 4);
    Expected.merge(Column(5, 0, 4));
    for (int32_t I = 0; I < 5; ++I)
        Expected.insert({5 - I, 5 + I});
    EXPECT_EQ(Painted(S.Bitmap), Expected);
    for (const auto& [X, Y] : Expected)
        EXPECT_EQ(S.Bitmap.GetPixel(X, Y), QLPremultiply(0x80FF0000)) << X << "," << Y;

    S.Canvas.GetPen().SetColor(Blue); // straight through the raw pen
    S.Canvas.SetPenWidth(3);
    S.Line(10, 15, 30, 15);
    for (int32_t Y = 13; Y <= 17; ++Y) // the row above and below, and no further
        EXPECT_EQ(S.Bitmap.GetPixel(20, Y), (Y >= 14 && Y <= 16) ? Blue : 0u) << Y;
}

TEST(QtCanvasLine, DashedLinesHaveGaps)
{
    TSurface S(64, 24);
    S.Canvas.SetPenStyle(psDash);
    S.Line(0, 2, 40, 2);
    // 6 on, 3 off; the pattern runs on across short steps, so 1-pixel segments still show it.
    S.Canvas.MoveTo(0, 6);
    for (int32_t X = 1; X <= 40; ++X)
        S.Canvas.LineTo(X, 6);
    for (int32_t X = 0; X < 40; ++X) {
        EXPECT_EQ(S.Bitmap.GetPixel(X, 2) != 0, X % 9 < 6) << X;
        EXPECT_EQ(S.Bitmap.GetPixel(X, 6) != 0, X % 9 < 6) << X;
    }
    // Wide dashed pens have gaps too.
    S.Canvas.SetPenWidth(2);
    S.Line(0, 18, 60, 18);
    auto Inked = [&](int32_t X) {
        return S.Bitmap.GetPixel(X, 17) != 0 || S.Bitmap.GetPixel(X, 18) != 0 || S.Bitmap.GetPixel(X, 19) != 0;
    };
    int32_t Changes = 0;
    for (int32_t X = 1; X < 60; ++X)
        Changes += Inked(X) != Inked(X - 1);
    EXPECT_GE(Changes, 4);
}

// Opaque thin lines over a bitmap of the canvas's own are stored straight into its pixels;
// over a caller's painter they go through the painter. Both must give the same pixels, with
// and without a clip, dashed or not, for lines that leave the picture; a painter lent out
// keeps its borrower's clip in force.
TEST(QtCanvasLine, LinesStoredDirectlyMatchLinesDrawnByThePainter)
{
    constexpr int32_t W = 90, H = 70;
    std::mt19937 Gen(7);
    std::uniform_int_distribution<int32_t> X(-40, W + 40), Y(-40, H + 40);
    std::vector<TPoint> Points(300);
    for (TPoint& P : Points)
        P = TPoint{X(Gen), Y(Gen)};
    const auto Draw = [&](TQLQtCanvas& ACanvas, bool AClip, uint8_t AStyle) {
        ACanvas.GetPen().SetColor(Blue);
        ACanvas.SetPenStyle(AStyle);
        if (AClip)
            ACanvas.SetClipRegion(TQLRegion(TRect{10, 5, 70, 50}));
        ACanvas.MoveTo(Points[0].X, Points[0].Y);
        for (const TPoint& P : Points)
            ACanvas.LineTo(P.X, P.Y);
    };
    // At ratio 2 (a HiDPI bitmap) the stored spans are the painter's, scaled.
    for (const int32_t Ratio : {1, 2})
        for (const bool Clip : {false, true})
            for (const uint8_t Style : {uint8_t(psSolid), uint8_t(psDashDot)}) {
                TQLBitmap Direct(W, H, Ratio);
                Direct.Fill(White);
                {
                    TQLQtCanvas Canvas(Direct);
                    Draw(Canvas, Clip, Style);
                }
                QImage Image(W * Ratio, H * Ratio, QImage::Format_ARGB32_Premultiplied);
                Image.fill(White);
                {
                    QPainter Painter(&Image);
                    Painter.scale(Ratio, Ratio);
                    TQLQtCanvas Canvas(Painter);
                    Draw(Canvas, Clip, Style);
                }
                for (int32_t Py = 0; Py < H * Ratio; ++Py)
                    for (int32_t Px = 0; Px < W * Ratio; ++Px)
                        ASSERT_EQ(Direct.GetPixel(Px, Py), Image.pixel(Px, Py))
                            << Px << "," << Py << " ratio " << Ratio << " clip " << Clip << " style " << int(Style);
            }

    // Each solid line has exactly the pixels of its rule: one per step along the longer
    // side, the other coordinate rounded to nearest with a half going away from the start.
    for (size_t K = 1; K < 60; ++K) {
        const TPoint A = Points[K - 1], B = Points[K];
        TSurface Line(W, H);
        Line.Line(A.X, A.Y, B.X, B.Y);
        const int64_t DX = B.X - A.X, DY = B.Y - A.Y;
        const int64_t N = std::max(std::llabs(DX), std::llabs(DY));
        TPixelSet Expected;
        for (int64_t I = 0; I < N; ++I) {
            const auto Along = [&](int64_t AD) { // offset of step I on a side that moves AD
                const int64_t Offset = (2 * I * std::llabs(AD) + N) / (2 * N);
                return AD < 0 ? -Offset : Offset;
            };
            const int64_t Px = A.X + Along(DX), Py = A.Y + Along(DY);
            if (Px >= 0 && Px < W && Py >= 0 && Py < H)
                Expected.insert({int32_t(Px), int32_t(Py)});
        }
        EXPECT_EQ(Painted(Line.Bitmap), Expected) << A.X << "," << A.Y << " to " << B.X << "," << B.Y;
    }

    TSurface S(20, 10);
    S.Canvas.GetPainter()->setClipRect(QRect(0, 0, 5, 10));
    S.Line(0, 3, 20, 3);
    EXPECT_EQ(Painted(S.Bitmap), Row(3, 0, 4));
    S.Canvas.InvalidatePlatformState(); // the canvas's own (empty) clip again
    S.Line(0, 6, 20, 6);
    EXPECT_EQ(S.Bitmap.GetPixel(19, 6), Red);
}

TEST(QtCanvasBox, RectangleOutlineLiesOnTheOutermostPixelsAndFillsCoverTheBox)
{
    const TRect Box{2, 3, 10, 8};
    {
        TSurface S(32, 24, 0, Green);
        S.Canvas.RectangleRect(Box);
        EXPECT_EQ(Painted(S.Bitmap), BoxPixels(Box));
        for (const auto& [X, Y] : FramePixels(Box, 1))
            EXPECT_EQ(S.Bitmap.GetPixel(X, Y), Red);
        EXPECT_EQ(S.Bitmap.GetPixel(5, 5), Green);
        S.Canvas.FillRect(TRect{12, 2, 18, 5}); // left..right-1 too
        EXPECT_EQ(Bounds(Painted(S.Bitmap)), (TRect{2, 2, 18, 8}));
    }
    {
        TSurface S;
        S.Canvas.SetPenWidth(3);
        S.Canvas.Rectangle(1, 1, 20, 15);
        EXPECT_EQ(Painted(S.Bitmap), FramePixels(TRect{1, 1, 20, 15}, 3));
    }
    TSurface S; // a dashed outline stays inside the box and shows gaps
    S.Canvas.SetPenStyle(psDash);
    S.Canvas.Rectangle(1, 1, 30, 20);
    const TPixelSet Got = Painted(S.Bitmap);
    EXPECT_EQ(Bounds(Got), (TRect{1, 1, 30, 20}));
    EXPECT_LT(Got.size(), FramePixels(TRect{1, 1, 30, 20}, 1).size());
}

TEST(QtCanvasBox, EllipseFitsItsBox)
{
    for (int32_t Width : {1, 3}) {
        TSurface S(32, 24, 0, Green);
        S.Canvas.SetPenWidth(Width);
        S.Canvas.EllipseRect(TRect{2, 2, 23, 17});
        EXPECT_EQ(Bounds(Painted(S.Bitmap)), (TRect{2, 2, 23, 17})) << Width;
        EXPECT_EQ(S.Bitmap.GetPixel(12, 9), Green);
        EXPECT_EQ(S.Bitmap.GetPixel(2, 2), 0u) << "corners stay outside";
        EXPECT_EQ(S.Bitmap.GetPixel(2, 9), Red);
    }
}

TEST(QtCanvasBox, PolygonUsesPointsUpToTheHighIndex)
{
    const TPoint Square[4] = {{2, 2}, {12, 2}, {12, 9}, {2, 9}};
    {
        TSurface S;
        S.Canvas.GetPen().SetColor(0x80FF0000); // translucent: no corner may be drawn twice
        S.Canvas.Polygon(Square, 3);
        EXPECT_EQ(Painted(S.Bitmap), FramePixels(TRect{2, 2, 13, 10}, 1));
        for (const auto& [X, Y] : Painted(S.Bitmap))
            EXPECT_EQ(S.Bitmap.GetPixel(X, Y), QLPremultiply(0x80FF0000)) << X << "," << Y;
    }
    TSurface S(32, 24, 0, Green); // high index 2: a triangle, the fourth point left out
    S.Canvas.Polygon(Square, 2);
    EXPECT_EQ(S.Bitmap.GetPixel(2, 9), 0u);
    EXPECT_EQ(S.Bitmap.GetPixel(12, 9), Red);
    EXPECT_EQ(S.Bitmap.GetPixel(10, 5), Green);
    EXPECT_THROW(S.Canvas.Polygon(nullptr, 2), std::invalid_argument);
    S.Canvas.Polygon(nullptr, -1); // no points asked for: nothing to do
}

TEST(QtCanvasBox, FocusRectInvertsEveryOtherFramePixelAndUndoesItselfAndInvertedBoxesDrawNothing)
{
    TSurface S(20, 20, White);
    const TRect Box{2, 3, 12, 9};
    S.Canvas.DrawFocusRect(Box);
    const TPixelSet Got = Painted(S.Bitmap, White);
    EXPECT_EQ(Bounds(Got), Box);
    EXPECT_EQ(S.Bitmap.GetPixel(2, 3), 0xFF000000u);
    EXPECT_EQ(S.Bitmap.GetPixel(3, 3), White);
    EXPECT_EQ(Got.size(), FramePixels(Box, 1).size() / 2);
    S.Canvas.DrawFocusRect(Box);
    EXPECT_TRUE(Painted(S.Bitmap, White).empty());

    // Inverted corners draw nothing; neither does a clear brush.
    S.Canvas.GetBrush().SetStyle(bsSolid);
    S.Canvas.GetBrush().SetColor(Green);
    S.Canvas.Rectangle(10, 3, 2, 8);
    S.Canvas.Rectangle(2, 8, 10, 3);
    S.Canvas.Ellipse(10, 10, 4, 4);
    S.Canvas.FillRect(TRect{5, 5, 5, 9});
    S.Canvas.DrawFocusRect(TRect{9, 9, 1, 1});
    S.Canvas.GetBrush().SetStyle(bsClear);
    S.Canvas.FillRect(TRect{10, 10, 20, 20});
    EXPECT_TRUE(Painted(S.Bitmap, White).empty());
}

TEST(QtCanvasBitmap, SetPixelComposesOverAtOnceAndIgnoresOutsidePoints)
{
    TSurface S(8, 8, White);
    S.Canvas.SetPixel(3, 4, Red);
    EXPECT_EQ(S.Bitmap.GetPixel(3, 4), Red);
    S.Canvas.SetPixel(2, 2, 0x80000000);
    const uint32_t P = S.Bitmap.GetPixel(2, 2);
    EXPECT_EQ(P >> 24, 0xFFu);
    EXPECT_NEAR(static_cast<int>((P >> 8) & 0xFF), 127, 1);
    S.Canvas.SetPixel(-1, 3, Red);
    S.Canvas.SetPixel(8, 3, Red);
    EXPECT_EQ(Painted(S.Bitmap, White).size(), 2u);
}

TEST(QtCanvasBitmap, FollowsTheBitmapThroughResizeAndEmptiness)
{
    TSurface S(10, 10, 0, White);
    S.Canvas.SetClipRegion(TQLRegion(TRect{0, 0, 30, 30}));
    S.Bitmap.SetSize(40, 30);
    S.Canvas.FillRect(TRect{0, 0, 100, 100});
    EXPECT_EQ(Painted(S.Bitmap), BoxPixels(TRect{0, 0, 30, 30})) << "the clip survives the resize";

    S.Bitmap = TQLBitmap(5, 5); // new pixels, smaller
    S.Canvas.SetPixel(4, 4, Red);
    EXPECT_EQ(S.Bitmap.GetPixel(4, 4), Red);

    TQLBitmap Empty; // draws nothing, but measures text
    TQLQtCanvas Canvas(Empty);
    Canvas.Rectangle(0, 0, 5, 5);
    Canvas.TextOut(0, 0, "text");
    EXPECT_EQ(Canvas.GetDeviceHandle(), nullptr);
    EXPECT_GT(Canvas.TextHeight("Xg"), 0);
    Empty.SetSize(4, 4); // drawable now
    Canvas.SetPixel(1, 1, Red);
    EXPECT_EQ(Empty.GetPixel(1, 1), Red);
}

TEST(QtCanvasBitmap, DrawBitmapComposesStretchesAndReadsTheOriginalWhenDrawnOntoItself)
{
    TSurface S(16, 16, White);
    TQLBitmap Small(2, 2);
    Small.Fill(QLPremultiply(0x800000FF));
    S.Canvas.DrawBitmap(5, 6, Small);
    EXPECT_EQ(Bounds(Painted(S.Bitmap, White)), (TRect{5, 6, 7, 8}));
    const uint32_t P = S.Bitmap.GetPixel(5, 6);
    EXPECT_EQ(P & 0xFF, 0xFFu);
    EXPECT_NEAR(static_cast<int>((P >> 16) & 0xFF), 127, 1);

    TSurface T(8, 8); // stretched 2 x 2 to 4 x 4: each source pixel covers a 2 x 2 block
    TQLBitmap Quad(2, 2);
    Quad.SetPixel(1, 0, Green);
    Quad.SetPixel(0, 1, Blue);
    T.Canvas.StretchDrawBitmap(TRect{2, 2, 6, 6}, Quad);
    TPixelSet Expected = BoxPixels(TRect{4, 2, 6, 4});
    Expected.merge(BoxPixels(TRect{2, 4, 4, 6}));
    EXPECT_EQ(Painted(T.Bitmap), Expected);
    EXPECT_EQ(T.Bitmap.GetPixel(4, 3), Green);

    TSurface U(4, 1); // onto itself: the source is read as it was before the call
    U.Bitmap.SetPixel(0, 0, Red);
    U.Canvas.DrawBitmap(1, 0, U.Bitmap);
    EXPECT_EQ(U.Bitmap.GetPixel(1, 0), Red);
    EXPECT_EQ(U.Bitmap.GetPixel(2, 0), 0u);
}

TEST(QtCanvasText, LineHeightIsTheSameForAnyOneLineTextAndFontSizeIsAt96PerInch)
{
    TSurface S;
    const int32_t H = S.Canvas.TextHeight("Xg");
    EXPECT_GT(H, 0);
    for (const char* Text : {"", "a", "...", "ÄÖÜ gjpqy"})
        EXPECT_EQ(S.Canvas.TextHeight(Text), H) << Text;
    EXPECT_EQ(S.Canvas.TextExtent("W").cy, H);
    EXPECT_GT(S.Canvas.TextWidth("WWW"), S.Canvas.TextWidth("W"));
    EXPECT_EQ(S.Canvas.TextWidth(""), 0);

    TQLCanvasFont F = S.Canvas.GetFont();
    for (const auto& [Points, Pixels] : {std::pair{8, 11}, std::pair{12, 16}, std::pair{0, 1}}) {
        F.Size = Points;
        S.Canvas.SetFont(F);
        S.Canvas.TextOut(0, 0, "x");
        EXPECT_EQ(S.Canvas.GetPainter()->font().pixelSize(), Pixels) << Points;
    }
}

TEST(QtCanvasText, TextFillsItsBoxTurnedAboutItsPoint)
{
    const std::string Text = "WWWW....";
    const int32_t X = 50, Y = 60;
    for (int32_t Angle : {0, 90, 270}) {
        TSurface Boxed(120, 120, 0, Green); // with a solid brush the whole box is filled first
        const TSize E = Boxed.Canvas.TextExtent(Text);
        Boxed.Canvas.SetTextAngle(Angle);
        Boxed.Canvas.TextOut(X, Y, Text);
        const TRect Expected = Angle == 0    ? TRect{X, Y, X + E.cx, Y + E.cy}
                               : Angle == 90 ? TRect{X, Y - E.cx, X + E.cy, Y}
                                             : TRect{X - E.cy, Y, X, Y + E.cx};
        EXPECT_EQ(Bounds(Painted(Boxed.Bitmap)), Expected) << Angle;

        // Ink only, in the text colour whatever the anti-aliasing, inside the box. The heavy
        // "WWWW" comes first along the reading direction: left at 0, bottom at 90, top at 270.
        TSurface Inked(120, 120);
        Inked.Canvas.SetTextColor(Blue);
        Inked.Canvas.SetTextAngle(Angle);
        Inked.Canvas.TextOut(X, Y, Text);
        const TPixelSet Ink = Painted(Inked.Bitmap);
        ASSERT_FALSE(Ink.empty());
        const TRect B = Bounds(Ink);
        EXPECT_TRUE(B.Left >= Expected.Left && B.Top >= Expected.Top && B.Right <= Expected.Right &&
                    B.Bottom <= Expected.Bottom)
            << Angle;
        double SumX = 0, SumY = 0;
        for (const auto& [PX, PY] : Ink) {
            SumX += PX;
            SumY += PY;
            EXPECT_EQ(Inked.Bitmap.GetPixel(PX, PY) & 0x00FFFF00, 0u) << PX << "," << PY;
        }
        const double DX = SumX / double(Ink.size()) - (Expected.Left + Expected.Right) / 2.0;
        const double DY = SumY / double(Ink.size()) - (Expected.Top + Expected.Bottom) / 2.0;
        EXPECT_LT(Angle == 0 ? DX : Angle == 90 ? -DY : DY, 0) << Angle;

        // Later shapes are not turned.
        Inked.Canvas.SetTextAngle(0);
        Inked.Canvas.SetPixel(1, 1, Red);
        EXPECT_EQ(Inked.Bitmap.GetPixel(1, 1), Red);
    }
}

TEST(QtCanvasClip, RegionOfTwoRectanglesClipsEverything)
{
    TSurface S(30, 20, 0, White);
    TQLRegion Region;
    Region.Add(TRect{1, 1, 5, 4});
    Region.Add(TRect{10, 8, 14, 12});
    S.Canvas.SetClipRegion(Region);
    S.Canvas.FillRect(TRect{0, 0, 30, 20});
    S.Line(0, 15, 30, 15);
    S.Canvas.SetPixel(20, 2, Red);
    TPixelSet Expected = BoxPixels(TRect{1, 1, 5, 4});
    Expected.merge(BoxPixels(TRect{10, 8, 14, 12}));
    EXPECT_EQ(Painted(S.Bitmap), Expected);

    S.Canvas.SetClipRegion(TQLRegion()); // empty: nothing at all
    S.Canvas.SetPixel(20, 2, Red);
    EXPECT_EQ(S.Bitmap.GetPixel(20, 2), 0u);
    S.Canvas.ClearClipRegion();
    S.Canvas.SetPixel(20, 2, Red);
    EXPECT_EQ(S.Bitmap.GetPixel(20, 2), Red);
}

TEST(QtCanvasClip, RestoreStateBringsBackTheClip)
{
    TSurface S(20, 20, 0, White);
    S.Canvas.SetClipRegion(TQLRegion(TRect{0, 0, 6, 6}));
    S.Canvas.SaveState();
    S.Canvas.SetClipRegion(TQLRegion(TRect{10, 10, 20, 20}));
    S.Canvas.GetBrush().SetColor(Blue);
    S.Canvas.RestoreState();
    S.Canvas.FillRect(TRect{0, 0, 20, 20});
    EXPECT_EQ(Painted(S.Bitmap), BoxPixels(TRect{0, 0, 6, 6}));
    EXPECT_EQ(S.Bitmap.GetPixel(0, 0), White) << "the brush came back too";

    // The guard, and a clip narrowed on the painter directly: both undone on restore.
    S.Canvas.ClearClipRegion();
    {
        TQLCanvasSave Save(S.Canvas);
        S.Canvas.SetClipRegion(TQLRegion(TRect{0, 0, 2, 2}));
        S.Canvas.GetPainter()->setClipRect(QRect(0, 0, 1, 1), Qt::IntersectClip);
    }
    S.Canvas.FillRect(TRect{0, 0, 20, 20});
    EXPECT_EQ(Painted(S.Bitmap), BoxPixels(TRect{0, 0, 20, 20}));
}

TEST(QtCanvasPainter, DrawsThroughTheCallersPainterAndLeavesItAsItWas)
{
    QPainter Inactive;
    EXPECT_THROW(TQLQtCanvas Refused(Inactive), std::invalid_argument);

    QImage Image(20, 20, QImage::Format_ARGB32_Premultiplied);
    Image.fill(0);
    QPainter Painter(&Image);
    Painter.setPen(QColor(1, 2, 3));
    Painter.setRenderHint(QPainter::Antialiasing, true);
    Painter.setClipRect(QRect(0, 0, 10, 10));
    {
        TQLQtCanvas Canvas(Painter);
        EXPECT_EQ(Canvas.GetDeviceHandle(), &Image);
        Canvas.GetBrush().SetColor(Red);
        Canvas.GetPen().SetColor(Red);
        // The painter's own clip stays in force under the canvas's clips.
        Canvas.SetClipRegion(TQLRegion(TRect{5, 5, 20, 20}));
        Canvas.FillRect(TRect{0, 0, 20, 20});
        Canvas.ClearClipRegion();
        Canvas.MoveTo(0, 0);
        Canvas.LineTo(20, 0);
    }
    EXPECT_EQ(Painter.pen().color(), QColor(1, 2, 3));
    EXPECT_TRUE(Painter.testRenderHint(QPainter::Antialiasing));
    Painter.end();
    EXPECT_EQ(Image.pixel(9, 9), Red);
    EXPECT_EQ(Image.pixel(10, 10), 0u);
    EXPECT_EQ(Image.pixel(4, 5), 0u);
    EXPECT_EQ(Image.pixel(9, 0), Red);
    EXPECT_EQ(Image.pixel(10, 0), 0u);
}

TEST(QtCanvasCost, PixelsAndThinLinesDoNotAllocate)
{
    if (!qvtest::AllocationCountingAvailable())
        GTEST_SKIP() << "allocation counting is not available in this build";
    TSurface S(200, 100);
    TQLRegion Region;
    Region.Add(TRect{0, 0, 100, 100});
    Region.Add(TRect{120, 0, 200, 50});
    S.Canvas.SetClipRegion(Region);
    // First calls may set things up: Qt builds the row table of a clip region the first
    // time a fill crosses its edges.
    S.Line(0, 0, 200, 100);
    S.Canvas.SetPixel(1, 1, Red);

    qvtest::TAllocationCount Count;
    for (int32_t X = 0; X < 1000; ++X) {
        S.Canvas.GetPen().SetColor(X % 2 ? Red : Blue);
        S.Canvas.SetPenStyle(X % 3 == 0 ? psDash : psSolid);
        S.Canvas.MoveTo(X % 200, (X * 7) % 100);
        S.Canvas.LineTo((X + 1) % 200, (X * 13) % 100);
        S.Canvas.SetPixel(X % 200, X % 100, Green);
    }
    EXPECT_EQ(Count.Get(), 0u);
}
