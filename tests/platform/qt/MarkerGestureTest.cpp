// A marker dragged through the widget with synthetic Qt events: hovering lights its group,
// the press, moves and release carry it to the value under the pointer.
#include <qv/QVScope.h>
#include <qv/qt/QVDisplayWidget.h>

#include "platform/qt/KeepPicture.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <vector>

using namespace qv;

TEST(MarkerGesture, AFreeMarkerFollowsTheMouseThroughTheWidget)
{
    auto Owned = std::make_unique<TQVScope>();
    TQVScope& Scope = *Owned;
    TQVDisplayWidget Widget(std::move(Owned), nullptr);
    Widget.resize(400, 300);
    Widget.show();
    TQVScopeYAxis& YAxis = *Scope.GetYAxis();
    YAxis.GetAutoScaling()->SetEnabled(false);
    YAxis.GetMin()->SetValue(0.0);
    YAxis.GetMax()->SetValue(100.0);
    std::vector<double> Samples(101, 0.0);
    Scope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
    TQVScopeMarkerGroup* Group = Scope.GetMarkerGroups()->Add();
    Group->SetCanDrag(true);
    TQVScopeMarker* Marker = Group->GetMarkers()->Add();
    Marker->GetPosition()->SetX(20.0);
    Marker->GetPosition()->SetY(70.0);
    Scope.RefreshView();
    Scope.Paint();
    const TPoint At = Marker->GetDrawPoint();
    ASSERT_GE(At.X, 0);
    const TQVHighlightInfo& Info = Scope.GetScopeDataView()->GetHighlightInfo();
    auto YWindow = [&] { return YAxis.GetScaleTick().GetZoomed().GetMax().GetValue(); };
    const double YBefore = YWindow();

    QTest::mouseMove(&Widget, QPoint(At.X, At.Y));
    EXPECT_EQ(Info.FHighlightedItem, Group);
    const QPoint To(Scope.GetXAxis()->GetPosFromValue(60.0), YAxis.GetPosFromValue(30.0));
    QTest::mousePress(&Widget, Qt::LeftButton, Qt::NoModifier, QPoint(At.X, At.Y));
    QTest::mouseMove(&Widget, QPoint((At.X + To.x()) / 2, (At.Y + To.y()) / 2));
    QTest::mouseMove(&Widget, To);
    EXPECT_EQ(Info.FDraggedMarker, Marker);
    Scope.Paint();
    qvtest::KeepPicture(Scope.GetBitmap(), "MarkerDrag.png");
    QTest::mouseRelease(&Widget, Qt::LeftButton, Qt::NoModifier, To);
    EXPECT_EQ(Info.FDraggedMarker, nullptr);
    EXPECT_NEAR(Marker->GetPosition()->GetX(), 60.0, 1.0);
    EXPECT_NEAR(Marker->GetPosition()->GetY(), 30.0, 1.0);
    // The axes did not move: the press was the marker's, not a zoom box.
    EXPECT_DOUBLE_EQ(YWindow(), YBefore);
}
