// Pictures at device pixel ratios 1, 1.5 and 2: the bitmap holds device pixels, the layout,
// the line widths and the text sizes stay logical, and the mouse stays in logical pixels.
// The HiDpiWidget cases also run under QT_SCALE_FACTOR 1.5 and 2 (see tests/CMakeLists.txt),
// where the widget meets a real screen of that ratio.
#include <qv/QVScope.h>
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QLQtImage.h>
#include <qv/qt/QLQtPictureOutput.h>
#include <qv/qt/QVScopeWidget.h>

#include "platform/qt/KeepPicture.h"
#include "qv/channels/QVScopeDataView.h"

#include <QApplication>
#include <QMouseEvent>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

using namespace qv;

namespace {

constexpr double Ratios[] = {1.0, 1.5, 2.0};

// Device rows (or columns) in [AFrom, ATo) whose pixel on the crossing line has AColor.
int CountRows(const TQLBitmap& ABitmap, int32_t AColumn, int32_t AFrom, int32_t ATo, TAlphaColor AColor)
{
    int Count = 0;
    for (int32_t Y = std::max(AFrom, 0); Y < std::min(ATo, ABitmap.GetHeight()); ++Y)
        Count += ABitmap.GetPixel(AColumn, Y) == AColor;
    return Count;
}

int CountColumns(const TQLBitmap& ABitmap, int32_t ARow, int32_t AFrom, int32_t ATo, TAlphaColor AColor)
{
    int Count = 0;
    for (int32_t X = std::max(AFrom, 0); X < std::min(ATo, ABitmap.GetWidth()); ++X)
        Count += ABitmap.GetPixel(X, ARow) == AColor;
    return Count;
}

// Rows of the box that hold any pixel other than the background.
int InkHeight(const TQLBitmap& ABitmap, uint32_t ABackground)
{
    int32_t Top = INT32_MAX, Bottom = -1;
    for (int32_t Y = 0; Y < ABitmap.GetHeight(); ++Y)
        for (int32_t X = 0; X < ABitmap.GetWidth(); ++X)
            if (ABitmap.GetPixel(X, Y) != ABackground) {
                Top = std::min(Top, Y);
                Bottom = std::max(Bottom, Y);
            }
    return Bottom < Top ? 0 : Bottom - Top + 1;
}

// The same scope every time: a title and one sine channel.
void SetUpScope(TQVScope& AScope)
{
    AScope.GetTitle()->SetText("Ratio");
    std::vector<double> Samples(2000);
    for (size_t I = 0; I < Samples.size(); ++I)
        Samples[I] = std::sin(2 * std::numbers::pi * double(I) / 500.0);
    AScope.GetChannels()->GetItem(0)->GetData()->SetYData(Samples.data(), uint32_t(Samples.size()));
    AScope.RefreshView();
}

} // namespace

TEST(HiDpi, ALogicalPixelIsRatioDevicePixelsAndTextKeepsItsLogicalSize)
{
    constexpr TAlphaColor Red = 0xFFFF0000;
    int TextHeightAtOne = 0;
    for (const double R : Ratios) {
        SCOPED_TRACE("ratio " + std::to_string(R));
        TQLBitmap Bitmap(60, 40, R);
        ASSERT_EQ(Bitmap.GetLogicalWidth(), 60);
        ASSERT_EQ(Bitmap.GetWidth(), int32_t(std::ceil(60 * R)));
        TQLQtCanvas Canvas(Bitmap);
        Canvas.GetPen().SetColor(Red);
        Canvas.MoveTo(5, 10); // one horizontal line
        Canvas.LineTo(55, 10);
        Canvas.MoveTo(5, 20); // a band of two
        Canvas.LineTo(55, 20);
        Canvas.MoveTo(5, 21);
        Canvas.LineTo(55, 21);
        Canvas.MoveTo(45, 25); // one vertical line
        Canvas.LineTo(45, 38);
        const int32_t Column = int32_t(30 * R);
        const int One = CountRows(Bitmap, Column, int32_t(9 * R), int32_t(12 * R), Red);
        EXPECT_GE(One, int(std::floor(R)));
        EXPECT_LE(One, int(std::ceil(R)));
        EXPECT_EQ(CountRows(Bitmap, Column, int32_t(19 * R), int32_t(23 * R), Red), int(std::lround(2 * R)));
        const int Vertical = CountColumns(Bitmap, int32_t(30 * R), int32_t(44 * R), int32_t(47 * R), Red);
        EXPECT_GE(Vertical, int(std::floor(R)));
        EXPECT_LE(Vertical, int(std::ceil(R)));

        // Text drawn at the same logical size covers `ratio` times the device rows.
        TQLBitmap TextBox(60, 30, R);
        TextBox.Fill(0xFFFFFFFF);
        TQLQtCanvas TextCanvas(TextBox);
        TextCanvas.GetBrush().SetStyle(bsClear);
        TextCanvas.SetFont(TQLCanvasFont{"Liberation Sans", 12, 0, 0xFF000000});
        TextCanvas.TextOut(4, 2, "Xg");
        const int Ink = InkHeight(TextBox, 0xFFFFFFFF);
        if (R == 1.0)
            TextHeightAtOne = Ink;
        ASSERT_GT(TextHeightAtOne, 8);
        EXPECT_NEAR(Ink, TextHeightAtOne * R, 2.0);
    }

    // A canvas follows its bitmap to a new ratio, also when the pixels stay as many.
    TQLBitmap Bitmap(40, 40);
    TQLQtCanvas Canvas(Bitmap);
    Bitmap.SetSize(20, 20, 2.0);
    Canvas.GetBrush().SetColor(Red);
    Canvas.FillRect(TRect{0, 0, 5, 5});
    EXPECT_EQ(Bitmap.GetPixel(9, 9), Red);
    EXPECT_NE(Bitmap.GetPixel(10, 10), Red);
}

// The whole scope at ratio 2 is the ratio-1 picture with every pixel doubled, except where
// text is rendered at the finer resolution; at every ratio the layout is the same.
TEST(HiDpi, AScopePaintedAtARatioKeepsItsLogicalLayout)
{
    TQVScope Reference;
    QLInstallQtPictureServices(Reference);
    Reference.SetBounds(0, 0, 320, 200);
    SetUpScope(Reference);
    // Pixels doubled are compared below; the legend's text would only add finer glyphs.
    Reference.GetLegend()->SetVisible(false);
    TQLBitmap AtOne(320, 200);
    Reference.CopyToBitmap(AtOne);
    const TRect ViewAtOne = Reference.GetScopeDataView()->GetDrawRect();
    for (const double R : Ratios) {
        SCOPED_TRACE("ratio " + std::to_string(R));
        TQLBitmap Picture(320, 200, R);
        Reference.CopyToBitmap(Picture);
        const TRect View = Reference.GetScopeDataView()->GetDrawRect();
        EXPECT_EQ(View.Left, ViewAtOne.Left);
        EXPECT_EQ(View.Right, ViewAtOne.Right);
        EXPECT_EQ(View.Top, ViewAtOne.Top);
        EXPECT_EQ(View.Bottom, ViewAtOne.Bottom);
        if (R != 2.0)
            continue;
        qvtest::KeepPicture(Picture, "HiDpiScopeAt2.png");
        int Same = 0;
        for (int32_t Y = 0; Y < 200; ++Y)
            for (int32_t X = 0; X < 320; ++X)
                Same += Picture.GetPixel(2 * X, 2 * Y) == AtOne.GetPixel(X, Y) &&
                        Picture.GetPixel(2 * X + 1, 2 * Y + 1) == AtOne.GetPixel(X, Y);
        EXPECT_GT(Same, 320 * 200 * 97 / 100);
    }
}

// Runs at the screen's ratio: 1 in the ordinary run, 1.5 and 2 under QT_SCALE_FACTOR.
TEST(HiDpiWidget, TheWidgetShowsDevicePixelsAndTheMouseLandsInLogicalPixels)
{
    TQVScopeWidget Widget;
    Widget.resize(300, 200);
    TQVScope& Scope = Widget.GetScope();
    SetUpScope(Scope);
    const QImage Shot = Widget.grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const double R = Widget.devicePixelRatioF();
    if (const QByteArray Factor = qgetenv("QT_SCALE_FACTOR"); !Factor.isEmpty()) {
        ASSERT_DOUBLE_EQ(R, Factor.toDouble()); // the screen really has the ratio asked for
    }
    EXPECT_EQ(Scope.GetBitmap().GetDevicePixelRatio(), R);
    EXPECT_EQ(Scope.GetBitmap().GetLogicalWidth(), 300);
    ASSERT_EQ(Shot.width(), int(std::ceil(300 * R)));

    // What the widget shows is the display painted headless at the same ratio.
    TQVScope Headless;
    QLInstallQtPictureServices(Headless);
    Headless.SetBounds(0, 0, 300, 200);
    SetUpScope(Headless);
    TQLBitmap Expected(300, 200, R);
    Headless.CopyToBitmap(Expected);
    const TQLBitmap Shown = qt::QLImageToBitmap(Shot);
    int Different = 0;
    for (int32_t Y = 0; Y < Expected.GetHeight(); ++Y)
        for (int32_t X = 0; X < Expected.GetWidth(); ++X)
            Different += Shown.GetPixel(X, Y) != Expected.GetPixel(X, Y);
    EXPECT_EQ(Different, 0);

    // A zoom box dragged on the widget selects what the same logical drag selects headless.
    const auto Drag = [](auto&& APress, auto&& AMove, auto&& ARelease) {
        APress(100, 60);
        AMove(150, 100);
        AMove(200, 140);
        ARelease(200, 140);
    };
    const auto Send = [&Widget](QEvent::Type AType, int AX, int AY, Qt::MouseButtons AButtons) {
        QMouseEvent Event(AType, QPointF(AX, AY), Widget.mapToGlobal(QPointF(AX, AY)), Qt::LeftButton, AButtons,
                          Qt::NoModifier);
        QApplication::sendEvent(&Widget, &Event);
    };
    Drag([&](int X, int Y) { Send(QEvent::MouseButtonPress, X, Y, Qt::LeftButton); },
         [&](int X, int Y) { Send(QEvent::MouseMove, X, Y, Qt::LeftButton); },
         [&](int X, int Y) { Send(QEvent::MouseButtonRelease, X, Y, Qt::NoButton); });
    Drag([&](int X, int Y) { Headless.MouseDown(mbLeft, ssLeft, float(X), float(Y)); },
         [&](int X, int Y) { Headless.MouseMove(ssLeft, float(X), float(Y)); },
         [&](int X, int Y) { Headless.MouseUp(mbLeft, 0, float(X), float(Y)); });
    ASSERT_TRUE(Headless.IsZoomed());
    EXPECT_TRUE(Scope.IsZoomed());
    EXPECT_DOUBLE_EQ(Scope.GetXMinZoom(), Headless.GetXMinZoom());
    EXPECT_DOUBLE_EQ(Scope.GetXMaxZoom(), Headless.GetXMaxZoom());
    EXPECT_DOUBLE_EQ(Scope.GetYMinZoom(), Headless.GetYMinZoom());
    EXPECT_DOUBLE_EQ(Scope.GetYMaxZoom(), Headless.GetYMaxZoom());
}

TEST(HiDpi, RatiosOutsideTheRangeAreRefusedAndChangeNothing)
{
    TQVScope Scope;
    Scope.SetDevicePixelRatio(1.5);
    TQLBitmap Bitmap(10, 10, 2.0);
    for (const double Bad : {0.0, -1.0, 17.0, std::nan(""), double(INFINITY)}) {
        SCOPED_TRACE(Bad);
        EXPECT_THROW(Scope.SetDevicePixelRatio(Bad), std::invalid_argument);
        EXPECT_THROW(Bitmap.SetSize(20, 20, Bad), std::invalid_argument);
        EXPECT_EQ(Scope.GetDevicePixelRatio(), 1.5);
        EXPECT_EQ(Bitmap.GetDevicePixelRatio(), 2.0);
        EXPECT_EQ(Bitmap.GetLogicalWidth(), 10);
        EXPECT_EQ(Bitmap.GetWidth(), 20);
    }
    try {
        Scope.SetDevicePixelRatio(-2.5);
    } catch (const std::invalid_argument& E) {
        EXPECT_NE(std::string(E.what()).find("-2.5"), std::string::npos) << E.what();
    }
}
