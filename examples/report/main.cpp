// A report renderer: a program with no window that draws a scope and writes it as PNG, SVG
// and PDF files, and a PNG at twice the resolution for HiDPI documents.
//
//   qv_report [DIR]     writes DIR/report.png, report@2x.png, report.svg, report.pdf
#include <qv/QVScope.h>
#include <qv/qt/QLQtImage.h>
#include <qv/qt/QLQtPictureOutput.h>

#include <QDir>
#include <QGuiApplication>

#include <cmath>
#include <cstdio>
#include <exception>
#include <numbers>
#include <vector>

int main(int argc, char** argv)
{
    // Text needs a QGuiApplication; the offscreen platform needs no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication App(argc, argv);
    const QDir Out(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("."));
    try {
        if (!Out.exists() && !QDir().mkpath(Out.path()))
            throw std::runtime_error("cannot make the folder " + Out.path().toStdString());

        // A scope with no widget: sized, fed and ticked by hand.
        qv::TQVScope Scope;
        qv::QLInstallQtPictureServices(Scope); // canvas, image and vector files
        Scope.SetBounds(0, 0, 800, 450);
        Scope.GetTitle()->SetText("Step response of a damped oscillator");
        Scope.GetXAxis()->SetTicksMode(qv::atmTime);
        Scope.GetYAxis()->GetAxisLabel()->SetText("Position (mm)");
        auto& Channels = *Scope.GetChannels();
        Channels.Add();
        const double Rate = 10'000.0;
        std::vector<double> Response(20'000), Input(20'000);
        for (size_t I = 0; I < Response.size(); ++I) {
            const double T = double(I) / Rate;
            Input[I] = T < 0.1 ? 0.0 : 1.0;
            const double S = std::max(T - 0.1, 0.0);
            Response[I] = Input[I] * (1.0 - std::exp(-3.0 * S) * std::cos(2 * std::numbers::pi * 4.0 * S));
        }
        const std::vector<double>* Data[] = {&Input, &Response};
        const char* Names[] = {"Input", "Response"};
        for (int32_t C = 0; C < 2; ++C) {
            Channels.GetItem(C)->SetName(Names[C]);
            Channels.GetItem(C)->GetData()->SetSampleRate(Rate);
            Channels.GetItem(C)->GetData()->SetYData(Data[C]->data(), uint32_t(Data[C]->size()));
        }
        Scope.RefreshView(); // one refresh tick: the data moves to the draw stage

        Scope.SaveToBitmap(Out.filePath("report.png").toStdString());
        Scope.SaveToSvg(Out.filePath("report.svg").toStdString());
        Scope.SaveToPdf(Out.filePath("report.pdf").toStdString());
        // The same layout with two device pixels per pixel.
        qv::TQLBitmap Sharp(800, 450, 2.0);
        Scope.CopyToBitmap(Sharp);
        qv::qt::QLSaveBitmapPng(Sharp, Out.filePath("report@2x.png"));
    } catch (const std::exception& E) {
        std::fprintf(stderr, "qv_report: %s\n", E.what());
        return 1;
    }
    std::printf("wrote report.png, report@2x.png, report.svg and report.pdf into %s\n",
                qPrintable(QDir::toNativeSeparators(Out.absolutePath())));
    return 0;
}
