#pragma once
// The QWidget that hosts a display: a QTimer on the GUI thread drives the display's refresh
// tick, paintEvent renders the display into its picture and shows it, resizes reach
// SetBounds, and mouse, wheel, key, enter, leave and focus events reach the display. The
// display's cursor becomes the widget's cursor, and the display prints, copies and saves
// its picture through Qt. The scope and waterfall widgets derive from it.

#include "qv/display/QVDataDisplay.h"

#include <QColor>
#include <QTimer>

#include <QString>
#include <QWidget>
#include <memory>
#include <utility>
#include <vector>

namespace qv {

// A canvas factory that draws with QPainter into the display's bitmaps.
TQLCanvasFactory QLQtCanvasFactory();

// The Qt cursor shape for a display cursor id.
Qt::CursorShape QVQtCursorShape(TCursor ACursor);

// The library's key code (TQLKey, or a printable character's code) of a Qt key; vkNone for
// keys the displays have no code for.
uint16_t QVKeyOf(int AQtKey);
// A tool bar file filter ("description|pattern|...") in Qt's form ("description;;...").
QString QVQtFileFilter(const std::string& AFilter);

class TQLQtPictureServices;

// The Qt properties let Qt Designer and .ui files set the commonest settings; everything
// else is reached through GetDisplay().
class TQVDisplayWidget : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QColor backgroundColor READ GetBackgroundColor WRITE SetBackgroundColor)
    Q_PROPERTY(int refreshInterval READ GetRefreshInterval WRITE SetRefreshInterval)
    Q_PROPERTY(bool hold READ GetHold WRITE SetHold)
public:
    // The widget owns the display it hosts.
    TQVDisplayWidget(std::unique_ptr<TQVDataDisplay> ADisplay, QWidget* AParent);
    ~TQVDisplayWidget() override;

    TQVDataDisplay& GetDisplay() const { return *FDisplay; }
    QSize sizeHint() const override { return QSize(450, 280); }
    // The refresh timer as Qt sees it (for tests and for hosts that pause it).
    QTimer& GetQtTimer() { return FTimer; }

    // The display's Color.
    QColor GetBackgroundColor() const;
    void SetBackgroundColor(const QColor& AValue);
    // The display's RefreshInterval in milliseconds; below 1 raises std::invalid_argument.
    int GetRefreshInterval() const;
    void SetRefreshInterval(int AValue);
    bool GetHold() const { return FDisplay->GetHold(); }
    void SetHold(bool AValue) { FDisplay->SetHold(AValue); }

    // The one entry to the setup dialog: modal, at the widget's top right corner, on the page
    // of AObject (the display's own when null). The display's ShowSetupDialog, a press on an
    // axis title, the tool bar's setup button and the legend all arrive here. Returns whether
    // the user closed it with OK.
    bool ShowSetupDialog(TQLPersistent* AObject = nullptr);

protected:
    void paintEvent(QPaintEvent* AEvent) override;
    void resizeEvent(QResizeEvent* AEvent) override;
    void moveEvent(QMoveEvent* AEvent) override;
    void mousePressEvent(QMouseEvent* AEvent) override;
    void mouseMoveEvent(QMouseEvent* AEvent) override;
    void mouseReleaseEvent(QMouseEvent* AEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* AEvent) override;
    void wheelEvent(QWheelEvent* AEvent) override;
    void enterEvent(QEnterEvent* AEvent) override;
    void leaveEvent(QEvent* AEvent) override;
    void keyPressEvent(QKeyEvent* AEvent) override;
    void keyReleaseEvent(QKeyEvent* AEvent) override;
    void focusInEvent(QFocusEvent* AEvent) override;
    void focusOutEvent(QFocusEvent* AEvent) override;
    void showEvent(QShowEvent* AEvent) override;
    void hideEvent(QHideEvent* AEvent) override;

    // Runs ATimer, a timer of the display besides its refresh timer (the legend's scroll
    // repeat), on a QTimer of the widget, following its interval and enabled state.
    void HostTimer(TQLTimer& ATimer);

private:
    void SyncTimer();
    // The tool bar's print and save buttons open Qt's print and file dialogs.
    void InstallToolBarDialogs(const std::shared_ptr<TQLQtPictureServices>& AServices);
    void DetachDisplay();

    std::unique_ptr<TQVDataDisplay> FOwned;
    TQVDataDisplay* FDisplay;
    QTimer FTimer;
    std::vector<std::pair<TQLTimer*, QTimer*>> FHostedTimers;
    bool FPressedLeft = false;
};

} // namespace qv
