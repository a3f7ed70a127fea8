#pragma once
// The Qt Designer plugin: puts the library's widgets into Designer's widget box, under
// "QVScope". Each widget has a factory here; the collection lists them.

#include <QIcon>
#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <functional>

namespace qv {

// One widget in the box: its class, header, description, icon and a factory.
class TQVDesignerWidget : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
public:
    using TFactory = std::function<QWidget*(QWidget* AParent)>;
    TQVDesignerWidget(QString AClassName, QString AHeader, QString AToolTip, QString ADefaultName, QIcon AIcon,
                      TFactory AFactory, QObject* AParent);

    QString name() const override { return FClassName; }
    QString group() const override { return QStringLiteral("QVScope"); }
    QIcon icon() const override { return FIcon; }
    QString toolTip() const override { return FToolTip; }
    QString whatsThis() const override { return FToolTip; }
    bool isContainer() const override { return false; }
    QString includeFile() const override { return FHeader; }
    QString domXml() const override;
    bool isInitialized() const override { return FInitialized; }
    void initialize(QDesignerFormEditorInterface*) override { FInitialized = true; }
    QWidget* createWidget(QWidget* AParent) override { return FFactory(AParent); }

private:
    QString FClassName;
    QString FHeader;
    QString FToolTip;
    QString FDefaultName;
    QIcon FIcon;
    TFactory FFactory;
    bool FInitialized = false;
};

class TQVDesignerPlugin : public QObject, public QDesignerCustomWidgetCollectionInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)
public:
    explicit TQVDesignerPlugin(QObject* AParent = nullptr);
    QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return FWidgets; }

private:
    QList<QDesignerCustomWidgetInterface*> FWidgets;
};

} // namespace qv
