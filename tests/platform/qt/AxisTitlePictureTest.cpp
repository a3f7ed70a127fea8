// Axis titles rendered for real: a horizontal title under a bottom strip, a title turned
// upward on a left strip and one turned downward on a right strip shown as a button. The
// texts must land in the boxes the axes compute, turned where they should be, and the button
// must fill its box and frame it. The picture is kept as AxisTitlePicture.png beside the test
// program for a look.
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QLQtImage.h>

#include "qv/axes/QVDisplayAxis.h"
#include "qv/display/QVDataDisplay.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

using namespace qv;

namespace {

constexpr TAlphaColor CBackground = 0xFF101820;

class TTitleDisplay : public TQVDataDisplay {
public:
    bool PopulateDrawBuffers() override { return false; }
    TQVDisplayComponent* GetDataView() const override { return DataView; }
    TQLCanvas* GetCanvas() const override { return Canvas; }

    TQVDisplayComponent* DataView = nullptr;
    TQLCanvas* Canvas = nullptr;
};

class TPlotView : public TQVCustomColorDisplayView {
public:
    using TQVCustomColorDisplayView::TQVCustomColorDisplayView;
};

class TTitleAxis : public TQVDisplayAxis {
public:
    TTitleAxis(TQVDataDisplay* ADisplay, bool AYAxis, TQVViewAlign AAlign) : TQVDisplayAxis(ADisplay, AAlign), IsY(AYAxis)
    {
    }
    TQVScaleMode GetIntScaleMode() const override { return smLinear; }
    void SetIntScaleMode(TQVScaleMode) override {}
    bool GetIsVertical() const override { return IsY; }
    bool GetIsYAxis() const override { return IsY; }
    bool GetScaleReversed() const override { return !IsY; }
    TQVAxisDirection GetDefaultHorizDir() const override { return IsY ? adToLeft : adToRight; }
    TQVAxisDirection GetDefaultVertDir() const override { return IsY ? adToUp : adToDown; }
    int32_t GetDimentionLength() const override
    {
        const TRect View = GetDataViewRect();
        return IsY ? QVRectHeight(View) : QVRectWidth(View);
    }
    double GetRangeWidth(bool) const override { return 100.0; }
    double GetDataFullMin() const override { return 0.0; }
    double GetDataFullMax() const override { return 100.0; }
    double GetDataZoomedMin() const override { return 0.0; }
    double GetDataZoomedMax() const override { return 100.0; }
    void ShowButton() { FLabelButtonShown = true; }

    bool IsY;
};

bool IsBright(uint32_t APixel)
{
    return ((APixel >> 16) & 0xFF) > 0x80 && ((APixel >> 8) & 0xFF) > 0x80 && (APixel & 0xFF) > 0x80;
}

template <class F>
int Count(const TQLBitmap& ABitmap, const TRect& AArea, F AMatch)
{
    int Result = 0;
    for (int32_t Y = AArea.Top; Y < AArea.Bottom; ++Y)
        for (int32_t X = AArea.Left; X < AArea.Right; ++X)
            Result += AMatch(ABitmap.GetPixel(X, Y)) ? 1 : 0;
    return Result;
}

// Bright pixels' extent inside an area: width and height of their bounding box.
TSize BrightExtent(const TQLBitmap& ABitmap, const TRect& AArea)
{
    int32_t L = INT32_MAX, T = INT32_MAX, R = INT32_MIN, B = INT32_MIN;
    for (int32_t Y = AArea.Top; Y < AArea.Bottom; ++Y)
        for (int32_t X = AArea.Left; X < AArea.Right; ++X)
            if (IsBright(ABitmap.GetPixel(X, Y))) {
                L = std::min(L, X);
                R = std::max(R, X);
                T = std::min(T, Y);
                B = std::max(B, Y);
            }
    return R < L ? TSize{0, 0} : TSize{R - L + 1, B - T + 1};
}

TRect Grown(const TRect& ARect, int32_t ABy)
{
    return TRect{ARect.Left - ABy, ARect.Top - ABy, ARect.Right + ABy, ARect.Bottom + ABy};
}

} // namespace

TEST(AxisTitlePicture, TitlesLandInTheirBoxesTurnedAndAsAButton)
{
    TTitleDisplay Display;
    TPlotView Plot(&Display);
    TTitleAxis Bottom(&Display, false, vaBottom);
    TTitleAxis Left(&Display, true, vaLeft);
    TTitleAxis Right(&Display, true, vaRight);
    Plot.SetDrawRect(TRect{70, 20, 451, 311});
    Bottom.SetDrawRect(TRect{70, 311, 451, 370});
    Left.SetDrawRect(TRect{0, 20, 70, 311});
    Right.SetDrawRect(TRect{451, 20, 521, 311});
    Bottom.GetAxisLabel()->SetText("Time of arrival");
    Left.GetAxisLabel()->SetText("Amplitude");
    Right.GetAxisLabel()->SetText("Phase");
    Right.ShowButton();

    TQLBitmap Picture(530, 380);
    TQLQtCanvas Canvas(Picture);
    Display.DataView = &Plot;
    Display.Canvas = &Canvas;
    Canvas.GetBrush().SetStyle(bsSolid);
    Canvas.GetBrush().SetColor(CBackground);
    Canvas.FillRect(TRect{0, 0, 530, 380});
    for (TTitleAxis* Axis : {&Bottom, &Left, &Right}) {
        Axis->DrawTicks(Canvas, true, Axis->IsY);
        Axis->DrawAxisLabel(Canvas, false);
    }
    qt::QLSaveBitmapPng(Picture, QCoreApplication::applicationDirPath() + "/AxisTitlePicture.png");

    // The strip's automatic size leaves room for the title below the tick texts.
    const TSize Size = Bottom.GetDefaultSize();
    EXPECT_LE(Size.cy, 370 - 311);

    // The bottom title: a wide line of text inside its box, centred on the plot, and nothing
    // else on its rows.
    const TRect BottomBox = Bottom.GetLabelBox(Canvas, *Bottom.GetAxisLabel()->GetFont(), false).Box;
    EXPECT_NEAR((BottomBox.Left + BottomBox.Right) / 2, 70 + 190, 2);
    EXPECT_GE(BottomBox.Top, 311 + 25); // below the tick texts
    const TSize BottomText = BrightExtent(Picture, Grown(BottomBox, 1));
    EXPECT_GT(BottomText.cx, 3 * BottomText.cy);
    EXPECT_EQ(Count(Picture, TRect{70, BottomBox.Top, BottomBox.Left - 2, BottomBox.Bottom}, IsBright), 0);
    EXPECT_EQ(Count(Picture, TRect{BottomBox.Right + 2, BottomBox.Top, 451, BottomBox.Bottom}, IsBright), 0);

    // The left title reads upward: a tall, narrow text inside a tall box at the strip's edge.
    const TRect LeftBox = Left.GetLabelBox(Canvas, *Left.GetAxisLabel()->GetFont(), true).Box;
    EXPECT_GT(LeftBox.Bottom - LeftBox.Top, LeftBox.Right - LeftBox.Left);
    const TSize LeftText = BrightExtent(Picture, Grown(LeftBox, 1));
    EXPECT_GT(LeftText.cy, 3 * LeftText.cx);
    EXPECT_EQ(Count(Picture, TRect{0, 20, LeftBox.Right + 1, LeftBox.Top - 2}, IsBright), 0);

    // The right title is a button: its fill covers most of the box around the text, its
    // border runs one pixel outside, and the text reads down inside it.
    const TRect RightBox = Right.GetLabelBox(Canvas, *Right.GetAxisLabel()->GetFont(), true).Box;
    const TAlphaColor Fill = Right.GetButton()->GetMouseOverColor();
    const TAlphaColor Border = Right.GetButton()->GetMouseOverBorderColor();
    const int Filled = Count(Picture, RightBox, [Fill](uint32_t P) { return P == Fill; });
    const int Area = (RightBox.Right - RightBox.Left) * (RightBox.Bottom - RightBox.Top);
    EXPECT_GT(Filled, Area / 3);
    EXPECT_LT(Filled, Area); // the text stands on it
    EXPECT_EQ(Picture.GetPixel(RightBox.Left - 1, (RightBox.Top + RightBox.Bottom) / 2), Border);
    EXPECT_EQ(Picture.GetPixel((RightBox.Left + RightBox.Right) / 2, RightBox.Top - 1), Border);
    EXPECT_EQ(Picture.GetPixel(RightBox.Right, (RightBox.Top + RightBox.Bottom) / 2), Border);
    const TSize RightText = BrightExtent(Picture, RightBox);
    EXPECT_GT(RightText.cy, 2 * RightText.cx);
    // Outside the frame the strip keeps its background above and below the button.
    EXPECT_EQ(Picture.GetPixel(RightBox.Left + 2, RightBox.Top - 3), CBackground);
    EXPECT_EQ(Picture.GetPixel(RightBox.Left + 2, RightBox.Bottom + 2), CBackground);
}
