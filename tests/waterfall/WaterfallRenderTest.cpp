// The waterfall's picture: incremental colouring against colouring from scratch, the colour
// of values at and beyond the level range, and the layout of the image.
#include "WaterfallTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using namespace qv;

namespace {

struct TSetup {
    int32_t Samples;
    bool Vertical;
    bool Reversed;
    bool Autoscale;
};

struct TFixture : TWaterfallSurface {
    explicit TFixture(const TSetup& ASetup) : TWaterfallSurface(ASetup.Samples)
    {
        Waterfall.SetVertical(ASetup.Vertical);
        Waterfall.GetXAxis()->SetReversed(ASetup.Reversed);
        TQVLevelAxis& Axis = *Waterfall.GetLevels()->GetAxis();
        Axis.SetAutoscale(ASetup.Autoscale);
        Axis.SetMin(0);
        Axis.SetMax(100);
    }
    // The image's pixels that are shown (padding left out).
    std::vector<uint32_t> Shown(int32_t AWidth, int32_t AHeight) const
    {
        std::vector<uint32_t> Result;
        for (int32_t Y = 0; Y < AHeight; ++Y)
            for (int32_t X = 0; X < AWidth; ++X)
                Result.push_back(Pixel(X, Y));
        return Result;
    }
    uint32_t Pixel(int32_t AColumn, int32_t ALine) const
    {
        return Waterfall.GetDataView()->GetImagePixel(AColumn, ALine);
    }
};

std::vector<std::vector<double>> RandomRows(int32_t ACount, int32_t ASize)
{
    std::mt19937 Random(7);
    std::uniform_real_distribution<double> Value(-20.0, 120.0);
    std::vector<std::vector<double>> Rows(static_cast<size_t>(ACount), std::vector<double>(static_cast<size_t>(ASize)));
    for (auto& Row : Rows)
        for (double& V : Row)
            V = Value(Random);
    return Rows;
}

} // namespace

// Rows arriving in bursts of 1 to 9 between paints, 1500 in all, leave the same image and
// the same picture as the last 1000 rows coloured at once.
TEST(WaterfallRender, IncrementalPictureEqualsOneDrawnFromScratch)
{
    const TSetup Setups[] = {{1000, false, false, false},
                             {998, false, true, false},
                             {1000, true, false, false},
                             {998, true, true, false},
                             {1000, false, false, true}};
    constexpr int32_t CSize = 24;
    const auto Rows = RandomRows(1500, CSize);
    for (const TSetup& S : Setups) {
        TFixture Incremental(S);
        size_t Next = 0;
        for (size_t Burst = 1; Next < Rows.size(); Burst = Burst % 9 + 1) {
            for (size_t I = 0; I < Burst && Next < Rows.size(); ++I)
                Incremental.Add(Rows[Next++]);
            Incremental.Paint();
        }
        TFixture Scratch(S);
        for (size_t I = Rows.size() - S.Samples; I < Rows.size(); ++I)
            Scratch.Add(Rows[I]);
        Scratch.Paint();
        const int32_t W = S.Vertical ? CSize : S.Samples, H = S.Vertical ? S.Samples : CSize;
        EXPECT_EQ(Incremental.Shown(W, H), Scratch.Shown(W, H)) << S.Samples << S.Vertical << S.Reversed;
        // The recording canvas paints nothing: only the data view's part of the bitmaps counts.
        const TRect View = Scratch.Waterfall.GetDataView()->GetDrawRect();
        ASSERT_EQ(Incremental.Waterfall.GetDataView()->GetDrawRect(), View);
        for (int32_t Y = View.Top; Y < View.Bottom; ++Y)
            ASSERT_TRUE(std::equal(Incremental.Bitmap.GetScanLine(Y) + View.Left,
                                   Incremental.Bitmap.GetScanLine(Y) + View.Right,
                                   Scratch.Bitmap.GetScanLine(Y) + View.Left))
                << S.Samples << S.Vertical << S.Reversed << " line " << Y;
    }
}

// Values beyond the levels take the colour of the nearer end, NaN the bottom colour; on
// logarithmic levels the clamp acts on the logarithms.
TEST(WaterfallRender, ColoursAtTheEndsOfTheRange)
{
    const std::vector<double> Row = {-5, 0, 50, 99, 100, 1e9, INFINITY, -INFINITY, NAN};
    const TAlphaColor Black = 0xFF000000, Top = 0xFFFF0080;
    struct TCase {
        const char* Name;
        bool Logarithmic;
        double Max;
        std::vector<TAlphaColor> Expected;
    };
    const TCase Cases[] = {
        {"linear", false, 100, {Black, Black, 0xFF00FF3F, QVLevelBuiltInColor(1394), Top, Top, Top, Black, Black}},
        // 0 to 999 is 0 to 3 decades; 99 lies at 2 of them: step Round(2 / 3 * 1408) = 939.
        {"logarithmic",
         true,
         999,
         {Black, Black, QVLevelBuiltInColor(int32_t(std::nearbyint(std::log10(51.0) / 3 * 1408))),
          QVLevelBuiltInColor(939), QVLevelBuiltInColor(int32_t(std::nearbyint(std::log10(101.0) / 3 * 1408))), Top,
          Top, Black, Black}},
    };
    for (const TCase& C : Cases) {
        TFixture F({10, false, false, false});
        F.Waterfall.GetLevels()->GetAxis()->SetMax(C.Max);
        F.Waterfall.GetLevels()->GetAxis()->SetScaleMode(C.Logarithmic ? smLogarithmic : smLinear);
        F.Add(Row);
        F.Paint();
        const int32_t N = static_cast<int32_t>(Row.size());
        for (int32_t J = 0; J < N; ++J)
            EXPECT_EQ(F.Pixel(0, N - 1 - J), C.Expected[static_cast<size_t>(J)]) << C.Name << " sample " << J;
        // The columns not filled yet show the display's colour.
        EXPECT_EQ(F.Pixel(5, 0), F.Waterfall.GetColor() | 0xFF000000) << C.Name;
    }
}

// Where rows land in the picture: the oldest at the left (right when reversed), the empty
// part behind the newest; row slots padded to 4 pixels.
TEST(WaterfallRender, RowsFillThePictureFromTheirStart)
{
    for (const bool Reversed : {false, true}) {
        TFixture F({10, false, Reversed, false});
        F.Add(std::vector<double>(6, 100.0));
        F.Add(std::vector<double>(6, 50.0));
        F.Paint();
        EXPECT_EQ(F.Waterfall.GetDataView()->GetImageStride(), 8);
        const TRect View = F.Waterfall.GetDataView()->GetDrawRect();
        const int32_t Line = (View.Top + View.Bottom) / 2;
        const uint32_t Left = F.Bitmap.GetPixel(View.Left, Line), Right = F.Bitmap.GetPixel(View.Right - 1, Line);
        const uint32_t Empty = F.Waterfall.GetColor() | 0xFF000000;
        EXPECT_EQ(Reversed ? Right : Left, 0xFFFF0080u) << Reversed; // the first row, at the top level
        EXPECT_EQ(Reversed ? Left : Right, Empty) << Reversed;
        // The second row stands next to the first, towards the empty part.
        const int32_t Column = Reversed ? 8 : 1;
        EXPECT_EQ(F.Pixel(Column, 0), 0xFF00FF3Fu) << Reversed;
    }
}

// Rows all of one value with Autoscale: a range of no width colours with a range of 1, so
// every pixel takes the bottom colour.
TEST(WaterfallRender, ARangeOfNoWidthColoursEveryPixelAtTheBottom)
{
    TFixture F({10, false, false, true});
    F.Add(std::vector<double>(4, 7.0));
    F.Add(std::vector<double>(4, 7.0));
    F.Paint();
    EXPECT_EQ(F.Waterfall.GetCurrentMinLevel(), F.Waterfall.GetCurrentMaxLevel());
    for (int32_t Column : {0, 1})
        for (int32_t Line = 0; Line < 4; ++Line)
            EXPECT_EQ(F.Pixel(Column, Line), 0xFF000000u);
}

// Every pixel of the picture is the image's pixel at its source column and line, whether it is
// read through the resampler's palette or straight from the image (slots as lines, or a
// gradient of many random colours that overflows the palette).
TEST(WaterfallRender, ThePictureShowsTheImagePixelUnderEachDestinationPixel)
{
    struct TCase {
        const char* Name;
        int32_t Samples, Size, Gradient;
        bool Vertical, Direct;
    };
    const TCase Cases[] = {{"built-in scale", 700, 90, 0, false, false},
                           {"built-in scale, vertical", 700, 90, 0, true, true},
                           {"more colours than the palette", 560, 420, 500, false, true}};
    for (const TCase& C : Cases) {
        TFixture F({C.Samples, C.Vertical, false, false});
        F.Waterfall.SetBounds(0, 0, 640, 480);
        F.Bitmap = TQLBitmap(640, 480);
        std::mt19937 Random(11);
        for (int32_t I = 0; I < C.Gradient; ++I)
            F.Waterfall.GetLevels()->GetColors()->Add()->SetColor(0xFF000000 | (Random() & 0xFFFFFF));
        for (const auto& Row : RandomRows(C.Samples, C.Size))
            F.Add(Row);
        // Twice: the second frame reads the columns kept from the first.
        for (int Frame = 0; Frame < 2; ++Frame) {
            F.Paint();
            const TQVBasicWaterfallDataView& View = *F.Waterfall.GetDataView();
            const TRect R = View.GetDrawRect();
            const auto& Columns = View.GetResampler().GetSourceColumns();
            const auto& Lines = View.GetResampler().GetSourceLines();
            ASSERT_EQ(Columns.size(), size_t(R.Right - R.Left)) << C.Name;
            ASSERT_EQ(Lines.size(), size_t(R.Bottom - R.Top)) << C.Name;
            for (int32_t Y = R.Top; Y < R.Bottom; ++Y)
                for (int32_t X = R.Left; X < R.Right; ++X)
                    ASSERT_EQ(F.Bitmap.GetPixel(X, Y),
                              View.GetImagePixel(Columns[size_t(X - R.Left)], Lines[size_t(Y - R.Top)]))
                        << C.Name << " frame " << Frame << " at " << X << "," << Y;
            EXPECT_EQ(View.GetResampler().GetPaletteSize() == 0, C.Direct) << C.Name;
        }
    }
}
