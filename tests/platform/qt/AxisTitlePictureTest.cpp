// Axis titles rendered for real: under a bottom strip, and turned on a left strip shown as a
// button under the mouse. Texts must land in the boxes the axes compute, turned where they
// should be; the button fills and frames its box. The picture is kept as
// AxisTitlePicture.png beside the test program for a look.
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

} // namespace

TEST(AxisTitlePicture, TitlesLandInTheirBoxesTurnedAndAsAButton)
{
    TTitleDisplay Display;
    TQVCustomColorDisplayView Plot(&Display);
    TTitleAxis Bottom(&Display, false, vaBottom);
    TTitleAxis Left(&Display, true, vaLeft);
    Plot.SetDrawRect(TRect{70, 20, 451, 311});
    Bottom.SetDrawRect(TRect{70, 311, 451, 370});
    Left.SetDrawRect(TRect{0, 20, 70, 311});
    Bottom.GetAxisLabel()->SetText("Time of arrival");
    Left.GetAxisLabel()->SetText("Amplitude");

    TQLBitmap Picture(530, 380);
    TQLQtCanvas Canvas(Picture);
    Display.DataView = &Plot;
    Display.Canvas = &Canvas;
    const TRect L = Left.Box();
    bool Handled = false;
    Left.MouseMove(0, (L.Left + L.Right) / 2, (L.Top + L.Bottom) / 2, Handled);
    Canvas.GetBrush().SetStyle(bsSolid);
    Canvas.GetBrush().SetColor(0xFF101820);
    Canvas.FillRect(TRect{0, 0, 530, 380});
    for (TTitleAxis* Axis : {&Bottom, &Left}) {
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
    const TRect BText = Scan(Picture, B, IsBright, Count);
    EXPECT_GT(BText.Right - BText.Left, 3 * (BText.Bottom - BText.Top));
    Scan(Picture, TRect{70, B.Top, B.Left - 2, B.Bottom}, IsBright, Count);
    EXPECT_EQ(Count, 0);

    // Left, under the mouse: a tall, narrow text on a fill that covers most of its tall box,
    // and the border one pixel outside it.
    ASSERT_TRUE(Left.GetLabelButtonShown());
    EXPECT_GT(L.Bottom - L.Top, L.Right - L.Left);
    const TRect LText = Scan(Picture, L, IsBright, Count);
    EXPECT_GT(LText.Bottom - LText.Top, 3 * (LText.Right - LText.Left));
    const TAlphaColor Fill = Left.GetButton()->GetMouseOverColor();
    Scan(Picture, L, [Fill](uint32_t P) { return P == Fill; }, Count);
    const int Area = (L.Right - L.Left) * (L.Bottom - L.Top);
    EXPECT_TRUE(Count > Area / 3 && Count < Area);
    EXPECT_EQ(Picture.GetPixel(L.Left - 1, (L.Top + L.Bottom) / 2), Left.GetButton()->GetMouseOverBorderColor());
}
