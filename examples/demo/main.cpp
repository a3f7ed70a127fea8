// QVScope demo: a live scope fed from a producer thread, and beside it a waterfall of the
// chirp's spectrum (Spectrum.h).
//
// Three channels at 100,000 samples per second each: a noisy sine, a square wave that drops
// out now and then (its line breaks there), and a repeating chirp. The scope keeps the last
// 1,000,000 samples of each. Zoom with the wheel or by dragging a box with the left button;
// the right button (or Backspace) undoes a zoom, Shift with the right button redoes it. Two
// cursors measure the time between them; drag them, or their measurement line. A zone
// recolours the sine inside it.
//
//   qv_demo [--offscreen] [--out DIR] [--seconds N]
//
// Under the scope a second one shows the chirp alone, its time axis tied to the first: zoom
// either and both show the same stretch of time.
//
// With a display it opens a window. With --offscreen (the platform needs no display) it runs
// for N seconds (default 3) and writes DIR/scope-1.png, DIR/scope-2.png, ... one a second,
// DIR/scope.png and DIR/waterfall.png and the whole window as DIR/window.png at the end, and
// DIR/scope-zoomed.png and DIR/window-zoomed.png after a box drag over the middle of the
// plot (DIR defaults to the current directory).

#include <qv/QVScope.h>
#include <qv/qt/QLQtImage.h>
#include <qv/qt/QVScopeWidget.h>
#include <qv/qt/QVWaterfallWidget.h>

#include "Spectrum.h"

#include <QApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <numbers>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace qv;

namespace {

constexpr double SampleRate = 100'000.0;
constexpr uint32_t KeptSamples = 1'000'000;
constexpr int BlockMs = 10;
constexpr int BlockSamples = int(SampleRate) * BlockMs / 1000;

// Generates the three signals in real time, block by block, on its own thread: the scope
// takes samples from any thread and never makes the producer wait for a paint.
class TProducer {
public:
    // AChirp and AChirpScope, when given, also take every block of the chirp.
    TProducer(TQVScope& AScope, demo::TSpectrum* AChirp, TQVScope* AChirpScope = nullptr)
        : FScope(AScope), FChirp(AChirp), FChirpScope(AChirpScope), FThread([this] { Run(); })
    {}
    ~TProducer()
    {
        FStop = true;
        FThread.join();
    }

private:
    void Run()
    {
        std::mt19937 Gen(7);
        std::normal_distribution<double> Noise(0.0, 0.08);
        std::vector<double> Sine(BlockSamples), Square(BlockSamples), Chirp(BlockSamples);
        const double Pi = std::numbers::pi;
        int64_t N = 0;
        int Block = 0;
        auto Next = std::chrono::steady_clock::now();
        while (!FStop) {
            for (int i = 0; i < BlockSamples; ++i, ++N) {
                const double T = double(N) / SampleRate;
                Sine[size_t(i)] = std::sin(2 * Pi * 50.0 * T) + Noise(Gen);
                Square[size_t(i)] = (std::fmod(T * 20.0, 1.0) < 0.5 ? 0.8 : -0.8) - 2.0;
                const double Phase = std::fmod(T, 2.0); // a 2 s sweep from 5 Hz to 200 Hz
                Chirp[size_t(i)] = 0.7 * std::sin(2 * Pi * (5.0 * Phase + 48.75 * Phase * Phase)) + 2.0;
            }
            auto& Channels = *FScope.GetChannels();
            Channels.GetItem(0)->GetData()->AddYData(Sine.data(), BlockSamples);
            // Every 40th block of the square wave drops out: its samples arrive as NaN, which the
            // scope leaves as a gap in the line while the time axis runs on with the others.
            if (++Block % 40 == 0)
                std::fill(Square.begin(), Square.end(), std::numeric_limits<double>::quiet_NaN());
            Channels.GetItem(1)->GetData()->AddYData(Square.data(), BlockSamples);
            Channels.GetItem(2)->GetData()->AddYData(Chirp.data(), BlockSamples);
            if (FChirp)
                FChirp->Add(Chirp.data(), BlockSamples);
            if (FChirpScope)
                FChirpScope->GetChannels()->GetItem(0)->GetData()->AddYData(Chirp.data(), BlockSamples);
            Next += std::chrono::milliseconds(BlockMs);
            std::this_thread::sleep_until(Next);
        }
    }

    TQVScope& FScope;
    demo::TSpectrum* FChirp;
    TQVScope* FChirpScope;
    std::atomic<bool> FStop{false};
    std::thread FThread;
};

void SetUpScope(TQVScope& AScope)
{
    AScope.SetSizeLimit(KeptSamples);
    auto& Channels = *AScope.GetChannels();
    while (Channels.GetCount() < 3)
        Channels.Add();
    const char* Names[] = {"Noisy sine", "Square with drop-outs", "Chirp"};
    for (int32_t i = 0; i < 3; ++i) {
        Channels.GetItem(i)->SetName(Names[i]);
        Channels.GetItem(i)->GetData()->SetSampleRate(SampleRate);
    }
    AScope.GetTitle()->SetText("Live signals, 3 x 100 kS/s");
    // The X axis reads the samples as time, from the channels' sample rate.
    AScope.GetXAxis()->SetTicksMode(atmTime);
    AScope.GetYAxis()->GetAxisLabel()->SetText("Amplitude (V)");

    // A marker with its values written beside it, and a text label, in the first second.
    TQVScopeMarkerGroup* Group = AScope.GetLastMarerGroup();
    Group->SetShape(msTriangleDown);
    Group->SetSize(5);
    Group->GetLabels()->SetVisible(true);
    Group->SetCanDrag(true); // the marker follows a drag with the left button
    TQVScopeMarker* Marker = Group->GetMarkers()->Add();
    Marker->GetPosition()->SetX(500); // printed units of the X axis: milliseconds here
    Marker->GetPosition()->SetY(1.0);
    TQVScopeTextLabel* Label = AScope.GetLabels()->Add();
    Label->SetName("square wave");
    Label->GetPosition()->SetX(1000);
    Label->GetPosition()->SetY(-1.05);
}

// Measuring: two cursors marking where they cross the sine and the chirp, a link that
// measures the time between them over a shaded band, and a zone that recolours the sine
// inside it. Drag a cursor, or the measurement line, with the left button.
void SetUpMeasurement(TQVScope& AScope)
{
    auto& Channels = *AScope.GetChannels();
    auto& Cursors = *AScope.GetCursors();
    TQVScopeCursor* Cursors2[2];
    // Positions are in the X axis' printed units: milliseconds for the first seconds shown.
    const double At[2] = {1000.0, 2200.0};
    for (int32_t i = 0; i < 2; ++i) {
        TQVScopeCursor* C = Cursors.Add();
        C->GetPosition()->SetX(At[i]);
        for (int32_t Channel : {0, 2}) {
            TQVDisplayCursorChannelLink* Mark = C->GetChannels()->Add();
            Mark->SetChannel(Channels.GetItem(Channel));
            Mark->SetShape(msCircle);
            Mark->SetSize(4);
        }
        Cursors2[i] = C;
    }
    TQVScopeCursorLink* Link = AScope.GetCursorLinks()->Add();
    Link->SetBeginCursor(Cursors2[0]);
    Link->SetEndCursor(Cursors2[1]);
    Link->GetMeasurementLine()->SetY(70.0);
    Link->GetMeasurementLine()->GetMeasurementLabel()->SetText("dt = %V ms");
    Link->GetSelection()->SetVisible(true);
    Link->GetSelection()->GetBrush()->SetColor(0x28FFFFFF);

    TQVDisplayZone* Zone = AScope.GetZones()->Add();
    for (const auto& [T, V] :
         {std::pair{2300.0, -0.6}, std::pair{2650.0, -0.6}, std::pair{2650.0, 0.6}, std::pair{2300.0, 0.6}})
        Zone->GetPoints()->Add(T, V);
    Zone->GetBrush()->SetKind(bkSolid);
    Zone->GetBrush()->SetColor(0x30FFFFFF);
    Zone->GetPen()->SetColor(0xFFFF8000);
    TQVDisplayZoneChannelLink* Inside = Zone->GetChannels()->Add();
    Inside->SetChannel(Channels.GetItem(0));
    Inside->GetHighlighting()->SetColor(0xFFFF8000);
}

// A channel link: the band from the chirp down to the square wave filled in a translucent
// blue, under the channels; the legend lists it with its two channels' colours.
void SetUpChannelLink(TQVScope& AScope)
{
    auto& Channels = *AScope.GetChannels();
    TQVDisplayChannelLink* Band = AScope.GetChannelLinks()->Add(Channels.GetItem(2), Channels.GetItem(1));
    Band->SetName("Chirp to square");
    Band->GetBrush()->SetColor(0x703070E0);
}

// Undo and redo of zooming by the right button and the keyboard.
void SetUpUndo(TQVScope& AScope)
{
    AScope.SetOnMouseUp([&AScope](TQLPersistent*, TMouseButton AButton, TShiftState AShift, float, float) {
        if (AButton != mbRight)
            return;
        if (AShift & ssShift)
            AScope.RedoZoom();
        else
            AScope.UndoZoom();
    });
    AScope.SetOnKeyDown([&AScope](TQLPersistent*, uint16_t& AKey, TShiftState) {
        if (AKey == vkBack)
            AScope.UndoZoom();
    });
}

// A second scope under the first shows the chirp alone. The time axes of the two are tied
// through their zoom pins: a zoom, a pan, a wheel step or an undo on either shows the same
// stretch of time on the other.
void SetUpChirpScope(TQVScope& AMain, TQVScope& AChirp)
{
    AChirp.SetSizeLimit(KeptSamples);
    TQVScopeChannel* Channel = AChirp.GetChannels()->GetItem(0);
    Channel->SetName("Chirp");
    Channel->SetColor(AMain.GetChannels()->GetItem(2)->GetColor());
    Channel->GetData()->SetSampleRate(SampleRate);
    AChirp.GetTitle()->SetText("The chirp, time tied to the scope above");
    AChirp.GetXAxis()->SetTicksMode(atmTime);
    AChirp.GetXAxis()->GetZoomPin()->Connect(*AMain.GetXAxis()->GetZoomPin());
    SetUpUndo(AChirp);
}

// What a user's box drag over the middle of the plot does, for the offscreen pictures.
void DragZoomBox(TQVScope& AScope)
{
    const TRect View = AScope.GetDataView()->GetDrawRect();
    const float X0 = float(View.Left + View.Width() * 2 / 5), X1 = float(View.Left + View.Width() * 3 / 5);
    const float Y0 = float(View.Top + View.Height() / 4), Y1 = float(View.Top + View.Height() * 3 / 4);
    AScope.MouseMove({}, X0, Y0);
    AScope.MouseDown(mbLeft, {}, X0, Y0);
    AScope.MouseMove({}, X1, Y1);
    AScope.MouseUp(mbLeft, {}, X1, Y1);
}

void PrintUsage(std::FILE* AStream)
{
    std::fprintf(AStream, "usage: qv_demo [--offscreen] [--out DIR] [--seconds N]\n");
}

} // namespace

int main(int argc, char** argv)
{
    bool Offscreen = false;
    QString OutDir;
    int Seconds = 3;
    for (int I = 1; I < argc; ++I) {
        const std::string Arg = argv[I];
        if (Arg == "--offscreen") {
            Offscreen = true;
        } else if (Arg == "--out" && I + 1 < argc) {
            OutDir = QString::fromLocal8Bit(argv[++I]);
        } else if (Arg == "--seconds" && I + 1 < argc) {
            Seconds = std::atoi(argv[++I]);
            if (Seconds < 1 || Seconds > 3600) {
                std::fprintf(stderr, "qv_demo: --seconds takes 1 to 3600, not '%s'\n", argv[I]);
                return 2;
            }
        } else if (Arg == "--help" || Arg == "-h") {
            PrintUsage(stdout);
            return 0;
        } else {
            std::fprintf(stderr, "qv_demo: unknown or incomplete option '%s'\n", Arg.c_str());
            PrintUsage(stderr);
            return 2;
        }
    }
    if (Offscreen && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (Offscreen && OutDir.isEmpty())
        OutDir = QStringLiteral(".");

    QApplication App(argc, argv);
    try {
        if (!OutDir.isEmpty() && !QDir().mkpath(OutDir))
            throw std::runtime_error("cannot make the directory '" + OutDir.toStdString() + "'");
        // The scope and, beside it, the waterfall of the chirp's spectrum.
        QWidget Window;
        Window.setWindowTitle(QStringLiteral("QVScope demo"));
        auto* Layout = new QHBoxLayout(&Window);
        auto* Scopes = new QVBoxLayout();
        auto* Widget = new TQVScopeWidget(&Window);
        auto* ChirpWidget = new TQVScopeWidget(&Window);
        auto* WaterfallWidget = new TQVWaterfallWidget(&Window);
        Scopes->addWidget(Widget, 2);
        Scopes->addWidget(ChirpWidget, 1);
        Layout->addLayout(Scopes, 3);
        Layout->addWidget(WaterfallWidget, 2);
        Window.resize(1600, 900);
        TQVScope& Scope = Widget->GetScope();
        TQVWaterfall& Waterfall = WaterfallWidget->GetWaterfall();
        SetUpScope(Scope);
        SetUpMeasurement(Scope);
        SetUpChannelLink(Scope);
        SetUpUndo(Scope);
        SetUpChirpScope(Scope, ChirpWidget->GetScope());
        demo::SetUpWaterfall(Waterfall, SampleRate);
        demo::TSpectrum Spectrum(Waterfall, SampleRate);
        demo::TSliceFollower SliceFollower(Waterfall);
        TProducer Producer(Scope, &Spectrum, &ChirpWidget->GetScope());
        Window.show();

        // Pictures of what is on screen: one a second, and the last one as scope.png.
        int Shot = 0;
        auto Save = [&](const QString& AName) {
            Widget->repaint();
            const QString Path = QDir(OutDir).filePath(AName);
            qt::QLSaveBitmapPng(Scope.GetBitmap(), Path);
            std::printf("wrote %s\n", qPrintable(QDir::toNativeSeparators(Path)));
        };
        QTimer Shots;
        if (!OutDir.isEmpty()) {
            QObject::connect(&Shots, &QTimer::timeout, [&] {
                Save(QStringLiteral("scope-%1.png").arg(++Shot));
                if (Offscreen && Shot >= Seconds) {
                    // The mouse over the plot brings up the tool bar.
                    const TRect View = Scope.GetDataView()->GetDrawRect();
                    Scope.DoMouseEnter();
                    Scope.MouseMove({}, float(View.Left + 20), float(View.Top + 20));
                    Save(QStringLiteral("scope.png"));
                    WaterfallWidget->repaint();
                    qt::QLSaveBitmapPng(Waterfall.GetBitmap(), QDir(OutDir).filePath(QStringLiteral("waterfall.png")));
                    Window.grab().save(QDir(OutDir).filePath(QStringLiteral("window.png")));
                    std::printf("wrote waterfall.png and window.png\n");
                    std::printf("the waterfall cursor's last slice: %d values\n", SliceFollower.GetLastSliceSize());
                    DragZoomBox(Scope);
                    Scope.SetHold(true); // the zoomed picture shows the same data
                    Scope.RefreshView();
                    Save(QStringLiteral("scope-zoomed.png"));
                    // The chirp's scope below has followed the zoom through the tied axes.
                    ChirpWidget->GetScope().RefreshView();
                    Window.grab().save(QDir(OutDir).filePath(QStringLiteral("window-zoomed.png")));
                    App.quit();
                }
            });
            Shots.start(1000);
        }
        return App.exec();
    } catch (const std::exception& E) {
        std::fprintf(stderr, "qv_demo: %s\n", E.what());
        return 1;
    }
}
