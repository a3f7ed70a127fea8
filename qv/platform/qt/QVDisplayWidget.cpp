#include "qv/platform/qt/QVDisplayWidget.h"

#include "qv/dialogs/QVSetupDialog.h"
#include "qv/foundation/QLKeys.h"
#include "qv/platform/qt/QLQtCanvas.h"
#include "qv/platform/qt/QLQtImage.h"
#include "qv/platform/qt/QLQtPictureOutput.h"

#include "qv/display/QVDisplayToolBar.h"

#include <QApplication>
#include <QCursor>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QThread>
#include <QWheelEvent>

#include <stdexcept>

namespace qv {

TQLCanvasFactory QLQtCanvasFactory()
{
    return [](TQLBitmap& ABitmap) -> std::unique_ptr<TQLCanvas> { return std::make_unique<TQLQtCanvas>(ABitmap); };
}

Qt::CursorShape QVQtCursorShape(TCursor ACursor)
{
    switch (ACursor) {
    case crCross: return Qt::CrossCursor;
    case crIBeam: return Qt::IBeamCursor;
    case crSizeNESW: return Qt::SizeBDiagCursor;
    case crSizeNS: return Qt::SizeVerCursor;
    case crSizeNWSE: return Qt::SizeFDiagCursor;
    case crSizeWE: return Qt::SizeHorCursor;
    case crHourGlass: return Qt::WaitCursor;
    case crDrag: return Qt::DragMoveCursor;
    case crNo: return Qt::ForbiddenCursor;
    case crSizeAll: return Qt::SizeAllCursor;
    case crHandPoint: return Qt::PointingHandCursor;
    default: return Qt::ArrowCursor;
    }
}

namespace {

TShiftState ShiftOf(Qt::KeyboardModifiers AModifiers, Qt::MouseButtons AButtons)
{
    TShiftState S = 0;
    if (AModifiers & Qt::ShiftModifier)
        S |= ssShift;
    if (AModifiers & Qt::AltModifier)
        S |= ssAlt;
    if (AModifiers & Qt::ControlModifier)
        S |= ssCtrl;
    if (AButtons & Qt::LeftButton)
        S |= ssLeft;
    if (AButtons & Qt::RightButton)
        S |= ssRight;
    if (AButtons & Qt::MiddleButton)
        S |= ssMiddle;
    return S;
}

bool ButtonOf(Qt::MouseButton AButton, TMouseButton& AResult)
{
    switch (AButton) {
    case Qt::LeftButton: AResult = mbLeft; return true;
    case Qt::RightButton: AResult = mbRight; return true;
    case Qt::MiddleButton: AResult = mbMiddle; return true;
    default: return false;
    }
}

} // namespace

TQVDisplayWidget::TQVDisplayWidget(std::unique_ptr<TQVDataDisplay> ADisplay, QWidget* AParent)
    : QWidget(AParent), FOwned(std::move(ADisplay)), FDisplay(FOwned.get())
{
    if (!FDisplay)
        throw std::invalid_argument("TQVDisplayWidget: no display to host");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    FDisplay->SetCanvasFactory(QLQtCanvasFactory());
    // Print, clipboard and image files work in a widget with no further set-up.
    std::shared_ptr<TQLQtPictureServices> Services = QLInstallQtPictureServices(*FDisplay);
    InstallToolBarDialogs(Services);
    FDisplay->SetParentState(true, 0);
    // A repaint may be asked for from a producer's thread (a channel cleared there): the
    // request then travels to the GUI thread as a queued call.
    FDisplay->SetOnInvalidate([this] {
        if (QThread::currentThread() == thread())
            update();
        else
            QMetaObject::invokeMethod(
                this, [this] { update(); }, Qt::QueuedConnection);
    });
    FDisplay->SetOnCursorChange([this](TCursor ACursor) { setCursor(QVQtCursorShape(ACursor)); });
    FDisplay->SetOnSetFocus([this] { setFocus(Qt::MouseFocusReason); });
    FDisplay->SetOnSetupDialog([this](TQLPersistent* AObject) { return ShowSetupDialog(AObject); });
    FDisplay->GetRefreshTimer().SetOnChange([this] { SyncTimer(); });
    FTimer.setTimerType(Qt::PreciseTimer);
    connect(&FTimer, &QTimer::timeout, this, [this] {
        if (FDisplay)
            FDisplay->GetRefreshTimer().Fire();
    });
    SyncTimer();
    resize(static_cast<int>(FDisplay->GetWidth()), static_cast<int>(FDisplay->GetHeight()));
}

TQVDisplayWidget::~TQVDisplayWidget()
{
    DetachDisplay();
    FOwned.reset();
}

void TQVDisplayWidget::DetachDisplay()
{
    if (!FDisplay)
        return;
    FTimer.stop();
    FDisplay->SetOnInvalidate({});
    FDisplay->SetOnCursorChange({});
    FDisplay->SetOnSetFocus({});
    FDisplay->SetOnSetupDialog({});
    if (TQVDisplayToolBar* Bar = FDisplay->GetToolBar()) {
        Bar->SetOnPrintDialog({});
        Bar->SetOnSaveDialog({});
    }
    FDisplay->GetRefreshTimer().SetOnChange({});
    for (auto& [Timer, QtTimer] : FHostedTimers) {
        Timer->SetOnChange({});
        QtTimer->stop();
        QtTimer->disconnect();
    }
    FHostedTimers.clear();
    FDisplay->SetParentState(false, 0);
    FDisplay = nullptr;
}

QColor TQVDisplayWidget::GetBackgroundColor() const
{
    return QColor::fromRgba(FDisplay->GetColor());
}

void TQVDisplayWidget::SetBackgroundColor(const QColor& AValue)
{
    if (!AValue.isValid())
        throw std::invalid_argument("TQVDisplayWidget::SetBackgroundColor: invalid colour");
    FDisplay->SetColor(AValue.rgba());
}

int TQVDisplayWidget::GetRefreshInterval() const
{
    return static_cast<int>(std::min<uint32_t>(FDisplay->GetRefreshInterval(), INT32_MAX));
}

void TQVDisplayWidget::SetRefreshInterval(int AValue)
{
    if (AValue < 1)
        throw std::invalid_argument("TQVDisplayWidget::SetRefreshInterval: invalid interval " + std::to_string(AValue) +
                                    " ms");
    FDisplay->SetRefreshInterval(static_cast<uint32_t>(AValue));
}

bool TQVDisplayWidget::ShowSetupDialog(TQLPersistent* AObject)
{
    if (!FDisplay)
        return false;
    // The press that opened the dialog never sees its release.
    if (QWidget::mouseGrabber() == this)
        releaseMouse();
    FPressedLeft = false;
    TQVSetupDialog Dialog(*FDisplay, this);
    Dialog.SelectObject(AObject ? AObject : FDisplay);
    const QPoint TopRight = mapToGlobal(QPoint(width() - Dialog.width() - 20, 20));
    Dialog.move(TopRight);
    const bool Accepted = Dialog.exec() == QDialog::Accepted;
    // The pointer moved while the dialog had it: what lights under it (a tool bar button)
    // follows where it is now, not where it was when the dialog opened.
    const QPoint Pointer = mapFromGlobal(QCursor::pos());
    if (rect().contains(Pointer))
        FDisplay->MouseMove(ShiftOf(QApplication::keyboardModifiers(), QApplication::mouseButtons()),
                            static_cast<float>(Pointer.x()), static_cast<float>(Pointer.y()));
    else
        FDisplay->DoMouseLeave();
    return Accepted;
}

void TQVDisplayWidget::InstallToolBarDialogs(const std::shared_ptr<TQLQtPictureServices>& AServices)
{
    TQVDisplayToolBar* Bar = FDisplay->GetToolBar();
    if (!Bar)
        return;
    // The print dialog sets up the printer that the display's Print then uses.
    std::weak_ptr<TQLQtPictureServices> Weak = AServices;
    Bar->SetOnPrintDialog([this, Weak] {
        std::shared_ptr<TQLQtPictureServices> Services = Weak.lock();
        if (!Services)
            return false;
        Services->GetQPrinter().setDocName(QString::fromStdString(FDisplay->GetPrintTitle()));
        QPrintDialog Dialog(&Services->GetQPrinter(), this);
        return Dialog.exec() == QDialog::Accepted;
    });
    Bar->SetOnSaveDialog([this](const std::string& AFilter, const std::string& ADefaultExt, std::string& AFileName) {
        const QString Name = QFileDialog::getSaveFileName(this, tr("Save picture"), QString(), QVQtFileFilter(AFilter));
        if (Name.isEmpty())
            return false;
        AFileName = Name.toStdString();
        if (QFileInfo(Name).suffix().isEmpty())
            AFileName += "." + ADefaultExt;
        return true;
    });
}

QString QVQtFileFilter(const std::string& AFilter)
{
    // "description|pattern|description|pattern": Qt's form lists the descriptions, which
    // name their patterns, one per ";;".
    const QStringList Parts = QString::fromStdString(AFilter).split('|');
    QStringList Filters;
    for (qsizetype I = 0; I + 1 < Parts.size(); I += 2) {
        const QString& Description = Parts[I];
        Filters << (Description.contains('(') ? Description : Description + " (" + Parts[I + 1] + ")");
    }
    return Filters.join(";;");
}

void TQVDisplayWidget::HostTimer(TQLTimer& ATimer)
{
    auto* QtTimer = new QTimer(this);
    QtTimer->setTimerType(Qt::PreciseTimer);
    auto Sync = [QtTimer, &ATimer] {
        // A new interval on a running QTimer starts its wait anew, as the core expects.
        QtTimer->setInterval(static_cast<int>(std::min<uint32_t>(ATimer.GetInterval(), INT32_MAX)));
        if (ATimer.GetEnabled())
            QtTimer->start();
        else
            QtTimer->stop();
    };
    ATimer.SetOnChange(Sync);
    connect(QtTimer, &QTimer::timeout, this, [&ATimer] { ATimer.Fire(); });
    Sync();
    FHostedTimers.emplace_back(&ATimer, QtTimer);
}

void TQVDisplayWidget::SyncTimer()
{
    if (!FDisplay)
        return;
    const TQLTimer& Timer = FDisplay->GetRefreshTimer();
    FTimer.setInterval(static_cast<int>(std::min<uint32_t>(Timer.GetInterval(), INT32_MAX)));
    if (Timer.GetEnabled() && isVisible())
        FTimer.start();
    else
        FTimer.stop();
}

void TQVDisplayWidget::paintEvent(QPaintEvent*)
{
    if (!FDisplay)
        return;
    QPainter Painter(this);
    if (FDisplay->PaintIsDisabled() && !FDisplay->GetDesigning()) {
        Painter.fillRect(rect(), palette().window());
        return;
    }
    // The picture has the screen's device pixels; layout and mouse stay in logical pixels.
    FDisplay->SetDevicePixelRatio(devicePixelRatioF());
    FDisplay->Paint();
    Painter.drawImage(QPoint(0, 0), qt::QLWrapBitmapReadOnly(FDisplay->GetBitmap()));
}

void TQVDisplayWidget::resizeEvent(QResizeEvent* AEvent)
{
    QWidget::resizeEvent(AEvent);
    if (FDisplay)
        FDisplay->SetBounds(static_cast<float>(x()), static_cast<float>(y()), static_cast<float>(width()),
                            static_cast<float>(height()));
}

void TQVDisplayWidget::moveEvent(QMoveEvent* AEvent)
{
    QWidget::moveEvent(AEvent);
    if (FDisplay)
        FDisplay->SetBounds(static_cast<float>(x()), static_cast<float>(y()), FDisplay->GetWidth(),
                            FDisplay->GetHeight());
}

void TQVDisplayWidget::mousePressEvent(QMouseEvent* AEvent)
{
    TMouseButton Button;
    if (!FDisplay || !ButtonOf(AEvent->button(), Button))
        return;
    const QPointF P = AEvent->position();
    FDisplay->MouseDown(Button, ShiftOf(AEvent->modifiers(), AEvent->buttons()), static_cast<float>(P.x()),
                        static_cast<float>(P.y()));
    FPressedLeft = Button == mbLeft;
}

void TQVDisplayWidget::mouseMoveEvent(QMouseEvent* AEvent)
{
    if (!FDisplay)
        return;
    const QPointF P = AEvent->position();
    FDisplay->MouseMove(ShiftOf(AEvent->modifiers(), AEvent->buttons()), static_cast<float>(P.x()),
                        static_cast<float>(P.y()));
}

void TQVDisplayWidget::mouseReleaseEvent(QMouseEvent* AEvent)
{
    TMouseButton Button;
    if (!FDisplay || !ButtonOf(AEvent->button(), Button))
        return;
    const QPointF P = AEvent->position();
    FDisplay->MouseUp(Button, ShiftOf(AEvent->modifiers(), AEvent->buttons()), static_cast<float>(P.x()),
                      static_cast<float>(P.y()));
    // A press and release of the left button inside the widget is a click.
    if (Button == mbLeft && FPressedLeft && rect().contains(P.toPoint()))
        FDisplay->Click();
    FPressedLeft = false;
}

void TQVDisplayWidget::mouseDoubleClickEvent(QMouseEvent* AEvent)
{
    mousePressEvent(AEvent);
    if (FDisplay && AEvent->button() == Qt::LeftButton)
        FDisplay->DblClick();
}

void TQVDisplayWidget::wheelEvent(QWheelEvent* AEvent)
{
    if (!FDisplay)
        return;
    const int Delta = AEvent->angleDelta().y();
    if (Delta == 0)
        return;
    const QPoint P = AEvent->position().toPoint();
    const TShiftState Shift = ShiftOf(AEvent->modifiers(), AEvent->buttons());
    // Wheel towards the user (negative delta) is "wheel down".
    if (Delta < 0)
        FDisplay->DoMouseWheelDown(Shift, TPoint{P.x(), P.y()});
    else
        FDisplay->DoMouseWheelUp(Shift, TPoint{P.x(), P.y()});
    AEvent->accept();
}

void TQVDisplayWidget::enterEvent(QEnterEvent* AEvent)
{
    QWidget::enterEvent(AEvent);
    if (FDisplay)
        FDisplay->DoMouseEnter();
}

void TQVDisplayWidget::leaveEvent(QEvent* AEvent)
{
    QWidget::leaveEvent(AEvent);
    if (FDisplay)
        FDisplay->DoMouseLeave();
}

uint16_t QVKeyOf(int AQtKey)
{
    switch (AQtKey) {
    case Qt::Key_Backspace: return vkBack;
    case Qt::Key_Tab: return vkTab;
    case Qt::Key_Return:
    case Qt::Key_Enter: return vkReturn;
    case Qt::Key_Escape: return vkEscape;
    case Qt::Key_PageUp: return vkPrior;
    case Qt::Key_PageDown: return vkNext;
    case Qt::Key_End: return vkEnd;
    case Qt::Key_Home: return vkHome;
    case Qt::Key_Left: return vkLeft;
    case Qt::Key_Up: return vkUp;
    case Qt::Key_Right: return vkRight;
    case Qt::Key_Down: return vkDown;
    case Qt::Key_Insert: return vkInsert;
    case Qt::Key_Delete: return vkDelete;
    default:
        // Qt's codes of printable Latin-1 keys are their character codes (letters upper-case).
        return AQtKey >= Qt::Key_Space && AQtKey <= Qt::Key_ydiaeresis ? uint16_t(AQtKey) : uint16_t(vkNone);
    }
}

void TQVDisplayWidget::keyPressEvent(QKeyEvent* AEvent)
{
    uint16_t Key = QVKeyOf(AEvent->key());
    if (!FDisplay || Key == vkNone)
        return QWidget::keyPressEvent(AEvent);
    FDisplay->KeyDown(Key, ShiftOf(AEvent->modifiers(), Qt::NoButton));
}

void TQVDisplayWidget::keyReleaseEvent(QKeyEvent* AEvent)
{
    uint16_t Key = QVKeyOf(AEvent->key());
    if (!FDisplay || Key == vkNone)
        return QWidget::keyReleaseEvent(AEvent);
    FDisplay->KeyUp(Key, ShiftOf(AEvent->modifiers(), Qt::NoButton));
}

void TQVDisplayWidget::focusInEvent(QFocusEvent* AEvent)
{
    QWidget::focusInEvent(AEvent);
    if (FDisplay)
        FDisplay->SetFocused(true);
}

void TQVDisplayWidget::focusOutEvent(QFocusEvent* AEvent)
{
    QWidget::focusOutEvent(AEvent);
    if (FDisplay)
        FDisplay->SetFocused(false);
}

void TQVDisplayWidget::showEvent(QShowEvent* AEvent)
{
    QWidget::showEvent(AEvent);
    SyncTimer();
}

void TQVDisplayWidget::hideEvent(QHideEvent* AEvent)
{
    QWidget::hideEvent(AEvent);
    SyncTimer();
}

} // namespace qv
