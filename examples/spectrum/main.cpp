// A spectrum analyser: a signal thread computes a 4096-point FFT (FFTW) of its input twenty
// times a second and hands the scope the magnitude spectrum in dB against frequency, and the
// waterfall under it the same spectrum as its newest row. The input is synthesised: a 1 kHz
// tone, a weaker 5 kHz tone, a tone sweeping from 200 Hz to 20 kHz and a noise floor. A
// cursor on the waterfall stands at 5 kHz; its slice (that bin's level over the rows) goes
// through its output pin to a small scope at the bottom.
//
//   qv_spectrum [--snapshot FILE]   with --snapshot: runs for a second, writes the picture
//                                   to FILE and quits
#include <qv/QVScope.h>
#include <qv/QVWaterfall.h>
#include <qv/qt/QVScopeWidget.h>
#include <qv/qt/QVWaterfallWidget.h>

#include <QApplication>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include <fftw3.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr double Rate = 48'000.0;
constexpr int Points = 4096;
constexpr int Bins = Points / 2 + 1;

// The analyser thread. The FFTW plan is made here, on the constructing thread, since
// planning is not thread-safe; running a plan is.
class TAnalyser {
public:
    TAnalyser(qv::TQVScope& AScope, qv::TQVWaterfall& AWaterfall)
        : FScope(AScope), FWaterfall(AWaterfall), FIn(fftw_alloc_real(Points)), FOut(fftw_alloc_complex(Bins)),
          FPlan(fftw_plan_dft_r2c_1d(Points, FIn, FOut, FFTW_ESTIMATE)), FThread([this] { Run(); })
    {}
    ~TAnalyser()
    {
        FStop = true;
        FThread.join();
        fftw_destroy_plan(FPlan);
        fftw_free(FOut);
        fftw_free(FIn);
    }

private:
    void Run()
    {
        std::mt19937 Gen(3);
        std::normal_distribution<double> Noise(0.0, 1e-4);
        std::vector<double> Frequency(Bins), Level(Bins);
        for (int K = 0; K < Bins; ++K)
            Frequency[size_t(K)] = K * Rate / Points;
        const double Pi = std::numbers::pi;
        int64_t N = 0;
        double SweepPhase = 0.0;
        auto Next = std::chrono::steady_clock::now();
        while (!FStop) {
            for (int I = 0; I < Points; ++I, ++N) {
                const double T = double(N) / Rate;
                const double Sweep = 200.0 * std::pow(100.0, std::fmod(T / 5.0, 1.0)); // 200 Hz .. 20 kHz in 5 s
                SweepPhase += 2 * Pi * Sweep / Rate;
                const double X = std::sin(2 * Pi * 1000.0 * T) + 0.03 * std::sin(2 * Pi * 5000.0 * T) +
                                 0.1 * std::sin(SweepPhase) + Noise(Gen);
                const double Hann = 0.5 - 0.5 * std::cos(2 * Pi * I / (Points - 1));
                FIn[I] = X * Hann;
            }
            fftw_execute(FPlan);
            // dB relative to a full-scale sine: the Hann window's coherent gain is 1/2.
            for (int K = 0; K < Bins; ++K) {
                const double Magnitude = std::hypot(FOut[K][0], FOut[K][1]) / (Points / 4.0);
                Level[size_t(K)] = 20.0 * std::log10(std::max(Magnitude, 1e-9));
            }
            // Each frame replaces the spectrum; the scope shows it at its next refresh.
            FScope.GetChannels()->GetItem(0)->GetData()->SetXYData(Frequency.data(), Level.data(), Bins);
            FWaterfall.GetData()->AddData(Level.data(), Bins);
            Next += std::chrono::milliseconds(50);
            std::this_thread::sleep_until(Next);
        }
    }

    qv::TQVScope& FScope;
    qv::TQVWaterfall& FWaterfall;
    double* FIn;
    fftw_complex* FOut;
    fftw_plan FPlan;
    std::atomic<bool> FStop{false};
    std::thread FThread;
};

} // namespace

int main(int argc, char** argv)
{
    const char* Snapshot = argc == 3 && std::strcmp(argv[1], "--snapshot") == 0 ? argv[2] : nullptr;
    if (Snapshot && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication App(argc, argv);

    QWidget Window;
    auto* Layout = new QVBoxLayout(&Window);
    Layout->setContentsMargins(0, 0, 0, 0);
    Layout->setSpacing(0);
    auto* Widget = new qv::TQVScopeWidget(&Window);
    auto* WaterfallWidget = new qv::TQVWaterfallWidget(&Window);
    auto* HistoryWidget = new qv::TQVScopeWidget(&Window);
    Layout->addWidget(Widget, 3);
    Layout->addWidget(WaterfallWidget, 3);
    Layout->addWidget(HistoryWidget, 2);
    qv::TQVScope& Scope = Widget->GetScope();
    Scope.GetTitle()->SetText("Spectrum, 4096-point FFT at 48 kHz");
    Scope.GetXAxis()->GetAxisLabel()->SetText("Frequency (Hz)");
    Scope.GetYAxis()->GetAxisLabel()->SetText("Level (dB)");
    // A fixed level scale from -120 dB to 0 dB.
    Scope.GetYAxis()->GetAutoScaling()->SetEnabled(false);
    Scope.GetYAxis()->GetMin()->SetValue(-120.0);
    Scope.GetYAxis()->GetMax()->SetValue(0.0);

    // The waterfall: one row per spectrum, the last 200 rows, coloured from -120 dB to 0 dB;
    // its sample axis reads in kHz up to half the sample rate.
    qv::TQVWaterfall& Waterfall = WaterfallWidget->GetWaterfall();
    Waterfall.GetTitle()->SetText("Spectrum history");
    Waterfall.GetXAxis()->SetSamples(200);
    Waterfall.GetXAxis()->GetAxisLabel()->SetText("Row (20 a second)");
    Waterfall.GetData()->SetSampleRate(Rate);
    Waterfall.SetDomains(true, false);
    qv::TQVLevelAxis& Levels = *Waterfall.GetLevels()->GetAxis();
    Levels.SetAutoscale(false);
    Levels.SetMin(-120.0);
    Levels.SetMax(0.0);

    // A cursor at 5 kHz: after each paint its slice through the rows goes to the bottom
    // scope, which shows how the 5 kHz level moved (the sweep passes it every 5 seconds).
    qv::TQVWaterfallCursor& Cursor = *Waterfall.GetCursors()->Add();
    Cursor.SetKind(qv::ckHorizontal);
    Cursor.SetColor(0xFFFFFFFF);
    Cursor.GetPosition()->SetY(5.0);
    qv::TQVScope& History = HistoryWidget->GetScope();
    History.GetTitle()->SetText("5 kHz over the rows (waterfall cursor)");
    History.GetXAxis()->GetAxisLabel()->SetText("Row");
    History.GetYAxis()->GetAxisLabel()->SetText("Level (dB)");
    History.GetYAxis()->GetAutoScaling()->SetEnabled(false);
    History.GetYAxis()->GetMin()->SetValue(-120.0);
    History.GetYAxis()->GetMax()->SetValue(0.0);
    Cursor.GetYOutputPin()->Connect(*History.GetChannels()->GetItem(0)->GetInputPin());

    Window.resize(900, 900);
    Window.show();
    TAnalyser Analyser(Scope, Waterfall); // declared after the widgets: it stops first

    if (Snapshot) {
        QTimer::singleShot(1000, &App, [&] {
            Window.grab().save(QString::fromUtf8(Snapshot));
            App.quit();
        });
    }
    return App.exec();
}
