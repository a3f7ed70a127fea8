// Measuring on a real picture: a cursor held dashed at the view's edge, the measurement
// between two cursors with its text, a channel recoloured inside a zone only, and a cursor
// dragged through the widget by mouse events. The picture is kept as MeasurePicture.png when
// QV_WRITE_PICTURES names a folder.
#include <qv/QVScope.h>
#include <qv/qt/QLQtCanvas.h>
#include <qv/qt/QVScopeWidget.h>

#include "platform/qt/KeepPicture.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

using namespace qv;

namespace {

TAlphaColor PixelAt(const TQLBitmap& ABitmap, int32_t AX, int32_t AY)
{
    return ABitmap.GetBits()[size_t(AY) * size_t(ABitmap.GetWidth()) + size_t(AX)];
}

// Light pixels: text in the default white label font, antialiased.
int CountLight(const TQLBitmap& ABitmap, const TRect& ARect)
{
    int Count = 0;
    for (int32_t Y = ARect.Top; Y < ARect.Bottom; ++Y)
        for (int32_t X = ARect.Left; X < ARect.Right; ++X) {
            const TAlphaColor P = PixelAt(ABitmap, X, Y);
            Count += ((P >> 16) & 0xFF) > 0xC0 && ((P >> 8) & 0xFF) > 0xC0 && (P & 0xFF) > 0xC0;
        }
    return Count;
}

int CountColor(const TQLBitmap& ABitmap, const TRect& ARect, TAlphaColor AColor)
{
    int Count = 0;
    for (int32_t Y = ARect.Top; Y < ARect.Bottom; ++Y)
        for (int32_t X = ARect.Left; X < ARect.Right; ++X)
            Count += PixelAt(ABitmap, X, Y) == AColor;
    return Count;
}

constexpr TAlphaColor ZoneColor = 0xFF00FFFF;
constexpr TAlphaColor EdgeCursorColor = 0xFFFFFF00;

// A sine over samples 0..999, two cursors measured by a link, a third cursor beyond the
// zoomed window, and a zone over the middle linked to the channel.
void Build(TQVScope& AScope)
{
    AScope.SetBounds(0, 0, 640, 400);
    TQVScopeYAxis& Y = *AScope.GetYAxis();
    Y.GetAutoScaling()->SetEnabled(false);
    Y.GetMin()->SetValue(-1.2);
    Y.GetMax()->SetValue(1.2);
    std::vector<double> Samples(1000);
    for (size_t i = 0; i < Samples.size(); ++i)
        Samples[i] = std::sin(2 * std::numbers::pi * double(i) / 250.0);
    TQVScopeChannel* Channel = AScope.GetChannels()->GetItem(0);
    Channel->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
    AScope.RefreshView();
    AScope.ZoomTo(0.0, 800.0, -1.2, 1.2, false);

    TQVScopeCursors& Cursors = *AScope.GetCursors();
    TQVScopeCursor* A = Cursors.Add();
    A->GetPosition()->SetX(100.0);
    TQVScopeCursor* B = Cursors.Add();
    B->GetPosition()->SetX(500.0);
    TQVScopeCursor* Edge = Cursors.Add();
    Edge->GetPosition()->SetX(900.0);
    Edge->SetColor(EdgeCursorColor);
    for (TQVScopeCursor* C : {A, B}) {
        TQVDisplayCursorChannelLink* Mark = C->GetChannels()->Add();
        Mark->SetChannel(Channel);
        Mark->SetShape(msCircle);
    }
    TQVScopeCursorLink* Link = AScope.GetCursorLinks()->Add();
    Link->SetBeginCursor(A);
    Link->SetEndCursor(B);
    Link->GetMeasurementLine()->SetY(60.0);
    Link->GetMeasurementLine()->GetMeasurementLabel()->SetText("dx = %V");
    Link->GetSelection()->SetVisible(true);
    Link->GetSelection()->GetBrush()->SetColor(0x30FFFFFF);

    TQVDisplayZone* Zone = AScope.GetZones()->Add();
    for (const auto& [X, V] :
         {std::pair{550.0, -1.1}, std::pair{700.0, -1.1}, std::pair{700.0, 1.1}, std::pair{550.0, 1.1}})
        Zone->GetPoints()->Add(X, V);
    TQVDisplayZoneChannelLink* ZoneLink = Zone->GetChannels()->Add();
    ZoneLink->SetChannel(Channel);
    ZoneLink->GetHighlighting()->SetColor(ZoneColor);
}

} // namespace

TEST(MeasurePicture, EdgeCursorMeasurementAndZoneShowOnTheImage)
{
    TQVScope Scope;
    Scope.SetCanvasFactory(QLQtCanvasFactory());
    Build(Scope);
    Scope.Paint();
    const TQLBitmap& Picture = Scope.GetBitmap();
    qvtest::KeepPicture(Picture, "MeasurePicture.png");
    const TRect View = Scope.GetScopeDataView()->GetDrawRect();

    // The cursor beyond the window stands dashed in the view's last column.
    const TRect Column{View.Right - 1, View.Top + 1, View.Right, View.Bottom - 1};
    const int Dashes = CountColor(Picture, Column, EdgeCursorColor);
    EXPECT_GT(Dashes, View.Height() / 5);
    EXPECT_LT(Dashes, View.Height() * 9 / 10);

    // The measurement line at 60 per cent above the centre, with its text over it.
    const int32_t A = Scope.GetXAxis()->GetPosFromValue(100.0), B = Scope.GetXAxis()->GetPosFromValue(500.0);
    const int32_t C = View.Top + int32_t(std::nearbyint(View.Height() * 0.2));
    EXPECT_GT(CountColor(Picture, TRect{A + 1, C, B, C + 1}, 0xFFFFFFFF), (B - A) * 8 / 10);
    EXPECT_GT(CountLight(Picture, TRect{(A + B) / 2 - 40, C - 14, (A + B) / 2 + 40, C - 1}), 20);
    EXPECT_EQ(CountLight(Picture, TRect{(A + B) / 2 - 40, C + 2, (A + B) / 2 + 40, C + 14}), 0);

    // The zone's colour lies on the channel inside the zone, and nowhere outside it.
    const int32_t ZL = Scope.GetXAxis()->GetPosFromValue(550.0), ZR = Scope.GetXAxis()->GetPosFromValue(700.0);
    EXPECT_GT(CountColor(Picture, TRect{ZL + 2, View.Top, ZR - 1, View.Bottom}, ZoneColor), 50);
    EXPECT_EQ(CountColor(Picture, TRect{View.Left, View.Top, ZL - 1, View.Bottom}, ZoneColor), 0);
    EXPECT_EQ(CountColor(Picture, TRect{ZR + 2, View.Top, View.Right - 2, View.Bottom}, ZoneColor), 0);
}

TEST(MeasurePicture, ACursorFollowsADragThroughTheWidget)
{
    TQVScopeWidget Widget;
    Widget.resize(640, 400);
    TQVScope& Scope = Widget.GetScope();
    Build(Scope);
    Widget.show();
    Scope.Paint();
    TQVScopeCursor* A = Scope.GetCursors()->GetItem(0);
    const TRect View = Scope.GetScopeDataView()->GetDrawRect();
    const QPoint From(Scope.GetXAxis()->GetPosFromValue(100.0), View.Top + 30);
    const QPoint To(Scope.GetXAxis()->GetPosFromValue(300.0), View.Top + 30);
    const auto Send = [&](QEvent::Type AType, QPoint AAt, Qt::MouseButton AButton, Qt::MouseButtons AButtons) {
        QMouseEvent Event(AType, QPointF(AAt), Widget.mapToGlobal(QPointF(AAt)), AButton, AButtons, Qt::NoModifier);
        QApplication::sendEvent(&Widget, &Event);
    };
    Send(QEvent::MouseMove, From, Qt::NoButton, Qt::NoButton);
    Send(QEvent::MouseButtonPress, From, Qt::LeftButton, Qt::LeftButton);
    Send(QEvent::MouseMove, QPoint(To.x(), View.Bottom + 50), Qt::NoButton, Qt::LeftButton); // off the view
    Send(QEvent::MouseMove, To, Qt::NoButton, Qt::LeftButton);
    Send(QEvent::MouseButtonRelease, To, Qt::LeftButton, Qt::NoButton);
    EXPECT_NEAR(A->GetPosition()->GetX(), 300.0, 3.0); // within two pixels
    EXPECT_EQ(Scope.GetScopeDataView()->GetHighlightInfo().FDraggedCursor, nullptr);
    Widget.hide();
}
