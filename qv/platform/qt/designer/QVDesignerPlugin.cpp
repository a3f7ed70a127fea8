#include "QVDesignerPlugin.h"

#include "qv/platform/qt/QVScopeWidget.h"
#include "qv/platform/qt/QVWaterfallWidget.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace qv {

TQVDesignerWidget::TQVDesignerWidget(QString AClassName, QString AHeader, QString AToolTip, QString ADefaultName,
                                     QIcon AIcon, TFactory AFactory, QObject* AParent)
    : QObject(AParent), FClassName(std::move(AClassName)), FHeader(std::move(AHeader)), FToolTip(std::move(AToolTip)),
      FDefaultName(std::move(ADefaultName)), FIcon(std::move(AIcon)), FFactory(std::move(AFactory))
{}

QString TQVDesignerWidget::domXml() const
{
    // A new widget takes its size hint's size and a name Designer numbers on.
    return QStringLiteral("<ui language=\"c++\"><widget class=\"%1\" name=\"%2\"/></ui>").arg(FClassName, FDefaultName);
}

namespace {

// In Designer the display is marked as designing: it paints even while the form hides it.
template <class TWidget>
QWidget* CreateForDesigner(QWidget* AParent)
{
    auto* Widget = new TWidget(AParent);
    Widget->GetDisplay().SetDesigning(true);
    return Widget;
}

// The scope's icon in the widget box: a trace on a dark screen with a grid, drawn here at
// 32 x 32 so that no image file travels with the plugin.
QIcon ScopeIcon()
{
    QImage Image(32, 32, QImage::Format_ARGB32_Premultiplied);
    Image.fill(Qt::transparent);
    QPainter Painter(&Image);
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setPen(QPen(QColor(90, 90, 90), 1));
    Painter.setBrush(QColor(16, 16, 16));
    Painter.drawRoundedRect(QRectF(1.5, 3.5, 29, 25), 3, 3);
    Painter.setPen(QPen(QColor(0, 90, 0), 1));
    for (int I = 1; I < 4; ++I) {
        Painter.drawLine(QPointF(2 + I * 7, 4), QPointF(2 + I * 7, 28));
        Painter.drawLine(QPointF(2, 4 + I * 6), QPointF(30, 4 + I * 6));
    }
    QPainterPath Trace;
    for (int X = 0; X <= 26; ++X) {
        const QPointF P(3 + X, 16 - 8 * std::sin(X * 2 * 3.14159265 / 13.0) * std::exp(-X / 20.0));
        if (X == 0)
            Trace.moveTo(P);
        else
            Trace.lineTo(P);
    }
    Painter.setPen(QPen(QColor(0, 230, 0), 1.6));
    Painter.setBrush(Qt::NoBrush);
    Painter.drawPath(Trace);
    Painter.end();
    return QIcon(QPixmap::fromImage(Image));
}

// The waterfall's icon: rows of a spectrum coloured from blue through green to red, with a
// bright line wandering down them, and the level key at the right; drawn at 32 x 32.
QIcon WaterfallIcon()
{
    QImage Image(32, 32, QImage::Format_ARGB32_Premultiplied);
    Image.fill(Qt::transparent);
    QPainter Painter(&Image);
    for (int Y = 4; Y < 28; ++Y)
        for (int X = 2; X < 24; ++X) {
            // A peak that drifts across the rows, on a low noisy floor.
            const double Peak = std::exp(-std::pow((X - 8 - Y * 0.4) / 2.5, 2.0));
            const double Level = std::min(1.0, 0.15 + 0.1 * std::sin(X * 1.7 + Y * 2.3) + Peak);
            Painter.setPen(QColor::fromHsvF(static_cast<float>((1.0 - Level) * 0.66), 1.0f, 0.9f));
            Painter.drawPoint(X, Y);
        }
    for (int Y = 4; Y < 28; ++Y) {
        Painter.setPen(QColor::fromHsvF(static_cast<float>((Y - 4) / 24.0 * 0.66), 1.0f, 0.9f));
        Painter.drawLine(26, Y, 29, Y);
    }
    Painter.setPen(QPen(QColor(90, 90, 90), 1));
    Painter.setBrush(Qt::NoBrush);
    Painter.drawRect(QRectF(1.5, 3.5, 22, 24));
    Painter.end();
    return QIcon(QPixmap::fromImage(Image));
}

} // namespace

TQVDesignerPlugin::TQVDesignerPlugin(QObject* AParent) : QObject(AParent)
{
    FWidgets.append(new TQVDesignerWidget(QStringLiteral("qv::TQVScopeWidget"), QStringLiteral("qv/qt/QVScopeWidget.h"),
                                          QStringLiteral("A scope: channels plotted against X and Y axes"),
                                          QStringLiteral("scope"), ScopeIcon(), &CreateForDesigner<TQVScopeWidget>,
                                          this));
    FWidgets.append(new TQVDesignerWidget(
        QStringLiteral("qv::TQVWaterfallWidget"), QStringLiteral("qv/qt/QVWaterfallWidget.h"),
        QStringLiteral("A waterfall: successive rows shown as a colour image with a level key"),
        QStringLiteral("waterfall"), WaterfallIcon(), &CreateForDesigner<TQVWaterfallWidget>, this));
}

} // namespace qv
