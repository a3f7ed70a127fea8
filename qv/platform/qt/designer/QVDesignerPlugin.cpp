#include "QVDesignerPlugin.h"

#include "qv/platform/qt/QVScopeWidget.h"

namespace qv {

TQVDesignerWidget::TQVDesignerWidget(QString AClassName, QString AHeader, QString AToolTip, QString ADefaultName,
                                     TFactory AFactory, QObject* AParent)
    : QObject(AParent), FClassName(std::move(AClassName)), FHeader(std::move(AHeader)), FToolTip(std::move(AToolTip)),
      FDefaultName(std::move(ADefaultName)), FFactory(std::move(AFactory))
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

} // namespace

TQVDesignerPlugin::TQVDesignerPlugin(QObject* AParent) : QObject(AParent)
{
    FWidgets.append(new TQVDesignerWidget(QStringLiteral("qv::TQVScopeWidget"), QStringLiteral("qv/qt/QVScopeWidget.h"),
                                          QStringLiteral("A scope: channels plotted against X and Y axes"),
                                          QStringLiteral("scope"), &CreateForDesigner<TQVScopeWidget>, this));
}

} // namespace qv
