// The legend on a real picture: a swatch in each channel's colour, names in the legend's
// font, the frame of the line under the mouse; and the widget running the legend's scroll
// repeat on a QTimer. The picture is kept as LegendPicture.png when QV_WRITE_PICTURES names
// a folder.
#include <qv/QVScope.h>
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QVScopeWidget.h>

#include "platform/qt/KeepPicture.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace qv;

namespace {

// Yellow pixels, antialiased text in the legend's font colour among them.
int CountYellow(const TQLBitmap& ABitmap, const TRect& ARect)
{
    int Count = 0;
    for (int32_t Y = ARect.Top; Y < ARect.Bottom; ++Y)
        for (int32_t X = ARect.Left; X < ARect.Right; ++X) {
            const TAlphaColor P = ABitmap.GetBits()[size_t(Y) * size_t(ABitmap.GetWidth()) + size_t(X)];
            Count += ((P >> 16) & 0xFF) > 0xA0 && ((P >> 8) & 0xFF) > 0xA0 && (P & 0xFF) < 0x60;
        }
    return Count;
}

int CountColor(const TQLBitmap& ABitmap, const TRect& ARect, TAlphaColor AColor)
{
    int Count = 0;
    for (int32_t Y = ARect.Top; Y < ARect.Bottom; ++Y)
        for (int32_t X = ARect.Left; X < ARect.Right; ++X)
            Count += ABitmap.GetBits()[size_t(Y) * size_t(ABitmap.GetWidth()) + size_t(X)] == AColor;
    return Count;
}

constexpr TAlphaColor Colors[] = {0xFFFF4040, 0xFF40FF40, 0xFF4080FF};
constexpr TAlphaColor FontColor = 0xFFFFFF00;

} // namespace

TEST(LegendPicture, SwatchesNamesAndTheLitLineShowOnTheImage)
{
    TQVScope Scope;
    Scope.SetCanvasFactory(QLQtCanvasFactory());
    Scope.SetBounds(0, 0, 640, 400);
    Scope.GetLegend()->GetFont()->SetColor(FontColor);
    for (int32_t I = 0; I < 3; ++I) {
        TQVScopeChannel* Channel = I == 0 ? Scope.GetChannels()->GetItem(0) : Scope.GetChannels()->Add();
        Channel->SetColor(Colors[I]);
        std::vector<double> Samples(500);
        for (size_t S = 0; S < Samples.size(); ++S)
            Samples[S] = std::sin(double(S) / 40.0 + I) * (I + 1);
        Channel->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
    }
    Scope.GetCursors()->Add()->GetPosition()->SetX(200.0);
    Scope.GetZones()->Add();
    Scope.RefreshView();
    Scope.Paint();
    const TRect Legend = Scope.GetLegend()->GetDrawRect();
    ASSERT_GT(Legend.Width(), 40);
    EXPECT_EQ(Legend.Right, 640);

    // Each channel's swatch, and its colour nowhere else in the legend's text column.
    const TRect Swatches{Legend.Left + 6, Legend.Top, Legend.Left + 20, Legend.Bottom};
    const TRect TextColumn{Legend.Left + 23, Legend.Top, Legend.Right, Legend.Bottom};
    for (TAlphaColor Color : Colors) {
        EXPECT_GT(CountColor(Scope.GetBitmap(), Swatches, Color), 10) << std::hex << Color;
        EXPECT_EQ(CountColor(Scope.GetBitmap(), TextColumn, Color), 0) << std::hex << Color;
    }
    EXPECT_GT(CountYellow(Scope.GetBitmap(), TextColumn), 60);

    // The mouse over the second channel's line frames it in the mouse-over colour.
    const TAlphaColor Fill = Scope.GetLegend()->GetButtons()->GetMouseOverColor();
    EXPECT_EQ(CountColor(Scope.GetBitmap(), Legend, Fill), 0);
    int32_t Row = -1;
    for (int32_t Y = Legend.Top; Y < Legend.Bottom && Row < 0; ++Y)
        if (CountColor(Scope.GetBitmap(), TRect{Swatches.Left, Y, Swatches.Right, Y + 1}, Colors[1]) > 0)
            Row = Y;
    ASSERT_GE(Row, 0);
    Scope.MouseMove({}, float(Legend.Left + 40), float(Row));
    Scope.Paint();
    qvtest::KeepPicture(Scope.GetBitmap(), "LegendPicture.png");
    EXPECT_GT(CountColor(Scope.GetBitmap(), Legend, Fill), Legend.Width() * 4);
}

TEST(LegendPicture, TheWidgetRunsTheScrollRepeatOnAQtTimer)
{
    TQVScopeWidget Widget;
    TQLTimer& Repeat = Widget.GetScope().GetLegend()->GetRepeatTimer();
    auto Running = [&] {
        for (QTimer* T : Widget.findChildren<QTimer*>())
            if (T != &Widget.GetQtTimer() && T->isActive())
                return T->interval();
        return -1;
    };
    EXPECT_EQ(Running(), -1);
    Repeat.SetInterval(400);
    Repeat.SetEnabled(true);
    EXPECT_EQ(Running(), 400);
    Repeat.SetInterval(50);
    EXPECT_EQ(Running(), 50);
    Repeat.SetEnabled(false);
    EXPECT_EQ(Running(), -1);
}
