// QVScope layers example: displays composed inside one widget, and a scope rendered into a
// caller's own pixels.
//
//   qv_layers [--offscreen] [--out DIR]
//
// The window shows a host scope (a slow sine) with a second scope (a fast square wave)
// placed as an element over its lower part: 0.6 by 0.3 of the host, half a radius below
// the middle, drawn behind the host's own plot. Both tick on the host's timer. The host's
// setup dialog (double-click) edits either display's settings.
//
// The example also renders a matrix element into a plain 32-bit pixel buffer that it owns,
// and saves that buffer. With --offscreen it writes DIR/layers.png (the widget),
// DIR/matrix.png (the buffer) and DIR/setup.png (the setup dialog on the host's first
// channel) and exits.

#include <qv/QVScope.h>
#include <qv/qt/QLQtImage.h>
#include <qv/qt/QVScopeWidget.h>

#include "qv/dialogs/QVSetupDialog.h"
#include "qv/display/QVExternalScopeElement.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QTimer>

#include <cmath>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

using namespace qv;

namespace {

void Feed(TQVScope& AScope, double AFrequency, bool ASquare)
{
    std::vector<double> Samples(2000);
    for (size_t I = 0; I < Samples.size(); ++I) {
        const double S = std::sin(AFrequency * double(I) / 1000.0);
        Samples[I] = ASquare ? (S >= 0 ? 1.0 : -1.0) : S;
    }
    AScope.GetChannels()->GetItem(0)->GetData()->AddYData(Samples.data(), uint32_t(Samples.size()));
}

// A matrix element rendered into pixels this program owns: no widget, no QPainter of ours.
QImage RenderIntoOwnBuffer()
{
    constexpr uint32_t W = 480, H = 300;
    std::vector<uint32_t> Pixels(size_t(W) * H, 0xFF101828u); // premultiplied ARGB
    TQVExternalScopeMatrixLayer Element;
    Element.SetCanvasFactory(QLQtCanvasFactory());
    Element.GetTitle()->SetText("Rendered into a caller's buffer");
    Element.GetPosition()->SetX(0.2);
    Element.GetPosition()->SetY(0.2);
    Feed(Element, 40.0, false);
    Element.RefreshView();
    Element.Render(Pixels.data(), W, H);
    return QImage(reinterpret_cast<const uchar*>(Pixels.data()), int(W), int(H), int(W * 4),
                  QImage::Format_ARGB32_Premultiplied)
        .copy();
}

} // namespace

int main(int argc, char** argv)
{
    bool Offscreen = false;
    QString Out = ".";
    for (int I = 1; I < argc; ++I) {
        const std::string Arg = argv[I];
        if (Arg == "--offscreen")
            Offscreen = true;
        else if (Arg == "--out" && I + 1 < argc)
            Out = argv[++I];
    }
    if (Offscreen)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    try {
        QApplication App(argc, argv);
        TQVScopeWidget Widget;
        TQVScope& Host = Widget.GetScope();
        Host.GetTitle()->SetText("Host scope with a scope element");
        Feed(Host, 8.0, false);
        auto* Element = Host.GetElements()->Add<TQVExternalScopeElement>();
        Element->GetTitle()->SetText("Element");
        Element->SetColor(0xFF202040);
        Element->GetChannels()->GetItem(0)->SetColor(0xFFFFC040);
        Feed(*Element, 60.0, true);
        Host.SetOnDblClick([&Host](TQLPersistent*) { Host.ShowSetupDialog(); });
        Widget.resize(800, 500);
        Widget.show();

        if (!Offscreen)
            return App.exec();

        QDir().mkpath(Out);
        QTimer::singleShot(300, &App, [&] {
            Widget.grab().save(QDir(Out).filePath("layers.png"));
            RenderIntoOwnBuffer().save(QDir(Out).filePath("matrix.png"));
            TQVSetupDialog Setup(Host);
            Setup.SelectObject(Host.GetChannels()->GetItem(0));
            Setup.show();
            Setup.grab().save(QDir(Out).filePath("setup.png"));
            App.quit();
        });
        App.exec();
        std::printf("wrote %s and %s\n", qPrintable(QDir(Out).filePath("layers.png")),
                    qPrintable(QDir(Out).filePath("matrix.png")));
        return 0;
    } catch (const std::exception& E) {
        std::fprintf(stderr, "qv_layers: %s\n", E.what());
        return 1;
    }
}
