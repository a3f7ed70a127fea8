// Axis titles rendered for real: under a bottom strip, turned upward on a left strip, and
// turned downward on a right strip shown as a button. Texts must land in the boxes the axes
// compute, turned where they should be; the button fills and frames its box. The picture is
// kept as AxisTitlePicture.png beside the test program for a look.
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

class TTitleDisplay : public TQVDataDisplay {
public:
    bool PopulateDrawBuffers() override { return false; }
    TQVDisplayComponent* GetDataView() const override { return DataView; }
    TQLCanvas* GetCanvas() const override { return Canvas; }
    TQVDisplayComponent* DataView = nullptr;
    TQLCanvas* Canvas = nullptr;
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
    int32_t GetDimentionLength() const override { return IsY ? 290 : 380; }
    double GetRangeWidth(bool) const override { return 100.0; }
    double GetDataFullMax() const override { return 100.0; }
    double GetDataZoomedMin() const override { return 0.0; }
    double GetDataZoomedMax() const override { return 100.0; }
    TRect Box() { return GetLabelBox(*GetDisplay()->GetCanvas(), *GetAxisLabel()->GetFont(), IsY).Box; }
    bool IsY;
};

// The bounding box of the bright (text) pixels inside an area, and how many pixels match.
template <class F>
TRect Scan(const TQLBitmap& ABitmap, const TRect& AArea, F AMatch, int& ACount)
{
    TRect R{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    ACount = 0;
    for (int32_t Y = AArea.Top; Y < AArea.Bottom; ++Y)
        for (int32_t X = AArea.Left; X < AArea.Right; ++X)
            if (AMatch(ABitmap.GetPixel(X, Y))) {
                ++ACount;
                R = TRect{std::min(R.Left, X), std::min(R.Top, Y), std::max(R.Right, X + 1), std::max(R.Bottom, Y + 1)};
            }
    return R;
}

bool IsBright(uint32_t APixel)
{
    return ((APixel >> 16) & 0xFF) > 0x80 && ((APixel >> 8) & 0xFF) > 0x80 && (APixel & 0xFF) > 0x80;
}

TRect Grown(const TRect& A) { return TRect{A.Left - 1, A.Top - 1, A.Right + 1, A.Bottom + 1}; }

} // namespace

TEST(AxisTitlePicture, TitlesLandInTheirBoxesTurnedAndAsAButton)
{
    TTitleDisplay Display;
    TQVCustomColorDisplayView Plot(&Display);
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

    TQLBitmap Picture(530, 380);
    TQLQtCanvas Canvas(Picture);
    Display.DataView = &Plot;
    Display.Canvas = &Canvas;
    const TRect R = Right.Box();
    bool Handled = false;
    Right.MouseMove(0, (R.Left + R.Right) / 2, (R.Top + R.Bottom) / 2, Handled);
    Canvas.GetBrush().SetStyle(bsSolid);
    Canvas.GetBrush().SetColor(0xFF101820);
    Canvas.FillRect(TRect{0, 0, 530, 380});
    for (TTitleAxis* Axis : {&Bottom, &Left, &Right}) {
        Axis->DrawTicks(Canvas, true, Axis->IsY);
        Axis->DrawAxisLabel(Canvas, false);
    }
    qt::QLSaveBitmapPng(Picture, QCoreApplication::applicationDirPath() + "/AxisTitlePicture.png");
    int Count = 0;

    // Bottom: a wide line of text in its box, centred on the plot below the tick texts, with
    // nothing else on its rows; the strip's automatic size has room for it.
    EXPECT_LE(Bottom.GetDefaultSize().cy, 370 - 311);
    const TRect B = Bottom.Box();
    EXPECT_NEAR((B.Left + B.Right) / 2, 70 + 190, 2);
    EXPECT_GE(B.Top, 311 + 25);
    const TRect BText = Scan(Picture, Grown(B), IsBright, Count);
    EXPECT_GT(BText.Right - BText.Left, 3 * (BText.Bottom - BText.Top));
    Scan(Picture, TRect{70, B.Top, B.Left - 2, B.Bottom}, IsBright, Count);
    EXPECT_EQ(Count, 0);

    // Left: a tall, narrow text in a tall box, nothing above it on the strip's outer side.
    const TRect L = Left.Box();
    const TRect LText = Scan(Picture, Grown(L), IsBright, Count);
    EXPECT_GT(LText.Bottom - LText.Top, 3 * (LText.Right - LText.Left));
    Scan(Picture, TRect{0, 20, L.Right + 1, L.Top - 2}, IsBright, Count);
    EXPECT_EQ(Count, 0);

    // Right, under the mouse: the fill covers most of the box round the turned text, and the
    // border runs one pixel outside it.
    ASSERT_TRUE(Right.GetLabelButtonShown());
    const TAlphaColor Fill = Right.GetButton()->GetMouseOverColor();
    Scan(Picture, R, [Fill](uint32_t P) { return P == Fill; }, Count);
    const int Area = (R.Right - R.Left) * (R.Bottom - R.Top);
    EXPECT_GT(Count, Area / 3);
    EXPECT_LT(Count, Area);
    EXPECT_EQ(Picture.GetPixel(R.Left - 1, (R.Top + R.Bottom) / 2), Right.GetButton()->GetMouseOverBorderColor());
    const TRect RText = Scan(Picture, R, IsBright, Count);
    EXPECT_GT(RText.Bottom - RText.Top, 2 * (RText.Right - RText.Left));
}
