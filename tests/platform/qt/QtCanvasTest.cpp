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
    if (APixels.empty())
        return TRect{};
    TRect R{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    for (const auto& [X, Y] : APixels) {
        R.Left = std::min(R.Left, X);
        R.Top = std::min(R.Top, Y);
        R.Right = std::max(R.Right, X + 1);
        R.Bottom = std::max(R.Bottom, Y + 1);
    }
    return R;
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
    for (const auto& P : BoxPixels(TRect{ABox.Left + AWidth, ABox.Top + AWidth, ABox.Right - AWidth,
                                         ABox.Bottom - AWidth}))
        Result.erase(P);
    return Result;
}

// A bitmap and a canvas drawing into it, with the pen in red and the brush clear.
struct TSurface {
    TQLBitmap Bitmap;
    TQLQtCanvas Canvas;

    explicit TSurface(int32_t AWidth = 32, int32_t AHeight = 24, uint32_t ABackground = 0)
        : Bitmap(AWidth, AHeight), Canvas(Bitmap)
    {
        Bitmap.Fill(ABackground);
        Canvas.GetPen().SetColor(Red);
        Canvas.GetBrush().SetStyle(bsClear);
    }
    void Line(int32_t AX0, int32_t AY0, int32_t AX1, int32_t AY1)
    {
        Canvas.MoveTo(AX0, AY0);
        Canvas.LineTo(AX1, AY1);
    }
};

TPixelSet Row(int32_t AY, int32_t AFrom, int32_t ATo) // inclusive
{
    TPixelSet Result;
    for (int32_t X = AFrom; X <= ATo; ++X)
        Result.insert({X, AY});
    return Result;
}

TPixelSet Column(int32_t AX, int32_t AFrom, int32_t ATo) // inclusive
{
    TPixelSet Result;
    for (int32_t Y = AFrom; Y <= ATo; ++Y)
        Result.insert({AX, Y});
    return Result;
}

} // namespace

// ---- lines ----

TEST(QtCanvasLine, StraightLinesLeaveOutTheEndPixelInTheirOwnDirection)
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
        {1, 1, 6, 6, {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}}},
        {6, 1, 1, 6, {{6, 1}, {5, 2}, {4, 3}, {3, 4}, {2, 5}}},
    };
    for (const TCase& C : Cases) {
        TSurface S;
        S.Line(C.X0, C.Y0, C.X1, C.Y1);
        EXPECT_EQ(Painted(S.Bitmap), C.Expected) << C.X0 << "," << C.Y0 << " -> " << C.X1 << "," << C.Y1;
        EXPECT_EQ(S.Canvas.GetPenPos(), (TPoint{C.X1, C.Y1}));
        EXPECT_EQ(S.Bitmap.GetPixel(C.X0, C.Y0), Red);
    }
}

TEST(QtCanvasLine, ShallowLineRoundsToTheNearestRow)
{
    TSurface S;
    S.Line(0, 0, 8, 2);
    // y = x / 4 rounded, a half going away from the start.
    const TPixelSet Expected{{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 2}, {7, 2}};
    EXPECT_EQ(Painted(S.Bitmap), Expected);
}

TEST(QtCanvasLine, PolylineDrawsEachJointOnceAndStopsShortOfTheLastPoint)
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
    const TPixelSet Got = Painted(S.Bitmap);
    EXPECT_EQ(Got, Expected);
    for (const auto& [X, Y] : Got)
        EXPECT_EQ(S.Bitmap.GetPixel(X, Y), QLPremultiply(0x80FF0000)) << X << "," << Y;
}

TEST(QtCanvasLine, ZeroLengthAndClearPenDrawNothing)
{
    TSurface S;
    S.Line(3, 3, 3, 3);
    S.Canvas.SetPenStyle(psClear);
    S.Line(0, 0, 10, 10);
    S.Canvas.SetPenWidth(3);
    S.Line(0, 5, 10, 5);
    EXPECT_TRUE(Painted(S.Bitmap).empty());
    EXPECT_EQ(S.Canvas.GetPenPos(), (TPoint{10, 5}));
}

TEST(QtCanvasLine, FarOffEndPointsDrawTheVisiblePart)
{
    TSurface S(20, 20);
    S.Line(-10000000, 4, 10000000, 4);
    S.Line(-10000000, -10000000, 10000000, 10000000);
    TPixelSet Expected = Row(4, 0, 19);
    for (int32_t I = 0; I < 20; ++I)
        Expected.insert({I, I});
    EXPECT_EQ(Painted(S.Bitmap), Expected);
}

TEST(QtCanvasLine, PenChangesBetweenCallsTakeEffect)
{
    TSurface S;
    S.Line(0, 1, 10, 1);
    S.Canvas.GetPen().SetColor(Blue); // straight through the raw pen
    S.Line(0, 2, 10, 2);
    S.Canvas.GetPen().SetColor(Red);
    S.Canvas.SetPenWidth(3);
    S.Line(0, 10, 20, 10);
    EXPECT_EQ(S.Bitmap.GetPixel(5, 1), Red);
    EXPECT_EQ(S.Bitmap.GetPixel(5, 2), Blue);
    // Width 3 covers the row above and below, and no further.
    for (int32_t Y = 9; Y <= 11; ++Y)
        EXPECT_EQ(S.Bitmap.GetPixel(10, Y), Red) << Y;
    EXPECT_EQ(S.Bitmap.GetPixel(10, 8), 0u);
    EXPECT_EQ(S.Bitmap.GetPixel(10, 12), 0u);
}

TEST(QtCanvasLine, DashedAndDottedLinesHaveGaps)
{
    TSurface S(64, 24);
    S.Canvas.SetPenStyle(psDash);
    S.Line(0, 2, 40, 2);
    // 6 on, 3 off.
    for (int32_t X = 0; X < 18; ++X)
        EXPECT_EQ(S.Bitmap.GetPixel(X, 2) != 0, X % 9 < 6) << X;

    // The pattern runs on across short steps, so a polyline of 1-pixel segments still shows it.
    S.Canvas.MoveTo(0, 6);
    for (int32_t X = 1; X <= 40; ++X)
        S.Canvas.LineTo(X, 6);
    for (int32_t X = 0; X < 40; ++X)
        EXPECT_EQ(S.Bitmap.GetPixel(X, 6) != 0, X % 9 < 6) << X;

    S.Canvas.SetPenStyle(psDot);
    S.Line(0, 10, 30, 10);
    for (int32_t X = 0; X < 30; ++X) // 1 on, 2 off
        EXPECT_EQ(S.Bitmap.GetPixel(X, 10) != 0, X % 3 == 0) << X;

    // Wide dashed pens have gaps too.
    S.Canvas.SetPenStyle(psDash);
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

// ---- boxes ----

TEST(QtCanvasBox, RectangleOutlineLiesOnTheOutermostPixels)
{
    const TRect Box{2, 3, 10, 8};
    {
        TSurface S;
        S.Canvas.Rectangle(Box.Left, Box.Top, Box.Right, Box.Bottom);
        EXPECT_EQ(Painted(S.Bitmap), FramePixels(Box, 1));
    }
    {
        TSurface S;
        S.Canvas.GetBrush().SetStyle(bsSolid);
        S.Canvas.GetBrush().SetColor(Green);
        S.Canvas.RectangleRect(Box);
        EXPECT_EQ(Painted(S.Bitmap), BoxPixels(Box));
        for (const auto& [X, Y] : FramePixels(Box, 1))
            EXPECT_EQ(S.Bitmap.GetPixel(X, Y), Red);
        EXPECT_EQ(S.Bitmap.GetPixel(5, 5), Green);
    }
    {
        TSurface S;
        S.Canvas.SetPenWidth(3);
        S.Canvas.Rectangle(1, 1, 20, 15);
        EXPECT_EQ(Painted(S.Bitmap), FramePixels(TRect{1, 1, 20, 15}, 3));
    }
    {
        TSurface S; // a dashed outline stays inside the box and shows gaps
        S.Canvas.SetPenStyle(psDash);
        S.Canvas.Rectangle(1, 1, 30, 20);
        const TPixelSet Got = Painted(S.Bitmap);
        EXPECT_EQ(Bounds(Got), (TRect{1, 1, 30, 20}));
        EXPECT_LT(Got.size(), FramePixels(TRect{1, 1, 30, 20}, 1).size());
    }
}

TEST(QtCanvasBox, FillRectCoversLeftToRightMinusOne)
{
    TSurface S;
    S.Canvas.GetBrush().SetStyle(bsSolid);
    S.Canvas.GetBrush().SetColor(Blue);
    S.Canvas.FillRect(TRect{1, 2, 7, 5});
    EXPECT_EQ(Painted(S.Bitmap), BoxPixels(TRect{1, 2, 7, 5}));
    EXPECT_EQ(S.Bitmap.GetPixel(1, 2), Blue);

    // A translucent brush composes over what is there.
    S.Canvas.GetBrush().SetColor(0x80FF0000);
    S.Canvas.FillRect(TRect{1, 2, 2, 3});
    const uint32_t P = S.Bitmap.GetPixel(1, 2);
    EXPECT_EQ(P >> 24, 0xFFu);
    EXPECT_NEAR(static_cast<int>((P >> 16) & 0xFF), 128, 1);
    EXPECT_NEAR(static_cast<int>(P & 0xFF), 127, 1);

    // A clear brush fills nothing.
    S.Canvas.GetBrush().SetStyle(bsClear);
    S.Canvas.FillRect(TRect{10, 10, 20, 20});
    EXPECT_EQ(S.Bitmap.GetPixel(15, 15), 0u);
}

TEST(QtCanvasBox, InvertedCornersDrawNothing)
{
    TSurface S;
    S.Canvas.GetBrush().SetStyle(bsSolid);
    S.Canvas.Rectangle(10, 3, 2, 8);
    S.Canvas.Rectangle(2, 8, 10, 3);
    S.Canvas.Ellipse(10, 10, 4, 4);
    S.Canvas.FillRect(TRect{5, 5, 5, 9});
    S.Canvas.DrawFocusRect(TRect{9, 9, 1, 1});
    EXPECT_TRUE(Painted(S.Bitmap).empty());
}

TEST(QtCanvasBox, EllipseFitsItsBox)
{
    for (int32_t Width : {1, 3}) {
        TSurface S;
        S.Canvas.GetBrush().SetStyle(bsSolid);
        S.Canvas.GetBrush().SetColor(Green);
        S.Canvas.SetPenWidth(Width);
        S.Canvas.EllipseRect(TRect{2, 2, 23, 17});
        const TPixelSet Got = Painted(S.Bitmap);
        EXPECT_EQ(Bounds(Got), (TRect{2, 2, 23, 17})) << Width;
        EXPECT_EQ(S.Bitmap.GetPixel(12, 9), Green);
        EXPECT_EQ(S.Bitmap.GetPixel(2, 2), 0u) << "corners stay outside";
        EXPECT_EQ(S.Bitmap.GetPixel(2, 9), Red);
    }
    TSurface S; // fill only: still inside the box
    S.Canvas.GetBrush().SetStyle(bsSolid);
    S.Canvas.SetPenStyle(psClear);
    S.Canvas.Ellipse(2, 2, 23, 17);
    const TRect B = Bounds(Painted(S.Bitmap));
    EXPECT_GE(B.Left, 2);
    EXPECT_GE(B.Top, 2);
    EXPECT_LE(B.Right, 23);
    EXPECT_LE(B.Bottom, 17);
    EXPECT_GT(B.Width(), 15);
}

TEST(QtCanvasBox, PolygonUsesPointsUpToTheHighIndex)
{
    const TPoint Square[4] = {{2, 2}, {12, 2}, {12, 9}, {2, 9}};
    {
        TSurface S;
        S.Canvas.GetPen().SetColor(0x80FF0000); // translucent: no corner may be drawn twice
        S.Canvas.Polygon(Square, 3);
        for (const TPoint& P : Square)
            EXPECT_NE(S.Bitmap.GetPixel(P.X, P.Y), 0u) << P.X << "," << P.Y;
        EXPECT_EQ(Painted(S.Bitmap), FramePixels(TRect{2, 2, 13, 10}, 1));
        for (const auto& [X, Y] : Painted(S.Bitmap))
            EXPECT_EQ(S.Bitmap.GetPixel(X, Y), QLPremultiply(0x80FF0000)) << X << "," << Y;
    }
    {
        TSurface S; // high index 2: a triangle, the fourth point left out
        S.Canvas.Polygon(Square, 2);
        EXPECT_EQ(S.Bitmap.GetPixel(2, 9), 0u);
        EXPECT_EQ(S.Bitmap.GetPixel(12, 9), Red);
    }
    {
        TSurface S; // filled by the brush inside the outline
        S.Canvas.GetBrush().SetStyle(bsSolid);
        S.Canvas.GetBrush().SetColor(Green);
        S.Canvas.Polygon(Square, 3);
        EXPECT_EQ(S.Bitmap.GetPixel(7, 5), Green);
    }
    TSurface S;
    EXPECT_THROW(S.Canvas.Polygon(nullptr, 2), std::invalid_argument);
    S.Canvas.Polygon(nullptr, -1); // no points asked for: nothing to do
}

TEST(QtCanvasBox, FocusRectInvertsEveryOtherFramePixelAndUndoesItself)
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
}

// ---- pixels and the bitmap ----

TEST(QtCanvasBitmap, DrawingLandsInTheBitmapAtOnce)
{
    TQLBitmap Bitmap(16, 16);
    TQLQtCanvas Canvas(Bitmap);
    Canvas.SetPixel(3, 4, Red);
    EXPECT_EQ(Bitmap.GetPixel(3, 4), Red);
    Canvas.GetBrush().SetColor(0x80000080);
    Canvas.FillRect(TRect{0, 0, 1, 1});
    EXPECT_EQ(Bitmap.GetPixel(0, 0), QLPremultiply(0x80000080));
    EXPECT_NE(Canvas.GetDeviceHandle(), nullptr);
    EXPECT_EQ(static_cast<QPainter*>(Canvas.GetPlatformCanvas()), Canvas.GetPainter());
}

TEST(QtCanvasBitmap, SetPixelComposesOverAndIgnoresOutsidePoints)
{
    TSurface S(8, 8, White);
    S.Canvas.SetPixel(2, 2, 0x80000000);
    const uint32_t P = S.Bitmap.GetPixel(2, 2);
    EXPECT_EQ(P >> 24, 0xFFu);
    EXPECT_NEAR(static_cast<int>((P >> 8) & 0xFF), 127, 1);
    S.Canvas.SetPixel(-1, 3, Red);
    S.Canvas.SetPixel(8, 3, Red);
    S.Canvas.SetPixel(3, 100000, Red);
    EXPECT_EQ(Painted(S.Bitmap, White).size(), 1u);
}

TEST(QtCanvasBitmap, FollowsTheBitmapWhenItIsResized)
{
    TSurface S(10, 10);
    S.Canvas.SetClipRegion(TQLRegion(TRect{0, 0, 30, 30}));
    S.Bitmap.SetSize(40, 30);
    S.Canvas.GetBrush().SetStyle(bsSolid);
    S.Canvas.FillRect(TRect{0, 0, 100, 100});
    EXPECT_EQ(Painted(S.Bitmap), BoxPixels(TRect{0, 0, 30, 30})) << "the clip survives the resize";
    S.Bitmap = TQLBitmap(5, 5); // new pixels, smaller
    S.Canvas.SetPixel(4, 4, Red);
    EXPECT_EQ(S.Bitmap.GetPixel(4, 4), Red);
}

TEST(QtCanvasBitmap, EmptyBitmapDrawsNothingButMeasuresText)
{
    TQLBitmap Bitmap;
    TQLQtCanvas Canvas(Bitmap);
    Canvas.MoveTo(0, 0);
    Canvas.LineTo(10, 10);
    Canvas.SetPixel(0, 0, Red);
    Canvas.Rectangle(0, 0, 5, 5);
    Canvas.TextOut(0, 0, "text");
    EXPECT_EQ(Canvas.GetDeviceHandle(), nullptr);
    EXPECT_GT(Canvas.TextHeight("Xg"), 0);
    Bitmap.SetSize(4, 4); // becomes drawable
    Canvas.SetPixel(1, 1, Red);
    EXPECT_EQ(Bitmap.GetPixel(1, 1), Red);
}

TEST(QtCanvasBitmap, DrawBitmapComposesAndStretches)
{
    TSurface S(16, 16, White);
    TQLBitmap Small(2, 2);
    Small.Fill(QLPremultiply(0x800000FF));
    S.Canvas.DrawBitmap(5, 6, Small);
    EXPECT_EQ(Bounds(Painted(S.Bitmap, White)), (TRect{5, 6, 7, 8}));
    const uint32_t P = S.Bitmap.GetPixel(5, 6);
    EXPECT_EQ(P & 0xFF, 0xFFu);
    EXPECT_NEAR(static_cast<int>((P >> 16) & 0xFF), 127, 1);

    TSurface T(8, 8);
    TQLBitmap Quad(2, 2);
    Quad.SetPixel(0, 0, Red);
    Quad.SetPixel(1, 0, Green);
    Quad.SetPixel(0, 1, Blue);
    Quad.SetPixel(1, 1, White);
    T.Canvas.StretchDrawBitmap(TRect{2, 2, 6, 6}, Quad);
    EXPECT_EQ(Bounds(Painted(T.Bitmap)), (TRect{2, 2, 6, 6}));
    EXPECT_EQ(T.Bitmap.GetPixel(2, 2), Red);
    EXPECT_EQ(T.Bitmap.GetPixel(3, 3), Red);
    EXPECT_EQ(T.Bitmap.GetPixel(4, 2), Green);
    EXPECT_EQ(T.Bitmap.GetPixel(3, 5), Blue);
    EXPECT_EQ(T.Bitmap.GetPixel(5, 5), White);
}

TEST(QtCanvasBitmap, DrawingABitmapOntoItselfReadsTheOriginal)
{
    TSurface S(4, 1);
    S.Bitmap.SetPixel(0, 0, Red);
    S.Canvas.DrawBitmap(1, 0, S.Bitmap);
    EXPECT_EQ(S.Bitmap.GetPixel(1, 0), Red);
    EXPECT_EQ(S.Bitmap.GetPixel(2, 0), 0u);
}

// ---- text ----

TEST(QtCanvasText, LineHeightIsTheSameForAnyOneLineText)
{
    TSurface S;
    const int32_t H = S.Canvas.TextHeight("Xg");
    EXPECT_GT(H, 0);
    for (const char* Text : {"", "a", "Hello, world", "...", "ÄÖÜ gjpqy"})
        EXPECT_EQ(S.Canvas.TextHeight(Text), H) << Text;
    EXPECT_EQ(S.Canvas.TextExtent("W").cy, H);
    EXPECT_GT(S.Canvas.TextWidth("WWW"), S.Canvas.TextWidth("W"));
    EXPECT_EQ(S.Canvas.TextWidth(""), 0);

    TQLCanvasFont Big = S.Canvas.GetFont();
    Big.Size *= 2;
    S.Canvas.SetFont(Big);
    EXPECT_GT(S.Canvas.TextHeight("Xg"), H + H / 2);
}

TEST(QtCanvasText, FontSizeMapsToPixelsAt96PerInch)
{
    TSurface S;
    TQLCanvasFont F = S.Canvas.GetFont();
    for (const auto& [Points, Pixels] : {std::pair{8, 11}, std::pair{12, 16}, std::pair{0, 1}}) {
        F.Size = Points;
        S.Canvas.SetFont(F);
        S.Canvas.TextOut(0, 0, "x");
        EXPECT_EQ(S.Canvas.GetPainter()->font().pixelSize(), Pixels) << Points;
    }
}

TEST(QtCanvasText, UnturnedTextFillsItsBoxFromTheTopLeft)
{
    TSurface S(120, 40);
    const TSize E = S.Canvas.TextExtent("Hello");
    S.Canvas.SetTextColor(0xFF0000FF);
    S.Canvas.TextOut(10, 12, "Hello");
    const TPixelSet Ink = Painted(S.Bitmap);
    ASSERT_FALSE(Ink.empty());
    const TRect B = Bounds(Ink);
    EXPECT_GE(B.Left, 10);
    EXPECT_GE(B.Top, 12);
    EXPECT_LE(B.Right, 10 + E.cx);
    EXPECT_LE(B.Bottom, 12 + E.cy);
    for (const auto& [X, Y] : Ink) { // the text colour, whatever the anti-aliasing
        const uint32_t P = S.Bitmap.GetPixel(X, Y);
        EXPECT_EQ(P & 0x00FFFF00, 0u) << X << "," << Y;
    }

    // With a solid brush the whole box is filled first.
    TSurface T(120, 40);
    T.Canvas.GetBrush().SetStyle(bsSolid);
    T.Canvas.GetBrush().SetColor(Green);
    T.Canvas.TextOut(10, 12, "Hello");
    EXPECT_EQ(Bounds(Painted(T.Bitmap)), (TRect{10, 12, 10 + E.cx, 12 + E.cy}));
}

TEST(QtCanvasText, TurnedTextTurnsAboutItsPoint)
{
    const std::string Text = "WWWW....";
    const int32_t X = 50, Y = 60;
    for (int32_t Angle : {90, 270}) {
        TSurface Boxed(120, 120);
        const TSize E = Boxed.Canvas.TextExtent(Text);
        Boxed.Canvas.GetBrush().SetStyle(bsSolid);
        Boxed.Canvas.GetBrush().SetColor(Green);
        Boxed.Canvas.SetTextAngle(Angle);
        Boxed.Canvas.TextOut(X, Y, Text);
        const TRect Expected = Angle == 90 ? TRect{X, Y - E.cx, X + E.cy, Y} : TRect{X - E.cy, Y, X, Y + E.cx};
        EXPECT_EQ(Bounds(Painted(Boxed.Bitmap)), Expected) << Angle;

        // The heavy "WWWW" comes first: at 90 it lies near the bottom (reading upwards), at
        // 270 near the top.
        TSurface Inked(120, 120);
        Inked.Canvas.SetTextAngle(Angle);
        Inked.Canvas.TextOut(X, Y, Text);
        const TPixelSet Ink = Painted(Inked.Bitmap);
        ASSERT_FALSE(Ink.empty());
        double SumY = 0;
        for (const auto& P : Ink)
            SumY += P.second;
        const double Middle = (Expected.Top + Expected.Bottom) / 2.0;
        if (Angle == 90)
            EXPECT_GT(SumY / Ink.size(), Middle);
        else
            EXPECT_LT(SumY / Ink.size(), Middle);
        EXPECT_GE(Bounds(Ink).Left, Expected.Left);
        EXPECT_LE(Bounds(Ink).Right, Expected.Right);

        // Later shapes are not turned.
        Inked.Canvas.SetTextAngle(0);
        Inked.Canvas.SetPixel(1, 1, Red);
        EXPECT_EQ(Inked.Bitmap.GetPixel(1, 1), Red);
    }
}

// ---- clipping and saved state ----

TEST(QtCanvasClip, RegionOfTwoRectanglesClipsEverything)
{
    TSurface S(30, 20);
    TQLRegion Region;
    Region.Add(TRect{1, 1, 5, 4});
    Region.Add(TRect{10, 8, 14, 12});
    S.Canvas.SetClipRegion(Region);
    S.Canvas.GetBrush().SetStyle(bsSolid);
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
    TSurface S(20, 20);
    S.Canvas.GetBrush().SetStyle(bsSolid);
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
    S.Canvas.GetBrush().SetColor(Red);
    S.Canvas.FillRect(TRect{0, 0, 20, 20});
    EXPECT_EQ(Painted(S.Bitmap), BoxPixels(TRect{0, 0, 20, 20}));
    EXPECT_EQ(S.Bitmap.GetPixel(19, 19), Red);
}

// ---- over a caller's painter ----

TEST(QtCanvasPainter, DrawsThroughTheCallersPainterAndLeavesItAsItWas)
{
    QImage Image(20, 20, QImage::Format_ARGB32_Premultiplied);
    Image.fill(0);
    QPainter Painter(&Image);
    Painter.setPen(QColor(1, 2, 3));
    Painter.setRenderHint(QPainter::Antialiasing, true);
    Painter.setClipRect(QRect(0, 0, 10, 10));
    {
        TQLQtCanvas Canvas(Painter);
        EXPECT_EQ(Canvas.GetPlatformCanvas(), &Painter);
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
    EXPECT_EQ(Image.pixel(5, 5), Red);
    EXPECT_EQ(Image.pixel(9, 9), Red);
    EXPECT_EQ(Image.pixel(10, 10), 0u);
    EXPECT_EQ(Image.pixel(4, 5), 0u);
    EXPECT_EQ(Image.pixel(9, 0), Red);
    EXPECT_EQ(Image.pixel(10, 0), 0u);
}

TEST(QtCanvasPainter, InactivePainterIsRefused)
{
    QPainter Painter;
    EXPECT_THROW(TQLQtCanvas Canvas(Painter), std::invalid_argument);
}

// ---- cost of the inner-loop operations ----

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
