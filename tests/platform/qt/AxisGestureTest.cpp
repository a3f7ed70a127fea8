// Gestures on an axis strip through the widget with synthetic Qt events: a drag pans the
// zoomed X axis, a wheel notch zooms it, Backspace through the host's key handler undoes.
#include <qv/QVScope.h>
#include <qv/qt/QVDisplayWidget.h>

#include <QApplication>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <vector>

using namespace qv;

TEST(AxisGesture, DragWheelAndUndoThroughTheWidget)
{
    auto Owned = std::make_unique<TQVScope>();
    TQVScope& Scope = *Owned;
    TQVDisplayWidget Widget(std::move(Owned), nullptr);
    Widget.resize(400, 300);
    Widget.show();
    std::vector<double> Samples(1001);
    for (size_t I = 0; I < Samples.size(); ++I)
        Samples[I] = double(I % 50);
    Scope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
    Scope.RefreshView();
    Scope.Paint();
    Scope.SetOnKeyDown([&Scope](TQLPersistent*, uint16_t& AKey, TShiftState) {
        if (AKey == vkBack)
            Scope.UndoZoom();
    });
    TQVDisplayAxis& X = *Scope.GetXAxis();
    auto Lo = [&] { return X.GetScaleTick().GetZoomed().GetMin().GetValue(); };
    auto Hi = [&] { return X.GetScaleTick().GetZoomed().GetMax().GetValue(); };
    X.ZoomTo(400, 600);
    Scope.Paint();
    const TRect Strip = X.GetDrawRect();
    const TRect View = Scope.GetDataView()->GetDrawRect();
    const int Y = (Strip.Top + Strip.Bottom) / 2;

    // Drag 40 pixels to the left: the window follows the pointer.
    const QPoint From(View.Left + 150, Y), To(View.Left + 110, Y);
    QTest::mouseMove(&Widget, From);
    QTest::mousePress(&Widget, Qt::LeftButton, Qt::NoModifier, From);
    QTest::mouseMove(&Widget, QPoint(View.Left + 130, Y));
    QTest::mouseMove(&Widget, To);
    QTest::mouseRelease(&Widget, Qt::LeftButton, Qt::NoModifier, To);
    Scope.Paint();
    EXPECT_GT(Lo(), 400);
    EXPECT_NEAR(Hi() - Lo(), 200, 1e-6);
    const double Panned = Lo();

    // A wheel notch towards the user over the strip widens the window by 1.1.
    QWheelEvent Down(QPointF(From), Widget.mapToGlobal(QPointF(From)), QPoint(), QPoint(0, -120), Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Widget, &Down);
    Scope.Paint();
    EXPECT_NEAR(Hi() - Lo(), 220, 1e-6);

    // Backspace undoes the wheel, then the pan.
    QTest::keyClick(&Widget, Qt::Key_Backspace);
    Scope.Paint();
    EXPECT_NEAR(Lo(), Panned, 1e-6);
    QTest::keyClick(&Widget, Qt::Key_Backspace);
    Scope.Paint();
    EXPECT_NEAR(Lo(), 400, 1e-6);
}
