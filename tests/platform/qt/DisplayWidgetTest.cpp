// The widget that hosts a display: its timer drives the refresh tick, it shows what the
// display painted, and window events reach the display.
#include "qv/channels/QVScopeChannel.h"
#include "qv/component/QVDisplayComponent.h"
#include "qv/display/QVScope.h"
#include "qv/foundation/QLKeys.h"
#include "qv/platform/qt/QVDisplayWidget.h"
#include "qv/platform/qt/QVScopeWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <functional>
#include <string>

using namespace qv;

namespace {

class TTickDisplay : public TQVDataDisplay {
public:
    bool PopulateDrawBuffers() override
    {
        ++Ticks;
        return false;
    }
    void PaintToCanvasRgn(TQLBitmap& ABitmap, TQLCanvas& ACanvas, const TRect& ARect, const TQLRegion& ARegion,
                          bool APrinting) override
    {
        TQVDataDisplay::PaintToCanvasRgn(ABitmap, ACanvas, ARect, ARegion, APrinting);
        // A marker square so that the test can find the display's picture on the widget.
        ACanvas.GetBrush().SetColor(0xFF00FF00);
        ACanvas.FillRect(TRect{10, 10, 20, 20});
        ++Paints;
    }
    int Ticks = 0;
    int Paints = 0;
};

class TClickTarget : public TQVDisplayComponent {
public:
    explicit TClickTarget(TQVDataDisplay* ADisplay) : TQVDisplayComponent(ADisplay) {}
    TRect IntGetDrawRect() const override { return TRect{0, 0, 100, 100}; }
    void MouseDown(TMouseButton AButton, TShiftState, int32_t AX, int32_t AY, bool AInside, bool&) override
    {
        Presses.push_back(TPoint{AX, AY});
        LastButton = AButton;
    }
    void MouseUp(TMouseButton, TShiftState, int32_t, int32_t, bool) override { ++Releases; }
    void MouseWheelDown(TShiftState, const TPoint&) override { ++WheelDowns; }
    void MouseWheelUp(TShiftState, const TPoint&) override { ++WheelUps; }
    std::vector<TPoint> Presses;
    TMouseButton LastButton = mbMiddle;
    int Releases = 0, WheelDowns = 0, WheelUps = 0;
};

struct TWidgetFixture : ::testing::Test {
    TWidgetFixture()
    {
        auto Owned = std::make_unique<TTickDisplay>();
        Display = Owned.get();
        Widget = std::make_unique<TQVDisplayWidget>(std::move(Owned), nullptr);
        Widget->resize(200, 120);
    }
    TTickDisplay* Display;
    std::unique_ptr<TQVDisplayWidget> Widget;
};

} // namespace

TEST_F(TWidgetFixture, ResizingReachesTheDisplayAndThePictureShowsOnTheWidget)
{
    Display->SetColor(0xFF203040);
    // Grabbing delivers the pending resize, then paints.
    const QImage Shot = Widget->grab().toImage().convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(Display->GetWidth(), 200.0f);
    EXPECT_EQ(Display->GetHeight(), 120.0f);
    ASSERT_EQ(Shot.size(), QSize(200, 120));
    EXPECT_GE(Display->Paints, 1);
    EXPECT_EQ(Shot.pixel(15, 15), 0xFF00FF00u);
    EXPECT_EQ(Shot.pixel(100, 100), 0xFF203040u);
}

TEST_F(TWidgetFixture, TheTimerTicksAtTheRefreshIntervalWhileShown)
{
    Display->SetRefreshInterval(0); // raised to 1 ms
    EXPECT_EQ(Widget->GetQtTimer().interval(), 1);
    EXPECT_FALSE(Widget->GetQtTimer().isActive()); // not shown yet
    Widget->show();
    EXPECT_TRUE(Widget->GetQtTimer().isActive());
    QElapsedTimer Clock;
    Clock.start();
    while (Display->Ticks < 5 && Clock.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_GE(Display->Ticks, 5);
    Display->SetDesigning(true); // design time: no timer
    EXPECT_FALSE(Widget->GetQtTimer().isActive());
    Display->SetDesigning(false);
    Widget->hide();
    EXPECT_FALSE(Widget->GetQtTimer().isActive());
}

TEST_F(TWidgetFixture, MouseAndWheelEventsReachTheComponents)
{
    TClickTarget Target(Display);
    QTest::mousePress(Widget.get(), Qt::RightButton, Qt::NoModifier, QPoint(30, 40));
    QTest::mouseRelease(Widget.get(), Qt::RightButton, Qt::NoModifier, QPoint(30, 40));
    ASSERT_EQ(Target.Presses.size(), 1u);
    EXPECT_EQ(Target.Presses[0], (TPoint{30, 40}));
    EXPECT_EQ(Target.LastButton, mbRight);
    EXPECT_EQ(Target.Releases, 1);

    QWheelEvent Down(QPointF(50, 50), QPointF(50, 50), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(Widget.get(), &Down);
    QWheelEvent Up(QPointF(50, 50), QPointF(50, 50), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
    QApplication::sendEvent(Widget.get(), &Up);
    EXPECT_EQ(Target.WheelDowns, 1);
    EXPECT_EQ(Target.WheelUps, 1);

    // The display's cursor becomes the widget's.
    Display->SetCursor(crCross);
    EXPECT_EQ(Widget->cursor().shape(), Qt::CrossCursor);
    Display->SetDisplayCursor(crSizeWE);
    EXPECT_EQ(Widget->cursor().shape(), Qt::SizeHorCursor);
}

TEST(DisplayWidget, QtKeysMapOntoTheLibrarysKeyCodes)
{
    const std::pair<int, uint16_t> Cases[] = {
        {Qt::Key_Backspace, vkBack}, {Qt::Key_Escape, vkEscape}, {Qt::Key_Left, vkLeft},
        {Qt::Key_Right, vkRight},    {Qt::Key_Up, vkUp},         {Qt::Key_Down, vkDown},
        {Qt::Key_Home, vkHome},      {Qt::Key_End, vkEnd},       {Qt::Key_Delete, vkDelete},
        {Qt::Key_Enter, vkReturn},   {Qt::Key_A, uint16_t('A')}, {Qt::Key_Plus, uint16_t('+')},
        {Qt::Key_F5, vkNone},        {Qt::Key_Shift, vkNone}};
    for (const auto& [QtKey, Key] : Cases)
        EXPECT_EQ(QVKeyOf(QtKey), Key) << "Qt key " << QtKey;
}

// A host's key handler sees the library's codes: Backspace pressed on the widget undoes a zoom.
TEST(DisplayWidget, BackspaceOnTheWidgetReachesTheHostAsTheBackKey)
{
    auto Owned = std::make_unique<TQVScope>();
    TQVScope& Scope = *Owned;
    TQVDisplayWidget Widget(std::move(Owned), nullptr);
    Scope.SetOnKeyDown([&Scope](TQLPersistent*, uint16_t& AKey, TShiftState) {
        if (AKey == vkBack)
            Scope.UndoZoom();
    });
    Scope.ZoomBy(0.5);
    ASSERT_TRUE(Scope.CanUndoZoom());
    QTest::keyClick(&Widget, Qt::Key_Backspace);
    EXPECT_FALSE(Scope.CanUndoZoom());
    EXPECT_FALSE(Scope.IsZoomed());
}

TEST(DisplayWidget, RefusesToHostNothing)
{
    EXPECT_THROW(TQVDisplayWidget(nullptr, nullptr), std::invalid_argument);
}

TEST(DisplayRender, IntRenderComposesTheOverlapIntoTheCallersBuffer)
{
    TTickDisplay D;
    D.SetCanvasFactory(QLQtCanvasFactory());
    D.SetColor(0x80FF0000); // half-transparent red background
    // A 6 x 4 buffer of opaque blue; the 30 x 30 picture placed at (-8, 2) covers columns
    // 0..5 and rows 2..3.
    std::vector<uint32_t> Buffer(6 * 4, 0xFF0000FF);
    D.IntRender(-8, 2, 30, 30, Buffer.data(), 6, 4);
    EXPECT_EQ(Buffer[6 + 5], 0xFF0000FFu); // rows 0 and 1 untouched
    // Red at alpha 128 over opaque blue, premultiplied: red 128, blue 255 * 127 / 255.
    const uint32_t Mixed = Buffer[2 * 6 + 0];
    EXPECT_EQ(Mixed >> 24, 0xFFu);
    EXPECT_NEAR(static_cast<int>((Mixed >> 16) & 0xFF), 128, 1);
    EXPECT_NEAR(static_cast<int>(Mixed & 0xFF), 127, 1);
    EXPECT_EQ(Buffer[3 * 6 + 5], Mixed);
    // Placed inside the buffer, the picture's marker square (10..19) shows at its place.
    std::vector<uint32_t> Large(40 * 40, 0xFF000000);
    D.IntRender(5, 5, 30, 30, Large.data(), 40, 40);
    EXPECT_EQ(Large[15 * 40 + 15], 0xFF00FF00u);
    EXPECT_EQ(Large[24 * 40 + 24], 0xFF00FF00u);
    EXPECT_NE(Large[14 * 40 + 14], 0xFF00FF00u);
    EXPECT_NE(Large[25 * 40 + 25], 0xFF00FF00u);
    // Nothing is drawn for a hidden control.
    std::vector<uint32_t> Untouched(4, 0xFF0000FF);
    D.SetVisible(false);
    D.IntRender(0, 0, 10, 10, Untouched.data(), 2, 2);
    EXPECT_EQ(Untouched, std::vector<uint32_t>(4, 0xFF0000FF));
}

// The Qt properties that Designer and .ui files set reach the scope; bad values are refused
// with their value named, and change nothing.
TEST(DisplayWidget, QtPropertiesReachTheScopeAndRefuseBadValues)
{
    TQVScopeWidget Widget;
    TQVScope& Scope = Widget.GetScope();
    Widget.SetChannelCount(3);
    EXPECT_EQ(Scope.GetChannels()->GetCount(), 3);
    Widget.SetChannelCount(2);
    EXPECT_EQ(Scope.GetChannels()->GetCount(), 2);
    Widget.SetBackgroundColor(QColor(10, 20, 30));
    EXPECT_EQ(Scope.GetColor(), 0xFF0A141Eu);
    Widget.SetRefreshInterval(40);
    EXPECT_EQ(Widget.GetQtTimer().interval(), 40);
    Widget.SetSizeLimit(5000);
    EXPECT_EQ(Scope.GetSizeLimit(), 5000u);

    const std::pair<const char*, std::function<void()>> Bad[] = {
        {"-1", [&] { Widget.SetChannelCount(-1); }},
        {"-5", [&] { Widget.SetSizeLimit(-5); }},
        {"0 ms", [&] { Widget.SetRefreshInterval(0); }},
        {"invalid colour", [&] { Widget.SetBackgroundColor(QColor()); }}};
    for (const auto& [Named, Call] : Bad) {
        try {
            Call();
            ADD_FAILURE() << "accepted " << Named;
        } catch (const std::invalid_argument& E) {
            EXPECT_NE(std::string(E.what()).find(Named), std::string::npos) << E.what();
        }
        EXPECT_EQ(Scope.GetChannels()->GetCount(), 2);
        EXPECT_EQ(Scope.GetSizeLimit(), 5000u);
        EXPECT_EQ(Scope.GetRefreshInterval(), 40u);
        EXPECT_EQ(Scope.GetColor(), 0xFF0A141Eu);
    }
}
