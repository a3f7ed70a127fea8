// The tool bar on a real picture, at device pixel ratio 1 and 2, and clicked through the
// widget with synthetic mouse events. The pictures are kept as ToolBar1x.png and
// ToolBar2x.png when QV_WRITE_PICTURES names a folder.
#include <qv/QVScope.h>
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QVDisplayWidget.h>

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace qv;

namespace {

// The bar drawn by QPainter onto an image of APlot logical pixels at ARatio.
QImage DrawBar(TQVScope& AScope, qreal ARatio, int32_t APlot)
{
    QImage Image(int(APlot * ARatio), int(APlot * ARatio), QImage::Format_ARGB32_Premultiplied);
    Image.setDevicePixelRatio(ARatio);
    Image.fill(QColor(0, 0, 0));
    QPainter Painter(&Image);
    TQLQtCanvas Canvas(Painter);
    AScope.GetToolBar()->Draw(Canvas);
    return Image;
}

int CountColor(const QImage& AImage, const QRect& ADeviceRect, QRgb AColor)
{
    int Count = 0;
    for (int Y = ADeviceRect.top(); Y <= ADeviceRect.bottom(); ++Y)
        for (int X = ADeviceRect.left(); X <= ADeviceRect.right(); ++X)
            Count += AImage.pixel(X, Y) == AColor;
    return Count;
}

} // namespace

// Every visible button shows its face and a glyph in the glyph colour; at ratio 2 the
// glyphs are drawn at device resolution, not enlarged: a 1-pixel line stays 1 logical pixel
// and the shape covers about four times the device pixels.
TEST(ToolBarPicture, GlyphsAtRatioOneAndTwo)
{
    TQVScope Scope;
    Scope.SetBounds(0, 0, 200, 120);
    Scope.RecalculateViewRects();
    TQVDisplayToolBar& Bar = *Scope.GetToolBar();
    Bar.UpdateButtons();
    const QRgb Glyph = Bar.GetGlyphColor();
    int Totals[2] = {0, 0};
    for (int I = 0; I < 2; ++I) {
        const qreal Ratio = I + 1;
        const QImage Image = DrawBar(Scope, Ratio, 200);
        if (const char* Folder = std::getenv("QV_WRITE_PICTURES"); Folder && *Folder) {
            QDir().mkpath(Folder);
            Image.save(QDir(Folder).filePath(I == 0 ? "ToolBar1x.png" : "ToolBar2x.png"));
        }
        for (int32_t B = 0; B < Bar.GetButtonCount(); ++B) {
            const TQVDisplayIntToolBarButton* Button = Bar.GetButton(B);
            const TRect R = Bar.GetButtonRect(Button);
            if (R.IsEmpty())
                continue;
            const QRect Device(int(R.Left * Ratio), int(R.Top * Ratio), int(16 * Ratio), int(16 * Ratio));
            const int Glyphs = CountColor(Image, Device, Button->GetEnabled() ? Glyph : Bar.GetDisabledColor());
            EXPECT_GT(Glyphs, 4) << "button " << B << " at ratio " << Ratio;
            EXPECT_GT(CountColor(Image, Device, Bar.GetButtonColor()), 0) << "button " << B;
            Totals[I] += Glyphs;
        }
    }
    EXPECT_GT(Totals[1], 2 * Totals[0]);
    EXPECT_LT(Totals[1], 5 * Totals[0]);
}

// Through the widget: hovering shows the bar, a click on hold freezes the display, a click
// in the same place runs it again, zoom in zooms and previous zoom undoes it.
TEST(ToolBarPicture, ClicksThroughTheWidget)
{
    auto Owned = std::make_unique<TQVScope>();
    TQVScope& Scope = *Owned;
    TQVDisplayWidget Widget(std::move(Owned), nullptr);
    Widget.resize(400, 300);
    Widget.show();
    Scope.Paint();
    TQVDisplayToolBar& Bar = *Scope.GetToolBar();
    auto Centre = [&](TQVDisplayIntToolBarButton* AButton) {
        Bar.UpdateButtons();
        const TRect R = Bar.GetButtonRect(AButton);
        return QPoint(R.Left + 8, R.Top + 8);
    };
    const QPoint Hold = Centre(Bar.GetHoldButton());
    QTest::mouseMove(&Widget, Hold);
    EXPECT_TRUE(Bar.GetShown());
    QTest::mouseClick(&Widget, Qt::LeftButton, Qt::NoModifier, Hold);
    EXPECT_TRUE(Scope.GetHold());
    EXPECT_EQ(Centre(Bar.GetRunButton()), Hold);
    QTest::mouseClick(&Widget, Qt::LeftButton, Qt::NoModifier, Hold);
    EXPECT_FALSE(Scope.GetHold());

    QTest::mouseClick(&Widget, Qt::LeftButton, Qt::NoModifier, Centre(Bar.GetZoomInButton()));
    EXPECT_TRUE(Scope.IsZoomed());
    QTest::mouseClick(&Widget, Qt::LeftButton, Qt::NoModifier, Centre(Bar.GetZoomPrevButton()));
    EXPECT_FALSE(Scope.IsZoomed());
}
