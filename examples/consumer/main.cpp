// Built against an installed QVScope: a scope in a window, or with --png FILE a picture of
// it written with no window.
#include <qv/QVScope.h>
#include <qv/qt/QLQtPictureOutput.h>
#include <qv/qt/QVScopeWidget.h>

#include <QApplication>

#include <cmath>
#include <cstring>
#include <vector>

int main(int argc, char** argv)
{
    const bool Png = argc == 3 && std::strcmp(argv[1], "--png") == 0;
    if (Png && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication App(argc, argv);
    qv::TQVScopeWidget Widget;
    qv::TQVScope& Scope = Widget.GetScope();
    Scope.GetTitle()->SetText("Found by find_package(QVScope)");
    std::vector<double> Samples(1000);
    for (size_t I = 0; I < Samples.size(); ++I)
        Samples[I] = std::exp(-double(I) / 300.0) * std::sin(double(I) / 20.0);
    Scope.GetChannels()->GetItem(0)->GetData()->SetYData(Samples.data(), uint32_t(Samples.size()));
    if (Png) {
        Scope.RefreshView();
        Scope.SaveToBitmap(argv[2]);
        return 0;
    }
    Widget.show();
    return App.exec();
}
