// The smallest program with a scope: a window showing one channel of a sine.
#include <qv/QVScope.h>
#include <qv/qt/QVScopeWidget.h>

#include <QApplication>
#include <cmath>
#include <vector>

int main(int argc, char** argv)
{
    QApplication App(argc, argv);
    qv::TQVScopeWidget Widget;
    qv::TQVScope& Scope = Widget.GetScope();
    Scope.GetTitle()->SetText("A sine");
    std::vector<double> Samples(2000);
    for (size_t I = 0; I < Samples.size(); ++I)
        Samples[I] = std::sin(double(I) * 0.01);
    Scope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
    Widget.show();
    return App.exec();
}
