// A whole scope rendered by QPainter: two channels on two Y axes (the second on the right),
// a time X axis, title and grid. The picture is kept as ScopePicture.png for a person to read
// when QV_WRITE_PICTURES names a folder; the test checks that each part landed where the
// layout put it.
#include <qv/QVScope.h>
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QLQtImage.h>
#include <qv/qt/QVDisplayWidget.h>

#include "platform/qt/KeepPicture.h"
#include "qv/channels/QVScopeDataView.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <numbers>
#include <vector>

using namespace qv;

namespace {

// Whether any pixel of ARect has the colour AColor.
bool HasColor(const TQLBitmap& ABitmap, const TRect& ARect, TAlphaColor AColor)
{
    for (int32_t Y = std::max(ARect.Top, 0); Y < std::min(ARect.Bottom, ABitmap.GetHeight()); ++Y)
        for (int32_t X = std::max(ARect.Left, 0); X < std::min(ARect.Right, ABitmap.GetWidth()); ++X)
            if (ABitmap.GetBits()[size_t(Y) * size_t(ABitmap.GetWidth()) + size_t(X)] == AColor)
                return true;
    return false;
}

// Pixels of ARect that differ from AColor, and the box around them.
int CountOther(const TQLBitmap& ABitmap, const TRect& ARect, TAlphaColor AColor, TRect* ABounds = nullptr)
{
    int Count = 0;
    TRect R{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    for (int32_t Y = ARect.Top; Y < ARect.Bottom; ++Y)
        for (int32_t X = ARect.Left; X < ARect.Right; ++X)
            if (ABitmap.GetBits()[size_t(Y) * size_t(ABitmap.GetWidth()) + size_t(X)] != AColor) {
                ++Count;
                R = TRect{std::min(R.Left, X), std::min(R.Top, Y), std::max(R.Right, X + 1), std::max(R.Bottom, Y + 1)};
            }
    if (ABounds)
        *ABounds = R;
    return Count;
}

} // namespace

TEST(ScopePicture, TwoYAxesAndATimeAxisLandWhereTheLayoutPutsThem)
{
    TQVScope Scope;
    Scope.SetCanvasFactory(QLQtCanvasFactory());
    Scope.SetBounds(0, 0, 800, 480);
    Scope.GetTitle()->SetText("Pressure and flow");
    Scope.GetXAxis()->SetTicksMode(atmTime);
    Scope.GetYAxis()->GetAxisLabel()->SetText("Pressure (kPa)");
    auto* Right = Scope.GetYAxis()->GetAdditionalAxes()->Add()->GetAxis();
    Right->SetAlign(vaRight);
    Right->GetAxisLabel()->SetText("Flow (l/min)");

    auto& Channels = *Scope.GetChannels();
    Channels.Add()->SetYAxisIndex(1);
    const double Rate = 20'000.0;
    std::vector<double> Pressure(40'000), Flow(40'000);
    for (size_t i = 0; i < Pressure.size(); ++i) {
        const double T = double(i) / Rate;
        Pressure[i] = 101.3 + 2.5 * std::sin(2 * std::numbers::pi * 3 * T);
        Flow[i] = 40.0 * std::cos(2 * std::numbers::pi * 1.5 * T);
    }
    for (int32_t c = 0; c < 2; ++c)
        Channels.GetItem(c)->GetData()->SetSampleRate(Rate);
    Channels.GetItem(0)->GetData()->SetYData(Pressure.data(), uint32_t(Pressure.size()));
    Channels.GetItem(1)->GetData()->SetYData(Flow.data(), uint32_t(Flow.size()));
    Scope.RefreshView();
    Scope.Paint();
    const TQLBitmap& Picture = Scope.GetBitmap();
    qvtest::KeepPicture(Picture, "ScopePicture.png");

    const TRect View = Scope.GetScopeDataView()->GetDrawRect();
    // The title's text, measured by Qt, lies in its strip 4 below the top, centred on the
    // control.
    const TRect Strip = Scope.GetTitle()->GetDrawRect();
    TRect Text;
    EXPECT_GT(CountOther(Picture, Strip, Scope.GetColor(), &Text), 50);
    EXPECT_NEAR((Text.Left + Text.Right) / 2, 400, 3);
    EXPECT_GE(Text.Top, Strip.Top + 3);
    EXPECT_LE(Text.Bottom, View.Top);
    // Both axes leave room for their strips: the main one on the left, the other on the right.
    EXPECT_GT(View.Left, 30);
    EXPECT_LT(View.Right, 800 - 30);
    EXPECT_GT(CountOther(Picture, TRect{0, View.Top, View.Left, View.Bottom}, Scope.GetColor()), 100);
    EXPECT_GT(CountOther(Picture, TRect{View.Right, View.Top, 800, View.Bottom}, Scope.GetColor()), 100);
    // The time axis's ticks and title lie under the view.
    EXPECT_GT(CountOther(Picture, TRect{View.Left, View.Bottom, View.Right, 480}, Scope.GetColor()), 100);
    // Both channels are drawn inside the view, each filling its own axis' range.
    const TAlphaColor First = Channels.GetItem(0)->GetColor(), Second = Channels.GetItem(1)->GetColor();
    EXPECT_TRUE(HasColor(Picture, View, First));
    EXPECT_TRUE(HasColor(Picture, View, Second));
    const int32_t Quarter = (View.Bottom - View.Top) / 4;
    for (TAlphaColor C : {First, Second}) {
        EXPECT_TRUE(HasColor(Picture, TRect{View.Left, View.Top, View.Right, View.Top + Quarter}, C));
        EXPECT_TRUE(HasColor(Picture, TRect{View.Left, View.Bottom - Quarter, View.Right, View.Bottom}, C));
    }
    // Two seconds of data at 20 kS/s read in seconds or milliseconds.
    const std::string Title = Scope.GetXAxis()->GetAxisLabelText();
    EXPECT_TRUE(Title == "Sec" || Title == "mSec") << Title;
}
