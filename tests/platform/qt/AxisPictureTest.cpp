// Axis strips rendered for real: a linear X axis along the bottom and a logarithmic Y axis on
// the left, with their titles, drawn by QPainter on a dark background. Tick lines must land on
// the pixels the axes compute for their values, with texts beside them; titles land in the
// boxes the axes compute, the left one turned and shown as a button under the mouse. The
// picture is kept as AxisPicture.png for a look when QV_WRITE_PICTURES names a folder.
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QLQtImage.h>

#include "platform/qt/KeepPicture.h"
#include "qv/axes/QVDisplayAxis.h"
#include "qv/display/QVDataDisplay.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

using namespace qv;

namespace {

constexpr TAlphaColor CBackground = 0xFF101820;

class TPictureDisplay : public TQVDataDisplay {
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

// A plain X or Y axis with fixed limits and a scale mode.
class TPictureAxis : public TQVDisplayAxis {
public:
    TPictureAxis(TQVDataDisplay* ADisplay, bool AYAxis, TQVViewAlign AAlign, TQVScaleMode AMode, double AMax)
        : TQVDisplayAxis(ADisplay, AAlign), IsY(AYAxis), Mode(AMode), Max(AMax)
    {}
    TQVScaleMode GetIntScaleMode() const override { return Mode; }
    void SetIntScaleMode(TQVScaleMode AValue) override { Mode = AValue; }
    bool GetIsVertical() const override { return IsY; }
    bool GetIsYAxis() const override { return IsY; }
    bool GetIsOposite() const override { return false; }
    bool GetScaleReversed() const override { return !IsY; }
    TQVAxisDirection GetDefaultHorizDir() const override { return IsY ? adToLeft : adToRight; }
    TQVAxisDirection GetDefaultVertDir() const override { return IsY ? adToUp : adToDown; }
    int32_t GetDimentionLength() const override
    {
        const TRect View = GetDataViewRect();
        return IsY ? QVRectHeight(View) : QVRectWidth(View);
    }
    double GetRangeWidth(bool ALogarithmic) const override
    {
        const double Lo = FScaleTick.GetZoomed().GetMin().GetValue();
        const double Hi = FScaleTick.GetZoomed().GetMax().GetValue();
        return ALogarithmic ? QVLog10a(Hi) - QVLog10a(Lo) : Hi - Lo;
    }
    double GetDataFullMin() const override { return 0.0; }
    double GetDataFullMax() const override { return Max; }
    double GetDataZoomedMin() const override { return FDataTotal.GetFull().GetMin().GetValue(); }
    double GetDataZoomedMax() const override { return FDataTotal.GetFull().GetMax().GetValue(); }
    TRect TitleBox() { return GetLabelBox(*GetDisplay()->GetCanvas(), *GetAxisLabel()->GetFont(), IsY).Box; }

    bool IsY;
    TQVScaleMode Mode;
    double Max;
};

bool IsBright(uint32_t APixel)
{
    return ((APixel >> 16) & 0xFF) > 0x80 && ((APixel >> 8) & 0xFF) > 0x80 && (APixel & 0xFF) > 0x80;
}

// The bounding box of the pixels of AArea that AMatch accepts, and how many there are.
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

int CountBright(const TQLBitmap& ABitmap, const TRect& AArea)
{
    int Count = 0;
    Scan(ABitmap, AArea, IsBright, Count);
    return Count;
}

} // namespace

TEST(AxisPicture, TicksAndTitlesLandWhereTheAxesPutThem)
{
    TPictureDisplay Display;
    TPlotView Plot(&Display);
    TPictureAxis XAxis(&Display, false, vaBottom, smLinear, 100.0);
    TPictureAxis YAxis(&Display, true, vaLeft, smLogarithmic, 1000.0);
    Plot.SetDrawRect(TRect{60, 20, 461, 321});
    XAxis.SetDrawRect(TRect{60, 321, 461, 380});
    YAxis.SetDrawRect(TRect{0, 20, 60, 321});
    XAxis.GetMinorTicks()->SetCount(4);
    XAxis.GetAxisLabel()->SetText("Time of arrival");
    YAxis.GetAxisLabel()->SetText("Amplitude");

    TQLBitmap Picture(500, 400);
    TQLQtCanvas Canvas(Picture);
    Display.DataView = &Plot;
    Display.Canvas = &Canvas;
    const TRect L = YAxis.TitleBox();
    bool Handled = false;
    YAxis.MouseMove(0, (L.Left + L.Right) / 2, (L.Top + L.Bottom) / 2, Handled);
    Canvas.GetBrush().SetStyle(bsSolid);
    Canvas.GetBrush().SetColor(CBackground);
    Canvas.FillRect(TRect{0, 0, 500, 400});
    for (TPictureAxis* Axis : {&XAxis, &YAxis}) {
        Axis->DrawTicks(Canvas, true, Axis->IsY);
        Axis->DrawAxisLabel(Canvas, false);
    }
    qvtest::KeepPicture(Picture, "AxisPicture.png");

    // X: the base line 5 below the strip's top, major ticks 7 long every 10 units, four
    // minor ticks 5 long between them, nothing further down where only majors reach.
    EXPECT_TRUE(IsBright(Picture.GetPixel(200, 326)));
    for (int V = 0; V <= 100; V += 10)
        EXPECT_TRUE(IsBright(Picture.GetPixel(XAxis.ScaleToPixel(V), 332))) << "major tick at " << V;
    EXPECT_TRUE(IsBright(Picture.GetPixel(XAxis.ScaleToPixel(2.0), 330)));
    EXPECT_FALSE(IsBright(Picture.GetPixel(XAxis.ScaleToPixel(2.0), 332)));
    EXPECT_FALSE(IsBright(Picture.GetPixel(XAxis.ScaleToPixel(5.0), 330)));
    // Texts below the ticks: "0" near the left end, "100" centred on the right end.
    EXPECT_GT(CountBright(Picture, TRect{50, 335, 70, 361}), 0);
    EXPECT_GT(CountBright(Picture, TRect{440, 335, 480, 361}), 0);
    EXPECT_EQ(CountBright(Picture, TRect{70, 335, 90, 361}), 0); // between two texts

    // Y: the base line 5 inside the strip's right edge, ticks 6 long, texts to their left.
    EXPECT_TRUE(IsBright(Picture.GetPixel(55, 100)));
    for (double V : {0.0, 2.0, 10.0, 30.0, 50.0})
        EXPECT_TRUE(IsBright(Picture.GetPixel(50, YAxis.ScaleToPixel(V)))) << "tick at " << V;
    EXPECT_FALSE(IsBright(Picture.GetPixel(50, YAxis.ScaleToPixel(1.0)))); // inside the first step
    EXPECT_FALSE(IsBright(Picture.GetPixel(50, 300)));
    const int32_t Ten = YAxis.ScaleToPixel(10.0);
    EXPECT_GT(CountBright(Picture, TRect{20, Ten - 8, 47, Ten + 8}), 0);
    EXPECT_EQ(CountBright(Picture, TRect{61, 21, 460, 320}), 0) << "nothing is drawn over the plot";

    // Bottom title: a wide line of text in its box, centred on the plot below the tick texts,
    // with nothing else on its rows; the strip's automatic size has room for it.
    int Count = 0;
    EXPECT_LE(XAxis.GetDefaultSize().cy, 380 - 321);
    const TRect B = XAxis.TitleBox();
    EXPECT_NEAR((B.Left + B.Right) / 2, 60 + 200, 2);
    EXPECT_GE(B.Top, 321 + 25);
    const TRect BText = Scan(Picture, B, IsBright, Count);
    EXPECT_GT(BText.Right - BText.Left, 3 * (BText.Bottom - BText.Top));
    Scan(Picture, TRect{60, B.Top, B.Left - 2, B.Bottom}, IsBright, Count);
    EXPECT_EQ(Count, 0);

    // Left title, under the mouse: a tall, narrow text on a fill that covers most of its tall
    // box, and the border one pixel outside it.
    ASSERT_TRUE(YAxis.GetLabelButtonShown());
    EXPECT_GT(L.Bottom - L.Top, L.Right - L.Left);
    const TRect LText = Scan(Picture, L, IsBright, Count);
    EXPECT_GT(LText.Bottom - LText.Top, 3 * (LText.Right - LText.Left));
    const TAlphaColor Fill = YAxis.GetButton()->GetMouseOverColor();
    Scan(
        Picture, L, [Fill](uint32_t P) { return P == Fill; }, Count);
    const int Area = (L.Right - L.Left) * (L.Bottom - L.Top);
    EXPECT_TRUE(Count > Area / 3 && Count < Area);
    EXPECT_EQ(Picture.GetPixel(L.Left - 1, (L.Top + L.Bottom) / 2), YAxis.GetButton()->GetMouseOverBorderColor());
}
